// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/graph/GraphSampler.h"
#include "study/graph/sfGraph.h"

#include <algorithm>
#include <optional>
#include <string>

namespace telvo::study {

namespace {

/// Searches the places where the curve of one pass takes a value.
class TargetSearch {
  public:
    TargetSearch(const Runner& runner, const std::string& curve, std::size_t outcome, double target,
                 std::vector<Crossing>& found)
        : m_runner(runner), m_curve(curve), m_outcome(outcome), m_target(target), m_found(found) {}

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
    void found(double x) { m_found.push_back({m_curve, x, false, {}}); }
    std::optional<double> factor(double x) const {
        const Sample sample = m_runner.at(x);
        if (!sample.computed) return std::nullopt;
        return sample.values[m_outcome];
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
        const bool below = here.y < m_target || (here.y == m_target && left.y < m_target);
        const auto distance = [&](double y) { return below ? m_target - y : y - m_target; };
        const double d = distance(here.y);
        const double toLeft = distance(left.y) - d;
        const double toRight = distance(right.y) - d;
        // What a smooth curve can still gain is less than what it has turned by.
        if (d < 0 || toLeft < 0 || toRight < 0 || !(d < toLeft + toRight)) return;
        constexpr double golden = 0.6180339887498949;
        double a = left.x, b = right.x;
        for (int n = 0; n < 60; ++n) {
            const double x1 = b - golden * (b - a), x2 = a + golden * (b - a);
            const auto y1 = factor(x1), y2 = factor(x2);
            if (!y1 || !y2) return;
            const bool first = distance(*y1) < distance(*y2);
            const GraphPoint nearest = first ? GraphPoint{x1, *y1} : GraphPoint{x2, *y2};
            if (distance(nearest.y) < 0) {
                // The point itself may lie on the target, where it is found already.
                between(nearest.x < here.x ? left : here, nearest);
                between(nearest, nearest.x < here.x ? here : right);
                return;
            }
            (first ? b : a) = first ? x2 : x1;
        }
    }

    const Runner& m_runner;
    const std::string& m_curve;
    std::size_t m_outcome;
    double m_target;
    std::vector<Crossing>& m_found;
};

} // namespace

std::vector<Crossing> valuesAt(const project::ProjectCase& current, const SfGraph& graph,
                               double target) {
    const GraphSampler sampler(current, graph.kind);
    std::vector<Crossing> found;
    for (std::size_t c = 0; c < graph.curves.size(); ++c) {
        const Curve& curve = graph.curves[c];
        TargetSearch search(sampler.runner(), curve.name, c, target, found);
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
