// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "study/alongAxis.h"
#include "study/Evaluator.h"
#include "study/tally.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

/// Table of values: one to four inputs over lists of values, every combination or line by line.
namespace telvo::study {

/// An input and the values that it takes.
struct SweepAxis {
    Variable variable;
    std::vector<double> values;
};

/// Values of an axis: "600:1200:50" from, to and step, "6,8,10" a list, both mixed
/// "6,8,10:20:5"; numbers with a point.
/// Faults: text that is none, a step of 0 or away from the end, more than `MostSweepRows` values
Result<std::vector<double>> parseValues(std::string_view text);

struct SweepRequest {
    static constexpr std::size_t mostAxes = 4;

    std::vector<SweepAxis> axes;
    bool linked = false; ///< the axes go side by side, value by value, instead of all combinations
    std::vector<Outcome> outcomes;
};

inline constexpr std::size_t MostSweepRows = 10'000'000;

/// Rows of a table of values. A row's number, from 1, is fixed by its values: the last axis moves
/// fastest.
class Sweep {
  public:
    std::size_t rows() const { return computed.size(); }
    const project::ProjectCase& base() const { return evaluator->base(); }
    /// Two inputs in all combinations.
    bool isMap() const { return request.axes.size() == 2 && !request.linked && !stopped; }
    /// Value of an axis in a row, both from 0.
    double input(std::size_t row, std::size_t axis) const;
    std::vector<double> inputs(std::size_t row) const;
    /// Why a row has no results; empty where it has.
    std::string message(std::size_t row) const;
    /// The very case of a row.
    project::ProjectCase caseOf(std::size_t row) const;

    SweepRequest request;
    std::shared_ptr<const Evaluator> evaluator;
    std::vector<std::vector<double>> outcomes; ///< [outcome][row]; NaN where there is none
    std::vector<std::uint16_t> flags;          ///< [row] bit i is flag i
    std::vector<std::uint8_t> computed;        ///< [row]
    Tally tally;
    bool stopped = false; ///< the table broke off; rows beyond are missing
};

/// Told now and then from any thread: rows done of all.
using Progress = std::function<void(std::size_t done, std::size_t all)>;

/// Faults: no axis or more than four, an axis without values, the same input twice, lists of
///         different lengths that are linked, more than MostSweepRows rows, a value that is no
///         number, an outcome that the case does not have
Result<Sweep> sweep(const project::ProjectCase& base, const SweepRequest& request,
                    int RoundTELVOSF = 0, unsigned threads = 1, std::stop_token stop = {},
                    const Progress& progress = {});

/// A line on which values of a grid are 0.
struct ContourSegment {
    double x0 = 0, y0 = 0, x1 = 0, y1 = 0;
};

/// Where a table over two axes takes a value, between neighbors of which one lies above and one not;
/// a cell with a corner that was not computed has none.
/// Given: sweep    of two axes, all combinations
///        outcome  from 0
std::vector<ContourSegment> contour(const Sweep& sweep, std::size_t outcome, double level);

/// Segments as lines, as long as they go: those that share an end belong together.
std::vector<Stretch> joined(const std::vector<ContourSegment>& segments);

} // namespace telvo::study
