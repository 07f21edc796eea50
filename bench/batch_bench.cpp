// SPDX-License-Identifier: GPL-3.0-or-later
// Cases per second of a batch: a five-entry panel between two side gobs, arch factor automatic.
#include "batch/batch.h"
#include "engine/driver.h"

#include <benchmark/benchmark.h>

#include <cmath>

namespace {

using namespace telvo;
using project::Field, project::FieldId;

constexpr std::size_t BlockSize = 2048;

project::ProjectCase panel() {
    project::ProjectCase c = project::newCase(project::English);
    project::ProjectInput& in = c.Input;
    in.EntryHeight = 6, in.DepthCover = 900, in.EntryWidth = 20, in.XcutSpacing = 90;
    in.XcutAngle = 90, in.NumberEntries = 5, in.XcutCenters = {{80, 80, 80, 80}};
    in.BreadthAMZ = 150, in.Anal = 3, in.Arch = 1, in.ArchFactor = 0.8F;
    in.ExtentActiveGob = 400, in.ExtentFirstGob = 800, in.ExtentSecondGob = 600;
    in.BarrierFirstGob = 120, in.SlabcutFirstGob = 20, in.BarrierSecondGob = 90;
    return c;
}

struct Columns {
    std::vector<FieldId> fields;
    std::vector<std::vector<double>> values;
    void vary(FieldId id, double low, double high) {
        fields.push_back(id);
        auto& column = values.emplace_back(BlockSize);
        for (std::size_t i = 0; i < BlockSize; ++i) {
            const double share = std::fmod(
                static_cast<double>(i * (2 * fields.size() + 1)) * 0.6180339887498949, 1.0);
            column[i] = low + (high - low) * share;
        }
    }
};

Columns six(bool angles) {
    Columns c;
    c.vary(Field::DepthCover, 600, 1600);
    c.vary(Field::EntryHeight, 4, 9);
    c.vary(Field::EntryWidth, 16, 22);
    c.vary(Field::CoalStrength, 600, 1200);
    c.vary(Field::BarrierFirstGob, 60, 200);
    c.vary(Field::ExtentActiveGob, 100, 900);
    if (angles) {
        c.vary(Field::XcutAngle, 60, 90);
        c.vary(Field::AbutmentAngleActiveGob, 15, 27);
        c.vary(Field::AbutmentAngleFirstGob, 15, 27);
        c.vary(Field::AbutmentAngleSecondGob, 15, 27);
    }
    return c;
}

const std::vector<std::string> Factors = {"TELVOSF.development", "TELVOSF.retreat"};
const std::vector<std::string> Study = {"TELVOSF.development",
                                        "TELVOSF.retreat",
                                        "BarrierSF.development.first",
                                        "BarrierSF.development.second",
                                        "BarrierSF.retreat.first",
                                        "BarrierSF.retreat.second",
                                        "RemnantSF.first",
                                        "RemnantSF.second",
                                        "LTRANSREM.retreat.first",
                                        "LTRANSREM.retreat.second",
                                        "LTRANSBAR.retreat.first",
                                        "LTRANSBAR.retreat.second"};

void run(benchmark::State& state, const Columns& in, const std::vector<std::string>& quantities,
         bool wantFlags, bool follow, batch::InstructionSet instructions) {
    const project::ProjectCase base = panel();
    const auto batch =
        batch::Batch::prepare(base, in.fields, quantities,
                              {.automaticValuesFollow = follow, .instructions = instructions});
    std::vector<std::vector<double>> out(quantities.size(), std::vector<double>(BlockSize));
    std::vector<const double*> from;
    std::vector<double*> to;
    for (const auto& column : in.values)
        from.push_back(column.data());
    for (auto& column : out)
        to.push_back(column.data());
    std::vector<std::uint16_t> flags(BlockSize);
    std::vector<batch::Status> status(BlockSize);
    for (auto _ : state) {
        batch->compute(BlockSize, from, to, wantFlags ? flags.data() : nullptr, status.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * BlockSize));
}

void registerAll() {
    const std::pair<const char*, batch::InstructionSet> sets[] = {
        {"AVX2", batch::InstructionSet::Avx2},
        {"SSE2", batch::InstructionSet::Baseline},
        {"one by one", batch::InstructionSet::OneByOne}};
    for (const auto& [name, set] : sets) {
        if (set == batch::InstructionSet::Avx2 && batch::bestInstructionSet() != set) continue;
        const auto add = [&, set = set, name = name](const char* what, bool angles,
                                                     const std::vector<std::string>& quantities,
                                                     bool flags, bool follow) {
            benchmark::RegisterBenchmark(
                (std::string(what) + "/" + name).c_str(), [=](benchmark::State& state) {
                    run(state, six(angles), quantities, flags, follow, set);
                });
        };
        add("two factors", false, Factors, false, false);
        add("factors, transfers, flags", false, Study, true, false);
        add("the same, breadth and arch factor follow", false, Study, true, true);
        add("two factors, angles vary", true, Factors, false, false);
        add("factors, transfers, flags, angles vary", true, Study, true, false);
        add("every quantity", false, batch::quantityNames(4), true, false);
    }
}

void prepareAndCompute(benchmark::State& state) {
    const project::ProjectCase c = panel();
    for (auto _ : state) {
        const auto prepared = engine::PrepareAnalysis(c.Input, c.Units);
        auto results = engine::ComputeAnalysis(std::get<engine::WorkingInputs>(prepared));
        benchmark::DoNotOptimize(results);
    }
}
BENCHMARK(prepareAndCompute);

} // namespace

int main(int argc, char** argv) {
    registerAll();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
