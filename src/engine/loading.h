// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/AnalysisResults.h"
#include "engine/WorkingInputs.h"

namespace telvo::engine {

/// Panel width as the rule of the pressure arch factor has it: summed in single precision; ft | m.
float archPanelWidth(const WorkingInputs& in);

/// Pressure arch factor of a run: the entered one, or Fpa = 1 - 0.28 ln(H / W) from 0.28 to 1, with
/// 1 where H - 80 < W; two decimals.
/// Given:    the depth H and the panel width W of archPanelWidth()
/// Notes:    1) 25 and 80 are compared in the length unit of the case, metric cases included.
///           2) the parameter form shows a factor by its own rule, project::formArchFactor(); the
///              two are kept different on purpose.
float pressureArchFactor(const WorkingInputs& in);

/// Extent of the abutment load from a gob's edge: D = 9.3 sqrt(H), H in feet. A case in unit system
/// 1 turns its depth into feet (single precision) and the extent back into metres; any other
/// nonzero system, metric elsewhere, keeps the plain formula.
double abutmentExtent(double H, std::int16_t units);

/// Share of an abutment load that falls within distance x of the gob's edge:
/// R = 1 - ((D - x) / D)^3, at most 1.
double rFactor(double D, double x);

/// Abutment load per unit length of gob edge, the overburden that leans over from the gob.
/// Given:    E     extent of the gob (ft | m)            t     tangent of the abutment angle
///           H     depth of cover (ft | m)               Gamma unit weight (pcf | kN/m3)
/// Returned: subcritical gob (E/2 <= H t, tie included): Gamma (H E/2 - E^2 / (8 t));
///           supercritical: Gamma H^2 t / 2 (lb/ft | kN/m)
double abutmentLoad(double Gamma, double H, double E, double t);

/// Width over which the front abutment of the active gob loads the section: the active width, and
/// the slab cuts of the sides that take part.
double loadedWidth(const WorkingInputs& in, double activeWidth);

/// Volume of overburden over the panel end that the front abutment brings onto the AMZ.
struct FrontAbutment {
    double load = 0;                 ///< lb | kN
    double halfWidth = 0;            ///< half-width of the corner volumes; ft | m
    bool gobWiderThanLoaded = false; ///< the branch E > Wl was taken
    bool fullHeight = false;         ///< gob and loaded width reach beyond the abutment angle
    // What the load is the sum of; a volume that the branch does not have is 0.
    double z1 = 0, z2 = 0; ///< heights of the blocks and of the wedges below them; ft | m
    double P1 = 0, P2 = 0, P3 = 0, P4 = 0; ///< weights of the volumes; lb | kN
};
/// Given: Wl  loaded width (ft | m)   R  R-factor of the front abutment; the active gob of `in`
FrontAbutment frontAbutmentOnAMZ(const WorkingInputs& in, double Wl, double R);

/// Part of the front abutment over the slab cut of barrier k, which the barrier takes off the AMZ.
double slabCornerLoad(const WorkingInputs& in, int k, double R);

/// Front abutment over the remnant barrier of a side; all its quantities are of one pass.
double frontOnRemnant(double panelWidth, double frontAbutmentLoad, double R, double frontOnAMZ,
                      bool gobWiderThanLoaded);

/// R-factor of side barrier k, 0 without a barrier; the barrier counts with half an entry.
double sideRFactor(const WorkingInputs& in, int k, double D);

/// Tributary, side abutment and pressure arch load of barrier k and their total, with what slab cut
/// and weak remnant bring from the front.
void barrierLoads(const WorkingInputs& in, int k, AnalysisResults& r);

/// Cumulative load on the AMZ, row by row: tributary, front, first side, second side.
/// Notes: 1) the first two rows are held in single precision.
///        2) LTRANSBAR is added unscaled, everything else times the pressure arch factor.
void cumulativeAMZLoads(int pass, AnalysisResults& r);

} // namespace telvo::engine
