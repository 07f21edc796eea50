// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/ProjectInput.h"
#include "report/ReportWriter.h"
#include "study/questions/designChart.h"
#include "study/questions/find.h"
#include "study/questions/ranges.h"
#include "study/questions/scenarios.h"

#include <optional>
#include <string>
#include <vector>

namespace telvo::study::ui {

/// The page of a table of values, as far as its fields can be read.
struct TableRequest {
    struct Axis {
        Variable variable;
        std::string values; ///< as parseValues() takes it
    };
    std::vector<Axis> axes;
    bool linked = false;
    std::vector<std::string> outcomes; ///< by name
    std::optional<double> level;       ///< of the contour, for the first outcome
    bool suggested = false;            ///< contour at the suggested factor
};

/// What the studies of a case ask, kept beside it. Numbers are in the units of the case.
struct StudySettings {
    std::optional<std::int16_t> units;
    std::vector<RangedInput> ranges; ///< those that the user has changed
    std::vector<Scenario> scenarios;
    std::vector<project::FieldId> scenarioInputs; ///< columns, beside those that a scenario sets
    std::vector<std::string> scenarioOutcomes;    ///< columns beside the factors, by name
    std::vector<std::string> compareFiles;        ///< paths
    std::string compareBase;                      ///< name of a case; any other: the case itself
    bool compareScenarios = true;
    bool compareAll = false; ///< also what is the same in all cases
    // The request of each page; nothing: as it begins.
    std::optional<std::string> tornadoOutcome;
    bool spider = false;
    std::optional<FindRequest> find;
    std::optional<TableRequest> table;
    std::optional<DesignChartRequest> chart;
};

/// The case that the studies are about.
struct StudyCase {
    project::ProjectCase current;
    std::string name; ///< its file without the folder
    int RoundTELVOSF = 0;
    std::string refusal; ///< why it has no studies; empty where it has
    report::ReportOptions options = {};
};

} // namespace telvo::study::ui
