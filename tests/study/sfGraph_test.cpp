// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/graph/graphReading.h"
#include "study/graph/sfGraph.h"

#include "base/numbers.h"
#include "engine/testCases.h"
#include "project/CaseFile.h"
#include "project/units.h"
#include "report/sections.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace telvo::study {
namespace {

using namespace engine;
using project::ProjectCase;

ProjectCase caseOf(const ProjectInput& in, std::int16_t units = English) {
    ProjectCase current = project::newCase(units);
    current.Input = in;
    return current;
}

/// The panel of the engine's tests with an entered breadth, so that depth varies alone.
ProjectCase panel(std::int16_t anal) {
    ProjectInput in = panel400(anal);
    in.AMZ = 0;
    return caseOf(in);
}

SfGraph graphOf(const ProjectCase& current, GraphKind kind, GraphRange range = {}) {
    auto outcome = sfGraph(current, kind, range, {});
    if (auto* graph = std::get_if<SfGraph>(&outcome)) return *graph;
    ADD_FAILURE() << std::get<Refusal>(outcome).message;
    return {};
}

std::string refusalOf(const ProjectCase& current, GraphKind kind, GraphRange range = {}) {
    const auto outcome = sfGraph(current, kind, range, {});
    const auto* refusal = std::get_if<Refusal>(&outcome);
    if (!refusal) return {};
    EXPECT_EQ(refusal->title, "Error");
    return refusal->message;
}

double factorOf(const ProjectCase& current, GraphKind kind, int pass) {
    const AnalysisResults r = computed(current.Input, current.Units);
    if (kind == GraphKind::FirstBarrier) return r.BarrierSF[pass][FirstSide];
    if (kind == GraphKind::SecondBarrier) return r.BarrierSF[pass][SecondSide];
    return r.TELVOSF[pass];
}

bool speaksOf(const std::string& text, std::string_view what) {
    return text.find(what) != std::string::npos;
}

std::vector<GraphPoint> pointsOf(const Curve& curve) {
    std::vector<GraphPoint> points;
    for (const auto& piece : curve.pieces)
        points.insert(points.end(), piece.begin(), piece.end());
    return points;
}

/// What every graph without gaps must hold.
void check(const ProjectCase& current, const SfGraph& graph) {
    const double width = graph.high - graph.low;
    const AnalysisResults results = computed(current.Input, current.Units);
    ASSERT_EQ(static_cast<int>(graph.curves.size()), report::lastPass({current, results, {}, {}}));
    for (int p = Development; p <= static_cast<int>(graph.curves.size()); ++p) {
        const Curve& curve = graph.curves[static_cast<std::size_t>(p - 1)];
        EXPECT_EQ(curve.name, p == Development ? "Development" : "Retreat");
        const auto points = pointsOf(curve);
        EXPECT_GE(points.size(), 101U);
        EXPECT_EQ(points.front().x, graph.low);
        EXPECT_EQ(points.back().x, graph.high);
        EXPECT_EQ(std::adjacent_find(points.begin(), points.end(),
                                     [](auto& a, auto& b) { return a.x >= b.x; }),
                  points.end());
        for (std::size_t i = 0; i < points.size(); i += 5)
            EXPECT_EQ(points[i].y,
                      factorOf(variedCase(current, graph.kind, points[i].x), graph.kind, p));
        ASSERT_TRUE(curve.own);
        EXPECT_EQ(curve.own->y, factorOf(current, graph.kind, p));
        EXPECT_TRUE(std::any_of(points.begin(), points.end(), [&](const GraphPoint& point) {
            return point.x == graph.ownValue && point.y == curve.own->y;
        }));
        ASSERT_EQ(curve.pieces.size(), curve.jumps.size() + 1);
        for (std::size_t j = 0; j < curve.jumps.size(); ++j) {
            const GraphPoint left = curve.pieces[j].back(), right = curve.pieces[j + 1].front();
            EXPECT_LE(right.x - left.x, 1e-6 * width);
            EXPECT_TRUE(left.x <= curve.jumps[j].x && curve.jumps[j].x <= right.x);
            EXPECT_EQ(curve.jumps[j].before, left.y);
            EXPECT_EQ(curve.jumps[j].after, right.y);
            EXPECT_FALSE(curve.jumps[j].rule.empty());
        }
    }
}

TEST(SfGraph, PointsAreTheRunsOfTheirValuesInEveryExample) {
    int graphs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TELVO_EXAMPLES_DIR)) {
        ProjectCase current = project::newCase(English);
        ASSERT_FALSE(project::readCaseFile(entry.path().string(), current).fault);
        for (int kind = 0; kind < GraphKinds; ++kind) {
            if (!isOffered(GraphKind(kind), current.Input)) continue;
            SCOPED_TRACE(entry.path().filename().string() + ", " + std::to_string(kind));
            check(current, graphOf(current, GraphKind(kind)));
            ++graphs;
        }
    }
    EXPECT_GE(graphs, 40);
}

