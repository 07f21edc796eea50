// SPDX-License-Identifier: GPL-3.0-or-later
#include "plot/panelPlan.h"

#include "plot/plans.h"

#include <limits>

namespace telvo::plot {
namespace {

using std::string;
using std::vector;

constexpr double Tolerance = 1e-3; // ft; the hand-worked numbers have four decimals

void expectPoints(const vector<Point>& found, const vector<Point>& expected) {
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_NEAR(found[i].x, expected[i].x, Tolerance) << "corner " << i;
        EXPECT_NEAR(found[i].y, expected[i].y, Tolerance) << "corner " << i;
    }
}

// Entry width 20, spacing 110, angle 60, centers 85: pillars are 65 wide, their crosscut edges rise
// by 65 / tan 60 = 37.5278, their ribs are 110 - 20 / sin 60 = 86.9060 long.
TEST(PanelPlan, PillarsAtSixtyDegreesAreParallelogramsBelowTheRetreatLine) {
    const Drawing plan = planOf(example("one-side-gob-slab-cut"), toScale());
    const auto pillars = shapes(plan, Role::Pillar);
    ASSERT_GE(pillars.size(), 16U);
    expectPoints(pillars[0], {{10, -124.4338}, {75, -86.9060}, {75, 0}, {10, -37.5278}});
    expectPoints(pillars[3], {{265, -124.4338}, {330, -86.9060}, {330, 0}, {265, -37.5278}});
    expectPoints(pillars[4], {{10, -234.4338}, {75, -196.9060}, {75, -110}, {10, -147.5278}});
    // AMZ 132: the least number of rows, four, and room for the low ends of the last one.
    EXPECT_NEAR(plan.bounds.bottom, -4 * 110 - 37.5278, Tolerance);
    for (const auto& pillar : pillars)
        EXPECT_LE(around(pillar).top, 0);
    EXPECT_EQ(around(shapes(plan, Role::Amz).at(0)), (Rect{-10, -132, 350, 0}));
}

TEST(PanelPlan, RightAnglesMakeRectanglesAndADeepZoneMoreRows) {
    project::ProjectCase panel = example("two-side-gobs");
    panel.Input.BreadthAMZ = 5.5 * panel.Input.XcutSpacing; // and two more: 7.5, so 8 rows
    const auto pillars = shapes(planOf(panel, {}), Role::Pillar);
    const double We = panel.Input.EntryWidth;
    const double Sc = panel.Input.XcutSpacing;
    ASSERT_EQ(pillars.size(), 8U * 4);
    expectPoints(pillars[0], {{We / 2, We - Sc},
                              {panel.Input.XcutCenters[1] - We / 2, We - Sc},
                              {panel.Input.XcutCenters[1] - We / 2, 0},
                              {We / 2, 0}});
}

TEST(PanelPlan, ASlabCutIsANotchOfTheBarrierBesideTheActiveGob) {
    const Drawing plan = planOf(example("one-side-gob-slab-cut"), toScale());
    const double bottom = plan.bounds.bottom;
    // Barrier 120 from the outer rib at -10, slab cut 40, active gob 500, side gob 450.
    expectPoints(shapes(plan, Role::Barrier).at(0),
                 {{-10, bottom}, {-10, 0}, {-50, 0}, {-50, 500}, {-130, 500}, {-130, bottom}});
    EXPECT_EQ(around(shapes(plan, Role::SlabCut).at(0)), (Rect{-50, 0, -10, 500}));
    EXPECT_EQ(around(shapes(plan, Role::ActiveGob).at(0)), (Rect{-10, 0, 350, 500}));
    EXPECT_EQ(around(shapes(plan, Role::SideGob).at(0)), (Rect{-580, bottom, -130, 500}));

    // A slab cut of the whole barrier leaves no remnant, no barrier leaves none at all.
    const Drawing none = planOf(example("metric-two-side-gobs"), toScale());
    ASSERT_EQ(shapes(none, Role::Barrier).size(), 1U);
    EXPECT_EQ(around(shapes(none, Role::Barrier)[0]).top, 0);
    EXPECT_EQ(around(shapes(none, Role::SideGob).at(1)).left, 72 + 3);
}

TEST(PanelPlan, TheLoadingConditionSaysWhatSurroundsThePanel) {
    const struct {
        std::int16_t anal;
        std::size_t activeGobs, barriers, sideGobs, coal, bleeders;
    } rows[] = {{0, 0, 0, 0, 2, 0}, {1, 1, 0, 0, 2, 0}, {2, 1, 1, 1, 1, 1}, {3, 1, 2, 2, 0, 2}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.anal);
        project::ProjectCase panel = example("bleeder-rows-c-d");
        panel.Input.Anal = row.anal;
        const Drawing plan = planOf(panel, {});
        EXPECT_EQ(shapes(plan, Role::ActiveGob).size(), row.activeGobs);
        EXPECT_EQ(shapes(plan, Role::Barrier).size(), row.barriers);
        EXPECT_EQ(shapes(plan, Role::SlabCut).size(), row.barriers);
        EXPECT_EQ(shapes(plan, Role::SideGob).size(), row.sideGobs);
        EXPECT_EQ(shapes(plan, Role::Coal).size(), row.coal);
        EXPECT_EQ(shapes(plan, Role::Bleeder).empty(), row.bleeders == 0);
        EXPECT_EQ(plan.caption.at(1), project::LoadingConditionNames[row.anal]);
    }
}

