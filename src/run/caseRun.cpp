// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/caseRun.h"

#include "engine/driver.h"
#include "project/automatic.h"

#include <string_view>
#include <utility>

namespace telvo::run {

std::vector<std::string> recordNotes(const project::ProjectCase& current) {
    std::vector<std::string> notes;
    for (auto& stale : project::staleAutomaticValues(current.Input, current.Units))
        notes.push_back(std::move(stale.remark));
    return notes;
}

RunOutcome runCase(const project::ProjectCase& current, int previousAnalysisCase) {
    auto prepared = engine::PrepareAnalysis(current.Input, current.Units, previousAnalysisCase);
    if (auto* refusal = std::get_if<Refusal>(&prepared)) return std::move(*refusal);
    const auto& in = std::get<engine::WorkingInputs>(prepared);

    const auto computed = engine::computeRun(in);
    if (!computed) return computed.fault();

    Run run{current, in, *computed, engine::flat(in, *computed), recordNotes(current)};
    for (const std::string_view note : engine::analysisNotes(run.results))
        run.notes.emplace_back(note);
    return run;
}

} // namespace telvo::run
