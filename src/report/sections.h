// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/AnalysisResults.h"
#include "project/ProjectInput.h"
#include "report/ReportWriter.h"
#include "report/warnings.h"
#include "run/Run.h"

#include <string>
#include <string_view>
#include <vector>

/// The six pages, one function each. Header lines, labels and footnotes are fixed texts; the values
/// are right-aligned under their header words.
namespace telvo::report {

/// Unit labels of forces and stresses on pages 2 to 5, each with its leading blank and parentheses.
struct ReportUnits {
    std::string force;          // " (tons)", " (lbs)" or " (kN)"
    std::string forcePerLength; // " (tons/ft)", " (lbs/ft)" or " (kN/m)"
    std::string stress;         // " (psi)", " (psf)" or " (kPa)"
    double forceDivisor = 1;    // what the engine's forces are divided by
};

/// Fixes the units in which an English report prints forces and stresses: brings them into a copy
/// of the results, so that the results of the run stay in lb and psf. Metric values stay.
ReportUnits fixReportUnits(engine::AnalysisResults& copy, std::int16_t units,
                           const ReportOptions& options);

/// A stability factor as the report prints it, rounded by `RoundTELVOSF`, without leading blanks.
std::string factorText(double factor, int RoundTELVOSF);

/// Page 0, which needs no run.
/// Given: analysisCase    loading condition that the analysis takes, 1 to 4
///        archFactorUsed  pressure arch factor of the analysis; 0 where that is not known
std::string inputEchoPage(const project::ProjectCase& current, int analysisCase,
                          float archFactorUsed);

/// What is reported of a run.
struct Report {
    Warnings warnings;
    ReportPages pages;
    std::vector<Figure> figures; ///< of the pages, in the order of reading
};
Report makeReport(const run::Run& run, const ReportOptions& options = {});

} // namespace telvo::report
