// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/sfGraph.h"

#include "base/numbers.h"
#include "engine/driver.h"
#include "study/GraphSampler.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

namespace telvo::study {

using namespace engine;

namespace {

constexpr IndexedArray<std::string_view, Development, Retreat> CurveNames = {
    {"Development", "Retreat"}};
constexpr double EdgeOfAxis = 1e-6; // a gap that ends this close to the axis' end is none

Refusal cannotDraw(GraphKind kind, const std::string& because) {
    return {std::string(GraphCaptions[static_cast<std::size_t>(kind)]) +
                " cannot be drawn: " + because,
            "Error",
            {}};
}

/// Ends of the axis, clipped to what the parameter may be.
std::pair<double, double> axis(const project::ProjectInput& in, GraphKind kind,
                               const GraphRange& range) {
    const double own = parameterOf(in, kind);
    const double low = own * range.PlotRangeMin / 100;
    const double high = own * range.PlotRangeMax / 100;
    switch (kind) {
    case GraphKind::XcutAngle:
        return {std::max(low, 30.0), std::min(high, 90.0)};
    case GraphKind::XcutSpacing:
        return {std::max(low, in.EntryWidth), high};
    case GraphKind::FirstBarrier:
        return {std::max({low, in.SlabcutFirstGob, 0.0}), high};
    case GraphKind::SecondBarrier:
        return {std::max({low, in.SlabcutSecondGob, 0.0}), high};
    default:
        return {low, high};
    }
}

/// Whether the curve of a pass has another slope on the right of a switch than on the left.
bool bends(const GraphSampler& sampler, const Sample& left, const Sample& right, int pass,
           double width) {
    const double step = 1e-4 * width; // wide enough for single precision to be no slope
    const Sample before = sampler.at(left.x - step);
    const Sample after = sampler.at(right.x + step);
    if (before.regime != left.regime || after.regime != right.regime) return false;
    const double y = (*left.factors)[pass];
    const double slopeBefore = (y - (*before.factors)[pass]) / step;
    const double slopeAfter = ((*after.factors)[pass] - (*right.factors)[pass]) / step;
    constexpr double noticeable = 0.02; // of the slopes, or of a slope through all of the axis
    return std::abs(slopeAfter - slopeBefore) >
           noticeable *
               std::max({std::abs(slopeBefore), std::abs(slopeAfter), std::abs(y) / width});
}

/// Turns samples into curves, pass by pass.
class CurveMaker {
  public:
    CurveMaker(const GraphSampler& sampler, const SfGraph& graph)
        : m_sampler(sampler), m_graph(graph), m_lastPass(sampler.lastPass()),
          m_width(graph.high - graph.low) {}

    std::vector<Curve> make(std::vector<Sample> samples) {
        for (int p = Development; p <= m_lastPass; ++p)
            m_curves.push_back({std::string(CurveNames[p]), {}, {}, {}, {}});
        settleSwitches(samples);
        for (int p = Development; p <= m_lastPass; ++p)
            follow(p, samples);
        return std::move(m_curves);
    }

  private:
    /// Notes the turns and leaves of the located samples only what a curve needs.
    void settleSwitches(std::vector<Sample>& samples) {
        std::vector<bool> needed(samples.size());
        for (std::size_t i = 0; i < samples.size(); ++i) {
            needed[i] = needed[i] || !samples[i].located;
            if (i + 1 == samples.size() || !samples[i].switchesAfter) continue;
            Sample& left = samples[i];
            const Sample& right = samples[i + 1];
            bool jumps = !left.factors || !right.factors;
            for (int p = Development; p <= m_lastPass && !jumps; ++p)
                jumps = isJump((*left.factors)[p], (*right.factors)[p]);
            if (jumps) {
                needed[i] = needed[i + 1] = true;
                continue;
            }
            left.switchesAfter = false;
            for (int p = Development; p <= m_lastPass; ++p)
                if (gobTurns(left.regime, right.regime, p) ||
                    bends(m_sampler, left, right, p, m_width)) {
                    needed[i] = true;
                    curve(p).turns.push_back(
                        {left.x, (*left.factors)[p],
                         switchText(left.regime, right.regime, m_graph.units)});
                }
        }
        std::size_t i = 0;
        std::erase_if(samples, [&](const Sample&) { return !needed[i++]; });
    }

