// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/studyOptions.h"
#include "report/ReportWriter.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

/// The command that finds the values with which a criterion holds.
namespace telvo::cli {

struct FindRequest {
    std::vector<std::string> words; ///< cases, and the input last
    std::string listFile;           ///< more cases, a line each
    std::string criterion;
    std::string in;  ///< "LOW:HIGH"; empty: about the case's own value
    double step = 0; ///< 0: a practical one
    report::ReportOptions options;
    StudyTarget target;
};

/// Adds the command. The request has to outlive the parsing.
CLI::App* addFind(CLI::App& app, FindRequest& request);
int runFind(Console& console, const FindRequest& request);

} // namespace telvo::cli
