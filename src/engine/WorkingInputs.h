// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/IndexedArray.h"
#include "engine/AnalysisResults.h"
#include "engine/Frame.h"
#include "project/ProjectInput.h"

namespace telvo::engine {

/// The numbers of a case in the engine's units and under the symbols of the formulas: stresses psf
/// | kPa, angles by the sines and tangents that they are used by, everything else in the units of
/// the case.
template <class N>
struct SymbolsOf {
    N h{};                 // mining height; ft | m
    N H{};                 // depth of cover; ft | m
    N Sc{};                // crosscut spacing, center to center; ft | m
    N SinTheta{};          // sine of the crosscut angle
    N Gamma{};             // overburden unit weight; pcf | kN/m3
    N S1{};                // in situ coal strength; psf | kPa
    N We{};                // entry width; ft | m
    N PillarLengthAlong{}; // length of the bleeder pillars; ft | m
    N B{};                 // breadth of the active mining zone; ft | m
    PerPillarOf<N> EntryCenter;
    PerPillarOf<N> PillarGrossWidth;
    N PanelWidth{};                        // ft | m
    IndexedArray<N, 1, 3> GobExtent;       // active, first side, second side; ft | m
    IndexedArray<N, 1, 3> AbutmentTangent; // tangents of the abutment angles of the same gobs
    PerSideOf<N> BarrierWidth;             // ft | m
    PerSideOf<N> Slabcut;                  // ft | m
    PerSideOf<N> BleederWidth;             // ft | m
    N ArchFactorInput{};                   // as the case has it, a single-precision value
};

/// Side gob k = 3, 4 stands behind the active gob in the arrays of gobs.
TELVO_INLINE constexpr int gobOfSide(int k) {
    return k - 1;
}

/// One case, ready to be computed.
struct WorkingInputs : Frame, SymbolsOf<double> {
    /// The record that it was prepared from; faults name its fields.
    project::ProjectInput Source;
};

} // namespace telvo::engine
