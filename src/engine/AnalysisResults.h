// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/IndexedArray.h"

#include <cstdint>

namespace telvo::engine {

// Indices of the trade.
inline constexpr int Development = 1; // pass p
inline constexpr int Retreat = 2;
inline constexpr int FirstSide = 3;  // side k; also row C
inline constexpr int SecondSide = 4; // also row D
inline constexpr int Tributary = 1;  // load component c; 3 and 4 are the sides
inline constexpr int Front = 2;
inline constexpr int MaxPillars = 9;

// Loading conditions.
inline constexpr int DevelopmentLoad = 1;
inline constexpr int ActiveGob = 2;
inline constexpr int OneSideGob = 3;
inline constexpr int TwoSideGobs = 4;

template <class N>
using PerPillarOf = IndexedArray<N, 1, MaxPillars>;
template <class N>
using PerSideOf = IndexedArray<N, FirstSide, SecondSide>;
using PerPillar = PerPillarOf<double>;
using PerSide = PerSideOf<double>;

/// Every quantity of one run, unrounded. Lengths ft | m, areas ft2 | m2, forces lb | kN, forces per
/// length lb/ft | kN/m, stresses psf | kPa. Quantities without a pass index hold the values of the
/// retreat pass where the passes differ. What does not arise in a case is 0.
/// Made by flat() from the results by pass. N is double, or a pack of cases; Single is the type of
/// what is held in single precision.
template <class N, class Single = N>
struct AnalysisResultsOf {
    using PerPillar = PerPillarOf<N>;
    using PerSide = PerSideOf<N>;
    using PerPassAndSide = IndexedArray<PerSide, Development, Retreat>;
    using PillarsPerSide = IndexedArray<PerPillar, FirstSide, SecondSide>;

    int AnalysisCase = 1;  // loading condition, 1 to 4
    int NumberPillars = 0; // pillars across the panel, 0 to 9

    // Panel geometry
    N PanelWidth{};            // ft | m
    N AMZBreadth{};            // ft | m
    N AMZArea{};               // ft2 | m2
    N PillarLength{};          // between the crosscut ribs, square to the crosscuts; ft | m
    PerPillar PillarSkewWidth; // ft | m
    PerPillar PillarArea;      // ft2 | m2
    PerPillar MinDimension;    // width used for strength; ft | m
    PerPillar MaxDimension;    // length used for strength; ft | m
    N PillarAreaAMZ{};         // ft2 | m2
    N ExtractionRatioAMZ{};    // fraction

    // Strength and capacity
    PerPillar PillarStrength; // psf | kPa
    PerPillar PillarCapacity; // lb | kN
    N TotalCapacityAMZ{};     // lb | kN
    N ActiveWidth{};          // without the outer rows that are left; ft | m
    N ActiveArea{};           // ft2 | m2
    N ActiveCapacityAMZ{};    // lb | kN
    PerSide BleederStrength;  // psf | kPa
    PerSide BleederCapacity;  // lb | kN
    PerSide BleederLoad;      // lb | kN
    PerSide BleederExcess;    // lent to the barrier; lb | kN
    PerSide BarrierStrength;  // psf | kPa
    PerSide BarrierCapacity;  // lb | kN

    // Loads
    Single ArchFactor{};      // pressure arch factor used; fraction
    N TributaryLoadAMZ{};     // lb | kN
    N AbutmentExtent{};       // D; ft | m
    N RFactorFront{};         // fraction
    PerSide RFactorSide;      // fraction
    N FrontAbutmentLoad{};    // lb/ft | kN/m
    PerSide SideAbutmentLoad; // lb/ft | kN/m
    N LoadedWidth{};          // ft | m
    N AbutmentHalfWidth{};    // also the remnant's effective length; ft | m
    IndexedArray<IndexedArray<N, 2, 4>, 1, 2> AbutmentLoadAMZ; // [pass][component]; lb | kN
    PerPassAndSide SlabCornerLoad;                             // lb | kN
    PerPassAndSide FrontOnRemnant;                             // lb | kN

    // Remnant barriers and load transfer
    PerSide RemnantWidth;         // ft | m
    PerSide RemnantStrength;      // psf | kPa
    PerSide RemnantCapacity;      // lb | kN
    PerSide RemnantTotalCapacity; // lb | kN
    PerSide RemnantSF;
    PerPassAndSide LFBAR;                // load on the remnant; lb | kN
    PerPassAndSide BarrierFrontTransfer; // lb | kN
    PerPassAndSide LTRANSREM;            // lb | kN
    PerPassAndSide LTRANSBAR;            // lb | kN

    // Barrier loads
    PerPassAndSide BarrierTributaryLoad;    // lb | kN
    PerPassAndSide BarrierSideAbutmentLoad; // lb | kN
    PerPassAndSide BarrierArchLoad;         // lb | kN
    PerPassAndSide BarrierLoad;             // lb | kN
    PerPassAndSide BarrierSF;

    // Load on the active mining zone and its stability factor
    IndexedArray<IndexedArray<N, 1, 4>, 1, 2> AMZLoad; // cumulative, [pass][component]; 1 and 2
                                                       // hold single-precision values; lb | kN
    IndexedArray<N, 1, 2> TELVOSF;

    // Stresses for the plots
    PerSide BarrierTributaryStress;  // psf | kPa
    PerSide BarrierFrontStress;      // psf | kPa
    PerSide BarrierSideStress;       // psf | kPa
    PerSide BarrierTotalStress;      // psf | kPa
    Single TributaryStress{};        // psf | kPa
    PillarsPerSide SideShare;        // [side][pillar]; fraction
    PillarsPerSide PillarSideStress; // [side][pillar]; psf | kPa

    bool operator==(const AnalysisResultsOf&) const = default;
};

using AnalysisResults = AnalysisResultsOf<double, float>;

} // namespace telvo::engine
