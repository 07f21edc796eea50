// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "sampling/estimates.h"
#include "sampling/Sampler.h"
#include "study/Criterion.h"
#include "study/Evaluator.h"
#include "study/questions/scatter.h"
#include "study/tally.h"
#include "study/Variable.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

/// "How sure is it?" Inputs that scatter, and the share of samples that miss a criterion. The limits
/// of the case-history data base are empirical and were found with default strength and angles: a
/// share says how often a case that scatters so would miss them, and is no probability of failure.
namespace telvo::study {

/// The sentence that stands beside every share.
inline constexpr std::string_view ShareNote =
    "The limits are empirical and were found with default coal strength and abutment angles: the "
    "share shows how robust the case is and is no probability of failure.";

// ---- what is asked ------------------------------------------------------------------------------

/// What is asked, about whatever case it is asked of: the content of a study file.
struct AskedUncertainty {
    struct Together {
        Variable first, second;
        double rank = 0;
        bool operator==(const Together&) const = default;
    };
    std::vector<ScatteredInput> vary; ///< none: usualInputs()
    std::vector<Together> correlated; ///< rank correlations
    std::vector<Criterion> limits;    ///< none: usualLimits()
    sampling::Plan plan;
    /// Stop as soon as the half width of every share's interval is at most this part of the share (of
    /// a share below 1 %: of 1 %). `plan` then has the most samples.
    std::optional<double> halfWidth;
    bool indices = false; ///< of Sobol', where inputs are independent; takes more runs
};

/// Stability factors of panel and barriers against the factors that the warnings suggest.
std::vector<Criterion> usualLimits(const project::ProjectCase& base);

/// An input of the panel that scatters, in the units of the case.
struct UncertainInput {
    Variable variable;
    sampling::Distribution distribution;
    /// Others that take the same error: what the first one differs from its own value by, or the same
    /// ratio.
    std::vector<Variable> also = {};
    bool asRatio = false;
    std::string name = {}; ///< as it was asked for: "XcutCenters"; empty: that of the variable

    std::string shownName() const { return name.empty() ? variable.name() : name; }
};

/// A rank correlation between two of the inputs, by their places.
struct RankPair {
    std::size_t first = 0, second = 0;
    double rank = 0;
};

/// The same for one case, with distributions made.
struct UncertaintyRequest {
    std::vector<UncertainInput> inputs;
    std::vector<RankPair> correlated;
    std::vector<Criterion> criteria; ///< up to 15
    sampling::Plan plan;
    std::optional<double> halfWidth; ///< see AskedUncertainty
};

/// Faults: what distributionOf() finds, an input that changes nothing in the case, a correlation with
///         what does not scatter
/// Given: without  an input that is varied otherwise and left out of what is usual
Result<UncertaintyRequest> requestOf(const AskedUncertainty& asked,
                                     const project::ProjectCase& base,
                                     const std::optional<Variable>& without = {});

// ---- samples ------------------------------------------------------------------------------------

/// What was computed of each sample: all that another machine has to hand over.
struct Samples {
    static constexpr std::uint16_t NotComputed = 0x8000;

    std::size_t firstReplicate = 0, replicates = 0; ///< whole ones, of those of the plan
    std::size_t perReplicate = 0;                   ///< fewer than planned where it stopped early
    std::vector<std::vector<double>> outcomes; ///< [criterion][sample]; NaN where there is none
    std::vector<std::uint16_t> missed;         ///< bit c: misses criterion c; or NotComputed
    bool stopped = false;                      ///< by the user, before it was complete

