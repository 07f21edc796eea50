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
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// Studies as they are kept beside their case: what is asked, and nothing of what came of it.
namespace telvo::study {

struct ScenarioSet {
    std::vector<Scenario> list;
    std::vector<Outcome> outcomes; ///< none: the factors of the case
};

struct CompareSet {
    std::vector<std::string> with; ///< files of the other cases, relative to the study
    bool onlyDifferences = false;
    std::string base = {};           ///< name of a case; any other: the case of the study
    bool scenarios = false;          ///< the scenarios of the case are compared, too
    std::vector<Scenario> list = {}; ///< those scenarios; empty where they are not
};

/// How the window shows a study; it changes nothing in the answer.
struct StudyView {
    bool spider = false;                        ///< of a tornado
    std::optional<double> level = {};           ///< contour of a table of values
    bool suggested = false;                     ///< that contour is at the suggested factor
    std::vector<project::FieldId> columns = {}; ///< inputs of scenarios, beside those that are set
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
    StudyView view = {};
};

/// "sweep", "tornado", "find", "chart", "scenarios", "compare", "uncertainty", "fragility".
std::string_view kindName(const Study::Request& request);
/// All of them.
std::span<const std::string_view> kindNames();

inline constexpr int StudyVersion = 1;
/// Largest study file that is read.
inline constexpr std::size_t MaxStudyBytes = std::size_t{16} << 20;

/// Reads the text of a study file, which holds at most one study of each kind.
/// Given: name  how messages name the file
/// Faults: another or a newer kind of file, text that is no TOML, a key that is unknown, missing or
///         has a wrong value; each with its line
Result<std::vector<Study>> readStudies(std::string_view bytes, const std::string& name);
/// The same of a file with one study. Faults: more than one
Result<Study> readStudyText(std::string_view bytes, const std::string& name);

/// The text of the study file: keys in fixed order, numbers in their shortest exact form, LF.
std::string studyText(const Study& study);
/// Of several, each of its own kind; comments, case and units are those of the first.
std::string studiesText(const std::vector<Study>& studies);

/// Values as "600:1200:50", where that means the very same ones.
std::optional<std::string> stepsText(const std::vector<double>& values);

/// Whether two requests are the same, which is whether their texts are.
bool sameStudy(const Study& a, const Study& b);

} // namespace telvo::study