TEST(SfGraph, ArchFactorJumpsAtEightyFeetOverThePanelWidth) {
    // W = 400: factor 1 below H = 480, then 1 - 0.28 ln 1.2 = 0.949, rounded 0.95. The tributary
    // load alone, so the factor goes as 1 / (F H).
    ProjectCase current = panel(0);
    EXPECT_TRUE(graphOf(current, GraphKind::DepthCover).curves[0].jumps.empty());
    current.Input.Arch = 1;
    const SfGraph graph = graphOf(current, GraphKind::DepthCover);
    ASSERT_EQ(graph.curves.size(), 1U);
    const Jump& jump = graph.curves[0].jumps.front();
    EXPECT_NEAR(jump.x, 480, 1e-6 * 400);
    EXPECT_NEAR(*jump.after / *jump.before, 1 / 0.95, 1e-6);
    EXPECT_TRUE(speaksOf(jump.rule, "from 1 to 0.95") && speaksOf(jump.rule, "80 ft"));

    // A target 2 % above the factor at 480 asks for F H = 470.588: there with F = 1; jumped over at
    // 480; with 0.94 at 500.626; over at 400 exp(0.065 / 0.28), where F falls to 0.93; at 506.009.
    const auto found = valuesAt(current, graph, *jump.before * 1.02);
    const std::vector<double> expected = {480 / 1.02, 480, 480 / 1.02 / 0.94,
                                          400 * std::exp(0.065 / 0.28), 480 / 1.02 / 0.93};
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_NEAR(found[i].x, expected[i], 1e-6 * 400) << i;
        EXPECT_EQ(found[i].isJump, i % 2 == 1) << i;
    }
}

TEST(SfGraph, StrengthSetToZeroIsAJumpAndGeometryATurn) {
    ProjectCase current = panel(2);
    current.Input.RowC = 0;
    current.Input.SlabcutFirstGob = 0;
    // The barrier has strength from the mining height of 8 ft on.
    const SfGraph graph = graphOf(current, GraphKind::FirstBarrier, {5, 50});
    const Jump& jump = graph.curves[0].jumps.front();
    EXPECT_NEAR(jump.x, 8, 1e-6 * (graph.high - graph.low));
    EXPECT_EQ(jump.before, 0);
    EXPECT_TRUE(speaksOf(jump.rule, "First barrier") && speaksOf(jump.rule, "strength"));
    // Crosscuts at 60 degrees: pillars 80 ft wide are as long where Sc sin 60 - 20 = 80.
    ProjectCase skew = panel(0);
    skew.Input.XcutAngle = 60;
    const Curve spacing = graphOf(skew, GraphKind::XcutSpacing).curves[0];
    ASSERT_EQ(spacing.turns.size(), 1U);
    EXPECT_NEAR(spacing.turns[0].x, 100 / std::sqrt(0.75), 1e-6 * 120);
    EXPECT_TRUE(spacing.jumps.empty());
    // A first side gob of 1000 ft at 45 degrees is supercritical up to a depth of 500 ft.
    const Curve depth = graphOf(current, GraphKind::DepthCover).curves[0];
    const auto turn = std::find_if(depth.turns.begin(), depth.turns.end(), [](const Turn& t) {
        return t.rule == "First side gob turns from super- to subcritical";
    });
    ASSERT_NE(turn, depth.turns.end());
    EXPECT_NEAR(turn->x, 500, 1e-6 * 400);
}

