// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "run/Run.h"

#include <string>
#include <variant>
#include <vector>

namespace telvo::run {

/// Why there is a run, or none: a check refused an input, or the computation could not finish.
using RunOutcome = std::variant<Run, Refusal, Fault>;

/// The road of one case, from its inputs to a run. Main window, parameter form, working, console
/// program and tests all take it; what is shown of the run is report's, plot's or explain's.
/// Given: previousAnalysisCase  loading condition of the last valid run, which an `Anal` out of
///                              range keeps
RunOutcome runCase(const project::ProjectCase& current, int previousAnalysisCase = 1);

/// What a reader of any outcome has to know of the record: automatic values that it stores and that
/// are not its own. They are the first of a run's notes.
std::vector<std::string> recordNotes(const project::ProjectCase& current);

} // namespace telvo::run
