// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/studyOptions.h"
#include "report/ReportWriter.h"

#include <string>

namespace CLI {
class App;
}

/// The command that puts cases side by side.
namespace telvo::cli {

struct CompareRequest {
    Inputs inputs;
    std::string base; ///< empty: the first case
    bool onlyDifferences = false;
    bool reports = false; ///< line by line, of two cases
    report::ReportOptions options;
    StudyTarget target;
};

/// Adds the command. The request has to outlive the parsing.
CLI::App* addCompare(CLI::App& app, CompareRequest& request);
int runCompare(Console& console, const CompareRequest& request);

} // namespace telvo::cli
