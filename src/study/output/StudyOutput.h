// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/JsonWriter.h"
#include "project/ProjectInput.h"
#include "study/output/ResultTable.h"
#include "study/questions/compare.h"
#include "study/questions/designChart.h"
#include "study/questions/find.h"
#include "study/questions/scenarios.h"
#include "study/questions/sweep.h"
#include "study/questions/tornado.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// Results of studies in forms for people, scripts and spreadsheets.
namespace telvo::study {

/// What came of a study, ready to be written in any form. It holds the result that it is made of.
struct StudyOutput {
    std::string headline;             ///< the answer in a sentence
    ResultTable table;                ///< numbers exact, in the units of the case
    std::vector<std::string> remarks; ///< below the table, a sentence each
    Tally tally;
    bool computed = true;                  ///< at least one of its runs
    bool aimMet = true;                    ///< something was found that meets the criterion
    std::function<void(JsonWriter&)> json; ///< the members of a JSON object
};

/// Given: units  of the case
StudyOutput outputOf(Tornado result, const TornadoRequest& request, std::int16_t units);
/// Columns: id, the inputs that were varied by field name, the outcomes by name, flags, message.
StudyOutput outputOf(Sweep result);
/// The table has a row per interval.
StudyOutput outputOf(Found result, const FindRequest& request, std::int16_t units);
/// The table has a row per target and value of the other input.
StudyOutput outputOf(DesignChart result, const DesignChartRequest& request, std::int16_t units);
StudyOutput outputOf(Scenarios result, const std::vector<Outcome>& outcomes, std::int16_t units);

/// The table has a row per input and result, with a column per case, and difference and percent
/// against the base.
/// Given: onlyDifferences  rows that are the same in all cases are left out
StudyOutput outputOf(Comparison result, bool onlyDifferences);

/// "1,203 runs, 2 of them not computed: 2 x Invalid depth of cover"
std::string tallyText(const Tally& tally);
/// Numbers of the flags with blanks between: "1 10".
std::string flagText(std::uint16_t flags);

/// Headline, table, remarks and tally.
std::string shownText(const StudyOutput& output);

} // namespace telvo::study
