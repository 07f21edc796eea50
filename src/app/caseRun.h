// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "engine/AnalysisResults.h"
#include "project/ProjectInput.h"
#include "report/ReportWriter.h"
#include "report/warnings.h"

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace telvo::app {

/// Build of the calculation modules, as reports name it.
inline constexpr std::string_view ModuleBuild = "050817";

struct RunOptions {
    report::ReportOptions report;
    bool writePages = true;       ///< false: results and warnings only, for batches
    int previousAnalysisCase = 1; ///< loading condition of the last valid run
};

/// Everything that one run yields.
struct CaseRun {
    engine::AnalysisResults results;
    report::Warnings warnings;
    report::ReportPages pages;
    std::vector<std::string> notes; ///< remarks for the reader of this run, one sentence each
};

/// What a reader of any outcome has to know of the record: automatic values that it stores and that
/// are not its own. They are the first of a run's notes.
std::vector<std::string> recordNotes(const project::ProjectCase& current);

/// Why there is a run, or none: a check refused an input, or the computation could not finish.
using RunOutcome = std::variant<CaseRun, Refusal, Fault>;

/// The road of one case, from its inputs to results, warnings and report pages. The main window,
/// the parameter form, the console program and the tests all take it.
RunOutcome runCase(const project::ProjectCase& current, const RunOptions& options = {});

} // namespace telvo::app
