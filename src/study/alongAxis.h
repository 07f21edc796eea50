// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/Runner.h"

#include <optional>
#include <string>
#include <vector>

namespace telvo::study {

/// One point of a curve: the varied number in the units of the case, and the outcome unrounded.
struct GraphPoint {
    double x = 0;
    double y = 0;
    bool operator==(const GraphPoint&) const = default;
};

/// Points in rising x without jump or gap between them.
using Stretch = std::vector<GraphPoint>;

/// A place where a rule switches and the outcome jumps, or where a gap begins or ends.
struct Jump {
    double x = 0;                        ///< found to within one part in 10^6 of the axis
    std::optional<double> before, after; ///< on either side; nothing beside a gap
    std::string rule;                    ///< which rule switches, for the reader
};

/// A run along an axis.
struct AxisSample : Sample {
    /// A rule switches between this sample and the next, which lies as close as switches are
    /// located.
    bool switchesAfter = false;
    bool located = false; ///< a side of a switch, which is no point of the axis by itself
};

/// Runs along an axis, with both sides of every switch between neighbors.
/// Given: grid        rising, not empty
///        resolution  width to which a switch is located
std::vector<AxisSample> alongAxis(const Response& response, const std::vector<double>& grid,
                                  double resolution);

/// A curve in the pieces in which it is drawn.
struct CutCurve {
    std::vector<Stretch> stretches; ///< from left to right
    std::vector<Jump> jumps;
};

/// The curve of one of the values of samples, cut where it jumps and at gaps.
/// Given: value  of the samples, from 0
CutCurve cutAtJumps(const Response& response, const std::vector<AxisSample>& samples,
                    std::size_t value);

/// What carries one of the values across between two computed samples of a switch, in words.
std::string jumpText(const Response& response, const Sample& before, const Sample& after,
                     std::size_t value);

/// Whether a value really jumps between two samples of a switch, instead of only bending.
bool isJump(double before, double after);

} // namespace telvo::study
