// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/inputs.h"
#include "cli/pictures.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

/// The commands of study files.
namespace telvo::cli {

/// Adds the command that the commands of study files stand below.
CLI::App* addStudy(CLI::App& app);

struct StudyNewRequest {
    std::vector<std::string> cases; ///< more than one for a comparison
    std::string kind = "find";
    std::string target;
    bool force = false;
};
/// Adds "new" to the commands of studies. The request has to outlive the parsing.
CLI::App* addStudyNew(CLI::App& studies, StudyNewRequest& request);
int runStudyNew(Console& console, const StudyNewRequest& request);

struct StudyCheckRequest {
    std::vector<std::string> files;
};
CLI::App* addStudyCheck(CLI::App& studies, StudyCheckRequest& request);
int runStudyCheck(Console& console, const StudyCheckRequest& request);

struct StudyRunRequest {
    std::vector<std::string> files;
    std::string folder; ///< empty: text to standard output
    std::string format; ///< empty: csv into a folder, else text
    bool force = false;
    std::optional<std::uint64_t> seed; ///< instead of that of the study
    std::string part;                  ///< "2/5": only these samples
    std::string samplesFile;
    PictureOptions picture;
    unsigned jobs = defaultJobs();
};
CLI::App* addStudyRun(CLI::App& studies, StudyRunRequest& request);
/// Runs every study. Into a folder go the result, NAME.study.csv, and the record of the run,
/// NAME.study.json.
int runStudyRun(Console& console, const StudyRunRequest& request);

struct StudyMergeRequest {
    std::vector<std::string> parts;
    std::string folder; ///< empty: text to standard output
    std::string format;
    bool force = false;
    std::string samplesFile;
    unsigned jobs = defaultJobs();
};
CLI::App* addStudyMerge(CLI::App& studies, StudyMergeRequest& request);
/// Joins the parts of a study: the same files as from one run.
int runStudyMerge(Console& console, const StudyMergeRequest& request);

struct StudyVerifyRequest {
    std::vector<std::string> records;
    unsigned jobs = defaultJobs();
};
CLI::App* addStudyVerify(CLI::App& studies, StudyVerifyRequest& request);
/// Runs records again and tells whether the digits are the same.
int runStudyVerify(Console& console, const StudyVerifyRequest& request);

} // namespace telvo::cli
