// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/keyFigures.h"

#include "base/numbers.h"
#include "engine/questions.h"
#include "report/sections.h"

namespace telvo::report {

using namespace engine;

namespace {

/// "1.08 (second side, retreat)"
std::string lowestBarrierFactor(const run::Run& run, int rounding) {
    const AnalysisResults& r = run.results;
    int side = 0, pass = 0;
    for (const int k : barrierSides(run.in))
        for (int p = Development; p <= lastPass(run.in); ++p)
            if (side == 0 || r.BarrierSF[p][k] < r.BarrierSF[pass][side]) {
                side = k;
                pass = p;
            }
    if (side == 0) return {};
    return factorText(r.BarrierSF[pass][side], rounding) +
           (side == FirstSide ? " (first side, " : " (second side, ") +
           (pass == Development ? "development)" : "retreat)");
}

} // namespace

project::KeyFigures keyFigures(const run::Run& run, const ReportOptions& options) {
    const AnalysisResults& r = run.results;
    project::KeyFigures figures;
    figures.PanelWidth = generalNumber(r.PanelWidth, 10);
    figures.DevelopmentSF = factorText(r.TELVOSF[Development], options.RoundTELVOSF);
    if (lastPass(run.in) == Retreat)
        figures.RetreatSF = factorText(r.TELVOSF[Retreat], options.RoundTELVOSF);
    figures.BarrierSF = lowestBarrierFactor(run, options.RoundTELVOSF);
    return figures;
}

} // namespace telvo::report
