// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "study/questions/scatter.h"

#include <optional>
#include <QString>
#include <string>
#include <utility>
#include <vector>

/// Which fields the form of scattering inputs shows for a distribution, and what they begin with.
namespace telvo::study::ui {

/// How the numbers of a shape are given: by its mean, by ends and corners, by a list, or as a beta.
enum class Family { ByMean, ByPoints, Beta, List };
Family familyOf(Scatter::Shape shape);

/// "Normal", "Gumbel, largest": as the form lists it.
QString shapeTitle(Scatter::Shape shape);
/// Captions of its numbers, in their order; none of a list.
std::vector<QString> captionsOf(Scatter::Shape shape);

/// Numbers between blanks, commas, semicolons and lines; with ":" a weight behind a value.
/// Faults: a word that is no number
Result<std::vector<std::pair<double, std::optional<double>>>> listOf(const std::string& text);

/// A shape with numbers that fit the input, to begin with when another shape is chosen.
Scatter firstOf(Scatter::Shape shape, const Scatter& before, const Variable& variable,
                const project::ProjectInput& in);

} // namespace telvo::study::ui
