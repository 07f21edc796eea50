// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/driver.h"
#include "engine/quantities.h"

#include <gtest/gtest.h>

namespace telvo::engine {

using project::English, project::Metric, project::ProjectInput;

/// Four pillars of 80 by 100 ft, with inputs that give round numbers: H = 400 has D = 9.3 x 20 =
/// 186, so B = 93 and barrier + half an entry = 93 have R = 1 - (1/2)^3 = 0.875; tan 45 = 1.
inline ProjectInput panel400(std::int16_t anal) {
    ProjectInput in;
    in.EntryHeight = 8, in.DepthCover = 400, in.EntryWidth = 20, in.XcutSpacing = 120;
    in.NumberEntries = 5, in.XcutCenters = {{100, 100, 100, 100}};
    in.CoalStrength = 300, in.UnitWeight = 150, in.BreadthAMZ = 93, in.Anal = anal;
    in.Arch = 0, in.ArchFactor = 0.5F, in.RowC = 1, in.WidthC = 40;
    in.AbutmentAngleActiveGob = in.AbutmentAngleFirstGob = in.AbutmentAngleSecondGob = 45;
    in.ExtentActiveGob = 200, in.ExtentFirstGob = 1000, in.ExtentSecondGob = 400;
    in.BarrierFirstGob = 83, in.SlabcutFirstGob = 20, in.BarrierSecondGob = 36.5;
    return in;
}

inline WorkingInputs prepared(const ProjectInput& input, std::int16_t units = English) {
    const auto outcome = PrepareAnalysis(input, units);
    if (const auto* in = std::get_if<WorkingInputs>(&outcome)) return *in;
    ADD_FAILURE() << "refused: " << std::get<Refusal>(outcome).message;
    return {};
}

inline AnalysisResults computed(const ProjectInput& input, std::int16_t units = English) {
    const auto run = ComputeAnalysis(prepared(input, units));
    if (run) return run.value();
    ADD_FAILURE() << faultText(run.fault());
    return {};
}

/// Quantities held in single precision or following from such: three units in the last place.
inline double tolerance(std::string_view name) {
    const bool single =
        name == "AMZLoad" || name == "TELVOSF" || name == "ArchFactor" || name == "TributaryStress";
    return single ? 2e-7 : 1e-9;
}

} // namespace telvo::engine
