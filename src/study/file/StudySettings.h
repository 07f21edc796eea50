// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/ProjectInput.h"
#include "study/file/runStudy.h"
#include "study/file/Study.h"

#include <optional>
#include <string>
#include <vector>

namespace telvo::study {

/// A table of values as it is entered.
struct TableRequest {
    struct Axis {
        Variable variable;
        std::string values; ///< as parseValues() takes it
    };
    std::vector<Axis> axes;
    bool linked = false;
    std::vector<std::string> outcomes; ///< by name; none: the factors of the case
    std::optional<double> level;       ///< of the contour, for the first outcome
    bool suggested = false;            ///< contour at the suggested factor
};

/// What the studies of one case ask, one of each kind. Numbers are in the units of the case.
struct StudySettings {
    std::vector<RangedInput> ranges; ///< those that the user has changed
    std::vector<Scenario> scenarios;
    std::vector<project::FieldId> scenarioInputs; ///< columns, beside those that a scenario sets
    std::vector<std::string> scenarioOutcomes;    ///< columns beside the factors, by name
    std::vector<std::string> compareFiles;        ///< paths
    /// Rows and runs of this session; they are in no file.
    std::vector<NamedCase> compareCases;
    std::string compareBase; ///< name of a case; any other: the case itself
    bool compareScenarios = true;
    bool compareAll = false; ///< also what is the same in all cases
    // The request of each page; nothing: as it begins.
    std::optional<std::string> tornadoOutcome;
    bool spider = false;
    std::optional<FindRequest> find;
    std::optional<TableRequest> table;
    std::optional<DesignChartRequest> chart;
    std::optional<AskedUncertainty> uncertainty; ///< limits and scatter, of two pages
    std::optional<AskedFragility> shareCurve;    ///< its scatter is that of `uncertainty`
};

/// Scatter and limits for the share over a variable, which does not scatter itself.
AskedUncertainty scatterWithout(AskedUncertainty asked, const Variable& over);

/// Where a study file lies and what it is of.
struct StudyPlace {
    const project::ProjectCase& base;
    std::string caseFile; ///< relative to the study
    std::string folder;   ///< of the study
    int RoundTELVOSF = 0;
};

/// The studies that settings ask for, in the order of a file; none where all is as it begins.
std::vector<Study> studiesOf(const StudySettings& settings, const StudyPlace& place);

/// Takes what a study asks into settings, in the place of what they asked of its kind.
/// Given: folder  of the study file
void takeStudy(StudySettings& settings, const Study& study, const std::string& folder);

/// Settings of a case that was converted to the other unit system. Inputs are rounded as those of
/// the case are, to two decimals; steps of an axis stay steps where they can.
/// Given: units  that the settings are in
StudySettings convertedSettings(const StudySettings& settings, std::int16_t units);

} // namespace telvo::study