TEST(PanelPlan, RowsAreDrawnByTheirFlags) {
    project::ProjectCase panel = example("retreat-rows-a-b");
    const double right = 5 * 70;
    for (const int flags : {0, 1, 2, 3}) {
        panel.Input.RowA = static_cast<std::int16_t>(flags & 1);
        panel.Input.RowB = static_cast<std::int16_t>(flags / 2);
        int ofA = 0;
        int ofB = 0;
        for (const auto& pillar : shapes(planOf(panel, toScale()), Role::LeftRow)) {
            EXPECT_GE(around(pillar).bottom, 0); // crosscuts at 90 degrees
            EXPECT_LE(around(pillar).top, 900);
            ofA += around(pillar).left == 9 ? 1 : 0;
            ofB += around(pillar).right == right - 9 ? 1 : 0;
        }
        EXPECT_EQ(ofA, flags & 1 ? 12 : 0); // 900 / 80 spacings, the last one in part
        EXPECT_EQ(ofB, flags & 2 ? 12 : 0);
    }
    panel.Input.XcutAngle = 60; // skew ends stay above the retreat line as well
    for (const auto& pillar : shapes(planOf(panel, toScale()), Role::LeftRow))
        EXPECT_GE(around(pillar).bottom, 0);
    // Outwards: barrier 60, bleeder entry 20, pillars of row C 60 x (90 - 20).
    const Drawing plan = planOf(example("bleeder-rows-c-d"), toScale());
    const auto bleeders = shapes(plan, Role::Bleeder);
    EXPECT_TRUE(std::any_of(bleeders.begin(), bleeders.end(), [](const auto& pillar) {
        return around(pillar) == Rect{-10 - 140, -70, -10 - 80, 0};
    }));
    EXPECT_EQ(around(shapes(plan, Role::SideGob).at(0)).right, -10 - 140);
}

TEST(PanelPlan, ExchangedSidesMirrorTheDrawing) {
    const project::ProjectCase panel = example("bleeder-rows-c-d");
    project::ProjectCase exchanged = panel;
    project::ProjectInput& in = exchanged.Input;
    std::swap(in.ExtentFirstGob, in.ExtentSecondGob);
    std::swap(in.BarrierFirstGob, in.BarrierSecondGob);
    std::swap(in.SlabcutFirstGob, in.SlabcutSecondGob);
    std::swap(in.WidthC, in.WidthD);
    ASSERT_NE(in.WidthC, panel.Input.WidthC);
    const auto sorted = [](const Drawing& plan, Role role, double mirror) {
        vector<vector<double>> all;
        for (const auto& shape : shapes(plan, role)) {
            const Rect r = around(shape);
            all.push_back(mirror > 0
                              ? vector<double>{mirror - r.right, r.bottom, mirror - r.left, r.top}
                              : vector<double>{r.left, r.bottom, r.right, r.top});
        }
        std::sort(all.begin(), all.end());
        return all;
    };
    const Drawing plan = planOf(panel, toScale());
    const Drawing mirrored = planOf(exchanged, toScale());
    for (const Role role : {Role::Barrier, Role::SlabCut, Role::SideGob, Role::Bleeder,
                            Role::ActiveGob, Role::Pillar, Role::Amz})
        EXPECT_EQ(sorted(plan, role, 0), sorted(mirrored, role, 4 * 80));
}

