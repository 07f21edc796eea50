// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/caseRun.h"
#include "base/Result.h"
#include "project/ProjectInput.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace telvo::cli {

/// Exit statuses; of several cases the highest one counts.
enum ExitStatus : int {
    AllGood = 0,
    Refused = 1, // a case was refused or could not be computed
    WrongUsage = 2,
    FileTrouble = 3 // a file could not be read or written
};

/// One case of the command line after reading and, where asked for, running it.
struct CaseOutcome {
    std::string file;                            ///< as named on the command line
    std::optional<project::ProjectCase> current; ///< nothing when it could not be read
    std::optional<app::CaseRun> run;             ///< nothing when it was not or could not be run
    std::string message;                         ///< why there is no run; empty when all is well
    ExitStatus status = AllGood;
};

/// Reads a case from a file, or from standard input for "-". Items that an older level lacks start
/// from the new-case defaults.
CaseOutcome readCase(const std::string& file);

/// Reads and runs a case.
CaseOutcome readAndRun(const std::string& file, const app::RunOptions& options);

/// Says on standard error what went wrong: "telvo-cli: " and the message.
void complain(const std::string& message);

/// Says why a case has no run.
void complainOf(const CaseOutcome& outcome);

/// Whether a file may be written: it does not exist, or `force`. Complains where it may not.
bool mayWrite(const std::string& target, bool force);

/// Writes to standard output and remembers whether that failed.
void print(std::string_view text);
/// Flushes standard output. Returned: FileTrouble when not everything could be written.
ExitStatus finishOutput();

} // namespace telvo::cli
