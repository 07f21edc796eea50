// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/graph/graphReading.h"
#include "study/graph/GraphSampler.h"
#include "study/graph/sfGraph.h"

#include "base/numbers.h"
#include "cases/drawnCases.h"
#include "engine/testCases.h"
#include "project/CaseFile.h"
#include "project/units.h"
#include "study/named.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace telvo::study {
namespace {

using namespace engine;
using project::ProjectCase;
using tests::caseOf;

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

/// Factor of a pass at a value of the parameter by the road of one case; nothing in a gap.
std::optional<double> runAt(const ProjectCase& current, GraphKind kind, double x, int pass) {
    const ProjectInput in = variedCase(current, kind, x).Input;
    const auto outcome = PrepareAnalysis(in, current.Units);
    if (!std::holds_alternative<WorkingInputs>(outcome)) return std::nullopt;
    const auto run = ComputeAnalysis(std::get<WorkingInputs>(outcome));
    if (!run) return std::nullopt;
    const int side = rowOf(kind).side;
    return side == 0 ? run->TELVOSF[pass] : run->BarrierSF[pass][side];
}

/// Drawn cases with automatic and entered breadths, in either unit system.
std::vector<ProjectCase> drawn(std::size_t count) {
    std::vector<ProjectCase> all;
    for (ProjectInput& in : cases::drawnCases(count)) {
        const std::size_t n = all.size();
        in.AMZ = n % 3 == 0 ? 1 : 0;
        all.push_back(n % 5 == 4 ? caseOf(cases::metricVersion(in), Metric) : caseOf(in));
    }
    return all;
}

template <typename Visit>
void visitOfferedGraphs(const std::vector<ProjectCase>& all, Visit visit) {
    for (std::size_t n = 0; n < all.size(); ++n)
        for (int kind = 0; kind < GraphKinds; ++kind)
            if (isOffered(GraphKind(kind), all[n].Input)) {
                SCOPED_TRACE("case " + std::to_string(n) + ", graph " + std::to_string(kind));
                visit(all[n], GraphKind(kind));
                if (::testing::Test::HasFailure()) return;
            }
}

/// Whether a curve jumps between two points of a stretch that is drawn without a jump. A jump makes
/// one half of the way far steeper than the other; a smooth curve does that only where it is nearly
/// level.
bool jumpsBetween(const ProjectCase& current, const SfGraph& graph, int pass, GraphPoint left,
                  GraphPoint right) {
    for (;;) {
        const double rise = right.y - left.y;
        const bool close = right.x - left.x < 1e-8 * (graph.high - graph.low);
        if (!(std::abs(rise) > (close ? 1e-5 : 1e-4) * std::abs(left.y))) return false;
        if (close) return true;
        const double x = left.x + (right.x - left.x) / 2;
        const auto y = runAt(current, graph.kind, x, pass);
        if (!y) return true; // a gap within the stretch
        if (std::abs(*y - left.y - rise / 2) < std::abs(rise) / 4) return false;
        (std::abs(right.y - *y) > std::abs(*y - left.y) ? left : right) = {x, *y};
    }
}

TEST(SfGraph, CurvesAreTheRunsOfTheirValuesAndJumpOnlyWhereARuleIsNamed) {
    std::size_t graphs = 0, jumps = 0;
    visitOfferedGraphs(drawn(80), [&](const ProjectCase& current, GraphKind kind) {
        const SfGraph graph = graphOf(current, kind);
        const double width = graph.high - graph.low;
        ++graphs;
        const bool retreats = current.Input.Anal > 0 && current.Input.ExtentActiveGob != 0;
        ASSERT_EQ(graph.curves.size(), retreats ? 2U : 1U);
        for (int p = Development; p <= static_cast<int>(graph.curves.size()); ++p) {
            const Curve& curve = graph.curves[static_cast<std::size_t>(p - 1)];
            EXPECT_EQ(curve.name, p == Development ? "Development" : "Retreat");
            const auto points = pointsOf(curve);
            EXPECT_EQ(std::adjacent_find(points.begin(), points.end(),
                                         [](auto& a, auto& b) { return a.x >= b.x; }),
                      points.end());
            for (std::size_t i = 0; i < points.size(); i += 23)
                EXPECT_EQ(points[i].y, runAt(current, kind, points[i].x, p));
            for (const auto& piece : curve.pieces)
                for (std::size_t i = 1; i < piece.size(); ++i)
                    EXPECT_FALSE(jumpsBetween(current, graph, p, piece[i - 1], piece[i]))
                        << "near " << piece[i].x;
            jumps += curve.jumps.size();
            for (const Jump& jump : curve.jumps)
                EXPECT_FALSE(jump.rule.empty()) << "at " << jump.x;
            for (const Turn& turn : curve.turns) {
                EXPECT_FALSE(turn.rule.empty()) << "at " << turn.x;
                EXPECT_EQ(std::count(points.begin(), points.end(), GraphPoint{turn.x, turn.y}), 1)
                    << "a bend is a point of its curve, at " << turn.x;
            }
            // Two stretches meet at each jump, or one ends there.
            std::size_t met = 0;
            for (const Jump& jump : curve.jumps)
                for (std::size_t j = 1; j < curve.pieces.size() && jump.before && jump.after; ++j) {
                    const GraphPoint left = curve.pieces[j - 1].back();
                    const GraphPoint right = curve.pieces[j].front();
                    if (jump.x < left.x || jump.x > right.x) continue;
                    ++met;
                    EXPECT_LE(right.x - left.x, 1e-6 * width);
                    EXPECT_EQ(jump.before, left.y);
                    EXPECT_EQ(jump.after, right.y);
                    EXPECT_TRUE(isJump(left.y, right.y));
                }
            EXPECT_EQ(met, static_cast<std::size_t>(
                               std::count_if(curve.jumps.begin(), curve.jumps.end(),
                                             [](auto& j) { return j.before && j.after; })));
        }
    });
    EXPECT_GE(graphs, 340U);
    EXPECT_GE(jumps, 1000U);
}

TEST(SfGraph, ExamplesHaveEveryPointOfTheAxisAndTheirOwn) {
    int graphs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TELVO_EXAMPLES_DIR)) {
        ProjectCase current = project::newCase(English);
        ASSERT_FALSE(project::readCaseFile(entry.path().string(), current).fault);
        for (int kind = 0; kind < GraphKinds; ++kind) {
            if (!isOffered(GraphKind(kind), current.Input)) continue;
            SCOPED_TRACE(entry.path().filename().string() + ", " + std::to_string(kind));
            const SfGraph graph = graphOf(current, GraphKind(kind));
            for (int p = Development; p <= static_cast<int>(graph.curves.size()); ++p) {
                const Curve& curve = graph.curves[static_cast<std::size_t>(p - 1)];
                const auto points = pointsOf(curve);
                EXPECT_GE(points.size(), 101U);
                EXPECT_EQ(points.front().x, graph.low);
                EXPECT_EQ(points.back().x, graph.high);
                ASSERT_TRUE(curve.own);
                EXPECT_EQ(curve.own->x, graph.ownValue);
                EXPECT_EQ(curve.own->y, factorOf(current, graph.kind, p));
                EXPECT_EQ(factorAt(graph, curve, graph.ownValue), curve.own->y);
                EXPECT_EQ(curve.pieces.size(), curve.jumps.size() + 1);
            }
            ++graphs;
        }
    }
    EXPECT_GE(graphs, 40);
}

