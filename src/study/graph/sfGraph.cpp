// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/graph/sfGraph.h"

#include "base/numbers.h"
#include "engine/driver.h"
#include "study/graph/graphLimits.h"
#include "study/graph/GraphSampler.h"

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
    return {std::string(rowOf(kind).caption) + " cannot be drawn: " + because, "Error", {}};
}

/// Ends of the axis, clipped to what the parameter may be.
std::pair<double, double> axis(const project::ProjectInput& in, GraphKind kind,
                               const GraphRange& range) {
    const Variable& varied = rowOf(kind).varied;
    const double own = varied.of(in);
    const Span valid = varied.valid(in);
    return {std::max(own * range.PlotRangeMin / 100, valid.low),
            std::min(own * range.PlotRangeMax / 100, valid.high)};
}

/// Whether curves have another slope on the right of a switch than on the left.
class Bend {
  public:
    Bend(const GraphSampler& sampler, const AxisSample& left, const AxisSample& right, double width)
        : m_left(left), m_right(right), m_width(width), m_before(sampler.at(left.x - step())),
          m_after(sampler.at(right.x + step())), m_known(!sampler.runner().differ(m_before, left) &&
                                                         !sampler.runner().differ(m_after, right)) {
    }

    bool isSeenIn(int pass) const {
        if (!m_known) return false;
        const double y = m_left.factor(pass);
        const double slopeBefore = (y - m_before.factor(pass)) / step();
        const double slopeAfter = (m_after.factor(pass) - m_right.factor(pass)) / step();
        constexpr double noticeable = 0.02; // of the slopes, or of a slope through all of the axis
        return std::abs(slopeAfter - slopeBefore) >
               noticeable *
                   std::max({std::abs(slopeBefore), std::abs(slopeAfter), std::abs(y) / m_width});
    }

  private:
    double step() const {
        return 1e-4 * m_width;
    } // wide enough for single precision to be no slope

    const AxisSample& m_left;
    const AxisSample& m_right;
    double m_width;
    AxisSample m_before, m_after;
    bool m_known; ///< no other rule switches next to this one
};

/// Turns samples into curves, pass by pass.
class CurveMaker {
  public:
    CurveMaker(const GraphSampler& sampler, const SfGraph& graph)
        : m_sampler(sampler), m_graph(graph), m_lastPass(sampler.lastPass()),
          m_width(graph.high - graph.low) {}

    std::vector<Curve> make(std::vector<AxisSample> samples) {
        for (int p = Development; p <= m_lastPass; ++p)
            m_curves.push_back({std::string(CurveNames[p]), {}, {}, {}, {}});
        settleSwitches(samples);
        for (int p = Development; p <= m_lastPass; ++p)
            follow(p, samples);
        return std::move(m_curves);
    }

  private:
    /// Notes the turns and leaves of the located samples only what a curve needs.
    void settleSwitches(std::vector<AxisSample>& samples) {
        std::vector<bool> needed(samples.size());
        for (std::size_t i = 0; i < samples.size(); ++i) {
            needed[i] = needed[i] || !samples[i].located;
            if (i + 1 == samples.size() || !samples[i].switchesAfter) continue;
            AxisSample& left = samples[i];
            const AxisSample& right = samples[i + 1];
            bool jumps = !left.computed || !right.computed;
            for (int p = Development; p <= m_lastPass && !jumps; ++p)
                jumps = isJump(left.factor(p), right.factor(p));
            if (jumps) {
                needed[i] = needed[i + 1] = true;
                continue;
            }
            left.switchesAfter = false;
            const Bend bend(m_sampler, left, right, m_width);
            for (int p = Development; p <= m_lastPass; ++p)
                if (switches().gobTurns(left.regime, right.regime, p) || bend.isSeenIn(p)) {
                    needed[i] = true;
                    curve(p).turns.push_back(
                        {left.x, left.factor(p),
                         switches().text(left.regime, right.regime, p, m_graph.units)});
                }
        }
        std::size_t i = 0;
        std::erase_if(samples, [&](const AxisSample&) { return !needed[i++]; });
    }

