// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "study/questions/intervals.h"
#include "study/questions/searchGrid.h"
#include "study/tally.h"
#include "study/Variable.h"

#include <optional>
#include <string>
#include <vector>

/// "Which value does it take?" Factors jump and turn back, so that the answer is no number but the
/// ordered list of all intervals in which the criterion holds.
namespace telvo::study {

struct FindRequest {
    Variable variable;
    Criterion criterion;
    Span in;         ///< where to look, both ends included
    double step = 1; ///< practical step of the variable: 1 ft, 0.5 m
};

struct Found {
    std::string headline; ///< the safe answer in one sentence
    std::string searched; ///< how it was searched, and what can be missed
    std::vector<Interval> intervals;
    std::optional<double> answer; ///< a practical value that is safe to take
    double answerValue = 0;       ///< of the outcome there
    Tally tally;

    // For the picture: the outcome along the range, cut where it jumps.
    std::vector<Stretch> curve;
    std::vector<Jump> jumps;
    std::optional<GraphPoint> own; ///< of the case itself, when it lies in the range
    std::vector<GraphPoint> limit; ///< the target; rises and falls where it is the suggested factor
};

/// Searches at 401 points at least, at every practical value, and at every switch of a rule that
/// lies between. Windows narrower than that can be missed.
/// Faults: a range that is empty, endless or holds no valid value; a step that is not above 0 or
///         makes more than 100,000 values; an outcome that the case does not have
Result<Found> find(const project::ProjectCase& base, const FindRequest& request,
                   int RoundTELVOSF = 0);

} // namespace telvo::study