TEST(PanelPlan, DimensionsAreThoseAskedFor) {
    const project::ProjectCase panel = example("one-side-gob-slab-cut");
    PlanOptions options{0, 0, 0, 0, 0};
    EXPECT_TRUE(figures(planOf(panel, options)).empty());
    options.PlotEntryDims = 1;
    EXPECT_EQ(figures(planOf(panel, options)),
              (vector<string>{"85", "85", "85", "85", "4 \u00D7 85 = 340", "20"}));
    options = {0, 1, 1, 0, 0};
    EXPECT_EQ(figures(planOf(panel, options)), vector<string>{"110"});
    options = {0, 1, 0, 0, 0};
    EXPECT_EQ(figures(planOf(panel, options)), vector<string>(4, "110"));
    options = {0, 0, 1, 0, 0}; // says which crosscuts, not whether
    EXPECT_TRUE(figures(planOf(panel, options)).empty());
    options = {0, 0, 0, 1, 0};
    EXPECT_EQ(figures(planOf(panel, options)), (vector<string>{"450", "80", "40", "120", "500"}));
    const Drawing sides = planOf(panel, options);
    const auto below = std::find_if(sides.chains.begin(), sides.chains.end(), [](const auto& c) {
        return c.figures[0].text == "120" && c.line < 0;
    });
    ASSERT_NE(below, sides.chains.end());
    EXPECT_LT(below->offset, -2); // clear of the circles of the entry numbers
    options.PlotGobExtLoose = 1;  // not to scale, and told so
    EXPECT_EQ(figures(planOf(panel, options)), (vector<string>{"450_", "80", "40", "120", "500_"}));

    project::ProjectCase unequal = example("retreat-one-section");
    options = {1, 0, 0, 0, 0};
    EXPECT_EQ(figures(planOf(unequal, options)).at(6), "480"); // no "6 x" in front
    unequal.Input.WidthC = 60.1F;                              // single precision, as it was typed
    unequal.Input.RowC = 1;
    unequal.Input.Anal = 2;
    options = {0, 0, 0, 1, 0};
    const auto shown = figures(planOf(unequal, options));
    EXPECT_EQ(std::count(shown.begin(), shown.end(), "60.1"), 1);
}

TEST(PanelPlan, LooseGobsAreCutShortWithABreakLineAndTheirTrueFigure) {
    const auto breaks = [](const Drawing& plan) {
        return std::count_if(plan.polylines.begin(), plan.polylines.end(),
                             [](const Polyline& line) { return line.role == Role::BreakLine; });
    };
    const project::ProjectCase panel = example("two-side-gobs");
    PlanOptions options{0, 0, 0, 0, 0};
    const Drawing scaled = planOf(panel, options);
    options.PlotGobExtLoose = 1;
    const Drawing loose = planOf(panel, options);
    EXPECT_EQ(breaks(scaled), 0);
    EXPECT_EQ(breaks(loose), 3);
    EXPECT_EQ(scaled.bounds.top, 700);
    EXPECT_LT(loose.bounds.top, 350);
    EXPECT_LT(loose.bounds.width(), scaled.bounds.width() / 1.5);
    vector<string> names;
    for (const Text& text : loose.texts)
        if (text.role == Role::Name) names.push_back(text.wordings.front());
    for (const char* name :
         {"Active gob 700 ft", "First side gob 800 ft", "Second side gob 600 ft"})
        EXPECT_EQ(std::count(names.begin(), names.end(), name), 1) << name;
}

