// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/automatic.h"

#include "base/numbers.h"
#include "project/units.h"

#include <cmath>

namespace telvo::project {

std::optional<double> automaticAMZBreadth(double H, std::int16_t units) {
    if (H < 0) return std::nullopt;
    const double breadth =
        units == English ? 5 * std::sqrt(H) : 5 * std::sqrt(H * FeetPerMetre) / FeetPerMetre;
    if (!std::isfinite(breadth)) return std::nullopt;
    return leadingValue(formatPattern(breadth, "0"));
}

float formArchFactor(float W, float H, std::int16_t units) {
    // A panel width of 0 gives 1; a negative one, half-typed in the form, has no logarithm either.
    if (!(W > 0)) return 1.0F;
    double margin = 80;
    if (units != English) {
        H = static_cast<float>(H * FeetPerMetre);
        W = static_cast<float>(W * FeetPerMetre);
        margin = 262.4671916010498;
    }
    const double h = H;
    const double w = W;
    double F = 0;
    if (h >= 25) F = 1 - 0.28 * std::log(h / w);
    if (h - margin < w) F = 1.0;
    if (F < 0.28) F = 0.28;
    return static_cast<float>(roundHalfEven2(F));
}

} // namespace telvo::project
