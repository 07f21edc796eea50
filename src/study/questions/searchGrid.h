// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "study/Variable.h"

#include <cstddef>
#include <vector>

namespace telvo::study {

/// At how many points at least a range is looked at.
inline constexpr std::size_t FewestPoints = 401;
inline constexpr std::size_t MostPoints = 100'000;
/// Width to which a switch of a rule is located, as a part of the range.
inline constexpr double SwitchResolution = 1e-8;

/// The range that is searched when nobody names one: half to double the case's own value; from 0 on
/// where that is 0.
Span defaultSearchRange(const project::ProjectCase& base, const Variable& variable);

/// 1 ft or 0.5 m for lengths, 0.1 ft or 0.05 m for entry height and width, 1 degree, 10 psi or 0.1
/// MPa, 1 pcf or 0.1 kN/m3, 0.01.
double defaultStep(const Variable& variable, std::int16_t units);

/// Why a variable cannot be varied over a range of a case; nothing where it can.
/// Faults: an input that changes nothing in the case, an empty or endless range, one beyond what the
///         parameter form takes
std::optional<Fault> refusedRange(const project::ProjectCase& base, const Variable& variable,
                                  const Span& range);

/// Values at which a range is searched, rising: both ends, every practical value, FewestPoints at
/// least, and the case's own value where it lies inside.
/// Faults: refusedRange(), a step that is not above 0, more than MostPoints
Result<std::vector<double>> searchGrid(const project::ProjectCase& base, const Variable& variable,
                                       const Span& range, double step);

} // namespace telvo::study
