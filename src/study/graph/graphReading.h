// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/graph/GraphOptions.h"
#include "study/graph/sfGraph.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What is read off a graph: axes, values under the cross-hair, and the sentences that tell them.
/// A value of the parameter is in the units of the case unless it is said to be one of the axis.
namespace telvo::study {

/// Title of the axis of the parameter with its unit: "Depth of Cover (ft)".
std::string axisTitle(const SfGraph& graph, const GraphOptions& options);

double toAxis(const SfGraph& graph, const GraphOptions& options, double x);
double fromAxis(const SfGraph& graph, const GraphOptions& options, double axisValue);

/// The axis of the factors. It begins at 0 unless everything lies in the upper part; what towers
/// above the case, its limits and half of the points is cut off.
Span factorSpan(const SfGraph& graph);

/// The pieces of a curve as far as they lie in a span of factors, cut on its borders.
std::vector<Stretch> piecesWithin(const Curve& curve, const Span& span);

/// The points of a curve that carry a symbol, some 20, evenly along the axis.
std::vector<GraphPoint> symbolPoints(const SfGraph& graph, const Curve& curve);

/// Factor of a curve, between its points on the straight line; nothing in a gap.
std::optional<double> factorAt(const SfGraph& graph, const Curve& curve, double x);

/// Distance between two readings of the cross-hair in the units of the axis: 1, 2 or 5 times a
/// power of ten, at least 200 on the axis.
double readingStep(const SfGraph& graph, const GraphOptions& options);
/// The reading next to a value: a multiple of the step on the axis, the case's own value or an end.
double nearestReading(const SfGraph& graph, const GraphOptions& options, double x);

/// "Depth of cover 850 ft: development 2.41, retreat 1.38".
std::string readingText(const SfGraph& graph, const GraphOptions& options, double x);
/// "Development jumps at 900 ft from 2.41 to 2.1: pressure arch factor".
std::string jumpText(const SfGraph& graph, const GraphOptions& options, const Curve& curve,
                     const Jump& jump);
/// The jumps within a distance, a line each and of many the nearest; empty when there are none.
std::string jumpsNear(const SfGraph& graph, const GraphOptions& options, double x, double distance);
/// Where the factor is `target`, a line per curve.
std::string crossingsText(const SfGraph& graph, const GraphOptions& options, double target,
                          const std::vector<Crossing>& crossings);

/// Whether a typed target can be looked for: a factor from 0.01 to 1000.
std::optional<Refusal> checkTarget(std::string_view text, std::string_view control);

} // namespace telvo::study
