// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/WorkingInputs.h"
#include "explain/Worksheet.h"

#include <string>

namespace telvo::explain {

/// A run while its working is written.
struct Run {
    const report::ReportSource& source;
    const engine::WorkingInputs& in;
    const engine::AnalysisResults& results;
    const engine::AnalysisResults& development; ///< stopped after the development pass
    Worksheet& sheet;

    /// The results as the pass left them.
    const engine::AnalysisResults& after(int pass) const {
        return pass == engine::Development ? development : results;
    }
    /// A front abutment load arises; under development load alone from an active gob that is left
    /// in the inputs.
    bool hasFront() const { return in.AnalysisCase >= engine::ActiveGob || in.GobExtent[1] != 0; }
    /// Symbol of the R-factor by which the loads of a side are shared out.
    std::string sideR(int k) const {
        return results.RFactorSide[k] != development.RFactorSide[k] ? "Ru" : "Rs";
    }
};

/// Load per length of a gob's edge, which two chapters need.
struct GobSymbols {
    std::string_view load, extent, tangent, name;
};
void addGobLoad(Run& run, const At& at, const GobSymbols& symbols, int gob, double extent);

/// The steps of one pass, from the front abutment to the stability factors.
void addPassSteps(Run& run, int pass);

/// Tells every figure of pages 1 to 5 beside its step.
void addPrintedFigures(const report::ReportSource& source, Worksheet& sheet);

} // namespace telvo::explain
