// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "project/ProjectInput.h"
#include "report/warnings.h"
#include "run/caseRun.h"
#include "table/CaseTable.h"
#include "table/sheets.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace telvo::cli {

/// Exit statuses; of several cases the highest one counts.
enum ExitStatus : int {
    AllGood = 0,
    Refused = 1, // a case was refused or could not be computed
    WrongUsage = 2,
    FileTrouble = 3 // a file could not be read or written
};

inline void raise(ExitStatus& status, ExitStatus other) {
    status = std::max(status, other);
}

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

/// Tables as workbooks (XLSX), handed in: their libraries would double the time that every start
/// takes, so that only a program that is called for a workbook has them.
struct Workbooks {
    Result<table::CaseTable> (*read)(std::string_view bytes, const std::string& file) = nullptr;
    Result<std::string> (*write)(std::span<const project::ProjectCase> cases) = nullptr;
    Result<std::string> (*makeTemplate)() = nullptr;
    Result<std::string> (*writeSheets)(std::span<const table::Sheet> sheets,
                                       std::size_t exact) = nullptr;
};

/// What a program without them says behind the name of a file.
inline constexpr const char* NoWorkbooks = ": this build does not write workbooks";

/// Ending of a file name in small letters, such as ".csv".
std::string endingOf(std::string_view file);

/// Whether an argument is a workbook or may be one: by its name, with or without a row behind it,
/// by what the file begins with, or because only reading it, from a pipe, would tell.
bool mayBeWorkbook(std::string_view argument);

/// Whether several arguments are standard input, which is complained of.
bool readsInputTwice(const std::vector<std::string>& files);

/// The file that an argument names, without the row of a table behind it.
std::string fileOf(const std::string& argument);

/// Calls visit for every case that an argument names: a case file, standard input for "-", every
/// row of a table, or for "FILE#ROW" one of its rows. A file that has such a name itself comes
/// first. What is a table shows from its content. Items that an older level lacks start from the
/// new-case defaults. What a reader has to know stands in the remarks of the outcome. A file for
/// which memory runs out is an outcome of its own.
void visitCases(const std::string& argument, const Workbooks& workbooks,
                const std::function<void(CaseOutcome& outcome)>& visit);

/// Reads the one case that an argument names; a table has to have a single row or a row named.
CaseOutcome readCase(const std::string& argument, const Workbooks& workbooks);

/// Runs a case that was read.
void runCase(CaseOutcome& outcome);

/// All of standard input, no larger than a file may be.
Result<std::string> readStandardInput();

/// Says on standard error what went wrong: "telvo-cli: " and the message on one line, with control
/// characters written out.
void complain(const std::string& message);

/// What is to be said of a case on standard error: remarks of reading, notes, and why it has no run.
std::vector<std::string> sayings(const CaseOutcome& outcome);

/// Says why a case has no run.
void complainOf(const CaseOutcome& outcome);

/// Says the remarks on a case.
void tellNotes(const CaseOutcome& outcome);

} // namespace telvo::cli
