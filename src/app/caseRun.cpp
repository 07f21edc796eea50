// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/caseRun.h"

#include "engine/driver.h"
#include "report/sections.h"

#include <utility>

namespace telvo::app {

RunOutcome runCase(const project::ProjectCase& current, const RunOptions& options) {
    auto prepared =
        engine::PrepareAnalysis(current.Input, current.Units, options.previousAnalysisCase);
    if (auto* refusal = std::get_if<Refusal>(&prepared)) return std::move(*refusal);

    auto computed = engine::ComputeAnalysis(std::get<engine::WorkingInputs>(prepared));
    if (!computed) return computed.fault();

    CaseRun run;
    run.results = *computed;
    run.warnings = report::assessWarnings(current, run.results, options.report);
    if (options.writePages)
        run.pages =
            report::writeReport({current, run.results, options.report, ModuleBuild}, run.warnings);
    run.notes = engine::analysisNotes(run.results);
    return run;
}

} // namespace telvo::app
