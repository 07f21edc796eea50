// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/questions/uncertainty.h"

#include <optional>
#include <string>
#include <vector>

/// Which of the inputs that scatter drive a criterion.
namespace telvo::study {

/// Importance of an input for one criterion's outcome, from the samples themselves.
struct Importance {
    double rankCorrelation = 0; ///< with the outcome
    /// Means of the outcome in ten equal parts of the samples, by rising input; from what is between
    /// them over the variance comes the first-order share, also where inputs are correlated.
    std::vector<double> binMeans;
    double betweenBins = 0; ///< 0 to 1
    bool turnsBack = false; ///< the means do not go one way: the rank correlation says too little
    /// Mean of the input in samples that miss, in its own standard deviations from its mean.
    std::optional<double> missesAt;
};
/// Notes: looks at 2^17 samples at most, the first ones of each replicate.
std::vector<Importance> importance(const Uncertainty& result, std::size_t criterion,
                                   const UncertaintyRequest& request);

/// Where the samples that miss lie: "In the samples that miss it, depth of cover was 0.9 standard
/// deviations above its mean". Empty where none misses or none lies far from its mean.
std::string whereMissesLie(const std::vector<Importance>& importance,
                           const UncertaintyRequest& request);

/// First-order and total indices of Sobol', for the outcome and for missing the criterion; inputs
/// have to be independent.
struct IndexPair {
    sampling::Estimate first, total;
};
struct SobolStudy {
    std::vector<IndexPair> outcome, misses; ///< [input]
    std::uint64_t runs = 0, dropped = 0;    ///< rows of which a member could not be computed
};
/// Faults: correlated inputs, more inputs than points are there for, what drawSamples() finds
Result<SobolStudy> sobolStudy(const project::ProjectCase& base, const UncertaintyRequest& request,
                              std::size_t criterion, int RoundTELVOSF = 0, unsigned threads = 1);

/// Shapley effects: the part of the variance that each input stands for, also where inputs hang
/// together; the parts add up to 1.
struct ShapleyStudy {
    std::vector<sampling::Estimate> outcome, misses; ///< [input]
    std::uint64_t runs = 0;
};
/// Notes:  of up to ten inputs all subsets, of more those of random orders; runs as many samples as
///         that leaves time for, drawn by Sobol' points or plain.
/// Faults: what drawSamples() finds
Result<ShapleyStudy> shapleyStudy(const project::ProjectCase& base,
                                  const UncertaintyRequest& request, std::size_t criterion,
                                  int RoundTELVOSF = 0, unsigned threads = 1);

} // namespace telvo::study
