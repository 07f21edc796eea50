// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/alongAxis.h"
#include "study/questions/sweep.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// Where the first outcome of a table of values takes a value.
namespace telvo::study {

struct SweepLine {
    std::optional<double> level;   ///< nothing: the suggested factor
    std::vector<double> suggested; ///< then the factor of each row; NaN where it has none
    std::vector<Stretch> contour;  ///< of a map, in its inputs
    std::size_t reached = 0;       ///< rows at or above it

    /// "1.5", "suggested".
    std::string text() const;
};

/// Given: levels  nothing for the suggested factor, which is left out where the outcome has none
std::vector<SweepLine> sweepLines(const Sweep& sweep,
                                  const std::vector<std::optional<double>>& levels);

/// "Retreat factor 1.2 to 2.1 in 341 rows; 120 of them reach 1.5."
std::string sweepHeadline(const Sweep& sweep, const std::vector<SweepLine>& lines);

} // namespace telvo::study
