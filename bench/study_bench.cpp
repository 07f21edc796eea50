// SPDX-License-Identifier: GPL-3.0-or-later
//
// The parametric graphs and the studies of a panel between two side gobs. Painted, a graph has to
// take less than 20 ms, what matters 10 ms, a map of 200 x 200 50 ms; find() over 401 points 5 ms, a
// design chart of 60 x 3 points 100 ms. A million samples of ten correlated inputs with all shares,
// quantiles and curves 300 ms of one core.
#include "project/CaseFile.h"
#include "study/graph/sfGraph.h"
#include "study/questions/designChart.h"
#include "study/questions/find.h"
#include "study/questions/sweep.h"
#include "study/questions/tornado.h"
#include "study/questions/uncertainty.h"

#include <benchmark/benchmark.h>

#include <cstdlib>

using namespace telvo;

namespace {

project::ProjectCase betweenTwoGobs() {
    project::ProjectCase current = project::newCase(project::English);
    if (project::readCaseFile(TELVO_EXAMPLES_DIR "/two-side-gobs.TLV", current).fault) std::abort();
    return current;
}

void graph(benchmark::State& state) {
    const project::ProjectCase current = betweenTwoGobs();
    const auto kind = static_cast<study::GraphKind>(state.range(0));
    state.SetLabel(std::string(study::rowOf(kind).caption));
    for (auto _ : state)
        benchmark::DoNotOptimize(study::sfGraph(current, kind, {}, {}));
}
BENCHMARK(graph)->DenseRange(0, study::GraphKinds - 1)->Unit(benchmark::kMillisecond);

void valuesAtTarget(benchmark::State& state) {
    const project::ProjectCase current = betweenTwoGobs();
    const auto outcome = study::sfGraph(current, study::GraphKind::DepthCover, {}, {});
    for (auto _ : state)
        benchmark::DoNotOptimize(study::valuesAt(current, std::get<study::SfGraph>(outcome), 1.5));
}
BENCHMARK(valuesAtTarget)->Unit(benchmark::kMillisecond);

study::Outcome factor(std::string_view name) {
    return study::Outcome::named(name).value();
}

void whatMatters(benchmark::State& state) {
    const project::ProjectCase current = betweenTwoGobs();
    const study::TornadoRequest request{factor("TELVOSF.retreat"), study::defaultRanges(current)};
    for (auto _ : state)
        benchmark::DoNotOptimize(study::tornado(current, request));
}
BENCHMARK(whatMatters)->Unit(benchmark::kMillisecond);

/// Ten inputs, each correlated with its neighbor.
study::UncertaintyRequest tenInputs(const project::ProjectCase& current, int bits) {
    study::AskedUncertainty asked;
    for (const char* name : {"DepthCover", "EntryHeight", "EntryWidth", "XcutSpacing",
                             "XcutCenters", "ExtentActiveGob", "ExtentFirstGob", "ExtentSecondGob",
                             "BarrierFirstGob", "BarrierSecondGob"})
        asked.vary.push_back({{*study::variableNamed(name)}, {}, false});
    for (std::size_t i = 1; i < asked.vary.size(); ++i)
        asked.correlated.push_back(
            {asked.vary[i - 1].variables[0], asked.vary[i].variables[0], 0.3});
    for (const char* text : {"TELVOSF.retreat>=1.5", "BarrierSF.retreat.second>=1.2"})
        asked.limits.push_back(*study::Criterion::parse(text));
    asked.plan.bits = bits;
    return *study::requestOf(asked, current);
}

void drawInputs(benchmark::State& state) {
    const project::ProjectCase current = betweenTwoGobs();
    const study::UncertaintyRequest request = tenInputs(current, 16);
    const auto drawn = *study::uncertainty(current, tenInputs(current, 4));
    std::vector<std::vector<double>> columns(10, std::vector<double>(1024));
    std::vector<double*> out;
    for (auto& column : columns)
        out.push_back(column.data());
    std::vector<sampling::Scattered> inputs = drawn.sampler->inputs();
    sampling::Matrix ranks = sampling::Matrix::identity(inputs.size());
    for (const study::RankPair& pair : request.correlated)
        ranks.at(pair.first, pair.second) = ranks.at(pair.second, pair.first) = pair.rank;
    const auto sampler = *sampling::Sampler::prepare(inputs, ranks, request.plan);
    for (auto _ : state)
        for (std::size_t r = 0; r < 16; ++r)
            for (std::uint64_t from = 0; from < 65536; from += 1024)
                sampler.block(r, from, 1024, out);
}
BENCHMARK(drawInputs)->Unit(benchmark::kMillisecond);

/// Given: argument  log2 of the samples per replicate
void uncertaintyOfSamples(benchmark::State& state) {
    const project::ProjectCase current = betweenTwoGobs();
    const study::UncertaintyRequest request = tenInputs(current, static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(study::uncertainty(current, request));
}
BENCHMARK(uncertaintyOfSamples)->Arg(9)->Arg(13)->Arg(16)->Unit(benchmark::kMillisecond);

void assessSamples(benchmark::State& state) {
    const project::ProjectCase current = betweenTwoGobs();
    const study::UncertaintyRequest request = tenInputs(current, 16);
    const study::Samples samples = *study::drawSamples(current, request);
    for (auto _ : state)
        benchmark::DoNotOptimize(study::assess(current, request, samples));
}
BENCHMARK(assessSamples)->Unit(benchmark::kMillisecond);

void findAValue(benchmark::State& state) {
    const project::ProjectCase current = betweenTwoGobs();
    const char* const names[] = {"BarrierSecondGob", "DepthCover", "EntryHeight"};
    const char* const name = names[state.range(0)];
    state.SetLabel(name);
    const study::Variable variable = study::variableNamed(name).value();
    const study::FindRequest request{
        variable,
        {factor(state.range(0) == 0 ? "BarrierSF.retreat.second" : "TELVOSF.retreat"),
         study::Criterion::Sense::AtLeast, 1.5},
        study::defaultSearchRange(current, variable),
        study::defaultStep(variable, current.Units)};
    std::size_t runs = 0;
    for (auto _ : state)
        runs = study::find(current, request)->tally.runs;
    state.counters["runs"] = static_cast<double>(runs);
}
BENCHMARK(findAValue)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

void chart(benchmark::State& state) {
    const project::ProjectCase current = betweenTwoGobs();
    study::DesignChartRequest request{study::variableNamed("BarrierSecondGob").value(),
                                      {50, 450},
                                      1,
                                      study::variableNamed("DepthCover").value(),
                                      {},
                                      factor("BarrierSF.retreat.second"),
                                      study::Criterion::Sense::AtLeast,
                                      {1.3, 1.5, 2.0}};
    for (int i = 0; i < 60; ++i)
        request.values.push_back(600 + 20 * i);
    std::size_t runs = 0;
    for (auto _ : state)
        runs = study::designChart(current, request)->tally.runs;
    state.counters["runs"] = static_cast<double>(runs);
}
BENCHMARK(chart)->Unit(benchmark::kMillisecond);

void map(benchmark::State& state) {
    const project::ProjectCase current = betweenTwoGobs();
    const auto side = static_cast<int>(state.range(0));
    study::SweepRequest request{{{study::variableNamed("DepthCover").value(), {}},
                                 {study::variableNamed("EntryHeight").value(), {}}},
                                false,
                                {factor("TELVOSF.retreat"), factor("BarrierSF.retreat.second")}};
    for (int i = 0; i < side; ++i) {
        request.axes[0].values.push_back(500 + i * 1000.0 / side);
        request.axes[1].values.push_back(4 + i * 6.0 / side);
    }
    for (auto _ : state) {
        const auto table = study::sweep(current, request);
        benchmark::DoNotOptimize(study::contour(*table, 0, 1.5));
    }
    state.SetItemsProcessed(state.iterations() * side * side);
}
BENCHMARK(map)->Arg(200)->Arg(1000)->Unit(benchmark::kMillisecond);

} // namespace
