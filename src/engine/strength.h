// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/AnalysisResults.h"
#include "engine/geometry.h"
#include "engine/WorkingInputs.h"

namespace telvo::engine {

/// Unit strength of a rectangular pillar: strength = S1 (0.64 + 0.54 w/h - 0.18 w^2 / (h L)).
/// Empirical strength after the width-to-height ratio, with the gain of a pillar longer than wide.
/// Given:    S1  in situ coal strength (psf | kPa)     h  mining height (ft | m)
///           w   least dimension (ft | m)              L  greatest dimension (ft | m)
/// Returned: unit strength (psf | kPa)
/// Notes:    1) barriers count as infinitely long and drop the third term: barrierStrength().
///           2) zero width is settled by the caller.
double pillarStrength(double S1, double w, double L, double h);

/// Unit strength of a barrier or remnant barrier: strength = S1 (0.64 + 0.54 w/h), 0 when w < h.
/// The barrier is taken as infinitely long, so the length term of pillarStrength() is dropped.
double barrierStrength(double S1, double w, double h);

/// Strength and capacity of every panel pillar and the capacity of all within the active mining
/// zone; a pillar of width 0 has no strength.
void pillarCapacities(const WorkingInputs& in, AnalysisResults& r);

/// Width, area and capacity of the active mining zone without the outer rows that are left.
void activeCapacity(const WorkingInputs& in, const ActiveRows& rows, AnalysisResults& r);

/// Bleeder pillars of row C or D: strength, capacity, tributary load, and the excess that the row
/// lends to the barrier beside it (0 below 0.01).
/// Given: k  3 row C, 4 row D
void bleederRow(const WorkingInputs& in, int k, AnalysisResults& r);

/// Strength and capacity of side barrier k, its bleeder row's excess included.
void barrierCapacity(const WorkingInputs& in, int k, AnalysisResults& r);

/// Panel stability factor of a pass: capacity over the cumulative load of the loading condition;
/// the one-active-section case counts only the pillars between rows A and B.
double panelStabilityFactor(const AnalysisResults& r, int pass);

} // namespace telvo::engine
