// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "base/Rule.h"
#include "engine/AnalysisResults.h"
#include "engine/Noting.h"
#include "engine/RunResults.h"
#include "engine/WorkingInputs.h"
#include "project/ProjectInput.h"

#include <string_view>
#include <variant>
#include <vector>

/// The run of one case: prepare and validate, then compute a development and a retreat pass.
namespace telvo::engine {

/// The inputs of a record in the engine's units, unchecked.
WorkingInputs workingInputs(const project::ProjectInput& input, std::int16_t units,
                            int previousAnalysisCase);

/// Likewise, with a note of the decisions; `frame` is frameOf() that record.
WorkingInputs workingInputs(Noting& calc, const project::ProjectInput& input, const Frame& frame);

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

/// The discrete inputs of a record.
Frame frameOf(const project::ProjectInput& input, std::int16_t units, int previousAnalysisCase);

/// What stopped a computation that cannot finish.
struct Stopped {
    Stop cause = Stop::None;
    Where where;
    std::string_view quantity = {}; ///< of Stop::Unbounded
};

/// Both passes over inputs that no check has seen.
/// Returned: what stopped it; the results hold no meaning then
Stopped computePasses(const WorkingInputs& prepared, RunResults& run, AnalysisResults& results);

/// Both passes, with a note of which way every decision went.
Stopped computeNoting(Noting& calc, const WorkingInputs& prepared, RunResults& run,
                      AnalysisResults& results);

/// Computes both passes.
/// Faults: a computation that cannot finish, with the quantity and the input that causes it.
Result<RunResults> computeRun(const WorkingInputs& prepared);

/// The record of results by its given names.
AnalysisResults flat(const WorkingInputs& prepared, const RunResults& run);

/// The record with the stresses of another pass than retreat.
AnalysisResults withStressesOf(const WorkingInputs& prepared, const RunResults& run, int pass);

/// computeRun() and flat() together.
Result<AnalysisResults> ComputeAnalysis(const WorkingInputs& prepared);

/// The pressure arch factor that the analysis uses; it hangs on the inputs alone.
float archFactorUsed(const WorkingInputs& prepared);
/// The same from a record whose angles nobody needs; `frame` is frameOf() that record.
double archFactorUsed(const project::ProjectInput& input, const Frame& frame);

/// Remarks on a finished run that its reader should know of.
std::vector<std::string_view> analysisNotes(const AnalysisResults& results);

} // namespace telvo::engine