/// The sentences of a rule text with other names for some things, in order of the alphabet.
std::vector<std::string> sentences(std::string text, bool otherSide, bool metric) {
    std::vector<std::string> all;
    for (std::size_t at = 0; !text.empty();) {
        at = text.find("; ");
        std::string each = text.substr(0, at);
        text = at == std::string::npos ? "" : text.substr(at + 2);
        if (otherSide && each.starts_with("First"))
            each.replace(0, 5, "Second");
        else if (otherSide && each.starts_with("Second"))
            each.replace(0, 6, "First");
        if (metric && each.ends_with(" ft")) each.replace(each.size() - 2, 2, "m");
        all.push_back(each);
    }
    std::sort(all.begin(), all.end());
    return all;
}

/// Expects the graph of the same panel, its lengths times `unit`.
void expectSameGraph(const SfGraph& ours, const SfGraph& theirs, double unit, bool otherSide) {
    const double width = theirs.high - theirs.low;
    ASSERT_EQ(ours.curves.size(), theirs.curves.size());
    for (std::size_t c = 0; c < ours.curves.size(); ++c) {
        const Curve &a = ours.curves[c], &b = theirs.curves[c];
        ASSERT_EQ(a.jumps.size(), b.jumps.size());
        for (std::size_t j = 0; j < a.jumps.size(); ++j) {
            EXPECT_NEAR(a.jumps[j].x * unit, b.jumps[j].x, 1e-6 * width);
            EXPECT_EQ(sentences(a.jumps[j].rule, otherSide, unit != 1),
                      sentences(b.jumps[j].rule, false, false));
        }
        ASSERT_EQ(a.turns.size(), b.turns.size());
        for (std::size_t t = 0; t < a.turns.size(); ++t) {
            EXPECT_NEAR(a.turns[t].x * unit, b.turns[t].x, 1e-6 * width);
            EXPECT_EQ(sentences(a.turns[t].rule, otherSide, unit != 1),
                      sentences(b.turns[t].rule, false, false));
        }
        // Points beside jumps differ by what a jump is located to.
        for (const GraphPoint& point : pointsOf(a)) {
            const double x = point.x * unit;
            if (std::any_of(b.jumps.begin(), b.jumps.end(),
                            [&](const Jump& jump) { return std::abs(jump.x - x) < 1e-4 * width; }))
                continue;
            const auto y = factorAt(theirs, b, x);
            ASSERT_TRUE(y) << x;
            EXPECT_NEAR(point.y, *y, 1e-6 * std::abs(*y)) << x;
        }
    }
}