    void follow(int p, const std::vector<AxisSample>& samples) {
        Curve& to = curve(p);
        bool open = false; // the last piece goes on
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const AxisSample& here = samples[i];
            const AxisSample* before = i > 0 ? &samples[i - 1] : nullptr;
            if (before && before->computed != here.computed) {
                noteGap(p, *before, here, gapText(samples, before->computed ? i : i - 1));
                open = false;
            }
            if (!here.computed) continue;
            const double y = here.factor(p);
            if (before && before->computed && before->switchesAfter &&
                isJump(before->factor(p), y)) {
                const double yBefore = before->factor(p);
                to.jumps.push_back(
                    {middleOf(*before, here), yBefore, y, jumpText(p, *before, here)});
                open = false;
            }
            if (!open) to.pieces.emplace_back();
            open = true;
            to.pieces.back().push_back({here.x, y});
        }
    }

    /// Why there is a gap whose edge is sample i: as told inside of it, where figures are larger
    /// than rounding.
    std::string gapText(const std::vector<AxisSample>& samples, std::size_t i) const {
        for (const std::size_t inside : {i + 1, i - 1}) // before 0 is beyond the last
            if (inside < samples.size() && !samples[inside].computed)
                if (std::string why =
                        m_sampler.runner().gapAt(middleOf(samples[i], samples[inside]));
                    !why.empty())
                    return why;
        return m_sampler.runner().gapAt(samples[i].x);
    }

    void noteGap(int p, const AxisSample& before, const AxisSample& after, const std::string& why) {
        const double x = middleOf(before, after);
        const double edge = EdgeOfAxis * m_width;
        if (x - m_graph.low < edge || m_graph.high - x < edge) return;
        Jump jump{x, {}, {}, why};
        if (before.computed) jump.before = before.factor(p);
        if (after.computed) jump.after = after.factor(p);
        curve(p).jumps.push_back(std::move(jump));
    }

    std::string jumpText(int p, const AxisSample& before, const AxisSample& after) const {
        constexpr double boundless = 1000; // on either side of a zero of the load
        const double yBefore = before.factor(p), yAfter = after.factor(p);
        if ((yBefore < 0) != (yAfter < 0) &&
            std::min(std::abs(yBefore), std::abs(yAfter)) > boundless)
            return "The load passes through zero, where the factor has no bound";
        return switches().text(before.regime, after.regime, p, m_graph.units);
    }

    const Switches& switches() const { return m_sampler.runner().switches(); }
    static double middleOf(const AxisSample& a, const AxisSample& b) {
        return a.x + (b.x - a.x) / 2;
    }
    Curve& curve(int p) { return m_curves[static_cast<std::size_t>(p - Development)]; }

    const GraphSampler& m_sampler;
    const SfGraph& m_graph;
    int m_lastPass;
    double m_width;
    std::vector<Curve> m_curves;
};

} // namespace

bool isOffered(GraphKind kind, const project::ProjectInput& in) {
    const Frame frame = frameOf(in, project::English, DevelopmentLoad);
    return Outcome::factor(Development, rowOf(kind).side).isDefined(frame, in);
}

project::ProjectCase variedCase(const project::ProjectCase& current, GraphKind kind, double x) {
    project::ProjectCase varied = current;
    varied.Input = rowOf(kind).varied.in(current.Input, current.Units, x);
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
    graph.ownValue = rowOf(kind).varied.of(current.Input);
    std::tie(graph.low, graph.high) = axis(current.Input, kind, range);
    if (!(graph.low < graph.high) || !std::isfinite(graph.high))
        return cannotDraw(kind, "the range of the graph holds no valid value of \"" +
                                    parameterLabel(kind, current.Units) + "\".");

    const GraphSampler sampler(current, kind);
    std::vector<AxisSample> samples = sampler.along(graph.low, graph.high);
    const bool anyPoint =
        std::any_of(samples.begin(), samples.end(), [](const AxisSample& s) { return s.computed; });
    if (!anyPoint)
        return cannotDraw(kind, "no value from " + generalNumber(graph.low, 6) + " to " +
                                    generalNumber(graph.high, 6) + " can be computed. " +
                                    sampler.runner().gapAt(samples[samples.size() / 2].x));

    graph.curves = CurveMaker(sampler, graph).make(std::move(samples));
    if (graph.ownValue >= graph.low && graph.ownValue <= graph.high)
        if (const Sample own = sampler.runner().own(); own.computed)
            for (std::size_t c = 0; c < graph.curves.size(); ++c)
                graph.curves[c].own = GraphPoint{own.x, own.values[c]};
    graph.limits = graphLimits(current, graph, options.RoundTELVOSF);
    return graph;
}

} // namespace telvo::study
