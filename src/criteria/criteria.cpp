// SPDX-License-Identifier: GPL-3.0-or-later
#include "criteria/criteria.h"

#include "engine/driver.h"

namespace telvo::criteria {

Assessment assess(const project::ProjectCase& current, const engine::AnalysisResults& results,
                  int mode) {
    engine::WorkingInputs in =
        engine::workingInputs(current.Input, current.Units, results.AnalysisCase);
    in.AnalysisCase = results.AnalysisCase; // the results are what is assessed
    in.PanelWidth = results.PanelWidth;
    const FactorsOf<double> factors{results.TELVOSF, results.BarrierSF};
    Scalar calc;
    Assessment a;
    a.figures = figures<Scalar>(calc, in, in, factors, mode);
    a.flags = static_cast<std::uint16_t>(
        flags<Scalar>(calc, in, current.Input, a.figures, factors, mode));
    return a;
}

} // namespace telvo::criteria