TEST(SfGraph, AutomaticBreadthFollowsTheDepth) {
    ProjectCase current = panel(1);
    EXPECT_EQ(variedCase(current, GraphKind::DepthCover, 1000).Input.BreadthAMZ, 93);
    current.Input.AMZ = 1;
    EXPECT_EQ(variedCase(current, GraphKind::DepthCover, 1000).Input.BreadthAMZ, 158);
    EXPECT_EQ(variedCase(current, GraphKind::XcutSpacing, 100).Input.BreadthAMZ, 93);
    // The breadth of 93 is not the 100 of the rule: the case's own point is that of its report.
    const SfGraph graph = graphOf(current, GraphKind::DepthCover);
    EXPECT_EQ(graph.curves[1].own->y, factorOf(current, GraphKind::DepthCover, Retreat));
    const auto& jumps = graph.curves[1].jumps;
    // 5 sqrt(H) = 100.5 at H = 404.01.
    EXPECT_TRUE(std::any_of(jumps.begin(), jumps.end(), [](const Jump& j) {
        return std::abs(j.x - 404.01) < 4e-4 && speaksOf(j.rule, "from 100 to 101 ft");
    }));
    // Of the many steps the nearest ones are told.
    const std::string told = jumpsNear(graph, {}, graph.low, graph.high);
    EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 2);
    EXPECT_TRUE(told.ends_with(" more")) << told;
}

TEST(SfGraph, AxisIsClippedToWhatTheParameterMayBe) {
    struct Row {
        GraphKind kind;
        double own, min, max, slabcut, low, high;
    };
    for (const Row& row : {Row{GraphKind::XcutAngle, 60, 25, 200, 0, 30, 90},
                           Row{GraphKind::XcutSpacing, 120, 10, 150, 0, 20, 180},
                           Row{GraphKind::FirstBarrier, 80, 10, 150, 20, 20, 120},
                           Row{GraphKind::SecondBarrier, 80, 0, 150, 0, 0, 120},
                           Row{GraphKind::SecondBarrier, 80, 110, 150, 0, 88, 120}}) {
        ProjectCase current = variedCase(panel(3), row.kind, row.own);
        current.Input.SlabcutFirstGob = row.slabcut;
        const SfGraph graph = graphOf(current, row.kind, {row.min, row.max});
        EXPECT_NEAR(graph.low, row.low, 1e-9);
        EXPECT_NEAR(graph.high, row.high, 1e-9);
        // Neither a barrier of no width nor pillars of no length are points.
        const bool open = row.kind == GraphKind::XcutSpacing || row.low == 0;
        const double first = graph.curves[0].pieces[0].front().x;
        EXPECT_EQ(first > graph.low, open);
        EXPECT_NEAR(first, graph.low, 1e-6 * (row.high - row.low));
        for (const Jump& jump : graph.curves[0].jumps)
            EXPECT_TRUE(jump.before && jump.after); // the open end is no gap
        EXPECT_EQ(graph.curves[0].own.has_value(), row.min < 100);
    }
}

TEST(SfGraph, AxisFromZeroStaysWithinBounds) {
    // Factors go as 1 / H and nearly as 1 / h: half a step of 1 % off zero is all that is drawn.
    for (const GraphKind kind : {GraphKind::EntryHeight, GraphKind::DepthCover}) {
        const SfGraph graph = graphOf(panel(0), kind, {0, 100});
        EXPECT_EQ(graph.low, 0);
        const auto points = pointsOf(graph.curves[0]);
        EXPECT_EQ(points.size(), 101U);
        EXPECT_LT(points.front().y, 200.1 * points.back().y);
        EXPECT_TRUE(graph.curves[0].jumps.empty());
    }
}