TEST(PanelPlan, PillarsWithoutWidthOrLengthAreRefused) {
    const auto refused = [](auto change) {
        project::ProjectCase panel = example("two-side-gobs");
        change(panel.Input);
        const auto plan = panelPlan(panel, {});
        const auto* refusal = std::get_if<Refusal>(&plan);
        return refusal && refusal->message == "Invalid Pillar Dimensions" &&
               refusal->title == "Error";
    };
    using In = project::ProjectInput;
    EXPECT_FALSE(refused([](In&) {}));
    EXPECT_TRUE(refused([](In& in) { in.XcutCenters[2] = in.EntryWidth; }));
    EXPECT_TRUE(refused([](In& in) { in.XcutSpacing = in.EntryWidth; }));
    EXPECT_TRUE(refused([](In& in) { in.XcutAngle = 0; }));
    EXPECT_TRUE(refused([](In& in) { in.NumberEntries = 1; }));
    EXPECT_TRUE(refused([](In& in) { in.EntryWidth = -1; }));
    EXPECT_TRUE(refused([](In& in) { in.XcutCenters[1] = std::nan(""); }));
    EXPECT_TRUE(refused([](In& in) { in.XcutSpacing = std::numeric_limits<double>::infinity(); }));
}

TEST(PanelPlan, ExtremeInputsStayDrawable) {
    using In = project::ProjectInput;
    constexpr double infinite = std::numeric_limits<double>::infinity();
    void (*const changes[])(In&) = {
        [](In& in) { in.XcutAngle = 30; },
        [](In& in) { in.XcutAngle = 150; },
        [](In& in) { in.BreadthAMZ = 10000 * in.XcutSpacing; },
        [](In& in) { in.BreadthAMZ = infinite; },
        [](In& in) { in.BreadthAMZ = in.ExtentActiveGob = std::nan(""); },
        [](In& in) { in.ExtentActiveGob = in.ExtentFirstGob = in.BarrierSecondGob = 0; },
        [](In& in) { in.ExtentActiveGob = in.ExtentSecondGob = 1e300; },
        [](In& in) { in.BarrierFirstGob = in.SlabcutFirstGob = infinite; },
        [](In& in) { in.SlabcutFirstGob = -5; },
        [](In& in) { in.XcutSpacing = 1e-6, in.EntryWidth = 1e-7, in.XcutAngle = 30; },
        [](In& in) { in.XcutSpacing = 1e11; },
        [](In& in) { in.Anal = 17, in.NumberEntries = 30; },
    };
    for (const auto& change : changes)
        for (const auto& options : {PlanOptions{}, PlanOptions{1, 1, 0, 1, 0}}) {
            SCOPED_TRACE(&change - changes);
            project::ProjectCase panel = example("bleeder-rows-c-d");
            panel.Input.RowA = panel.Input.RowB = 1;
            std::fill(panel.Input.XcutCenters.begin(), panel.Input.XcutCenters.end(), 80);
            change(panel.Input);
            const Drawing plan = planOf(panel, options);
            EXPECT_LT(plan.polygons.size(), 1500U);
            EXPECT_TRUE(plan.bounds.width() > 0 && plan.bounds.height() > 0);
            for (const Polygon& polygon : plan.polygons)
                for (const Point p : polygon.points) {
                    ASSERT_TRUE(std::isfinite(p.x) && std::isfinite(p.y));
                    ASSERT_GE(p.y, plan.bounds.bottom);
                }
        }
}

TEST(PanelPlan, HintsTellWhatThePointerRestsOn) {
    const Drawing plan = planOf(example("one-side-gob-slab-cut"), toScale());
    EXPECT_EQ(hintAt(plan, {40, -60}),
              "Pillar 1: 65 ft from rib to rib, 86.90599 ft along the ribs");
    EXPECT_EQ(hintAt(plan, {-100, 100}),
              "First barrier pillar, 120 ft wide; remnant beside the active gob 80 ft");
    EXPECT_EQ(hintAt(plan, {-300, -20}), "First side gob: extent 450 ft");
    EXPECT_EQ(hintAt(plan, {5000, 0}), "");
}

} // namespace
} // namespace telvo::plot
