// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/alongAxis.h"
#include "study/Criterion.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace telvo::study {

/// What is at the end of an interval.
enum class EndKind {
    Crossing,    // the outcome passes its target
    Jump,        // a rule switches and carries the outcome across
    RangeEnd,    // it holds up to the end of the range
    Uncomputable // nothing can be computed beyond
};

/// "crossing", "jump", "range", "uncomputable".
std::string_view endName(EndKind kind);

struct IntervalEnd {
    double x = 0; ///< the criterion holds here
    EndKind kind = EndKind::RangeEnd;
    std::string rule;             ///< which one switches, or why nothing can be computed beyond
    double value = 0;             ///< of the outcome at x
    std::optional<double> beyond; ///< value next to it on the other side, where there is one
};

/// An interval in which a criterion holds, as wide as it goes.
struct Interval {
    IntervalEnd from, to;
    /// First and last practical value inside, where the criterion was looked at again; nothing in an
    /// interval that holds none.
    std::optional<double> practicalFrom, practicalTo;
};

/// The values of a sample that decide.
struct Judged {
    std::size_t value = 0;  ///< of the outcome, among a sample's values
    std::size_t margin = 0; ///< of the outcome less its target
    Criterion::Sense sense = Criterion::Sense::AtLeast;

    bool holds(const Sample& sample) const {
        if (!sample.computed) return false;
        const double by = sample.values[margin];
        return sense == Criterion::Sense::AtLeast ? by >= 0 : by <= 0;
    }
};

/// The ordered list of the intervals in which a criterion holds. Between samples of one regime it
/// is looked for where the outcome may touch its target and turn back, and ends are located by
/// bisection; jumps are where the samples have both of their sides.
/// Given: samples  of alongAxis()
std::vector<Interval> intervalsWhere(const Response& response, std::vector<AxisSample> samples,
                                     const Judged& judged);

/// A multiple of a practical step as it is written: 82.3 of 823 steps of 0.1.
double practicalValue(double multiple, double step);

/// Sets the practical ends of intervals, each looked at again.
void roundInwards(const Response& response, std::vector<Interval>& intervals, const Judged& judged,
                  double step);

} // namespace telvo::study
