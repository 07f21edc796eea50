// SPDX-License-Identifier: GPL-3.0-or-later
// Limits and their ties; the words that go with the flags are the report's.
#include "criteria/criteria.h"

#include <gtest/gtest.h>

#include <limits>

namespace telvo::criteria {
namespace {

TEST(ShownFactor, NarrowsToSingleThenFollowsTheMode) {
    const struct {
        double factor;
        int mode;
        double expected;
    } rows[] = {
        {0.125, HalfEven, 0.12F},
        {0.375, HalfEven, 0.38F}, // ties to the even digit
        {-0.375, HalfEven, -0.38F},
        {1.499, HalfEven, 1.5},
        {1.499, Cut, 1.49F},
        {-1.499, Cut, -1.49F}, // towards 0
        {1.5, Cut, 1.5},
        {1.29, Cut, 1.29F},
        {1.499, 1, 1.499F},
        {1.0 / 3, 7, 1.0F / 3},
        {3e38, Cut, 3e38F}, // times 100 it would leave single precision
    };
    for (const auto& row : rows)
        EXPECT_EQ(shownFactor(row.factor, row.mode), row.expected)
            << row.factor << ", mode " << row.mode;
}

TEST(SuggestedFactor, FallsByTwoTenthsOver350Feet) {
    EXPECT_EQ(suggestedFactor(650.0, 1), 1.5);
    EXPECT_EQ(suggestedFactor(825.0, 1), toSingle(1.4));
    EXPECT_EQ(suggestedFactor(1000.0, 1), toSingle(1.3));
    EXPECT_EQ(suggestedFactor(737.5, HalfEven), toSingle(1.45));
    EXPECT_EQ(suggestedFactor(742.0, HalfEven), toSingle(1.45)); // 1.44742857
    EXPECT_EQ(suggestedFactor(742.0, Cut), toSingle(1.44));
}

/// A panel of two pillars 80 ft wide beside one side gob, as the criteria see it.
struct Panel {
    engine::Frame frame;
    engine::SymbolsOf<double> s;
    project::ProjectInput in;
    FactorsOf<double> factors;