TEST(SfGraph, MirroredPanelHasTheMirroredGraphs) {
    int barriers = 0;
    for (const ProjectInput& in : cases::drawnCases(60)) {
        if (in.Anal == 2) continue; // the only gob would change sides
        const ProjectCase current = caseOf(in), other = caseOf(cases::mirrored(in));
        for (const auto& [kind, mirrorKind] :
             {std::pair{GraphKind::DepthCover, GraphKind::DepthCover},
              {GraphKind::XcutSpacing, GraphKind::XcutSpacing},
              {GraphKind::FirstBarrier, GraphKind::SecondBarrier},
              {GraphKind::SecondBarrier, GraphKind::FirstBarrier}}) {
            ASSERT_EQ(isOffered(kind, in), isOffered(mirrorKind, other.Input));
            if (!isOffered(kind, in)) continue;
            barriers += rowOf(kind).isOfBarrier();
            expectSameGraph(graphOf(current, kind), graphOf(other, mirrorKind), 1, true);
        }
        if (HasFailure()) return;
    }
    EXPECT_GE(barriers, 10);
}

// But for what depends on constants without unit conversion: the arch factor, the smallest excess
// of a bleeder row, and breadths in whole units.
TEST(SfGraph, MetricPanelHasTheSameGraphs) {
    for (ProjectInput in : cases::drawnCases(28)) {
        in.Arch = in.RowC = in.RowD = 0;
        for (int kind = 0; kind < GraphKinds; ++kind)
            if (isOffered(GraphKind(kind), in))
                expectSameGraph(graphOf(caseOf(in), GraphKind(kind)),
                                graphOf(caseOf(cases::metricVersion(in), Metric), GraphKind(kind)),
                                kind == 2 ? 1 : cases::MetresPerFoot, false);
        if (HasFailure()) return;
    }
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
    // A stretch on the target is told by its first point.
    const auto atZero = valuesAt(current, graph, 0);
    ASSERT_EQ(atZero.size(), graph.curves.size());
    for (const Crossing& crossing : atZero)
        EXPECT_EQ(crossing.x, graph.low);
    // Crosscuts at 60 degrees: pillars 80 ft wide are as long where Sc sin 60 - 20 = 80.
    ProjectCase skew = panel(0);
    skew.Input.XcutAngle = 60;
    const Curve spacing = graphOf(skew, GraphKind::XcutSpacing).curves[0];
    ASSERT_EQ(spacing.turns.size(), 1U);
    EXPECT_NEAR(spacing.turns[0].x, 100 / std::sqrt(0.75), 1e-6 * 120);
    EXPECT_TRUE(spacing.jumps.empty());
    // The bend of one pillar among wider ones is told down to 2 % of the slopes: 2.9 % beside
    // three of 130 ft, 1.9 % beside three of 180 ft.
    for (int i = 2; i <= 4; ++i)
        skew.Input.XcutCenters[i] = 150;
    const Curve mixed = graphOf(skew, GraphKind::XcutSpacing).curves[0];
    ASSERT_EQ(mixed.turns.size(), 2U);
    EXPECT_NEAR(mixed.turns[0].x, 100 / std::sqrt(0.75), 1e-6 * 120);
    EXPECT_NEAR(mixed.turns[1].x, 150 / std::sqrt(0.75), 1e-6 * 120);
    for (int i = 2; i <= 4; ++i)
        skew.Input.XcutCenters[i] = 200;
    EXPECT_TRUE(graphOf(skew, GraphKind::XcutSpacing).curves[0].turns.empty());
    // A first side gob of 1000 ft at 45 degrees is supercritical up to a depth of 500 ft.
    const Curve depth = graphOf(current, GraphKind::DepthCover).curves[0];
    const auto turn = std::find_if(depth.turns.begin(), depth.turns.end(), [](const Turn& t) {
        return t.rule == "First side gob turns from super- to subcritical";
    });
    ASSERT_NE(turn, depth.turns.end());
    EXPECT_NEAR(turn->x, 500, 1e-6 * 400);
}

