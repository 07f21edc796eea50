// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/Outcome.h"
#include "study/ui/studies/StudyChart.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace telvo::study::ui {

/// A picture of cases side by side: a group of bars for each.
struct CaseBars {
    struct Group {
        std::string name;
        std::vector<std::optional<double>> values; ///< per bar
        std::string note;                          ///< where there are no values, why
    };
    std::vector<std::string> bars; ///< what each bar of a group shows
    std::string axis;
    std::vector<Group> groups;
    std::function<std::string(double value, std::size_t bar)> text; ///< a value with its unit
};

inline constexpr std::size_t MostBars = 6; ///< of a group

/// Those results that are drawn: of one kind with the first one, at most so many.
std::vector<std::size_t> drawnOutcomes(const std::vector<Outcome>& outcomes);
/// Bars for these results, still without groups.
CaseBars barsFor(const std::vector<Outcome>& outcomes, const std::vector<std::size_t>& drawn,
                 std::int16_t units);

/// The places are numbered group * MostBars + bar.
Drawing drawingOf(CaseBars bars);

} // namespace telvo::study::ui
