// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/questions/scenarios.h"

#include "criteria/criteria.h"
#include "engine/driver.h"
#include "project/automatic.h"
#include "run/caseRun.h"
#include "run/faultWords.h"

#include <algorithm>
#include <cmath>

namespace telvo::study {

using project::Field, project::FieldId;

namespace {

bool sets(const Scenario& scenario, FieldId id) {
    return std::any_of(scenario.set.begin(), scenario.set.end(),
                       [&](const auto& one) { return one.first == id; });
}

ScenarioRow rowOf(std::string name, const project::ProjectCase& current,
                  const std::vector<Outcome>& outcomes, int RoundTELVOSF) {
    ScenarioRow row;
    row.name = std::move(name);
    row.current = current;
    row.outcomes.resize(outcomes.size());
    run::RunOutcome outcome = run::runCase(current);
    if (const auto* refusal = std::get_if<Refusal>(&outcome)) {
        row.message = refusal->message;
    } else if (const auto* fault = std::get_if<Fault>(&outcome)) {
        row.message = faultText(run::inWords(*fault, current.Units));
    } else {
        run::Run& done = std::get<run::Run>(outcome);
        const criteria::Assessment assessment =
            criteria::assess(done.in, current.Input, done.results, RoundTELVOSF);
        row.flags = assessment.flags;
        for (std::size_t i = 0; i < outcomes.size(); ++i)
            if (outcomes[i].isDefined(done.in, current.Input))
                row.outcomes[i] = outcomes[i].of(done.results, done.in, current.Input,
                                                 assessment.figures.panelLimit);
        row.run = std::move(done);
    }
    return row;
}

/// Whether less of it is worse: of factors, strengths and capacities.
bool lessIsWorse(const Outcome& outcome) {
    return outcome.kind() == engine::Kind::Factor ||
           outcome.name().find("Strength") != std::string::npos ||
           outcome.name().find("Capacity") != std::string::npos;
}

} // namespace

project::ProjectCase withScenario(const project::ProjectCase& base, const Scenario& scenario) {
    project::ProjectCase current = base;
    for (const auto& [id, value] : scenario.set)
        project::set(current.Input, id, value);
    // What a scenario enters is not computed any more, unless it says so itself.
    for (const Field field : {Field::BreadthAMZ, Field::ArchFactor})
        if (const Field flag = project::flagOfAutomatic(field);
            sets(scenario, field) && !sets(scenario, flag))
            project::set(current.Input, flag, 0);
    const project::ProjectInput automatic =
        project::withAutomaticValues(current.Input, current.Units);
    for (const Field field : {Field::BreadthAMZ, Field::ArchFactor})
        if (!sets(scenario, field))
            project::set(current.Input, field, project::get(automatic, field));
    return current;
}

Result<Scenarios> scenarios(const project::ProjectCase& base, const std::vector<Scenario>& list,
                            const std::vector<Outcome>& outcomes, int RoundTELVOSF) {
    std::vector<std::string> names;
    for (const Scenario& scenario : list) {
        if (scenario.name.empty()) return Fault{"A scenario needs a name", ""};
        if (std::find(names.begin(), names.end(), scenario.name) != names.end())
            return Fault{"Two scenarios are called \"" + scenario.name + "\"", scenario.name};
        names.push_back(scenario.name);
        for (const auto& [id, value] : scenario.set) {
            if (id.field == Field::Reserved)
                return Fault{"A scenario cannot set " + project::nameOf(id), scenario.name};
            if (!std::isfinite(value))
                return Fault{project::nameOf(id) + " is set to what is no number", scenario.name};
        }
    }
    Scenarios table;
    table.rows.push_back(rowOf({}, base, outcomes, RoundTELVOSF));
    for (const Scenario& scenario : list)
        table.rows.push_back(
            rowOf(scenario.name, withScenario(base, scenario), outcomes, RoundTELVOSF));
    for (std::size_t i = 0; i < outcomes.size(); ++i) {
        std::optional<std::size_t> worst;
        for (std::size_t row = 0; row < table.rows.size(); ++row) {
            const auto& value = table.rows[row].outcomes[i];
            if (!value) continue;
            if (!worst) {
                worst = row;
                continue;
            }
            const double known = *table.rows[*worst].outcomes[i];
            if (lessIsWorse(outcomes[i]) ? *value < known : *value > known) worst = row;
        }
        table.worst.push_back(worst);
    }
    return table;
}

} // namespace telvo::study