TEST(SfGraph, AJumpIsMoreThanWhatSinglePrecisionLeaves) {
    EXPECT_FALSE(isJump(0, 0)); // a barrier without strength on both sides
    EXPECT_TRUE(isJump(0, 1e-300));
    EXPECT_TRUE(isJump(-1e-3, 1e-3));
    for (const double factor : {1.5, -1.5, 3e4}) {
        EXPECT_FALSE(isJump(factor, factor * (1 + 0.9e-5)));
        EXPECT_FALSE(isJump(factor * (1 + 0.9e-5), factor));
        EXPECT_TRUE(isJump(factor, factor * (1 + 1.1e-5)));
        EXPECT_TRUE(isJump(factor * (1 + 1.1e-5), factor));
    }
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
    // The crosscuts' 90 degrees are the greatest angle: nothing but one point.
    EXPECT_TRUE(speaksOf(refusalOf(panel(0), GraphKind::XcutAngle, {100, 150}), "no valid value"));
    ProjectCase current = panel(0);
    current.Input.XcutCenters[2] = 15;
    EXPECT_TRUE(speaksOf(refusalOf(current, GraphKind::DepthCover),
                         "SF vs Depth of Cover cannot be drawn: no value from 200 to 600 can be "
                         "computed. XcutCenters(2): Invalid Pillar Dimensions"));
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

TEST(SfGraph, TargetsBetweenThePointsOfAnExtremumAreFound) {
    // What row C lends to a narrow barrier counts less the more load the barrier has: its factor
    // falls, and rises again with its own strength. The points of the graphs lie on all sides of
    // the lowest place.
    ProjectCase current = panel(2);
    current.Input.SlabcutFirstGob = 0, current.Input.WidthC = 120;
    for (double own = 60; own < 61; own += 0.25) {
        current.Input.BarrierFirstGob = own;
        const SfGraph graph = graphOf(current, GraphKind::FirstBarrier, {10, 60});
        for (std::size_t c = 0; c < graph.curves.size(); ++c) {
            SCOPED_TRACE(graph.curves[c].name + " of " + generalNumber(own));
            const int pass = static_cast<int>(c) + 1;
            const auto& points = graph.curves[c].pieces.back();
            const auto lowest =
                std::min_element(points.begin(), points.end(),
                                 [](const auto& a, const auto& b) { return a.y < b.y; });
            ASSERT_TRUE(lowest != points.begin() && lowest + 1 != points.end());
            const double from = (lowest - 1)->x, to = (lowest + 1)->x;
            double least = lowest->y;
            for (int i = 1; i < 1000; ++i)
                least = std::min(least,
                                 *runAt(current, graph.kind, from + (to - from) * i / 1000, pass));
            const auto found = [&](double target) {
                std::vector<double> x;
                for (const Crossing& crossing : valuesAt(current, graph, target))
                    if (crossing.curve == graph.curves[c].name && crossing.x > from &&
                        crossing.x < to)
                        x.push_back(crossing.x);
                return x;
            };
            EXPECT_TRUE(found(least * (1 - 1e-9)).empty());
            for (const double share : {0.5, 0.99}) {
                const double target = least + (lowest->y - least) * share;
                const auto x = found(target);
                ASSERT_EQ(x.size(), 2U) << share;
                EXPECT_LT(x[0], x[1]);
                for (const double each : x)
                    EXPECT_NEAR(*runAt(current, graph.kind, each, pass), target, 1e-12);
            }
            // Beyond it the curve only rises: next to a point there is one place.
            for (const double share : {1 - 1e-9, 1 + 1e-9}) {
                const double rising = (lowest + 5)->y * share;
                const auto all = valuesAt(current, graph, rising);
                EXPECT_EQ(std::count_if(all.begin(), all.end(),
                                        [&](const Crossing& crossing) {
                                            return crossing.curve == graph.curves[c].name &&
                                                   crossing.x > lowest->x;
                                        }),
                          1)
                    << share;
            }
            // Where the lowest point itself is on the target, the other place is its like.
            const auto x = found(lowest->y);
            ASSERT_EQ(x.size(), 2U);
            EXPECT_NE(x[0] == lowest->x, x[1] == lowest->x);
        }
    }
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
    current.Input.XcutCenters[1] = 125;
    EXPECT_EQ(graphOf(current, GraphKind::XcutAngle).limits.size(), 2U);
    current.Input.DepthCover = 650; // counts as shallow
    EXPECT_EQ(graphOf(current, GraphKind::XcutAngle).limits.size(), 1U);
    current.Input.XcutCenters[1] = 126;
    // Pillars 80 ft wide on average 86.5 ft: slender above a height of 21.625 ft.
    const auto height = graphOf(current, GraphKind::EntryHeight, {50, 300}).limits;
    ASSERT_EQ(height.size(), 2U);
    EXPECT_EQ(height[1].points.front().x, 21.625);
    EXPECT_EQ(graphOf(panel(2), GraphKind::FirstBarrier).limits.size(), 2U);
}

} // namespace
} // namespace telvo::study
