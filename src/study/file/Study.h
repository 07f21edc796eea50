// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "project/ProjectInput.h"
#include "study/questions/designChart.h"
#include "study/questions/find.h"
#include "study/questions/scenarios.h"
#include "study/questions/shareCurve.h"
#include "study/questions/sweep.h"
#include "study/questions/tornado.h"
#include "study/questions/uncertainty.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// A study as it is kept beside its case: what is asked, and nothing of what came of it.
namespace telvo::study {

struct ScenarioSet {
    std::vector<Scenario> list;
    std::vector<Outcome> outcomes; ///< none: the factors of the case
};

struct CompareSet {
    std::vector<std::string> with; ///< files of the other cases, relative to the study
    bool onlyDifferences = false;
};

struct Study {
    /// What is asked. Of a tornado only the ranges that the user gave; all other inputs have their
    /// usual ones. A table of values without outcomes has the factors of the case.
    using Request = std::variant<SweepRequest, TornadoRequest, FindRequest, DesignChartRequest,
                                 ScenarioSet, CompareSet, AskedUncertainty, AskedFragility>;

    std::vector<std::string> comments;     ///< lines at the top, without "#"
    std::string caseFile;                  ///< relative to the study, with "/"
    std::int16_t units = project::English; ///< of all numbers in it
    int RoundTELVOSF = 0;
    Request request;
};

/// "sweep", "tornado", "find", "chart", "scenarios", "compare", "uncertainty", "fragility".
std::string_view kindName(const Study::Request& request);
/// All of them.
std::span<const std::string_view> kindNames();

inline constexpr int StudyVersion = 1;
/// Largest study file that is read.
inline constexpr std::size_t MaxStudyBytes = std::size_t{16} << 20;

/// Reads the text of a study file.
/// Given: name  how messages name the file
/// Faults: another or a newer kind of file, text that is no TOML, a key that is unknown, missing or
///         has a wrong value; each with its line
Result<Study> readStudyText(std::string_view bytes, const std::string& name);

/// The text of the study file: keys in fixed order, numbers in their shortest exact form, LF.
std::string studyText(const Study& study);

/// Whether two requests are the same, which is whether their texts are.
bool sameStudy(const Study& a, const Study& b);

} // namespace telvo::study
