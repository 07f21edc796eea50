// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/ProjectInput.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

/// Valid cases for properties that hold for every case.
namespace telvo::cases {

/// English cases, as many of each loading condition, the same on every machine. Distances in half
/// feet, so that sums are exact in any order; heights, extents and cuts off each other's grid, so
/// that no two of them tie. `AMZ` is 0: the breadth is the record's.
inline std::vector<project::ProjectInput> drawnCases(std::size_t count, unsigned seed = 7) {
    using P = project::ProjectInput;
    std::mt19937 bits(seed);
    const auto pick = [&bits](double low, double step, unsigned values) {
        return low + step * static_cast<double>(bits() % values);
    };
    const auto flag = [&bits] { return static_cast<std::int16_t>(bits() % 2); };
    std::vector<P> made(count);
    for (std::size_t n = 0; n < made.size(); ++n) {
        P& in = made[n];
        in.Anal = static_cast<std::int16_t>(n % 4);
        in.EntryHeight = pick(4.3, 0.5, 10), in.DepthCover = pick(200, 1, 1800);
        in.EntryWidth = pick(16, 0.5, 12), in.XcutSpacing = pick(80, 0.5, 120);
        in.XcutAngle = pick(50, 1, 41);
        in.NumberEntries = static_cast<std::int16_t>(pick(4, 1, 7));
        for (int i = 1; i < in.NumberEntries; ++i)
            in.XcutCenters[i] = pick(50, 0.5, 200);
        in.CoalStrength = pick(300, 10, 90), in.UnitWeight = pick(140, 1, 30);
        in.BreadthAMZ = pick(60, 1, 180), in.Arch = flag(), in.AMZ = 0;
        in.ArchFactor = static_cast<float>(pick(0.28, 0.01, 72));
        for (auto E : {&P::ExtentActiveGob, &P::ExtentFirstGob, &P::ExtentSecondGob})
            in.*E = pick(0.25, 0.5, 3000);
        in.AbutmentAngleActiveGob = pick(10, 1, 30), in.AbutmentAngleFirstGob = pick(10, 1, 30);
        for (auto barrier : {&P::BarrierFirstGob, &P::BarrierSecondGob})
            if (flag()) in.*barrier = pick(5, 0.5, 400);
        for (auto row : {&P::RowA, &P::RowB, &P::RowC, &P::RowD})
            in.*row = flag();
        in.WidthC = static_cast<float>(pick(20, 0.5, 90)), in.WidthD = in.WidthC + 3;
        if (!in.RowA) in.SlabcutFirstGob = std::floor(in.BarrierFirstGob * pick(0, 0.25, 4));
        if (!in.RowB) in.SlabcutSecondGob = std::floor(in.BarrierSecondGob * pick(0, 0.25, 4));
    }
    return made;
}

/// The same panel seen from the other end.
inline project::ProjectInput mirrored(project::ProjectInput in) {
    std::reverse(in.XcutCenters.begin(), in.XcutCenters.begin() + in.NumberEntries - 1);
    std::swap(in.ExtentFirstGob, in.ExtentSecondGob);
    std::swap(in.AbutmentAngleFirstGob, in.AbutmentAngleSecondGob);
    std::swap(in.BarrierFirstGob, in.BarrierSecondGob);
    std::swap(in.SlabcutFirstGob, in.SlabcutSecondGob);
    std::swap(in.RowA, in.RowB), std::swap(in.RowC, in.RowD), std::swap(in.WidthC, in.WidthD);
    return in;
}

inline constexpr double MetresPerFoot = 0.3048;
inline constexpr double KilonewtonsPerPound = 0.0044482216152605;

/// The same panel in metric units, unrounded. Widths C and D stay: the record holds them in single
/// precision, which rounds differently in either unit.
inline project::ProjectInput metricVersion(project::ProjectInput in) {
    using P = project::ProjectInput;
    constexpr double m = MetresPerFoot, kN = KilonewtonsPerPound;
    for (double P::*length :
         {&P::EntryHeight, &P::DepthCover, &P::EntryWidth, &P::XcutSpacing, &P::BreadthAMZ,
          &P::ExtentActiveGob, &P::ExtentFirstGob, &P::ExtentSecondGob, &P::BarrierFirstGob,
          &P::BarrierSecondGob, &P::SlabcutFirstGob, &P::SlabcutSecondGob})
        in.*length *= m;
    for (double& distance : in.XcutCenters)
        distance *= m;
    in.CoalStrength *= 144 * kN / (m * m) / 1000, in.UnitWeight *= kN / (m * m * m);
    return in;
}

} // namespace telvo::cases