TEST(SfGraph, GapsEndWhereTheAnalysisFails) {
    // At 30 degrees an entry of 20 ft takes 40 ft of the spacing; the pillars grow from there.
    ProjectCase current = panel(0);
    current.Input.XcutAngle = 30;
    const SfGraph graph = graphOf(current, GraphKind::XcutSpacing, {20, 100});
    const Curve& curve = graph.curves[0];
    ASSERT_EQ(curve.jumps.size(), 1U);
    EXPECT_NEAR(curve.jumps[0].x, 40, 1e-6 * 96);
    EXPECT_FALSE(curve.jumps[0].before);
    EXPECT_NEAR(curve.jumps[0].after.value(), 0, 1e-6);
    EXPECT_TRUE(speaksOf(curve.jumps[0].rule, "Invalid Pillar Dimensions"));
    const std::string csv = graphCsv(graph);
    EXPECT_TRUE(csv.starts_with("Crosscut Spacing (ft),Development SF\r\n"));
    EXPECT_TRUE(speaksOf(csv, ",\r\n"));
    EXPECT_TRUE(speaksOf(csv, "\r\n120," + generalNumber(curve.own->y) + "\r\n"));
    EXPECT_TRUE(graphCsv(graphOf(caseOf(panel400(1), Metric), GraphKind::DepthCover))
                    .starts_with("Depth of Cover (m),Development SF,Retreat SF\r\n"));
}

TEST(SfGraph, Refusals) {
    const std::string range = "Invalid Range settings. Check Options-> Output Options";
    EXPECT_EQ(refusalOf(panel(0), GraphKind::EntryHeight, {100, 100}), range);
    EXPECT_EQ(refusalOf(panel(0), GraphKind::EntryHeight, {150, 50}), range);
    EXPECT_TRUE(speaksOf(refusalOf(panel(1), GraphKind::FirstBarrier), "no such barrier"));
    EXPECT_TRUE(speaksOf(refusalOf(panel(2), GraphKind::SecondBarrier), "no such barrier"));
    EXPECT_TRUE(speaksOf(refusalOf(panel(0), GraphKind::XcutAngle, {0, 20}), "no valid value"));
    ProjectCase current = panel(0);
    current.Input.XcutCenters[2] = 15;
    EXPECT_TRUE(speaksOf(refusalOf(current, GraphKind::DepthCover),
                         "SF vs Depth of Cover cannot be drawn: no value from 200 to 600 can be "
                         "computed. XcutCenters(2): Invalid Pillar Dimensions"));
}

TEST(SfGraph, MirroredCaseGivesTheMirroredBarrierGraph) {
    const ProjectCase current = panel(3);
    ProjectCase mirrored = current;
    ProjectInput& in = mirrored.Input;
    std::swap(in.ExtentFirstGob, in.ExtentSecondGob);
    std::swap(in.BarrierFirstGob, in.BarrierSecondGob);
    std::swap(in.SlabcutFirstGob, in.SlabcutSecondGob);
    std::swap(in.RowC, in.RowD);
    std::swap(in.WidthC, in.WidthD);
    const SfGraph first = graphOf(current, GraphKind::FirstBarrier);
    const SfGraph second = graphOf(mirrored, GraphKind::SecondBarrier);
    for (std::size_t c = 0; c < 2; ++c) {
        const auto a = pointsOf(first.curves[c]), b = pointsOf(second.curves[c]);
        ASSERT_EQ(a.size(), b.size());
        for (std::size_t i = 0; i < a.size(); ++i)
            EXPECT_NEAR(a[i].y, b[i].y, 1e-9 * a[i].y);
    }
    EXPECT_TRUE(graphCsv(second).starts_with("Width of Second Barrier (ft),Development SFBAR,"));
}

