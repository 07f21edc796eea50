// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/questions/uncertainty.h"

#include <optional>
#include <string>
#include <vector>

/// Share of samples that miss a criterion over a design variable, the same samples at each of its
/// values.
namespace telvo::study {

/// What is asked, about whatever case: the content of a study file.
struct AskedFragility {
    AskedUncertainty scatter;
    Variable over;
    std::vector<double> values;  ///< of `over`
    std::vector<double> weights; ///< parts of the panel that have each value; none: no average
    std::optional<double> share; ///< looked for: where at most this share misses
};

/// Samples of a replicate at each value, as a power of two, where the curve follows the typing.
inline constexpr int MostShareCurveBits = 9;

struct ShareCurvePoint {
    double x = 0;
    sampling::Estimate missed; ///< of the computed ones; says nothing where there is none
    std::size_t computed = 0, notComputed = 0;
};

/// Values of the design variable with at most the share asked for; ends are located by halving, to a
/// four-thousandth of the range.
struct ShareInterval {
    double from = 0, to = 0;
    /// Where the ends may be, by the band of the curve; missing where it does not get there.
    std::optional<double> fromEarliest, fromLatest, toEarliest, toLatest;
    bool fromRange = false, toRange = false; ///< the range ends there
};

struct ShareCurve {
    std::string headline;
    std::vector<std::vector<ShareCurvePoint>> points;       ///< [criterion][value]
    std::vector<std::optional<sampling::Estimate>> average; ///< [criterion], with the weights
    std::vector<std::vector<ShareInterval>> meets; ///< [criterion], where a share is asked for
    Tally tally;
};

/// Faults: what drawSamples() finds, a variable that scatters itself, no values, values that do not
///         rise, weights that are not one per value or not above 0, a share that is not between 0 and 1
Result<ShareCurve> shareCurve(const project::ProjectCase& base, const UncertaintyRequest& request,
                              const AskedFragility& asked, int RoundTELVOSF = 0,
                              unsigned threads = 1, const std::stop_token& stop = {});

} // namespace telvo::study
