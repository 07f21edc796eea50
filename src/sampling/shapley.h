// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sampling/correlation.h"
#include "sampling/Philox.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

/// Importance of inputs that hang together: the part of the variance that each stands for, shared out
/// after L. S. Shapley (A. B. Owen 2014; E. Song, B. L. Nelson, J. Staum 2016). The parts add up to 1.
namespace telvo::sampling {

/// Most inputs whose subsets are all looked at; beyond, subsets of random orders are.
inline constexpr std::size_t MostInputsExact = 10;

struct ShapleySample {
    const Matrix& correlation;                  ///< of the normal scores
    std::span<const std::vector<double>> base;  ///< [input][sample] correlated scores
    std::span<const std::vector<double>> fresh; ///< [input][sample] independent scores
    std::span<const double> outcomes;           ///< of the base; NaN: not known
};
/// Outcomes of scores. Given: scores  [input][sample]   Returned: NaN where there is none
using OutcomesOf = std::function<void(const std::vector<std::vector<double>>& scores,
                                      std::vector<double>& outcomes)>;

/// Effects of one replicate, by input; zeros where the outcome does not vary. Two outcomes that agree
/// in all inputs but some differ as these make them: half the mean square is their part.
/// Given: stream  what random orders are drawn from
/// Faults: correlations that are not positive definite
Result<std::vector<double>> shapleyEffects(const ShapleySample& sample,
                                           const OutcomesOf& outcomesOf, const Stream& stream);

/// How often shapleyEffects() asks for outcomes of a whole sample.
std::size_t shapleySubsets(std::size_t inputs);

} // namespace telvo::sampling
