// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/studyOptions.h"
#include "report/ReportWriter.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

/// The command that makes a table of values.
namespace telvo::cli {

struct SweepRequest {
    Inputs inputs;
    std::vector<std::string> vary; ///< "INPUT=VALUES"
    bool linked = false;
    std::vector<std::string> quantities;
    std::string lines; ///< of a picture: "1.3,1.5,suggested"
    unsigned jobs = defaultJobs();
    report::ReportOptions options;
    StudyTarget target;
};

/// Adds the command. The request has to outlive the parsing.
CLI::App* addSweep(CLI::App& app, SweepRequest& request);
int runSweep(Console& console, const SweepRequest& request);

} // namespace telvo::cli
