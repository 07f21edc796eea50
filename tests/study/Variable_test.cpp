// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/Variable.h"

#include "engine/testCases.h"

#include <cmath>
#include <limits>
#include <set>

namespace telvo::study {
namespace {

using engine::panel400;
using project::English, project::Metric, project::Field, project::ProjectInput;

TEST(Variable, NamesAreThoseOfTheInputsAndKnownAgain) {
    std::set<std::string> names;
    for (const Variable& variable : variables()) {
        EXPECT_TRUE(names.insert(variable.name()).second) << variable.name();
        EXPECT_EQ(variableNamed(variable.name()), variable);
    }
    EXPECT_EQ(names.size(), project::NumericInputCount + 2);
    EXPECT_TRUE(names.contains("DepthCover") && names.contains("XcutCenters.9") &&
                names.contains("XcutCenters") && names.contains("Barriers"));
    EXPECT_FALSE(variableNamed("NumberEntries"));
    EXPECT_FALSE(variableNamed("depthcover"));
}

TEST(Variable, SetsItsNumbersAndNoOthers) {
    ProjectInput base = panel400(3);
    base.AMZ = 0;
    for (const Variable& variable : variables()) {
        const double value = variable.kind() == project::FieldKind::Number ? 0.75 : 77;
        const ProjectInput varied = variable.in(base, English, value);
        EXPECT_EQ(variable.of(varied), value) << variable.name();
        EXPECT_EQ(variable.in(varied, English, variable.of(base)) == base,
                  variable.name() != "Barriers") // which gives both one width
            << variable.name();
    }
    const ProjectInput distances = Variable::allDistances().in(base, English, 77);
    for (int i = 1; i <= 9; ++i)
        EXPECT_EQ(distances.XcutCenters[i], i <= 4 ? 77 : 0) << i;
    const ProjectInput barriers = Variable::bothBarriers().in(base, English, 60);
    EXPECT_EQ(barriers.BarrierFirstGob, 60);
    EXPECT_EQ(barriers.BarrierSecondGob, 60);
    EXPECT_EQ(Variable(Field::CoalStrength).unit(Metric), "MPa");
    EXPECT_EQ(Variable(Field::XcutAngle).unit(English), "degrees");
}

TEST(Variable, AutomaticBreadthFollowsTheDepthAlone) {
    ProjectInput in = panel400(1);
    for (const std::int16_t automatic : {std::int16_t{0}, std::int16_t{1}}) {
        in.AMZ = automatic;
        // 5 sqrt(1000) = 158.1; 5 sqrt(1000 m) = 286.4 ft = 87.3 m.
        EXPECT_EQ(Variable(Field::DepthCover).in(in, English, 1000).BreadthAMZ,
                  automatic ? 158 : 93);
        EXPECT_EQ(Variable(Field::DepthCover).in(in, Metric, 1000).BreadthAMZ, automatic ? 87 : 93);
        EXPECT_EQ(Variable(Field::XcutSpacing).in(in, English, 100).BreadthAMZ, 93);
        EXPECT_EQ(Variable(Field::DepthCover).movesBreadth(in), automatic == 1);
        EXPECT_FALSE(Variable(Field::EntryHeight).movesBreadth(in));
    }
}

TEST(Variable, ValidSpanIsThatOfTheForm) {
    constexpr double unlimited = std::numeric_limits<double>::infinity();
    ProjectInput in = panel400(3); // entries 20 wide, spacing 120, barriers 83 and 36.5
    in.XcutCenters[2] = 90, in.SlabcutSecondGob = 25;
    struct Row {
        Variable variable;
        double low, high;
    };
    const Row rows[] = {{Field::EntryHeight, 0, unlimited},
                        {Field::XcutAngle, 30, 90},
                        {Field::EntryWidth, 0, 90},
                        {Field::XcutSpacing, 20, unlimited},
                        {project::FieldId(Field::XcutCenters, 3), 20, unlimited},
                        {Variable::allDistances(), 20, unlimited},
                        {Field::ArchFactor, 0.28, 1},
                        {Field::AbutmentAngleActiveGob, 0, 90},
                        {Field::AbutmentAngleFirstGob, 0, 90},
                        {Field::AbutmentAngleSecondGob, 0, 90},
                        {Field::ExtentActiveGob, 0, unlimited},
                        {Field::BarrierFirstGob, 20, unlimited},
                        {Field::BarrierSecondGob, 25, unlimited},
                        {Variable::bothBarriers(), 25, unlimited},
                        {Field::SlabcutFirstGob, 0, 83},
                        {Field::SlabcutSecondGob, 0, 36.5}};
    for (const Row& row : rows) {
        EXPECT_EQ(row.variable.valid(in).low, row.low) << row.variable.name();
        EXPECT_EQ(row.variable.valid(in).high, row.high) << row.variable.name();
    }
    in.XcutSpacing = 85; // now less than every distance
    EXPECT_EQ(Variable(Field::EntryWidth).valid(in).high, 85);
}

TEST(Variable, CrosscutsWithoutPillarsAreLeftOut) {
    ProjectInput in = panel400(0);
    EXPECT_FALSE(Variable(Field::XcutSpacing).leftOut(in));
    in.XcutSpacing = 20;
    EXPECT_EQ(Variable(Field::XcutSpacing).leftOut(in),
              "The crosscut spacing does not exceed the entry width");
    EXPECT_TRUE(Variable(Field::EntryWidth).leftOut(in));
    EXPECT_FALSE(Variable(Field::DepthCover).leftOut(in)); // the case's own, not the variable's
    std::string open;
    for (const Variable& variable : variables())
        if (variable.leavesZeroOut()) open += variable.name() + " ";
    EXPECT_EQ(open, "EntryHeight DepthCover EntryWidth CoalStrength UnitWeight BreadthAMZ ");
}

} // namespace
} // namespace telvo::study
