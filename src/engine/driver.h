// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "engine/AnalysisResults.h"
#include "engine/faults.h"
#include "engine/WorkingInputs.h"
#include "project/ProjectInput.h"

#include <optional>
#include <string_view>
#include <variant>
#include <vector>

/// The run of one case: prepare and validate, then compute a development and a retreat pass.
namespace telvo::engine {

/// The inputs of a record in the engine's units, unchecked.
WorkingInputs workingInputs(const project::ProjectInput& input, std::int16_t units,
                            int previousAnalysisCase);

/// Fills the working inputs and runs the check before analysis.
/// Given: units                 unit system of the case
///        previousAnalysisCase  loading condition of the last valid run; an `Anal` out of range
///                              keeps it
std::variant<WorkingInputs, Refusal> PrepareAnalysis(const project::ProjectInput& input,
                                                     std::int16_t units,
                                                     int previousAnalysisCase = 1);

/// Loading condition 1 to 4 of an `Anal`; 4 is analysed as 3, any other value outside 0 to 3 keeps
/// the previous one.
int analysisCase(int anal, int previousAnalysisCase);

/// The inputs of one pass: development knows no active gob and no slab cuts.
WorkingInputs forPass(const WorkingInputs& prepared, int pass);

/// Both passes over inputs that no check has seen; the driver and the search for the cause of a
/// stop share it. Takes fresh results. Returned: what stopped it, or nothing.
/// Given: lastPass  Development leaves the quantities without a pass index as that pass has them
std::optional<Stop> computePasses(const WorkingInputs& prepared, AnalysisResults& results,
                                  int lastPass = Retreat);

/// Computes both passes.
/// Faults: a computation that cannot finish, with the quantity and the input that causes it.
Result<AnalysisResults> ComputeAnalysis(const WorkingInputs& prepared);

/// Remarks on a finished run that its reader should know of.
std::vector<std::string_view> analysisNotes(const AnalysisResults& results);

} // namespace telvo::engine
