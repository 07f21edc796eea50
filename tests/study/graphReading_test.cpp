// SPDX-License-Identifier: GPL-3.0-or-later
// What is read off a graph, worked by hand on graphs of a few points.
#include "study/graph/graphReading.h"

#include "project/units.h"

#include <cmath>
#include <gtest/gtest.h>

namespace telvo::study {
namespace {

using project::English, project::Metric, project::FeetPerMetre;

/// Depths 200 to 600 ft, own depth 400: development falls from 3 to 2, jumps at 300 to 1.5 and
/// falls to 1; retreat is level at 1 with a gap from 450 to 500.
SfGraph depthGraph() {
    SfGraph graph;
    graph.kind = GraphKind::DepthCover;
    graph.low = 200, graph.high = 600, graph.ownValue = 400;
    Curve development{"Development", {{{200, 3}, {300, 2}}, {{300, 1.5}, {600, 1}}}, {}, {}, {}};
    development.jumps = {{300, 2, 1.5, "Rule one"}};
    development.turns = {{350, 1.4, "Rule two"}};
    development.own = GraphPoint{400, 1.3};
    Curve retreat{"Retreat", {{{200, 1}, {450, 1}}, {{500, 1}, {600, 1}}}, {}, {}, {}};
    retreat.jumps = {{450, 1, {}, "Refused"}, {500, {}, 1, ""}};
    graph.curves = {development, retreat};
    return graph;
}

GraphOptions metricAxis() {
    GraphOptions options;
    options.GraphUnits = Metric;
    return options;
}

TEST(GraphReading, AxisIsInItsOwnUnits) {
    SfGraph graph = depthGraph();
    GraphOptions options;
    options.XAxisTitle = "Depth";
    EXPECT_EQ(axisTitle(graph, options), "Depth (ft)");
    EXPECT_EQ(toAxis(graph, options, 328), 328);
    options.GraphUnits = Metric;
    EXPECT_EQ(axisTitle(graph, options), "Depth (m)");
    EXPECT_NEAR(toAxis(graph, options, 328.0839895013123), 100, 1e-12);
    EXPECT_NEAR(fromAxis(graph, options, 100), 328.0839895013123, 1e-12);
    graph.units = Metric;
    EXPECT_EQ(toAxis(graph, options, 100), 100);
    options.GraphUnits = English;
    EXPECT_NEAR(toAxis(graph, options, 100), 328.0839895013123, 1e-12);
    graph.kind = GraphKind::XcutAngle; // degrees everywhere
    EXPECT_EQ(axisTitle(graph, options), "Depth (deg)");
    EXPECT_EQ(toAxis(graph, options, 60), 60);
    EXPECT_EQ(rowOf(GraphKind::XcutAngle).factorName(), "SF");
    EXPECT_EQ(rowOf(GraphKind::SecondBarrier).factorName(), "SFBAR");
}

TEST(GraphReading, StepIsOneTwoOrFiveTimesAPowerOfTen) {
    SfGraph graph = depthGraph();
    const auto stepOf = [&](double width) {
        graph.low = 0, graph.high = width;
        return readingStep(graph, {});
    };
    // The largest one of which 200 fit on the axis.
    for (const auto& [width, step] : {std::pair{200.0, 1.0},
                                      {399.9, 1},
                                      {400.0, 2},
                                      {999.9, 2},
                                      {1000.0, 5},
                                      {1999.9, 5},
                                      {2000.0, 10},
                                      {199.9, 0.5},
                                      {60.0, 0.2},
                                      {39.9, 0.1},
                                      {20.0, 0.1},
                                      {3.0, 0.01},
                                      {5e-6, 2e-8},
                                      {1e20, 5e17},
                                      {1e30, 5e22},
                                      {1e-20, 1e-15}})
        EXPECT_EQ(stepOf(width), step) << width;
    EXPECT_EQ(stepOf(0), 1);
    EXPECT_EQ(stepOf(-10), 1);
    graph.low = 200, graph.high = 600; // 121.92 m
    EXPECT_EQ(readingStep(graph, metricAxis()), 0.5);
}

TEST(GraphReading, CrossHairStandsOnStepsOwnValueAndEnds) {
    SfGraph graph = depthGraph(); // steps of 2 ft
    EXPECT_EQ(nearestReading(graph, {}, 310.9), 310);
    EXPECT_EQ(nearestReading(graph, {}, 311.1), 312);
    EXPECT_EQ(nearestReading(graph, {}, 100), 200);
    EXPECT_EQ(nearestReading(graph, {}, 700), 600);
    graph.ownValue = 400.7;
    EXPECT_EQ(nearestReading(graph, {}, 400.6), 400.7);
    EXPECT_EQ(nearestReading(graph, {}, 400.1), 400);
    graph.low = 200.5, graph.high = 600.4;
    EXPECT_EQ(nearestReading(graph, {}, 200.6), 200.5);
    EXPECT_EQ(nearestReading(graph, {}, 600.3), 600.4);
    // 95 m lie between the readings 94.5 and 95.5 of steps of 0.5 m.
    EXPECT_NEAR(nearestReading(depthGraph(), metricAxis(), 95.1 * FeetPerMetre), 95 * FeetPerMetre,
                1e-9);
}

TEST(GraphReading, FactorLiesOnTheLineBetweenPoints) {
    const SfGraph graph = depthGraph();
    const Curve &development = graph.curves[0], &retreat = graph.curves[1];
    EXPECT_EQ(factorAt(graph, development, 200), 3);
    EXPECT_EQ(factorAt(graph, development, 225), 2.75);
    EXPECT_EQ(factorAt(graph, development, 300), 2); // the left side of the jump
    EXPECT_EQ(factorAt(graph, development, 450), 1.25);
    EXPECT_EQ(factorAt(graph, development, 600), 1);
    EXPECT_EQ(factorAt(graph, retreat, 475), std::nullopt);
    EXPECT_EQ(factorAt(graph, retreat, 500), 1);
    // Within two parts in a million of the axis an end still has its value.
    EXPECT_EQ(factorAt(graph, retreat, 450 + 7e-4), 1);
    EXPECT_EQ(factorAt(graph, retreat, 450 + 9e-4), std::nullopt);
    EXPECT_EQ(factorAt(graph, retreat, 500 - 7e-4), 1);
    EXPECT_EQ(factorAt(graph, {}, 300), std::nullopt);
}

TEST(GraphReading, SentencesTellPlaceAndFactors) {
    const SfGraph graph = depthGraph();
    const Curve &development = graph.curves[0], &retreat = graph.curves[1];
    EXPECT_EQ(readingText(graph, {}, 250), "Depth of cover 250 ft: development 2.50, retreat 1.00");
    EXPECT_EQ(readingText(graph, {}, 475),
              "Depth of cover 475 ft: development 1.21, retreat no value");
    EXPECT_EQ(readingText(graph, metricAxis(), 250),
              "Depth of cover 76.2 m: development 2.50, retreat 1.00");
    EXPECT_EQ(jumpText(graph, {}, development, development.jumps[0]),
              "Development jumps at 300 ft from 2.00 to 1.50: Rule one");
    EXPECT_EQ(jumpText(graph, {}, retreat, retreat.jumps[0]),
              "Retreat has no value beyond 450 ft: Refused");
    EXPECT_EQ(jumpText(graph, {}, retreat, retreat.jumps[1]), "Retreat has no value before 500 ft");
    EXPECT_EQ(jumpText(graph, {}, development, {400.25, 1.301, 1.304, "Small"}),
              "Development steps at 400.25 ft (1.30 on both sides): Small");
    GraphOptions unrounded;
    unrounded.RoundTELVOSF = 2; // cut, not rounded
    EXPECT_EQ(jumpText(graph, unrounded, development, {400, 1.299, 1.304, ""}),
              "Development jumps at 400 ft from 1.29 to 1.30");
    SfGraph angle = graph;
    angle.kind = GraphKind::XcutAngle;
    EXPECT_EQ(jumpText(angle, {}, development, {60.5, 2, 1, ""}),
              "Development jumps at 60.5 deg from 2.00 to 1.00");
    SfGraph barrier = graph;
    barrier.kind = GraphKind::FirstBarrier;
    EXPECT_EQ(readingText(barrier, {}, 300),
              "First barrier width 300 ft: development 2.00, retreat 1.00");
}

TEST(GraphReading, JumpsNearTheCrossHairAreTold) {
    SfGraph graph = depthGraph();
    EXPECT_EQ(jumpsNear(graph, {}, 310, 9.9), "");
    EXPECT_EQ(jumpsNear(graph, {}, 310, 10),
              "Development jumps at 300 ft from 2.00 to 1.50: Rule one");
    EXPECT_EQ(jumpsNear(graph, {}, 325, 25),
              "Development jumps at 300 ft from 2.00 to 1.50: Rule one\n"
              "Development at 350 ft: Rule two");
    // Three are told; of four the two nearest.
    EXPECT_EQ(jumpsNear(graph, {}, 375, 75),
              "Development jumps at 300 ft from 2.00 to 1.50: Rule one\n"
              "Development at 350 ft: Rule two\nRetreat has no value beyond 450 ft: Refused");
    EXPECT_EQ(jumpsNear(graph, {}, 440, 140), "Retreat has no value beyond 450 ft: Refused\n"
                                              "Retreat has no value before 500 ft\nand 2 more");
    // Equally far away: in the order of the curves.
    EXPECT_EQ(jumpsNear(graph, {}, 325, 175),
              "Development jumps at 300 ft from 2.00 to 1.50: Rule one\n"
              "Development at 350 ft: Rule two\nand 2 more");
}

TEST(GraphReading, CrossingsAreToldCurveByCurve) {
    const SfGraph graph = depthGraph();
    EXPECT_EQ(crossingsText(graph, {}, 1.75,
                            {{"Development", 300, true, "Rule one"},
                             {"Development", 310.5, false, ""},
                             {"Development", 320, true, ""}}),
              "Development: 300 ft (jump: Rule one); 310.5 ft; 320 ft (jump)\n"
              "Retreat: never SF = 1.75 from 200 ft to 600 ft");
    SfGraph barrier = graph;
    barrier.kind = GraphKind::SecondBarrier;
    barrier.curves.pop_back();
    EXPECT_EQ(crossingsText(barrier, metricAxis(), 2, {}),
              "Development: never SFBAR = 2 from 60.96 m to 182.88 m");
}

TEST(GraphReading, NumbersHaveARowPerValueAndPerEndOfAGap) {
    SfGraph graph = depthGraph();
    graph.curves[0].pieces[1].front().x = 300.5;
    graph.curves[1].jumps = {{460, 1, {}, ""}, {490, {}, 1, ""}};
    EXPECT_EQ(graphCsv(graph), "Depth of Cover (ft),Development SF,Retreat SF\r\n"
                               "200,3,1\r\n300,2,\r\n300.5,1.5,\r\n450,,1\r\n460,,\r\n490,,\r\n"
                               "500,,1\r\n600,1,1\r\n");
    graph.kind = GraphKind::SecondBarrier;
    graph.units = Metric;
    EXPECT_TRUE(graphCsv(graph).starts_with(
        "Width of Second Barrier (m),Development SFBAR,Retreat SFBAR\r\n"));
    EXPECT_EQ(parameterLabel(GraphKind::XcutAngle, Metric), "Crosscut Angle (degrees)");
}

TEST(GraphReading, TargetIsAFactor) {
    for (const char* good : {"0.01", "1.5", "1000"})
        EXPECT_FALSE(checkTarget(good, "txtTargetSF")) << good;
    for (const char* bad : {"", "0.009", "1000.1", "-1", "SF"})
        EXPECT_TRUE(checkTarget(bad, "txtTargetSF")) << bad;
    EXPECT_EQ(checkTarget("0", "txtTargetSF")->message,
              "Stability factor: Value '0' is outside input range\nValid range is: 0.01-1000");
    EXPECT_EQ(checkTarget("0", "txtTargetSF")->control, "txtTargetSF");
}

TEST(GraphReading, FactorAxisShowsWhatIsLookedFor) {
    const auto spanOf = [](std::vector<double> values, std::vector<double> limits,
                           std::optional<double> own = {}) {
        SfGraph graph;
        Curve curve;
        curve.pieces.emplace_back();
        for (const double y : values)
            curve.pieces[0].push_back({0, y});
        if (own) curve.own = GraphPoint{0, *own};
        graph.curves = {curve};
        for (const double y : limits)
            graph.limits.push_back({"", {{0, y}, {1, y}}});
        return factorSpan(graph);
    };
    const auto expect = [](Span span, double low, double high) {
        EXPECT_NEAR(span.low, low, 1e-12);
        EXPECT_NEAR(span.high, high, 1e-12);
    };
    expect(spanOf({}, {}), 0, 1);
    expect(spanOf({-3, -2}, {}), 0, 1);
    expect(spanOf({1, 2, 3}, {}), 0, 3.18); // from 0, and 6 % above the highest
    expect(spanOf({1, 2, 3}, {5}), 0, 5.3);
    // All in the upper part: 8 to 10 with a tenth of that on either side.
    expect(spanOf({8, 9, 10}, {}), 7.8, 10.2);
    expect(spanOf({6, 10}, {}), 0, 10.6); // 6 is not above 60 %
    expect(spanOf({6.05, 10}, {}), 5.655, 10.395);
    expect(spanOf({8, 9, 10}, {1.5}), 0, 10.6);
    expect(spanOf({5, 5}, {}), 0, 5.3);
    // What towers above four times the median, the limits and the own point is cut off.
    expect(spanOf({1, 1, 100}, {}), 0, 4 * 1.06);
    expect(spanOf({1, 1, 100}, {2}), 0, 8 * 1.06);
    expect(spanOf({1, 1, 100}, {2}, 3), 0, 12 * 1.06);
    expect(spanOf({-100, 1, 1}, {}), -4, 1.06);
    expect(spanOf({-100, 1, 1}, {2}), -8, 2.12);
    expect(spanOf({-0.5, 1, 2}, {}), -0.5, 2.12);
}

TEST(GraphReading, SymbolsStandInTwentyEvenCells) {
    SfGraph graph;
    graph.low = 100, graph.high = 200;
    Curve curve;
    curve.pieces.emplace_back();
    for (int i = 0; i <= 100; ++i)
        curve.pieces[0].push_back({100.0 + i, 1});
    const auto points = symbolPoints(graph, curve);
    ASSERT_EQ(points.size(), 21U);
    for (std::size_t i = 0; i < points.size(); ++i)
        EXPECT_EQ(points[i].x, 100 + 5 * static_cast<double>(i));
    // The first point of each cell that has one, across pieces.
    curve.pieces = {{{101, 1}, {104, 1}}, {{104.5, 1}, {106, 1}, {109, 1}, {112, 1}}};
    std::vector<double> x;
    for (const GraphPoint& point : symbolPoints(graph, curve))
        x.push_back(point.x);
    EXPECT_EQ(x, (std::vector<double>{101, 106, 112}));
}

TEST(GraphReading, CurvesAreCutAtTheBordersOfTheAxis) {
    Curve curve;
    curve.pieces = {{{0, 30}, {1, 10}, {2, 2}, {3, -2}, {4, 2}, {5, 2}}, {{6, 4}}, {{7, 99}}};
    using Points = std::vector<GraphPoint>;
    const std::vector<Points> expected = {
        {{0.5, 20}, {1, 10}, {2, 2}, {2.5, 0}}, // 30 falls by 20 to x = 1; 2 falls by 4 to x = 3
        {{3.5, 0}, {4, 2}, {5, 2}},
        {{6, 4}}};
    EXPECT_EQ(piecesWithin(curve, {0, 20}), expected);
    curve.pieces = {{{0, 30}, {1, 30}, {2, 20}, {3, 20}, {4, 40}}, {}};
    EXPECT_EQ(piecesWithin(curve, {0, 20}), (std::vector<Points>{{{2, 20}, {3, 20}}}));
    curve.pieces = {{{0, -10}, {1, 30}}}; // through the whole span
    EXPECT_EQ(piecesWithin(curve, {0, 20}), (std::vector<Points>{{{0.25, 0}, {0.75, 20}}}));
}

} // namespace
} // namespace telvo::study
