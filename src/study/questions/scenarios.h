// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "project/inputFields.h"
#include "run/Run.h"
#include "study/Outcome.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// Named sets of changed inputs over one case.
namespace telvo::study {

struct Scenario {
    std::string name;
    /// Any input of the record, options and rows included; the last one of an input counts.
    std::vector<std::pair<project::FieldId, double>> set;
    bool operator==(const Scenario&) const = default;
};

struct ScenarioRow {
    std::string name; ///< empty: the case itself
    project::ProjectCase current;
    std::optional<run::Run> run;                 ///< nothing: not computed
    std::string message;                         ///< then why
    std::vector<std::optional<double>> outcomes; ///< nothing also where the case does not have it
    std::uint16_t flags = 0;
};

struct Scenarios {
    std::vector<ScenarioRow> rows; ///< the case itself first
    /// Per outcome the row that is worst: least of a factor, of a strength and of a capacity, else
    /// greatest; nothing where none has it.
    std::vector<std::optional<std::size_t>> worst;
};

/// A case with a scenario set; automatic values follow, save those that the scenario enters: their
/// flags are taken away.
project::ProjectCase withScenario(const project::ProjectCase& base, const Scenario& scenario);

/// Faults: a name that is empty or comes twice, an input that a scenario cannot set
Result<Scenarios> scenarios(const project::ProjectCase& base, const std::vector<Scenario>& list,
                            const std::vector<Outcome>& outcomes, int RoundTELVOSF = 0);

} // namespace telvo::study
