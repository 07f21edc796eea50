// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "sampling/estimates.h"
#include "sampling/Sampler.h"
#include "study/Criterion.h"
#include "study/Evaluator.h"
#include "study/tally.h"
#include "study/Variable.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

/// "How sure is it?" Inputs that scatter, and the share of samples that miss a criterion. The limits
/// of the case-history data base are empirical and were found with default strength and angles: a
/// share says how often a case that scatters so would miss them, and is no probability of failure.
namespace telvo::study {

/// An input of the panel that scatters, in the units of the case.
struct UncertainInput {
    Variable variable;
    sampling::Distribution distribution;
};

/// A rank correlation between two of the inputs, by their places.
struct RankPair {
    std::size_t first = 0, second = 0;
    double rank = 0;
};

struct UncertaintyRequest {
    std::vector<UncertainInput> inputs;
    std::vector<RankPair> correlated;
    std::vector<Criterion> criteria; ///< up to 16
    sampling::Plan plan;
};

/// What the samples say of one criterion.
struct CriterionShare {
    sampling::Estimate missed; ///< share of the computed samples that miss it
    std::uint64_t misses = 0;
    sampling::Estimate mean; ///< of the outcome
    double sd = 0;           ///< of the outcome
};

/// How a share stood when half, a quarter, ... of each replicate was computed.
struct Convergence {
    std::uint64_t samples = 0;
    sampling::Estimate missed;
};

struct Uncertainty {
    std::string headline; ///< "3.8 % of 131072 samples miss TELVOSF.retreat>=1.5 (3.7 to 3.9 %)"
    std::vector<CriterionShare> criteria;
    sampling::Estimate any; ///< share that misses one or more of them
    /// Samples by which criteria they miss, bit i for criterion i: [mask] samples.
    std::vector<std::uint64_t> byMask;
    std::vector<std::vector<Convergence>> convergence; ///< [criterion], coarsest first

    /// The samples themselves: by replicate, then by index.
    std::vector<std::vector<double>> outcomes; ///< [criterion][sample]; NaN where there is none
    std::vector<std::uint8_t> computed;        ///< [sample]
    std::shared_ptr<const sampling::Sampler> sampler;
    std::shared_ptr<const Evaluator> evaluator;
    Tally tally;
    bool stopped = false; ///< partial: whole replicates up to where it was stopped

    /// Values of the inputs of a sample, and its case.
    std::vector<double> inputs(std::size_t sample) const;
    project::ProjectCase caseOf(std::size_t sample) const;
};

/// Faults: no input or no criterion, an input that changes nothing in the case, a case that cannot be
///         computed itself, what Sampler and Evaluator find, samples of which none can be computed
/// Notes:  the same bits on any number of threads and with every instruction set.
Result<Uncertainty> uncertainty(const project::ProjectCase& base, const UncertaintyRequest& request,
                                int RoundTELVOSF = 0, unsigned threads = 1,
                                std::stop_token stop = {});

/// Importance of an input for one criterion's outcome, from the samples themselves.
struct Importance {
    double rankCorrelation = 0; ///< with the outcome
    /// Means of the outcome in ten equal parts of the samples, by rising input; from what is between
    /// them over the variance comes the first-order share, also where inputs are correlated.
    std::vector<double> binMeans;
    double betweenBins = 0; ///< 0 to 1
    /// Mean of the input in samples that miss, in its own standard deviations from its mean.
    std::optional<double> missesAt;
};
std::vector<Importance> importance(const Uncertainty& result, std::size_t criterion,
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
/// Faults: correlated inputs, more inputs than points are there for, what uncertainty() finds
Result<SobolStudy> sobolStudy(const project::ProjectCase& base, const UncertaintyRequest& request,
                              std::size_t criterion, int RoundTELVOSF = 0, unsigned threads = 1);

/// Share over a design variable: the same samples at each of its values.
struct ShareCurvePoint {
    double x = 0;
    sampling::Estimate missed;
    std::size_t notComputed = 0;
};
/// Faults: what uncertainty() finds, a variable that scatters itself
Result<std::vector<ShareCurvePoint>> shareCurve(const project::ProjectCase& base,
                                                const UncertaintyRequest& request,
                                                std::size_t criterion, const Variable& over,
                                                const std::vector<double>& values,
                                                int RoundTELVOSF = 0, unsigned threads = 1);

} // namespace telvo::study
