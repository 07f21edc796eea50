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

constexpr std::size_t valueOf(int pass) {
    return static_cast<std::size_t>(pass - Development);
}

/// Factor of a pass: TELVO SF, or the barrier SF of the graph's side.
double factor(const Sample& sample, int pass) {
    return sample.values[valueOf(pass)];
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
        const double y = factor(m_left, pass);
        const double slopeBefore = (y - factor(m_before, pass)) / step();
        const double slopeAfter = (factor(m_after, pass) - factor(m_right, pass)) / step();
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
        for (int p = Development; p <= m_lastPass; ++p) {
            CutCurve cut = cutAtJumps(m_sampler.runner(), samples, valueOf(p));
            curve(p).pieces = std::move(cut.stretches);
            curve(p).jumps = std::move(cut.jumps);
        }
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
                jumps = isJump(factor(left, p), factor(right, p));
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
                        {left.x, factor(left, p),
                         switches().text(left.regime, right.regime, p, m_graph.units)});
                }
        }
        std::size_t i = 0;
        std::erase_if(samples, [&](const AxisSample&) { return !needed[i++]; });
    }

    const Switches& switches() const { return m_sampler.runner().switches(); }
    Curve& curve(int p) { return m_curves[valueOf(p)]; }

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
