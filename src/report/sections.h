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

/// What the pages are written from.
struct ReportSource {
    const project::ProjectCase& current;
    const engine::AnalysisResults& results; ///< engine units
    ReportOptions options;
    std::string_view build; ///< build of the module, for page 0
};

/// Sides (3, 4) that take part in the loading condition and have a barrier.
std::vector<int> barrierSides(const ReportSource& source);
/// Last pass that is shown: there is no retreat without an active gob.
int lastPass(const ReportSource& source);
/// A stability factor as the report prints it, rounded, without leading blanks.
std::string factorText(double factor, const ReportOptions& options);

std::string inputEchoPage(const ReportSource& source);
std::string stabilityFactorPage(const ReportSource& source, const Warnings& warnings);
// Pages 2 to 5 take results in report units.
std::string activeMiningZonePage(const ReportSource& inReportUnits, const ReportUnits& units);
std::string pillarPage(const ReportSource& inReportUnits, const ReportUnits& units);
std::string barrierPage(const ReportSource& inReportUnits, const ReportUnits& units);
std::string remnantPage(const ReportSource& inReportUnits, const ReportUnits& units);

/// All six pages of a run.
ReportPages writeReport(const ReportSource& source, const Warnings& warnings);

/// What is reported of a run.
struct Report {
    Warnings warnings;
    ReportPages pages;
};
Report makeReport(const run::Run& run, const ReportOptions& options = {});

} // namespace telvo::report
