// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/caseRun.h"

#include "engine/driver.h"
#include "project/automatic.h"
#include "report/sections.h"

#include <utility>

namespace telvo::app {

std::vector<std::string> recordNotes(const project::ProjectCase& current) {
    std::vector<std::string> notes;
    for (auto& stale : project::staleAutomaticValues(current.Input, current.Units))
        notes.push_back(std::move(stale.remark));
    return notes;
}

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
    run.notes = recordNotes(current);
    for (const std::string_view note : engine::analysisNotes(run.results))
        run.notes.emplace_back(note);
    return run;
}

} // namespace telvo::app
