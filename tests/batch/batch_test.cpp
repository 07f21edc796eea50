// SPDX-License-Identifier: GPL-3.0-or-later
// A batch gives bit for bit what one case alone gives: numbers, flags and refusals.
#include "batch/batch.h"
#include "engine/InputsOf.h"

#include "drawnCases.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <set>

namespace telvo::batch {
namespace {

using project::Field, project::FieldId, project::ProjectCase, project::ProjectInput;
using tests::Draw, tests::drawn, tests::drawnCase;

#ifdef __OPTIMIZE__
constexpr int Panels = 1000; // of 1000 cases each
#else
constexpr int Panels = 40;
#endif
constexpr std::size_t Cases = 1003; // not a multiple of any number of lanes

struct Outcome {
    std::vector<std::vector<double>> numbers;
    std::vector<std::uint16_t> flags;
    std::vector<Status> status;
};

Outcome outcomeOf(const ProjectCase& base, const std::vector<FieldId>& fields,
                  const std::vector<std::vector<double>>& values,
                  const std::vector<std::string>& quantities, bool withFlags,
                  const Options& options) {
    Outcome outcome;
    // Filled with rubbish, so that nothing is right by not being written.
    outcome.numbers.assign(quantities.size(), std::vector<double>(Cases, 4711));
    outcome.flags.assign(withFlags ? Cases : 0, 0xaaaa);
    outcome.status.assign(Cases, Status{77});
    std::vector<InputColumn> in;
    std::vector<OutputColumn> out;
    for (std::size_t j = 0; j < fields.size(); ++j)
        in.push_back({fields[j], values[j]});
    for (std::size_t j = 0; j < quantities.size(); ++j)
        out.push_back({quantities[j], outcome.numbers[j]});
    const auto fault = computeBatch(base, in, out, outcome.flags, outcome.status, options);
    EXPECT_FALSE(fault) << faultText(*fault);
    return outcome;
}

bool sameBits(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

std::vector<InstructionSet> packSets() {
    std::vector<InstructionSet> sets = {InstructionSet::Baseline};
    if (bestInstructionSet() != sets.front()) sets.push_back(bestInstructionSet());
    return sets;
}

const std::vector<std::string> PanelFactors = {"TELVOSF.development", "TELVOSF.retreat"};
const std::vector<std::string> StudyNames = {"LTRANSBAR.retreat.second",    "TELVOSF.retreat",
                                             "BarrierSF.development.first", "RemnantSF.second",
                                             "BarrierSF.retreat.second",    "ArchFactor",
                                             "LTRANSREM.retreat.first",     "TELVOSF.retreat"};

TEST(Batch, IsBitForBitTheRoadOfOneCase) {
    std::size_t computed = 0, total = 0;
    for (int panel = 0; panel < Panels && !HasFailure(); ++panel) {
        Draw draw(static_cast<std::uint64_t>(panel) + 20261122);
        const ProjectCase base = drawnCase(draw);
        std::vector<FieldId> fields;
        std::vector<std::vector<double>> values;
        const unsigned share = 1 + draw.number(6); // from every input to every sixth
        const bool pillarsStay = draw.one(2);
        for (const FieldId id : project::NumericInputs) {
            if (!draw.one(share) || (pillarsStay && id.field == Field::XcutCenters)) continue;
            fields.push_back(id);
            auto& column = values.emplace_back(Cases);
            for (double& x : column)
                x = drawn(draw, id, base.Units != project::English);
        }
        Options options{.RoundTELVOSF = draw.number(3), .automaticValuesFollow = draw.one(2)};
        const bool withFlags = draw.one(2);
        const int pillars = std::clamp(base.Input.NumberEntries - 1, 0, 9);
        const auto quantities = panel % 3 == 0   ? PanelFactors
                                : panel % 3 == 1 ? StudyNames
                                                 : quantityNames(pillars);
        options.instructions = InstructionSet::OneByOne;
        const Outcome one = outcomeOf(base, fields, values, quantities, withFlags, options);
        for (const InstructionSet set : packSets()) {
            options.instructions = set;
            const Outcome many = outcomeOf(base, fields, values, quantities, withFlags, options);
            for (std::size_t i = 0; i < Cases && !HasFailure(); ++i) {
                ASSERT_EQ(one.status[i], many.status[i]) << "panel " << panel << ", case " << i;
                if (withFlags) {
                    ASSERT_EQ(one.flags[i], many.flags[i]) << "panel " << panel << ", case " << i;
                }
                for (std::size_t j = 0; j < quantities.size(); ++j) {
                    ASSERT_TRUE(sameBits(one.numbers[j][i], many.numbers[j][i]))
                        << "panel " << panel << ", case " << i << ", " << quantities[j] << ": "
                        << one.numbers[j][i] << " and " << many.numbers[j][i];
                    ASSERT_TRUE(std::isfinite(many.numbers[j][i])) << quantities[j];
                }
            }
        }
        total += Cases;
        for (const Status status : one.status)
            computed += status == Status::Computed;
    }
    EXPECT_GT(computed, total / 5); // enough of both
    EXPECT_LT(computed, total * 4 / 5);
}

// From sizes of which only factors can leave single precision: coal so strong that one factor after
// the other does. Wide panels make the tributary load that the arch sheds outweigh the barriers, so
// that their factors leave it long after those of the remnants.
TEST(Batch, FactorsBeyondSinglePrecisionStopTheSameCases) {
    ProjectInput in;
    in.EntryHeight = 1e-9, in.DepthCover = 100, in.UnitWeight = 1e-9, in.EntryWidth = 20;
    in.XcutSpacing = 100, in.NumberEntries = 3, in.BreadthAMZ = 90, in.ArchFactor = 0.5F;
    in.Arch = 0, in.CoalStrength = 900, in.XcutCenters = {{4e8, 4e8}}, in.XcutAngle = 90;
    in.AbutmentAngleActiveGob = in.AbutmentAngleFirstGob = in.AbutmentAngleSecondGob = 45;
    in.ExtentActiveGob = in.ExtentFirstGob = in.ExtentSecondGob = 50;
    in.BarrierFirstGob = 1e9, in.BarrierSecondGob = 2e9;
    struct Row {
        std::int16_t anal;
        double spacing;
    };
    for (const auto& [anal, spacing] : {Row{0, 1e9}, Row{1, 1e9}, Row{2, 100}, Row{3, 100}}) {
        ProjectCase base = project::newCase(project::English);
        base.Input = in;
        base.Input.Anal = anal, base.Input.XcutSpacing = spacing;
        std::vector<std::vector<double>> strengths(1, std::vector<double>(Cases));
        for (std::size_t i = 0; i < Cases; ++i)
            strengths[0][i] = 1e9 * std::pow(1e3, static_cast<double>(i) / Cases);
        const auto statusOf = [&](InstructionSet set) {
            return outcomeOf(base, {Field::CoalStrength}, strengths, PanelFactors, false,
                             {.instructions = set})
                .status;
        };
        const auto one = statusOf(InstructionSet::OneByOne);
        EXPECT_EQ(one.front(), Status::Computed) << anal;
        EXPECT_EQ(one[Cases - 4], Status::NotComputed) << anal;
        for (const InstructionSet set : packSets())
            EXPECT_EQ(statusOf(set), one) << anal;
    }
}

TEST(Batch, WhatIsNotComputedIsNamedByTheRoadOfOneCase) {
    ProjectCase base = project::newCase(project::English);
    base.Input.EntryHeight = 6, base.Input.DepthCover = 800, base.Input.EntryWidth = 20;
    base.Input.XcutSpacing = 90, base.Input.NumberEntries = 3, base.Input.BreadthAMZ = 141;
    base.Input.XcutCenters = {{80, 80}};
    const auto batch =
        Batch::prepare(base, {Field::DepthCover, FieldId(Field::XcutCenters, 2)}, PanelFactors);
    ASSERT_TRUE(batch);
    const double depth[] = {800, -1, 800}, distance[] = {80, 80, 10};
    double development[3], retreat[3];
    Status status[3];
    const double* const in[] = {depth, distance};
    double* const out[] = {development, retreat};
    batch->compute(3, in, out, nullptr, status);
    EXPECT_EQ(status[0], Status::Computed);
    EXPECT_EQ(status[1], Status::NotComputed);
    EXPECT_EQ(status[2], Status::NotComputed);
    EXPECT_EQ(development[1], 0);
    const auto why = [&](int i) {
        const double row[] = {depth[i], distance[i]};
        return batch->whyNot(row);
    };
    EXPECT_EQ(why(0), "");
    EXPECT_EQ(why(1), "Invalid depth of cover");
    EXPECT_NE(why(2).find("PillarGrossWidth of pillar 2 is -10"), std::string::npos) << why(2);
    EXPECT_EQ(batch->caseOf(std::array{700.0, 60.0}).Input.XcutCenters[2], 60);
}

TEST(Batch, AutomaticValuesFollowWhatTheyHangOn) {
    ProjectCase base = project::newCase(project::English);
    base.Input.EntryHeight = 6, base.Input.DepthCover = 800, base.Input.EntryWidth = 20;
    base.Input.XcutSpacing = 90, base.Input.NumberEntries = 5;
    base.Input.XcutCenters = {{100, 100, 100, 100}};
    base.Input.BreadthAMZ = 93, base.Input.ArchFactor = 0.5F; // neither is what the rule gives
    const FieldId first(Field::XcutCenters, 1);
    struct Row {
        std::vector<FieldId> fields;
        std::vector<double> values;
        double breadth;
        float arch;
    };
    // 5 sqrt(1600) = 200; 1 - 0.28 ln(1600 / 400) = 0.6118 and 1 - 0.28 ln(800 / 500) = 0.8684
    const Row rows[] = {{{Field::DepthCover}, {1600}, 200, 0.61F},
                        {{Field::EntryHeight}, {7}, 93, 0.5F},
                        {{first}, {200}, 93, 0.87F},
                        {{Field::DepthCover, Field::BreadthAMZ}, {1600, 150}, 150, 0.61F},
                        {{Field::ArchFactor, Field::DepthCover}, {0.7, 1600}, 200, 0.7F}};
    for (const bool follow : {true, false})
        for (const bool automatic : {true, false})
            for (const Row& row : rows) {
                base.Input.AMZ = base.Input.Arch = automatic;
                const auto batch = Batch::prepare(base, row.fields, {"AMZBreadth"},
                                                  {.automaticValuesFollow = follow});
                ASSERT_TRUE(batch);
                const ProjectInput in = batch->caseOf(row.values).Input;
                const auto varies = [&](Field field) {
                    return std::count(row.fields.begin(), row.fields.end(), FieldId(field)) > 0;
                };
                const bool follows = follow && automatic;
                EXPECT_EQ(in.BreadthAMZ, follows || varies(Field::BreadthAMZ) ? row.breadth : 93);
                EXPECT_EQ(in.ArchFactor, follows || varies(Field::ArchFactor) ? row.arch : 0.5F);
                // A pack has them, too.
                std::vector<std::vector<double>> columns;
                std::vector<const double*> from;
                for (const double value : row.values)
                    columns.emplace_back(4, value);
                for (const auto& column : columns)
                    from.push_back(column.data());
                double breadth[4];
                double* const to[] = {breadth};
                Status status[4];
                batch->compute(4, from, to, nullptr, status);
                EXPECT_EQ(status[0], Status::Computed);
                EXPECT_EQ(breadth[0], in.BreadthAMZ);
            }
}

TEST(Batch, EveryInputThatMayVaryHasANumberOfItsOwn) {
    engine::InputsOf<double> in;
    std::set<double*> numbers;
    for (const FieldId id : project::NumericInputs) {
        double* number = engine::numberIn(in, id);
        EXPECT_TRUE(number) << project::nameOf(id);
        EXPECT_TRUE(numbers.insert(number).second) << project::nameOf(id);
    }
    EXPECT_EQ(engine::numberIn(in, Field::Anal), nullptr);
}

TEST(Batch, AnErrorOfTheRequestIsToldBeforeAnythingRuns) {
    const ProjectCase base = project::newCase(project::English);
    std::vector<double> three(3), two(2);
    std::vector<Status> status(3, Status::Computed);
    const auto message = [&](FieldId field, std::span<const double> values,
                             const std::string& quantity, std::span<double> numbers,
                             std::size_t times = 1) {
        const std::vector<InputColumn> in(times, {field, values});
        const OutputColumn out[] = {{quantity, numbers}};
        const auto fault = computeBatch(base, in, out, {}, status);
        EXPECT_EQ(status[0], Status::Computed); // untouched
        return fault ? fault->message : "";
    };
    const std::string factor = "TELVOSF.retreat";
    EXPECT_EQ(message(Field::DepthCover, two, factor, three),
              "Column DepthCover has 2 values for 3 cases");
    EXPECT_EQ(message(Field::DepthCover, three, factor, two),
              "Column TELVOSF.retreat has 2 values for 3 cases");
    EXPECT_EQ(message(Field::DepthCover, three, "TELVOSF", three),
              "No quantity of this case: TELVOSF");
    EXPECT_EQ(message(Field::DepthCover, three, "PillarArea.7", three),
              "No quantity of this case: PillarArea.7");
    EXPECT_EQ(message(Field::NumberEntries, three, factor, three),
              "An input that cannot vary: NumberEntries");
    EXPECT_EQ(message(Field::DepthCover, three, factor, three, 2),
              "An input that varies twice: DepthCover");
}

} // namespace
} // namespace telvo::batch
