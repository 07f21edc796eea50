// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/AnalysisResults.h"
#include "engine/WorkingInputs.h"

namespace telvo::engine {

/// Stability factor below which a barrier or remnant hands load on.
inline constexpr double TransferThreshold = 1.5;

/// Remnant of barrier k between side gob and active gob: what the slab cut leaves of the barrier,
/// its load LFBAR, capacity over the effective length, and stability factor.
void remnantBarrier(const WorkingInputs& in, int k, AnalysisResults& r);

/// Load that a remnant hands to the AMZ: (1.5 - SF) 0.67 X for SF <= 1.5, all of X when the slab
/// cut took the whole barrier; at most X, also when X is negative.
/// Given: width  remnant width (ft | m)   SF  its stability factor   X  front abutment over it
/// Notes: kept different from barrierTransfer(), which has no 0.67 and a lower bound, on purpose.
double remnantTransfer(double width, double SF, double X);

/// Front abutment that moves into a barrier whose remnant is weak: (1.5 - SF) 0.67 X below SF 1.5.
/// Given: SF  stability factor of the remnant   X  the base of frontTransferBase()
double frontTransfer(double SF, double X);

/// Front abutment over barrier k and half an entry, less the slab corner; 0 without a barrier.
double frontTransferBase(const WorkingInputs& in, int k, const AnalysisResults& r);

/// Load that a barrier hands to the AMZ: (1.5 - SF) X from SF 0.5 to 1.5, nothing above, all of X
/// below (the linear rule would give more).
/// Notes: 0.67 does not apply here, unlike in remnantTransfer(), on purpose.
double barrierTransfer(double SF, double X);

/// Stresses for the plots: average stresses on the barriers, tributary stress on the pillars, and
/// the side abutment stress on the three pillars next to each side gob, walked from its edge.
/// Notes: 1) an R-factor of exactly 1 is stored as 0.999, so that the division stays finite.
///        2) a division by zero gives 0: these values only feed drawings.
void plotStresses(const WorkingInputs& in, AnalysisResults& r);

} // namespace telvo::engine
