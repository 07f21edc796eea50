// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Console.h"
#include "project/ProjectInput.h"
#include "report/warnings.h"
#include "run/caseRun.h"
#include "run/resultTexts.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace telvo::cli {

/// One case of the command line after reading and, where asked for, running it.
struct CaseOutcome {
    std::string file;                            ///< as named on the command line
    std::optional<std::uint32_t> row;            ///< of a table
    std::optional<project::ProjectCase> current; ///< nothing when it could not be read
    std::optional<run::Run> run;                 ///< nothing when it was not or could not be run
    report::Warnings warnings;                   ///< of a run, for those who asked for them
    std::vector<std::string> remarks;            ///< of reading, to be told before anything else
    std::vector<std::string> notes;              ///< remarks on record and run
    std::string message;                         ///< why there is no run; empty when all is well
    ExitStatus status = AllGood;
};

/// Ending of a file name in small letters, such as ".csv".
std::string endingOf(std::string_view file);

/// Whether an argument is a workbook or may be one: by its name, with or without a row behind it,
/// by what the file begins with, or because only reading it, from a pipe, would tell.
bool mayBeWorkbook(std::string_view argument);

/// Whether several arguments are standard input, which is complained of.
bool readsInputTwice(Console& console, const std::vector<std::string>& files);

/// The file that an argument names, without the row of a table behind it.
std::string fileOf(const std::string& argument);

/// Calls visit for every case that an argument names: a case file, standard input for "-", every
/// row of a table, or for "FILE#ROW" one of its rows. A file that has such a name itself comes
/// first. What is a table shows from its content. Items that an older level lacks start from the
/// new-case defaults. What a reader has to know stands in the remarks of the outcome. A file for
/// which memory runs out is an outcome of its own.
void visitCases(Console& console, const std::string& argument,
                const std::function<void(CaseOutcome& outcome)>& visit);

/// Reads the one case that an argument names; a table has to have a single row or a row named.
CaseOutcome readCase(Console& console, const std::string& argument);

/// Runs a case that was read.
void runCase(CaseOutcome& outcome);

/// What is to be said of a case on standard error: remarks of reading, notes, and why it has no run.
std::vector<std::string> sayings(const CaseOutcome& outcome);

/// A case as results write it; it points into the outcome.
run::CaseResult resultOf(const CaseOutcome& outcome);

/// Says why a case has no run.
void complainOf(Console& console, const CaseOutcome& outcome);

/// Says the remarks on a case.
void tellNotes(Console& console, const CaseOutcome& outcome);

} // namespace telvo::cli
