// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/cases.h"
#include "explain/Working.h"
#include "report/ReportWriter.h"

#include <string>

namespace CLI {
class App;
}

/// The command that shows the working of a case.
namespace telvo::cli {

struct ExplainRequest {
    std::string source;
    std::string quantity; ///< empty: all of them
    bool list = false;    ///< names only
    std::string target;   ///< workbook to write; empty: text to standard output
    bool force = false;
    int digits = explain::DefaultDigits;
    report::ReportOptions options;
};

/// Adds the command. The request has to outlive the parsing.
CLI::App* addExplain(CLI::App& app, ExplainRequest& request);
int runExplain(Console& console, const ExplainRequest& request);

} // namespace telvo::cli
