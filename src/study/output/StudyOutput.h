// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/JsonWriter.h"
#include "project/ProjectInput.h"
#include "study/output/ResultTable.h"
#include "study/output/StudyAnswer.h"
#include "study/questions/importance.h"
#include "study/questions/shareCurve.h"

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

/// Results of studies in forms for people, scripts and spreadsheets.
namespace telvo::study {

/// What came of a study, ready to be written in any form.
struct StudyOutput {
    std::string headline; ///< the answer in a sentence
    ResultTable table;    ///< numbers exact, in the units of the case
    /// As text instead of `table`, where that is one for scripts: tables with their titles.
    std::vector<std::pair<std::string, ResultTable>> shown = {};
    std::vector<std::string> remarks; ///< below the table, a sentence each
    Tally tally;
    bool computed = true;                  ///< at least one of its runs
    bool aimMet = true;                    ///< something was found that meets the criterion
    std::function<void(JsonWriter&)> json; ///< the members of a JSON object
    /// Samples behind it, a row each, with columns named as those of a sweep; may have none.
    ResultTable samples = {};
    StudyAnswer answer = {}; ///< what it is made of
};

StudyOutput outputOf(Tornado result, const TornadoRequest& request,
                     const project::ProjectCase& base);
/// Columns: id, the inputs that were varied by field name, the outcomes by name, flags, message.
StudyOutput outputOf(Sweep result);
/// The table has a row per interval.
StudyOutput outputOf(Found result, const FindRequest& request, const project::ProjectCase& base);
/// The table has a row per target and value of the other input.
StudyOutput outputOf(DesignChart result, const DesignChartRequest& request,
                     const project::ProjectCase& base);
StudyOutput outputOf(Scenarios result, const std::vector<Outcome>& outcomes,
                     const project::ProjectCase& base);

/// The table has a row per input and result, with a column per case, and difference and percent
/// against the base.
/// Given: onlyDifferences  rows that are the same in all cases are left out
StudyOutput outputOf(Comparison result, bool onlyDifferences);

/// What the samples say with what it is made of: importance of the inputs, and on demand the indices
/// of Sobol' of independent inputs, or the Shapley effects of correlated ones.
struct UncertaintyResult {
    std::shared_ptr<const UncertaintyAnswer> answer;
    std::vector<std::vector<Importance>> importance; ///< [criterion]
    std::vector<SobolStudy> indices;                 ///< [criterion]; may be none
    std::vector<ShapleyStudy> shapley;               ///< likewise
};
/// The table has a row per statistic: its name, the criterion, what it is of, value and interval.
StudyOutput outputOf(UncertaintyResult result);
/// The table has a row per criterion and value of the other input.
StudyOutput outputOf(ShareCurveAnswer answer);

/// "1,203 runs, 2 of them not computed: 2 x Invalid depth of cover"
std::string tallyText(const Tally& tally);
/// Numbers of the flags with blanks between: "1 10".
std::string flagText(std::uint16_t flags);

/// Headline, table, remarks and tally.
std::string shownText(const StudyOutput& output);

} // namespace telvo::study
