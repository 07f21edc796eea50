// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace telvo::project {

// Conversion of case data: English value = metric value x factor.
inline constexpr double FeetPerMetre = 3.280839895013123;
inline constexpr double PsiPerMPa = 145.0377;
inline constexpr double PcfPerKilonewtonPerCubicMetre = 6.3663022639200495;

// Within English units.
inline constexpr double PoundsPerTon = 2000;
inline constexpr double PsiPerPsf = 0.006944444444444444; // one 144th

} // namespace telvo::project
