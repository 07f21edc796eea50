// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/cases.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

/// The cases that a command is given: files, tables, folders and lists of them.
namespace telvo::cli {

struct Inputs {
    std::vector<std::string> given; ///< on the command line
    std::string listFile;           ///< more of them, a line each; "-" is standard input
};

/// Adds the names of cases and the option that reads more of them from a file.
void addInputs(CLI::App& command, Inputs& inputs);

/// An option that takes the name of a file or another text as it is. The parser has a meaning of
/// its own for some of them, such as [a,b] and ++; protectNames() keeps them from it.
CLI::Option* literal(CLI::Option* option);
void protectNames(std::vector<std::string>& arguments);
/// A message of the parser with the names as they were given.
std::string withoutProtection(std::string message);

/// All names, with the case files in place of a folder. Nothing, after a complaint, when there are
/// none, or standard input is asked for twice. A folder without cases is told and raises `status`.
std::optional<std::vector<std::string>> namesOf(Console& console, const Inputs& inputs,
                                                ExitStatus& status);

/// Most cases computed at once.
inline constexpr unsigned MostJobs = 256;
/// As many as the machine has cores.
unsigned defaultJobs();
/// Adds the option --jobs.
void addJobs(CLI::App& command, unsigned& jobs);

/// What is made of a case, to be written in the order of the cases.
struct Made {
    std::vector<std::string> said; ///< on standard error, before all else
    std::string text;              ///< for the output
    ExitStatus status = AllGood;
    bool hasRun = false;
    bool looksLikeFormula = false; ///< a text of the row may be taken for one by a spreadsheet
};

/// What a case has to say, before something is made of it.
Made madeOf(const CaseOutcome& outcome);

/// Makes something of the cases of all names on every core, and takes it on this thread in the order
/// of the cases: what is written and said is the same, byte for byte, as with one job.
/// Given: make  called by several threads at once
void makeInOrder(Console& console, const std::vector<std::string>& names, unsigned jobs,
                 const std::function<Made(CaseOutcome& outcome)>& make,
                 const std::function<void(const Made& made)>& take);

/// visitCases() for all names. Someone who waits at a terminal sees how far it is.
void visitAll(Console& console, const std::vector<std::string>& names,
              const std::function<void(CaseOutcome& outcome)>& visit);

} // namespace telvo::cli
