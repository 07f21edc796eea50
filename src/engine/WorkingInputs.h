// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/IndexedArray.h"
#include "engine/AnalysisResults.h"
#include "project/ProjectInput.h"

#include <cstdint>

namespace telvo::engine {

/// pi / 180 as this system has always rounded it; every angle goes through it.
inline constexpr double RadiansPerDegree = 0.017453292519943278;
/// 89.9 degrees; stands for every abutment angle of 90 degrees and more, to keep its tangent
/// finite.
inline constexpr double SteepestAbutmentAngle = 1.5690509975429008;

/// The inputs of a run in the engine's units and under the symbols of the formulas: stresses psf |
/// kPa, angles radians, everything else in the units of the case.
struct WorkingInputs {
    std::int16_t Units = 0;       // 0 English, else metric
    double h = 0;                 // mining height; ft | m
    double H = 0;                 // depth of cover; ft | m
    double Sc = 0;                // crosscut spacing, center to center; ft | m
    double Theta = 0;             // crosscut angle; radians
    double SinTheta = 0;          // its sine
    double Gamma = 0;             // overburden unit weight; pcf | kN/m3
    double S1 = 0;                // in situ coal strength; psf | kPa
    double We = 0;                // entry width; ft | m
    double PillarLengthAlong = 0; // length of the bleeder pillars; ft | m
    double B = 0;                 // breadth of the active mining zone; ft | m
    int NumberEntries = 0;
    int NumberPillars = 0;
    PerPillar EntryCenter;                      // ft | m
    PerPillar PillarGrossWidth;                 // ft | m
    double PanelWidth = 0;                      // ft | m
    IndexedArray<double, 1, 3> GobExtent;       // active, first side, second side; ft | m
    IndexedArray<double, 1, 3> AbutmentAngle;   // of the same gobs; radians
    IndexedArray<double, 1, 3> AbutmentTangent; // their tangents
    PerSide BarrierWidth;                       // ft | m
    PerSide Slabcut;                            // ft | m
    IndexedArray<double, 1, 4> RowLeft;         // rows A to D, 1.0 when left
    PerSide BleederWidth;                       // ft | m
    bool ArchAutomatic = true;
    float ArchFactorInput = 1.0F;
    int AnalysisCase = 1;
    int Pass = Development;
    /// The record the run was prepared from; faults name its fields.
    project::ProjectInput Source;

    bool rowLeft(int row) const { return RowLeft[row] == 1.0; }
    /// Side gob k = 3, 4 stands behind the active gob in the arrays of gobs.
    static constexpr int gobOfSide(int k) { return k - 1; }
};

} // namespace telvo::engine
