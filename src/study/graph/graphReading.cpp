// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/graph/graphReading.h"

#include "base/numbers.h"
#include "base/text.h"
#include "project/checks.h"
#include "project/units.h"
#include "report/sections.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <utility>
#include <vector>

namespace telvo::study {

namespace {

constexpr std::size_t MostJumpsTold = 3; // lines at the cross-hair

constexpr double SymbolCells = 20; // divides the number of points, so that symbols are even
constexpr double FewestReadings = 200;
constexpr double JumpTolerance = 2e-6; // of the axis: jumps are found to half of it
constexpr double TallestCurve = 4;     // times what a reader looks for
constexpr int AxisDigits = 5;

bool isAngle(const SfGraph& graph) {
    return rowOf(graph.kind).varied.kind() == project::FieldKind::Angle;
}

double axisFactor(const SfGraph& graph, const GraphOptions& options) {
    if (isAngle(graph) || graph.units == options.GraphUnits) return 1;
    return options.GraphUnits == 0 ? project::FeetPerMetre : 1 / project::FeetPerMetre;
}

/// " (ft)", " (m)" or " (deg)".
std::string_view unitInParentheses(const SfGraph& graph, const GraphOptions& options) {
    return isAngle(graph) ? " (deg)"
                          : project::unitLabel(options.GraphUnits, project::Quantity::Length);
}

/// "850 ft".
std::string axisText(const SfGraph& graph, const GraphOptions& options, double x) {
    const std::string_view unit = unitInParentheses(graph, options); // " (ft)"
    return generalNumber(toAxis(graph, options, x), AxisDigits)
        .append(" ")
        .append(unit.substr(2, unit.size() - 3));
}

std::string factorText(const GraphOptions& options, double factor) {
    return report::factorText(factor, options.RoundTELVOSF);
}

constexpr int LowestDecade = -15, HighestDecade = 22; // of the steps between readings

/// The number nearest to times x 10^decade, for 1 to 9 times and up to 22 decades either way: powers
/// of ten up to there are exact, and so the digits are the same on every machine.
double timesPower(int times, int decade) {
    double power = 1;
    for (int n = std::abs(decade); n > 0; --n)
        power *= 10;
    return decade < 0 ? times / power : times * power;
}

double between(const GraphPoint& a, const GraphPoint& b, double x) {
    return b.x > a.x ? a.y + (b.y - a.y) * (x - a.x) / (b.x - a.x) : b.y;
}

} // namespace

std::string axisTitle(const SfGraph& graph, const GraphOptions& options) {
    return options.XAxisTitle + std::string(unitInParentheses(graph, options));
}

double toAxis(const SfGraph& graph, const GraphOptions& options, double x) {
    return x * axisFactor(graph, options);
}

double fromAxis(const SfGraph& graph, const GraphOptions& options, double axisValue) {
    return axisValue / axisFactor(graph, options);
}

Span factorSpan(const SfGraph& graph) {
    std::vector<double> values;
    double lookedFor = 0;
    double lowest = HUGE_VAL;
    for (const ReferenceLine& limit : graph.limits)
        for (const GraphPoint& point : limit.points) {
            lookedFor = std::max(lookedFor, point.y);
            lowest = std::min(lowest, point.y);
        }
    for (const Curve& curve : graph.curves) {
        for (const auto& piece : curve.pieces)
            for (const GraphPoint& point : piece)
                values.push_back(point.y);
        if (curve.own) {
            values.push_back(curve.own->y);
            lookedFor = std::max(lookedFor, curve.own->y);
        }
    }
    double highest = lookedFor;
    if (!values.empty()) {
        std::sort(values.begin(), values.end());
        lookedFor = std::max(lookedFor, values[values.size() / 2]);
        lowest = std::min(lowest, std::max(values.front(), -TallestCurve * lookedFor));
        highest = std::max(highest, std::min(values.back(), TallestCurve * lookedFor));
    }
    if (!(highest > 0)) return {0, 1};
    const double span = highest - lowest;
    if (lowest > 0.6 * highest && span > 0) return {lowest - 0.1 * span, highest + 0.1 * span};
    return {std::min(0.0, lowest), 1.06 * highest};
}

std::vector<Stretch> piecesWithin(const Curve& curve, const Span& span) {
    std::vector<Stretch> parts;
    for (const auto& piece : curve.pieces) {
        if (piece.size() == 1 && span.contains(piece.front().y)) parts.push_back(piece);
        bool goesOn = false; // the last part ends where the next stretch begins
        for (std::size_t i = 1; i < piece.size(); ++i) {
            const GraphPoint& from = piece[i - 1];
            const GraphPoint& to = piece[i];
            // Shares of the way at which the span begins and ends.
            double enter = 0;
            double leave = 1;
            if (const double rise = to.y - from.y; rise != 0) {
                const auto [first, last] =
                    std::minmax({(span.low - from.y) / rise, (span.high - from.y) / rise});
                enter = std::max(enter, first);
                leave = std::min(leave, last);
            } else if (!span.contains(from.y)) {
                leave = -1;
            }
            if (enter > leave) {
                goesOn = false;
                continue;
            }
            const auto at = [&](double share) {
                return GraphPoint{from.x + share * (to.x - from.x),
                                  from.y + share * (to.y - from.y)};
            };
            if (!goesOn) parts.push_back({enter > 0 ? at(enter) : from});
            if (const GraphPoint end = leave < 1 ? at(leave) : to; parts.back().back() != end)
                parts.back().push_back(end);
            goesOn = leave >= 1;
        }
    }
    return parts;
}

std::vector<GraphPoint> symbolPoints(const SfGraph& graph, const Curve& curve) {
    const double cell = (graph.high - graph.low) / SymbolCells;
    std::vector<GraphPoint> chosen;
    double next = -HUGE_VAL;
    for (const auto& piece : curve.pieces)
        for (const GraphPoint& point : piece) {
            if (point.x < next) continue;
            chosen.push_back(point);
            // A hair less than a cell, so that rounding does not skip every other one.
            const double cells = std::floor((point.x - graph.low) / cell + 1e-9);
            next = graph.low + (cells + 1 - 1e-9) * cell;
        }
    return chosen;
}

std::optional<double> factorAt(const SfGraph& graph, const Curve& curve, double x) {
    const double tolerance = JumpTolerance * (graph.high - graph.low);
    std::optional<double> factor;
    double nearest = tolerance;
    for (const auto& piece : curve.pieces) {
        if (piece.empty()) continue;
        const double away = std::max({piece.front().x - x, x - piece.back().x, 0.0});
        if (away > nearest || (factor && away == nearest)) continue;
        nearest = away;
        const double inside = std::clamp(x, piece.front().x, piece.back().x);
        const auto right =
            std::lower_bound(piece.begin(), piece.end(), inside,
                             [](const GraphPoint& point, double value) { return point.x < value; });
        factor = right == piece.begin() ? right->y : between(*(right - 1), *right, inside);
    }
    return factor;
}

double readingStep(const SfGraph& graph, const GraphOptions& options) {
    const double largest = toAxis(graph, options, graph.high - graph.low) / FewestReadings;
    if (!(largest > 0)) return 1;
    int decade = LowestDecade;
    while (decade < HighestDecade && timesPower(1, decade + 1) <= largest)
        ++decade;
    for (const int multiple : {5, 2})
        if (timesPower(multiple, decade) <= largest) return timesPower(multiple, decade);
    return timesPower(1, decade);
}

double nearestReading(const SfGraph& graph, const GraphOptions& options, double x) {
    const double step = readingStep(graph, options);
    const double axis = toAxis(graph, options, std::clamp(x, graph.low, graph.high));
    double best = fromAxis(graph, options, std::nearbyint(axis / step) * step);
    best = std::clamp(best, graph.low, graph.high);
    for (const double mark : {graph.ownValue, graph.low, graph.high})
        if (std::abs(x - mark) < std::abs(x - best)) best = mark;
    return best;
}

std::string readingText(const SfGraph& graph, const GraphOptions& options, double x) {
    std::string text(rowOf(graph.kind).parameter);
    text += " " + axisText(graph, options, x);
    std::string_view joint = ": ";
    for (const Curve& curve : graph.curves) {
        const auto factor = factorAt(graph, curve, x);
        text.append(joint).append(inSentence(curve.name));
        text += factor ? " " + factorText(options, *factor) : std::string(" no value");
        joint = ", ";
    }
    return text;
}

std::string jumpText(const SfGraph& graph, const GraphOptions& options, const Curve& curve,
                     const Jump& jump) {
    std::string text = curve.name;
    const std::string place = axisText(graph, options, jump.x);
    const auto factor = [&](const std::optional<double>& y) {
        return y ? factorText(options, *y) : std::string();
    };
    if (jump.before && jump.after && factor(jump.before) == factor(jump.after))
        text += " steps at " + place + " (" + factor(jump.after) + " on both sides)";
    else if (jump.before && jump.after)
        text += " jumps at " + place + " from " + factor(jump.before) + " to " + factor(jump.after);
    else
        text += (jump.before ? " has no value beyond " : " has no value before ") + place;
    return jump.rule.empty() ? text : text + ": " + jump.rule;
}

std::string jumpsNear(const SfGraph& graph, const GraphOptions& options, double x,
                      double distance) {
    std::vector<std::pair<double, std::string>> near;
    for (const Curve& curve : graph.curves) {
        for (const Jump& jump : curve.jumps)
            if (const double away = std::abs(jump.x - x); away <= distance)
                near.emplace_back(away, jumpText(graph, options, curve, jump));
        for (const Turn& turn : curve.turns)
            if (const double away = std::abs(turn.x - x); away <= distance)
                near.emplace_back(away, curve.name + " at " + axisText(graph, options, turn.x) +
                                            ": " + turn.rule);
    }
    if (near.size() > MostJumpsTold) {
        std::stable_sort(near.begin(), near.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        const std::size_t rest = near.size() - (MostJumpsTold - 1);
        near.resize(MostJumpsTold - 1);
        near.emplace_back(0, "and " + std::to_string(rest) + " more");
    }
    std::string text;
    for (const auto& [away, line] : near)
        text += (text.empty() ? "" : "\n") + line;
    return text;
}

std::string crossingsText(const SfGraph& graph, const GraphOptions& options, double target,
                          const std::vector<Crossing>& crossings) {
    std::string text;
    for (const Curve& curve : graph.curves) {
        std::string line;
        for (const Crossing& crossing : crossings) {
            if (crossing.curve != curve.name) continue;
            line += (line.empty() ? "" : "; ") + axisText(graph, options, crossing.x);
            if (crossing.isJump)
                line += crossing.rule.empty() ? std::string(" (jump)")
                                              : " (jump: " + crossing.rule + ")";
        }
        if (line.empty())
            line = std::string("never ")
                       .append(rowOf(graph.kind).factorName())
                       .append(" = " + generalNumber(target) + " from ")
                       .append(axisText(graph, options, graph.low) + " to ")
                       .append(axisText(graph, options, graph.high));
        text += (text.empty() ? "" : "\n") + curve.name + ": " + line;
    }
    return text;
}

std::optional<Refusal> checkTarget(std::string_view text, std::string_view control) {
    return project::checkRange(text, 0.01, 1000, "Stability factor", control);
}

} // namespace telvo::study
