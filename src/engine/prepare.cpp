// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/driver.h"

#include "project/checks.h"

#include <cmath>

namespace telvo::engine {

namespace {

double abutmentAngle(double degrees) {
    return degrees < 90 ? degrees * RadiansPerDegree : SteepestAbutmentAngle;
}

/// A flag of the record as the engine holds it; only 1 means that a row is left.
double rowFlag(std::int16_t flag) {
    return flag == 1 ? 1.0 : 0.0;
}

} // namespace

int analysisCase(int anal, int previousAnalysisCase) {
    if (anal == 4) return OneSideGob;
    return anal >= 0 && anal <= 3 ? anal + 1 : previousAnalysisCase;
}

WorkingInputs workingInputs(const project::ProjectInput& input, std::int16_t units,
                            int previousAnalysisCase) {
    WorkingInputs in;
    in.Source = input;
    in.Units = units;
    in.h = input.EntryHeight;
    in.H = input.DepthCover;
    in.Sc = input.XcutSpacing;
    in.Theta = input.XcutAngle * RadiansPerDegree;
    in.SinTheta = std::sin(in.Theta);
    in.Gamma = input.UnitWeight;
    in.S1 = input.CoalStrength * (units == project::English ? 144 : 1000);
    in.We = input.EntryWidth;
    in.PillarLengthAlong = input.XcutSpacing - input.EntryWidth;
    in.B = input.BreadthAMZ;
    in.NumberEntries = input.NumberEntries;
    in.NumberPillars = project::distanceCount(input);
    for (int i = 1; i <= in.NumberPillars; ++i) {
        in.EntryCenter[i] = input.XcutCenters[i];
        in.PillarGrossWidth[i] = in.EntryCenter[i] - in.We;
        in.PanelWidth += in.EntryCenter[i];
    }
    in.GobExtent = {{input.ExtentActiveGob, input.ExtentFirstGob, input.ExtentSecondGob}};
    in.AbutmentAngle = {{abutmentAngle(input.AbutmentAngleActiveGob),
                         abutmentAngle(input.AbutmentAngleFirstGob),
                         abutmentAngle(input.AbutmentAngleSecondGob)}};
    for (int gob = 1; gob <= 3; ++gob)
        in.AbutmentTangent[gob] = std::tan(in.AbutmentAngle[gob]);
    in.BarrierWidth = {{input.BarrierFirstGob, input.BarrierSecondGob}};
    in.Slabcut = {{input.SlabcutFirstGob, input.SlabcutSecondGob}};
    in.RowLeft = {
        {rowFlag(input.RowA), rowFlag(input.RowB), rowFlag(input.RowC), rowFlag(input.RowD)}};
    in.BleederWidth = {{input.WidthC, input.WidthD}};
    in.ArchAutomatic = input.Arch != 0;
    in.ArchFactorInput = input.ArchFactor;
    in.AnalysisCase = analysisCase(input.Anal, previousAnalysisCase);
    return in;
}

std::variant<WorkingInputs, Refusal> PrepareAnalysis(const project::ProjectInput& input,
                                                     std::int16_t units, int previousAnalysisCase) {
    if (auto refused = project::checkBeforeAnalysis(input)) return *refused;
    return workingInputs(input, units, previousAnalysisCase);
}

} // namespace telvo::engine