    Panel() {
        frame.AnalysisCase = engine::OneSideGob;
        frame.NumberPillars = 2;
        s.h = 8, s.H = 800, s.We = 20, s.PanelWidth = 200;
        s.BarrierWidth[engine::FirstSide] = 100;
        in.AMZ = in.Arch = 1;
        in.ExtentActiveGob = 100;
        in.ArchFactor = 1;
        for (auto& SF : factors.panel)
            SF = 1.45;
        for (auto& sides : factors.barrier)
            sides = {{3, 0}}; // the second side takes no part
    }
    std::uint64_t flagged() const {
        Scalar calc;
        const auto figure = figures<Scalar>(calc, frame, s, factors, 1);
        return flags<Scalar>(calc, frame, in, figure, factors, 1);
    }
};

constexpr std::uint64_t bit(int flag) {
    return std::uint64_t{1} << flag;
}

TEST(Flags, OfOneLimitEach) {
    struct Row {
        const char* label;
        void (*edit)(Panel&);
        std::uint64_t flags;
    };
    const Row rows[] = {
        {"1.45 holds at 800 ft: 1.5 - 0.2 x 150/350 = 1.414", [](Panel&) {}, 0},
        {"at 650 ft it does not", [](Panel& p) { p.s.H = 650; }, bit(0)},
        {"beyond 650 ft the lower factor counts", [](Panel& p) { p.s.H = 651; }, bit(1)},
        {"development alone below it", [](Panel& p) { p.factors.panel[1] = 1.41; }, bit(1)},
        {"retreat alone below it", [](Panel& p) { p.factors.panel[2] = 1.41; }, bit(1)},
        {"425 ft wide", [](Panel& p) { p.s.PanelWidth = 425; }, 0},
        {"wider than 425 ft", [](Panel& p) { p.s.PanelWidth = 425.01; }, bit(1)},
        {"barrier factor of 2", [](Panel& p) { p.factors.barrier[2][3] = 2; }, 0},
        {"barrier factor below 2", [](Panel& p) { p.factors.barrier[1][3] = 1.999; }, bit(1)},
        {"no barrier: none to fall short",
         [](Panel& p) { p.s.BarrierWidth[3] = 0, p.factors.barrier[2][3] = 0; }, 0},
        {"barrier factor of 1.5", [](Panel& p) { p.factors.barrier[2][3] = 1.5; }, bit(1)},
        {"barrier factor below 1.5", [](Panel& p) { p.factors.barrier[2][3] = 1.49; },
         bit(1) | bit(3)},
        {"1000 ft", [](Panel& p) { p.s.H = 1000; }, 0},
        {"1.3 beyond 1000 ft",
         [](Panel& p) {
             p.s.H = 1001, p.factors.panel = {{1.3, 1.3}};
         },
         bit(7)},
        {"below 1.3",
         [](Panel& p) {
             p.s.H = 1001, p.factors.panel = {{1.3, 1.299}};
         },
         bit(2) | bit(7)},
        {"2000 ft", [](Panel& p) { p.s.H = 2000; }, bit(7)},
        {"beyond 2000 ft", [](Panel& p) { p.s.H = 2001; }, bit(6) | bit(7)},
        {"not without an active gob", [](Panel& p) { p.s.H = 2001, p.in.ExtentActiveGob = 0; }, 0},
        // (200 - 2 x 20) / (2 x 20) = 4
        {"width to height of 4", [](Panel& p) { p.s.h = 20; }, 0},
        {"slender pillars", [](Panel& p) { p.s.h = 20.01; }, bit(5)},
        {"slender, factor of 2",
         [](Panel& p) {
             p.s.h = 21, p.factors.panel = {{2, 2}};
         },
         0},
        {"a metric depth of 198.12 m is 650 ft",
         [](Panel& p) {
             p.frame.Units = 1, p.s.H = 198.12, p.in.CoalStrength = 6.21, p.in.UnitWeight = 25.45;
         },
         bit(0)},
    };
    for (const Row& row : rows) {
        Panel panel;
        row.edit(panel);
        EXPECT_EQ(panel.flagged(), row.flags) << row.label;
    }
}

TEST(Flags, OfInputsThatDepartFromTheDataBase) {
    struct Row {
        const char* label;
        void (*edit)(Panel&);
        int flag;
    };
    const Row rows[] = {
        {"breadth by hand", [](Panel& p) { p.in.AMZ = 0; }, 9},
        {"unit weight", [](Panel& p) { p.in.UnitWeight = 162.5; }, 10},
        {"coal strength", [](Panel& p) { p.in.CoalStrength = 901; }, 11},
        {"angle of the active gob", [](Panel& p) { p.in.AbutmentAngleActiveGob = 20; }, 12},
        {"angle of the first gob", [](Panel& p) { p.in.AbutmentAngleFirstGob = 22; }, 12},
        {"arch factor by hand", [](Panel& p) { p.in.Arch = 0; }, 14},
        {"arch factor below 1", [](Panel& p) { p.in.ArchFactor = 0.99F; }, 15},
    };
    for (const Row& row : rows) {
        Panel panel;
        row.edit(panel);
        EXPECT_EQ(panel.flagged(), bit(row.flag)) << row.label;
    }
    Panel second;
    second.in.AbutmentAngleSecondGob = 22; // takes no part yet
    EXPECT_EQ(second.flagged(), 0U);
    second.frame.AnalysisCase = engine::TwoSideGobs;
    second.in.AbutmentAngleSecondGob = 21;
    EXPECT_EQ(second.flagged(), bit(13));
    second.in.AbutmentAngleSecondGob = 22;
    EXPECT_EQ(second.flagged(), bit(12) | bit(13));
    Panel other; // a third unit system has no values of its own, and its lengths are metric
    other.frame.Units = 2, other.s.H = 243.84, other.s.PanelWidth = 60, other.s.We = 6,
    other.s.h = 2;
    other.in.CoalStrength = 1, other.in.UnitWeight = 1;
    EXPECT_EQ(other.flagged(), 0U);
}

} // namespace
} // namespace telvo::criteria
