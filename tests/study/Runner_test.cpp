// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/Runner.h"

#include "engine/testCases.h"
#include "project/CaseFile.h"
#include "study/named.h"

namespace telvo::study {
namespace {

using namespace engine;
using project::Field;
using tests::caseOf;
using tests::outcome;

TEST(Outcome, IsANumberOfTheResultsByItsName) {
    const ProjectInput in = panel400(3);
    const Frame frame = frameOf(in, English, DevelopmentLoad);
    const AnalysisResults r = computed(in);
    const auto read = [&](std::string_view name) { return outcome(name).of(r, frame, in); };
    EXPECT_EQ(read("TELVOSF.retreat"), r.TELVOSF[Retreat]);
    EXPECT_EQ(read("BarrierSF.development.second"), r.BarrierSF[Development][SecondSide]);
    EXPECT_EQ(read("RemnantSF.first"), r.RemnantSF[FirstSide]);
    EXPECT_EQ(read("PillarStrength.4"), r.PillarStrength[4]);
    EXPECT_EQ(read("AMZLoad.retreat.firstSide"), r.AMZLoad[Retreat][FirstSide]);
    EXPECT_EQ(read("ArchFactor"), r.ArchFactor); // in single precision
    EXPECT_EQ(read("TributaryStress"), r.TributaryStress);
    EXPECT_EQ(read("BarrierSF.retreat.smallest"),
              std::min(r.BarrierSF[Retreat][FirstSide], r.BarrierSF[Retreat][SecondSide]));
    EXPECT_EQ(outcome("BarrierSF.retreat.first").marginTo(1.5).of(r, frame, in),
              r.BarrierSF[Retreat][FirstSide] - 1.5);
    EXPECT_EQ(outcome("BarrierSF.retreat.first").marginTo(1.5).name(),
              "BarrierSF.retreat.first - 1.5");
    EXPECT_EQ(Outcome::factor(Retreat, SecondSide).name(), "BarrierSF.retreat.second");
    EXPECT_EQ(Outcome::factor(Development, 0).name(), "TELVOSF.development");
    EXPECT_EQ(outcome("PillarStrength.4").kind(), Kind::Stress);
    EXPECT_EQ(outcome("RemnantSF.smallest").kind(), Kind::Factor);
    for (const char* unknown : {"", "TELVOSF", "TELVOSF.third", "PillarStrength.10", "SF",
                                "TELVOSF.smallest", "smallest", "BarrierSF.smallest.first"})
        EXPECT_FALSE(Outcome::named(unknown)) << unknown;
}

TEST(Outcome, OfASideNeedsTheSideAndAFactorItsBarrier) {
    ProjectInput in = panel400(2);
    in.BarrierSecondGob = 10;
    const Frame one = frameOf(in, English, DevelopmentLoad);
    EXPECT_TRUE(outcome("TELVOSF.development").isDefined(one, in));
    EXPECT_TRUE(outcome("BarrierSF.retreat.first").isDefined(one, in));
    EXPECT_FALSE(outcome("BarrierSF.retreat.second").isDefined(one, in));
    EXPECT_FALSE(outcome("SideAbutmentLoad.second").isDefined(one, in));
    // The smallest one is that of the sides that there are.
    const AnalysisResults r = computed(in);
    EXPECT_EQ(outcome("BarrierSF.retreat.smallest").of(r, one, in),
              r.BarrierSF[Retreat][FirstSide]);
    in.BarrierFirstGob = in.SlabcutFirstGob = 0;
    EXPECT_FALSE(outcome("BarrierSF.retreat.first").isDefined(one, in));
    EXPECT_FALSE(outcome("BarrierSF.retreat.smallest").isDefined(one, in));
    EXPECT_TRUE(outcome("SideAbutmentLoad.first").isDefined(one, in));
}

TEST(Runner, SampleIsTheRunOfTheVariedCase) {
    const project::ProjectCase current = caseOf(panel400(3));
    const Runner runner(current, Field::DepthCover,
                        {outcome("TELVOSF.retreat"), outcome("BarrierSF.retreat.smallest")},
                        Retreat);
    for (const double depth : {250.0, 400.0, 650.5}) {
        const Sample sample = runner.at(depth);
        const AnalysisResults r =
            computed(Variable(Field::DepthCover).in(current.Input, English, depth));
        ASSERT_TRUE(sample.computed);
        EXPECT_EQ(sample.x, depth);
        EXPECT_EQ(sample.values[0], r.TELVOSF[Retreat]);
        EXPECT_EQ(sample.values[1],
                  std::min(r.BarrierSF[Retreat][FirstSide], r.BarrierSF[Retreat][SecondSide]));
        EXPECT_EQ(runner.gapAt(depth), "");
    }
    // The case as it is stores a breadth of 93; its own depth, varied, brings 5 sqrt(400) = 100.
    ASSERT_EQ(current.Input.AMZ, 1);
    EXPECT_EQ(runner.own().values[0], computed(current.Input).TELVOSF[Retreat]);
    EXPECT_NE(runner.own().values[0], runner.at(400).values[0]);
    EXPECT_EQ(runner.rounded(0, 400), 100);
    EXPECT_EQ(runner.rounded(1, 400), 0.5);
}

TEST(Runner, GapsAreThoseOfTheRoadOfOneCase) {
    const project::ProjectCase current = caseOf(panel400(2));
    const auto check = [&](Variable variable, double x, std::string_view outcomeName,
                           std::string_view why) {
        const Runner runner(current, variable, {outcome(outcomeName)}, Retreat);
        EXPECT_FALSE(runner.at(x).computed) << x;
        EXPECT_TRUE(runner.gapAt(x).starts_with(why)) << runner.gapAt(x);
    };
    check(Field::XcutSpacing, 20, "TELVOSF.retreat",
          "The crosscut spacing does not exceed the entry width");
    check(Field::BarrierFirstGob, 0, "BarrierSF.retreat.first", "There is no barrier");
    check(Field::DepthCover, 0, "TELVOSF.retreat", "Invalid depth of cover");
    check(Field::BarrierFirstGob, 10, "BarrierSF.retreat.first",
          "Invalid extent of slab cut in barrier of first gob");
    check(Variable::allDistances(), 15, "TELVOSF.retreat",
          "XcutCenters(1): Invalid Pillar Dimensions");
    check(Field::UnitWeight, 1e308, "TELVOSF.retreat", "UnitWeight: ");
}

TEST(Runner, RegimesDifferWhereARuleSwitches) {
    ProjectInput in = panel400(2);
    in.SlabcutFirstGob = 0; // barrier of the first side above a mining height of 8 ft
    const Runner runner(caseOf(in), Field::BarrierFirstGob, {outcome("BarrierSF.retreat.first")},
                        Retreat);
    const Sample narrow = runner.at(7.9), tie = runner.at(8), none = runner.at(0);
    EXPECT_TRUE(runner.differ(narrow, tie));
    EXPECT_TRUE(runner.differ(narrow, none));
    EXPECT_FALSE(runner.differ(none, runner.at(0)));
    EXPECT_FALSE(runner.differ(tie, runner.at(8.01)));
    EXPECT_EQ(runner.switches().text(narrow.regime, tie.regime, Development, English),
              "First barrier is no longer narrower than the mining height: it has strength from "
              "here on");
    // The second side takes no part: nothing of its barrier is asked.
    const Runner second(caseOf(in), Field::BarrierSecondGob, {outcome("TELVOSF.retreat")}, Retreat);
    EXPECT_FALSE(second.differ(second.at(7.9), second.at(8)));
}

} // namespace
} // namespace telvo::study