    void follow(int p, const std::vector<Sample>& samples) {
        Curve& to = curve(p);
        bool open = false; // the last piece goes on
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const Sample& here = samples[i];
            const Sample* before = i > 0 ? &samples[i - 1] : nullptr;
            if (before && bool(before->factors) != bool(here.factors)) {
                noteGap(p, *before, here, gapText(samples, before->factors ? i : i - 1));
                open = false;
            }
            if (!here.factors) continue;
            const double y = (*here.factors)[p];
            if (before && before->factors && before->switchesAfter &&
                isJump((*before->factors)[p], y)) {
                const double yBefore = (*before->factors)[p];
                to.jumps.push_back(
                    {middleOf(*before, here), yBefore, y, jumpText(*before, here, yBefore, y)});
                open = false;
            }
            if (!open) to.pieces.emplace_back();
            open = true;
            to.pieces.back().push_back({here.x, y});
        }
    }

    /// Why there is a gap whose edge is sample i: as told inside of it, where figures are larger
    /// than rounding.
    std::string gapText(const std::vector<Sample>& samples, std::size_t i) const {
        for (const std::size_t inside : {i + 1, i - 1}) // before 0 is beyond the last
            if (inside < samples.size() && !samples[inside].factors)
                if (Sample middle = m_sampler.at(middleOf(samples[i], samples[inside]));
                    !middle.factors)
                    return middle.gap;
        return samples[i].gap;
    }

    void noteGap(int p, const Sample& before, const Sample& after, const std::string& why) {
        const double x = middleOf(before, after);
        const double edge = EdgeOfAxis * m_width;
        if (x - m_graph.low < edge || m_graph.high - x < edge) return;
        Jump jump{x, {}, {}, why};
        if (before.factors) jump.before = (*before.factors)[p];
        if (after.factors) jump.after = (*after.factors)[p];
        curve(p).jumps.push_back(std::move(jump));
    }

    std::string jumpText(const Sample& before, const Sample& after, double yBefore,
                         double yAfter) const {
        constexpr double boundless = 1000; // on either side of a zero of the load
        if ((yBefore < 0) != (yAfter < 0) &&
            std::min(std::abs(yBefore), std::abs(yAfter)) > boundless)
            return "The load passes through zero, where the factor has no bound";
        const std::string text = switchText(before.regime, after.regime, m_graph.units);
        return text.empty() ? "The analysis jumps here without a single rule that switches" : text;
    }

    static double middleOf(const Sample& a, const Sample& b) { return a.x + (b.x - a.x) / 2; }
    Curve& curve(int p) { return m_curves[static_cast<std::size_t>(p - Development)]; }

    const GraphSampler& m_sampler;
    const SfGraph& m_graph;
    int m_lastPass;
    double m_width;
    std::vector<Curve> m_curves;
};

/// Searches the places where the curve of one pass takes a value.
class TargetSearch {
  public:
    TargetSearch(const GraphSampler& sampler, int pass, double target, std::vector<Crossing>& found)
        : m_sampler(sampler), m_pass(pass), m_target(target), m_found(found) {}

    void alongPiece(const std::vector<GraphPoint>& piece) {
        for (std::size_t i = 0; i < piece.size(); ++i) {
            const GraphPoint& here = piece[i];
            if (here.y == m_target && (i == 0 || piece[i - 1].y != m_target)) found(here.x);
            if (i > 0) between(piece[i - 1], here);
            if (i > 0 && i + 1 < piece.size()) aroundExtremum(piece[i - 1], here, piece[i + 1]);
        }
    }

  private:
    bool apart(double y0, double y1) const {
        return (y0 < m_target && y1 > m_target) || (y0 > m_target && y1 < m_target);
    }
    void found(double x) { m_found.push_back({std::string(CurveNames[m_pass]), x, false, {}}); }
    std::optional<double> factor(double x) const {
        const Sample sample = m_sampler.at(x);
        if (!sample.factors) return std::nullopt;
        return (*sample.factors)[m_pass];
    }

    void between(GraphPoint left, GraphPoint right) {
        if (!apart(left.y, right.y)) return;
        for (;;) {
            const double x = left.x + (right.x - left.x) / 2;
            const auto y = x > left.x && x < right.x ? factor(x) : std::nullopt;
            if (!y || *y == m_target) return found(x);
            (apart(left.y, *y) ? right : left) = {x, *y};
        }
    }

