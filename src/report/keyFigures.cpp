// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/keyFigures.h"

#include "base/numbers.h"

namespace telvo::report {

using namespace engine;

namespace {

/// "1.08 (second side, retreat)"
std::string lowestBarrierFactor(const ReportSource& source) {
    const AnalysisResults& r = source.results;
    int side = 0, pass = 0;
    for (const int k : barrierSides(source))
        for (int p = Development; p <= lastPass(source); ++p)
            if (side == 0 || r.BarrierSF[p][k] < r.BarrierSF[pass][side]) {
                side = k;
                pass = p;
            }
    if (side == 0) return {};
    return factorText(r.BarrierSF[pass][side], source.options) +
           (side == FirstSide ? " (first side, " : " (second side, ") +
           (pass == Development ? "development)" : "retreat)");
}

} // namespace

project::KeyFigures keyFigures(const ReportSource& source) {
    const AnalysisResults& r = source.results;
    project::KeyFigures figures;
    figures.PanelWidth = generalNumber(r.PanelWidth, 10);
    figures.DevelopmentSF = factorText(r.TELVOSF[Development], source.options);
    if (lastPass(source) == Retreat)
        figures.RetreatSF = factorText(r.TELVOSF[Retreat], source.options);
    figures.BarrierSF = lowestBarrierFactor(source);
    return figures;
}

} // namespace telvo::report
