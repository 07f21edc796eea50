// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/cases.h"
#include "cli/inputs.h"
#include "report/ReportWriter.h"

#include <optional>
#include <string>

/// The commands of the console program, after their arguments are read. Each returns the exit
/// status. None reads or writes the user's settings: the same call gives everybody the same answer.
namespace telvo::cli {

std::string versionText();

struct ReportRequest {
    Inputs inputs;
    std::optional<int> page;
    std::string target; ///< empty: standard output
    bool force = false;
    unsigned jobs = defaultJobs();
    report::ReportOptions options;
    Workbooks workbooks;
};
int runReport(const ReportRequest& request);

struct ResultsRequest {
    Inputs inputs;
    std::string format = "text";
    bool noHeader = false; ///< of CSV
    std::string target;    ///< empty: standard output
    bool force = false;
    unsigned jobs = defaultJobs();
    report::ReportOptions options;
    Workbooks workbooks;
};
int runResults(const ResultsRequest& request);

struct CheckRequest {
    Inputs inputs;
    unsigned jobs = defaultJobs();
    Workbooks workbooks;
};
int runCheck(const CheckRequest& request);

struct NewRequest {
    std::string target;
    std::string units = "english";
    bool force = false;
};
int runNew(const NewRequest& request);

struct SaveRequest {
    std::string source;
    std::string target;
    bool force = false;
    Workbooks workbooks;
};
int runConvert(const SaveRequest& request);
int runSave(const SaveRequest& request);

} // namespace telvo::cli
