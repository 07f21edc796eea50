// SPDX-License-Identifier: GPL-3.0-or-later
#include "criteria/criteria.h"

namespace telvo::criteria {

Assessment assess(const engine::WorkingInputs& in, const project::ProjectInput& input,
                  const engine::AnalysisResults& results, int mode) {
    const FactorsOf<double> factors{results.TELVOSF, results.BarrierSF};
    Scalar calc;
    Assessment a;
    a.figures = figures<Scalar>(calc, in, in, factors, mode);
    a.flags = static_cast<std::uint16_t>(flags<Scalar>(calc, in, input, a.figures, factors, mode));
    return a;
}

} // namespace telvo::criteria
