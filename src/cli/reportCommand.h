// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/inputs.h"
#include "report/ReportWriter.h"

#include <optional>
#include <string>

namespace CLI {
class App;
}

/// The command that prints reports.
namespace telvo::cli {

struct ReportRequest {
    Inputs inputs;
    std::optional<int> page;
    std::string target; ///< empty: standard output
    bool force = false;
    unsigned jobs = defaultJobs();
    report::ReportOptions options;
};

/// Adds the command. The request has to outlive the parsing.
CLI::App* addReport(CLI::App& app, ReportRequest& request);
int runReport(Console& console, const ReportRequest& request);

} // namespace telvo::cli