    std::size_t size() const { return replicates * perReplicate; }
};

/// Some of the replicates of a plan: part k of n, from 1.
struct Part {
    std::size_t k = 1, n = 1;
};

/// Runs samples: 2^9 of each replicate, then twice as many each time, so that whatever is complete
/// when it stops is a whole study of its own.
/// Notes:  parts do not stop at a half width, which hangs on all of them.
/// Faults: no input or no criterion, an input that changes nothing in the case, a case that cannot be
///         computed itself, more parts than replicates, what Sampler and Evaluator find
Result<Samples> drawSamples(const project::ProjectCase& base, const UncertaintyRequest& request,
                            const Part& part = {}, int RoundTELVOSF = 0, unsigned threads = 1,
                            std::stop_token stop = {});

/// Parts in the order of their replicates, as if they had been drawn at once.
/// Faults: a part that is missing, comes twice or belongs to another study
Result<Samples> joinSamples(std::vector<Samples> parts, const UncertaintyRequest& request);

// ---- what they say ------------------------------------------------------------------------------

/// Probabilities that quantiles are told for.
inline constexpr std::array<double, 9> ShownQuantiles = {.01, .05, .1, .25, .5, .75, .9, .95, .99};

/// Counts of an outcome in bins of equal width, 20 to 80 of them; where the criterion has a value, it
/// is an edge.
struct Histogram {
    double first = 0; ///< lower edge of the first bin
    double width = 0; ///< 0: all samples are of one value, `first`
    std::vector<std::uint64_t> counts;
    std::uint64_t below = 0, above = 0; ///< samples far out, beyond the bins
};

/// What the samples say of one criterion.
struct CriterionShare {
    sampling::Estimate missed; ///< share of the computed samples that miss it
    std::uint64_t misses = 0;
    bool fewMisses = false;  ///< the interval is that of a count, not of the replicates
    sampling::Estimate mean; ///< of the outcome
    double sd = 0;           ///< of the outcome
    std::array<sampling::Estimate, ShownQuantiles.size()> quantiles; ///< of the outcome
    Histogram histogram;
    /// The cumulative curve: value of the outcome and share of samples up to it, 401 points at most.
    std::vector<std::pair<double, double>> cumulative;
};

/// How a share stood when half, a quarter, ... of each replicate was computed.
struct Convergence {
    std::uint64_t samples = 0;
    sampling::Estimate missed;
};

struct Uncertainty {
    /// shareSentence() of the first criterion, "; 5.1 % miss at least one of the 4"
    std::string headline;
    std::vector<CriterionShare> criteria;
    sampling::Estimate any; ///< share that misses one or more of them
    /// Samples by which criteria they miss, bit i for criterion i: [mask] samples.
    std::vector<std::uint64_t> byMask;
    std::vector<std::vector<Convergence>> convergence; ///< [criterion], coarsest first
    std::vector<Convergence> convergenceOfAny;

    Samples samples; ///< by replicate, then by index
    std::vector<UncertainInput> scattered;
    std::shared_ptr<const sampling::Sampler> sampler;
    std::shared_ptr<const Evaluator> evaluator;
    Tally tally;
    bool halfWidthMet = true; ///< where one was asked for

    /// Share of samples that miss both criteria.
    double joint(std::size_t a, std::size_t b) const;
    bool isComputed(std::size_t sample) const {
        return samples.missed[sample] != Samples::NotComputed;
    }
    /// Values of the inputs of a sample as they were drawn, and of all variables of the evaluator.
    std::vector<double> inputs(std::size_t sample) const;
    std::vector<double> variables(std::size_t sample) const;
    project::ProjectCase caseOf(std::size_t sample) const;
};

/// "3.8 % of 131,072 samples miss: Retreat factor of the panel at least 1.5 (3.7 to 3.9 %)"
std::string shareSentence(const Uncertainty& result, const UncertaintyRequest& request,
                          std::size_t criterion, std::int16_t units);

/// Faults: samples of which none can be computed
/// Notes:  the same bits for samples drawn in one or in many parts.
Result<Uncertainty> assess(const project::ProjectCase& base, const UncertaintyRequest& request,
                           Samples samples, int RoundTELVOSF = 0);

/// Both in one.
/// Faults: what drawSamples() and assess() find
/// Notes:  the same bits on any number of threads and with every instruction set.
Result<Uncertainty> uncertainty(const project::ProjectCase& base, const UncertaintyRequest& request,
                                int RoundTELVOSF = 0, unsigned threads = 1,
                                std::stop_token stop = {});

/// Whether a share is known as well as was asked for (AskedUncertainty::halfWidth).
bool isNarrow(const sampling::Estimate& share, double halfWidth);

} // namespace telvo::study
