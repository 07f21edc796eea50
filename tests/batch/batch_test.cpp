// SPDX-License-Identifier: GPL-3.0-or-later
// A batch gives bit for bit what one case alone gives: numbers, flags and refusals.
#include "batch/batch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace telvo::batch {
namespace {

using project::Field, project::FieldId, project::ProjectCase, project::ProjectInput;

#ifdef __OPTIMIZE__
constexpr int Panels = 1000; // of 1000 cases each
#else
constexpr int Panels = 40;
#endif
constexpr std::size_t Cases = 1003; // not a multiple of any number of lanes

/// Numbers from a counter, the same on every machine.
class Draw {
  public:
    explicit Draw(std::uint64_t seed) : m_state(seed) {}
    std::uint64_t bits() {
        std::uint64_t z = (m_state += 0x9e3779b97f4a7c15U);
        z = (z ^ z >> 30) * 0xbf58476d1ce4e5b9U;
        z = (z ^ z >> 27) * 0x94d049bb133111ebU;
        return z ^ z >> 31;
    }
    bool one(unsigned in) { return bits() % in == 0; }
    double between(double low, double high) {
        return low + (high - low) * static_cast<double>(bits() >> 11) * 0x1p-53;
    }
    std::int16_t number(int count) {
        return static_cast<std::int16_t>(bits() % static_cast<unsigned>(count));
    }

  private:
    std::uint64_t m_state;
};

/// A value of an input: mostly what a mine has, on a grid in every third draw so that rules meet
/// their ties, and now and then what no mine has.
double drawn(Draw& draw, FieldId id, bool metric) {
    const double metre = metric ? 0.3048 : 1;
    if (draw.one(400)) {
        const double odd[] = {0,
                              -1,
                              1e300,
                              1e-300,
                              std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::quiet_NaN(),
                              90};
        return odd[draw.bits() % std::size(odd)];
    }
    const auto length = [&](double low, double high) {
        const double x = draw.between(low, high);
        return metre * (draw.one(3) ? std::round(x / 5) * 5 : x);
    };
    switch (id.field) {
    case Field::EntryHeight:
        return length(3, 14);
    case Field::DepthCover:
        return draw.one(30) ? length(0, 60) : length(60, 2600);
    case Field::EntryWidth:
        return length(14, 24);
    case Field::XcutSpacing:
        return length(20, 160);
    case Field::XcutAngle:
        return draw.one(2) ? 90 : draw.between(28, 91);
    case Field::XcutCenters:
        return length(15, 150);
    case Field::CoalStrength:
        return draw.one(4) ? (metric ? 6.21 : 900) : draw.between(300, 1500) * (metric ? .0069 : 1);
    case Field::UnitWeight:
        return draw.one(4) ? (metric ? 25.45 : 162) : draw.between(140, 180) * (metric ? .157 : 1);
    case Field::BreadthAMZ:
        return length(10, 400);
    case Field::ArchFactor:
        return draw.one(20) ? 0 : draw.between(0.2, 1.02);
    case Field::AbutmentAngleActiveGob:
    case Field::AbutmentAngleFirstGob:
    case Field::AbutmentAngleSecondGob:
        return draw.one(3) ? 21 : draw.one(20) ? 90 * draw.number(2) : draw.between(1, 92);
    case Field::BarrierFirstGob:
    case Field::BarrierSecondGob:
        return draw.one(5) ? 0 : length(2, 300);
    case Field::SlabcutFirstGob:
    case Field::SlabcutSecondGob:
        return draw.one(2) ? 0 : length(0, 60);
    case Field::WidthC:
    case Field::WidthD:
        return length(5, 120);
    default:
        return draw.one(6) ? 0 : length(0, 3000);
    }
}

ProjectCase drawnBase(Draw& draw) {
    ProjectCase base = project::newCase(project::English);
    base.Units = draw.one(12) ? std::int16_t{2} : draw.number(2);
    ProjectInput& in = base.Input;
    for (const FieldId id : project::NumericInputs)
        for (int again = 0; again < 9; ++again) { // an odd base would leave every case uncomputed
            const double x = drawn(draw, id, base.Units != project::English);
            project::set(in, id, x);
            if (std::isfinite(x) && x >= 0 && (x == 0 || (x > 1e-9 && x < 1e9))) break;
        }
    in.NumberEntries = static_cast<std::int16_t>(2 + draw.number(9));
    in.Anal = draw.number(5);
    in.AMZ = draw.number(2);
    in.Arch = draw.number(3);
    in.RowA = draw.one(5) ? draw.number(3) : std::int16_t{0};
    in.RowB = draw.one(5) ? draw.number(2) : std::int16_t{0};
    in.RowC = draw.number(2);
    in.RowD = draw.number(2);
    if (in.RowA == 1) in.SlabcutFirstGob = 0;
    if (in.RowB == 1) in.SlabcutSecondGob = 0;
    in.SlabcutFirstGob = std::min(in.SlabcutFirstGob, in.BarrierFirstGob);
    in.SlabcutSecondGob = std::min(in.SlabcutSecondGob, in.BarrierSecondGob);
    return base;
}

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
        const ProjectCase base = drawnBase(draw);
        std::vector<FieldId> fields;
        std::vector<std::vector<double>> values;
        const unsigned share = 1 + draw.number(6); // from every input to every sixth
        for (const FieldId id : project::NumericInputs) {
            if (!draw.one(share)) continue;
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
