// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <span>

/// Columns of samples, several numbers at a time: bit for bit the same with every instruction set.
namespace telvo::sampling {

/// Numbers between 0 and 1 become normal scores.
void toScores(double* values, std::size_t count);
/// z becomes exp(a + b z).
void toExponentials(double* values, std::size_t count, double a, double b);
/// The last of some columns becomes the sum of all, each times its factor, from the first on.
void toSum(std::span<double* const> columns, std::size_t count, const double* factors);

} // namespace telvo::sampling