TEST(SfGraph, ValuesAtATargetGiveTheTarget) {
    const ProjectCase current = panel(1);
    const SfGraph graph = graphOf(current, GraphKind::EntryHeight);
    const Curve& curve = graph.curves[1];
    const double target = (curve.pieces[0][30].y + curve.pieces[0][31].y) / 2;
    auto found = valuesAt(current, graph, target);
    std::erase_if(found, [](const Crossing& c) { return c.curve != "Retreat"; });
    ASSERT_EQ(found.size(), 1U);
    // The cumulative load is held in single precision.
    EXPECT_NEAR(factorOf(variedCase(current, graph.kind, found[0].x), graph.kind, Retreat), target,
                2e-7 * target);
    // On a point it is found once, and beyond the curve never.
    found = valuesAt(current, graph, curve.pieces[0][30].y);
    EXPECT_EQ(std::count_if(found.begin(), found.end(),
                            [&](const Crossing& c) { return c.x == curve.pieces[0][30].x; }),
              1);
    EXPECT_TRUE(valuesAt(current, graph, 1e6).empty());
}

TEST(SfGraph, LimitsAreThoseOfTheWarnings) {
    // 400 ft wide, at 400 ft: 1.5 alone. Over depths of 200 to 1200 ft the suggested SF falls
    // from 1.5 at 650 ft to 1.3 at 1000 ft.
    ProjectCase current = panel(1);
    EXPECT_EQ(graphOf(current, GraphKind::XcutAngle).limits.size(), 1U);
    const auto checkCurve = [](const SfGraph& graph, double feet) {
        ASSERT_EQ(graph.limits.size(), 2U);
        const auto& points = graph.limits[1].points;
        ASSERT_EQ(points.size(), 4U);
        EXPECT_NEAR(points[1].x * feet, 650, 1e-9);
        EXPECT_NEAR(points[2].x * feet, 1000, 1e-9);
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_NEAR(points[i].y, i < 2 ? 1.5 : 1.3, 1e-6);
    };
    checkCurve(graphOf(current, GraphKind::DepthCover, {50, 300}), 1);
    ProjectCase metric = current;
    ASSERT_TRUE(project::convertCase(metric));
    checkCurve(graphOf(metric, GraphKind::DepthCover, {50, 300}), project::FeetPerMetre);
    // 790 ft: 1.5 - 0.2 x 140 / 350 = 1.42. A wider panel has no such exception.
    current.Input.DepthCover = 790;
    EXPECT_EQ(graphOf(current, GraphKind::XcutAngle).limits[1].label, "Suggested SF 1.42");
    current.Input.XcutCenters[1] = 126;
    EXPECT_EQ(graphOf(current, GraphKind::XcutAngle).limits.size(), 1U);
    // Pillars 80 ft wide on average 86.5 ft: slender above a height of 21.625 ft.
    const auto height = graphOf(current, GraphKind::EntryHeight, {50, 300}).limits;
    ASSERT_EQ(height.size(), 2U);
    EXPECT_EQ(height[1].points.front().x, 21.625);
    EXPECT_EQ(graphOf(panel(2), GraphKind::FirstBarrier).limits.size(), 2U);
}

TEST(SfGraph, CurvesAreCutAtTheBordersOfTheAxis) {
    Curve curve;
    curve.pieces = {{{0, 30}, {1, 10}, {2, 2}, {3, -2}, {4, 2}, {5, 2}}, {{6, 4}}, {{7, 99}}};
    const auto parts = piecesWithin(curve, {0, 20});
    ASSERT_EQ(parts.size(), 3U);
    const auto expectEnds = [&](std::size_t part, GraphPoint first, GraphPoint last) {
        EXPECT_EQ(parts[part].front(), first) << part;
        EXPECT_EQ(parts[part].back(), last) << part;
    };
    expectEnds(0, {0.5, 20}, {2.5, 0}); // 30 falls by 20 to x = 1; 2 falls by 4 to x = 3
    expectEnds(1, {3.5, 0}, {5, 2});
    expectEnds(2, {6, 4}, {6, 4});
    EXPECT_EQ(parts[0].size(), 4U);
}

} // namespace
} // namespace telvo::study
