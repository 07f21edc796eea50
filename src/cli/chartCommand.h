// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/studyOptions.h"
#include "report/ReportWriter.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

/// The command that makes a design chart.
namespace telvo::cli {

struct ChartRequest {
    std::vector<std::string> words; ///< cases, and the input to find last
    std::string listFile;           ///< more cases, a line each
    std::string over;               ///< "INPUT=VALUES"
    std::string criterion;          ///< "QUANTITY>=VALUE,VALUE"
    std::string in;                 ///< "LOW:HIGH"; empty: about the case's own value
    double step = 0;                ///< 0: a practical one
    report::ReportOptions options;
    StudyTarget target;
};

/// Adds the command. The request has to outlive the parsing.
CLI::App* addChart(CLI::App& app, ChartRequest& request);
int runChart(Console& console, const ChartRequest& request);

} // namespace telvo::cli
