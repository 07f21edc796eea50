// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/output/headlines.h"
#include "study/ui/drawings/Drawing.h"

#include <optional>
#include <string>
#include <vector>

/// Pictures of cases side by side: a group of bars for each.
namespace telvo::study::ui {

inline constexpr std::size_t MostBars = 6;       ///< of a group
inline constexpr auto CaseItself = "(the case)"; ///< among its scenarios

struct DrawnCase {
    std::string name;
    std::vector<std::optional<double>> values; ///< per outcome; none where it was not computed
    std::string note;                          ///< then why
};

/// Drawn are those outcomes that are of one kind with the first one, at most MostBars. The places
/// are numbered case * MostBars + bar.
Drawing caseDrawing(const std::vector<Outcome>& outcomes, std::vector<DrawnCase> cases,
                    std::int16_t units);

Drawing compareDrawing(const Comparison& comparison, const std::vector<Outcome>& outcomes);
Drawing scenarioDrawing(const ScenarioAnswer& answer);

} // namespace telvo::study::ui
