// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/output/StudyAnswer.h"

#include <optional>
#include <string>
#include <vector>

/// Answers in a sentence, of the studies that have none of their own.
namespace telvo::study {

// What the studies are called, on pages and pictures.
inline constexpr auto TornadoTitle = "What Matters";
inline constexpr auto FindTitle = "Find a Value";
inline constexpr auto DesignTitle = "Design Chart";
inline constexpr auto SweepTitle = "Table of Values";
inline constexpr auto ScenariosTitle = "Scenarios";
inline constexpr auto CompareTitle = "Compare";
inline constexpr auto UncertaintyTitle = "How Sure";
inline constexpr auto ShareCurveTitle = "Share over a Variable";
const char* titleOf(const StudyAnswer& answer);

/// Nothing where the case was not computed or does not have the outcome.
std::optional<double> valueIn(const ComparedCase& one, const Outcome& outcome);

/// The factors that any of the cases has; what decides in the base comes first.
std::vector<Outcome> comparedOutcomes(const Comparison& comparison);

/// "3 cases, which differ in 2 inputs. Retreat factor: 1.2 in "a" to 1.6 in "b"."
std::string compareHeadline(const Comparison& comparison, const Outcome& outcome);

/// "Retreat factor 1.6 in the case; worst in "deeper": 1.3."
/// Given: refused  scenarios that are not among those of the answer
std::string scenarioHeadline(const ScenarioAnswer& answer, std::size_t refused = 0);

} // namespace telvo::study