    /// A curve may reach the target and turn back between two points: golden section towards it.
    void aroundExtremum(const GraphPoint& left, const GraphPoint& here, const GraphPoint& right) {
        const auto distance = [&](double y) {
            return here.y < m_target ? m_target - y : y - m_target;
        };
        const double d = distance(here.y);
        const double toLeft = distance(left.y) - d;
        const double toRight = distance(right.y) - d;
        // What a smooth curve can still gain is less than what it has turned by.
        if (!(d > 0) || toLeft < 0 || toRight < 0 || d > toLeft + toRight) return;
        constexpr double golden = 0.6180339887498949;
        double a = left.x, b = right.x;
        for (int n = 0; n < 60; ++n) {
            const double x1 = b - golden * (b - a), x2 = a + golden * (b - a);
            const auto y1 = factor(x1), y2 = factor(x2);
            if (!y1 || !y2) return;
            const bool first = distance(*y1) < distance(*y2);
            const GraphPoint nearest = first ? GraphPoint{x1, *y1} : GraphPoint{x2, *y2};
            if (distance(nearest.y) < 0) {
                between(left, nearest);
                between(nearest, right);
                return;
            }
            (first ? b : a) = first ? x2 : x1;
        }
    }

    const GraphSampler& m_sampler;
    int m_pass;
    double m_target;
    std::vector<Crossing>& m_found;
};

} // namespace

bool isOffered(GraphKind kind, const project::ProjectInput& in) {
    const int loading = analysisCase(in.Anal, DevelopmentLoad);
    if (kind == GraphKind::FirstBarrier) return loading >= OneSideGob && in.BarrierFirstGob > 0;
    if (kind == GraphKind::SecondBarrier) return loading == TwoSideGobs && in.BarrierSecondGob > 0;
    return true;
}

project::ProjectCase variedCase(const project::ProjectCase& current, GraphKind kind, double x) {
    project::ProjectCase varied = current;
    varied.Input = variedInput(current.Input, current.Units, kind, x);
    return varied;
}

std::variant<SfGraph, Refusal> sfGraph(const project::ProjectCase& current, GraphKind kind,
                                       const GraphRange& range,
                                       const report::ReportOptions& options) {
    if (!(range.PlotRangeMin < range.PlotRangeMax))
        return Refusal{"Invalid Range settings. Check Options-> Output Options", "Error", {}};
    if (!isOffered(kind, current.Input))
        return cannotDraw(kind, "the loading condition of this case knows no such barrier.");

    SfGraph graph;
    graph.kind = kind;
    graph.units = current.Units;
    graph.ownValue = parameterOf(current.Input, kind);
    std::tie(graph.low, graph.high) = axis(current.Input, kind, range);
    if (!(graph.low < graph.high) || !std::isfinite(graph.high))
        return cannotDraw(kind, "the range of the graph holds no valid value of \"" +
                                    parameterLabel(kind, current.Units) + "\".");

    const GraphSampler sampler(current, kind);
    std::vector<Sample> samples = sampler.along(graph.low, graph.high);
    const bool anyPoint = std::any_of(samples.begin(), samples.end(),
                                      [](const Sample& s) { return s.factors.has_value(); });
    if (!anyPoint)
        return cannotDraw(kind, "no value from " + generalNumber(graph.low, 6) + " to " +
                                    generalNumber(graph.high, 6) + " can be computed. " +
                                    samples[samples.size() / 2].gap);

    graph.curves = CurveMaker(sampler, graph).make(std::move(samples));
    if (graph.ownValue >= graph.low && graph.ownValue <= graph.high)
        if (const Sample own = sampler.own(); own.factors)
            for (std::size_t c = 0; c < graph.curves.size(); ++c)
                graph.curves[c].own =
                    GraphPoint{own.x, (*own.factors)[Development + static_cast<int>(c)]};
    graph.limits = graphLimits(current, graph, options);
    return graph;
}

std::vector<Crossing> valuesAt(const project::ProjectCase& current, const SfGraph& graph,
                               double target) {
    const GraphSampler sampler(current, graph.kind);
    std::vector<Crossing> found;
    for (std::size_t c = 0; c < graph.curves.size(); ++c) {
        const Curve& curve = graph.curves[c];
        TargetSearch search(sampler, Development + static_cast<int>(c), target, found);
        for (const auto& piece : curve.pieces)
            search.alongPiece(piece);
        for (const Jump& jump : curve.jumps)
            if (jump.before && jump.after && std::min(*jump.before, *jump.after) < target &&
                target < std::max(*jump.before, *jump.after))
                found.push_back({curve.name, jump.x, true, jump.rule});
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const Crossing& a, const Crossing& b) { return a.x < b.x; });
    return found;
}

} // namespace telvo::study
