// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/inputs.h"
#include "report/ReportWriter.h"

#include <string>

namespace CLI {
class App;
}

/// The command that prints every computed quantity.
namespace telvo::cli {

struct ResultsRequest {
    Inputs inputs;
    std::string format = "text";
    bool noHeader = false; ///< of CSV
    std::string target;    ///< empty: standard output
    bool force = false;
    unsigned jobs = defaultJobs();
    report::ReportOptions options;
};

/// Adds the command. The request has to outlive the parsing.
CLI::App* addResults(CLI::App& app, ResultsRequest& request);
int runResults(Console& console, const ResultsRequest& request);

} // namespace telvo::cli
