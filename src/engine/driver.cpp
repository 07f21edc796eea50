// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/driver.h"

#include "base/numbers.h"
#include "engine/faults.h"
#include "engine/geometry.h"
#include "engine/loading.h"
#include "engine/strength.h"
#include "engine/transfer.h"
#include "project/checks.h"

#include <algorithm>
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

/// The inputs of one pass: development knows no active gob and no slab cuts.
WorkingInputs forPass(const WorkingInputs& prepared, int pass) {
    WorkingInputs in = prepared;
    in.Pass = pass;
    if (pass == Development) {
        in.GobExtent[1] = 0;
        in.Slabcut[FirstSide] = 0;
        in.Slabcut[SecondSide] = 0;
    }
    return in;
}

void frontAbutment(const WorkingInputs& in, AnalysisResults& r) {
    const int p = in.Pass;
    r.FrontAbutmentLoad = abutmentLoad(in.Gamma, in.H, in.GobExtent[1], in.AbutmentTangent[1]);
    r.LoadedWidth = loadedWidth(in, r.ActiveWidth);
    const FrontAbutment front = frontAbutmentOnAMZ(in, r.LoadedWidth, r.RFactorFront);
    r.AbutmentHalfWidth = front.halfWidth;
    r.AbutmentLoadAMZ[p][Front] = front.load;
    for (int k = FirstSide; k <= in.AnalysisCase; ++k) {
        r.SlabCornerLoad[p][k] = slabCornerLoad(in, k, r.RFactorFront);
        r.AbutmentLoadAMZ[p][Front] -= r.SlabCornerLoad[p][k];
    }
    // Only now: the share over the remnants is what the slab corners of all sides leave.
    for (int k = FirstSide; k <= in.AnalysisCase; ++k)
        r.FrontOnRemnant[p][k] =
            frontOnRemnant(in.PanelWidth, r.FrontAbutmentLoad, r.RFactorFront,
                           r.AbutmentLoadAMZ[p][Front], front.gobWiderThanLoaded);
}

void sideAbutments(const WorkingInputs& in, AnalysisResults& r) {
    for (int k = FirstSide; k <= in.AnalysisCase; ++k) {
        const int gob = WorkingInputs::gobOfSide(k);
        r.SideAbutmentLoad[k] =
            abutmentLoad(in.Gamma, in.H, in.GobExtent[gob], in.AbutmentTangent[gob]);
        r.AbutmentLoadAMZ[in.Pass][k] = in.B * r.SideAbutmentLoad[k] * (1 - r.RFactorSide[k]);
    }
}

void remnants(const WorkingInputs& in, AnalysisResults& r) {
    const int p = in.Pass;
    for (int k = FirstSide; k <= in.AnalysisCase; ++k) {
        remnantBarrier(in, k, r);
        r.LTRANSREM[p][k] =
            remnantTransfer(r.RemnantWidth[k], r.RemnantSF[k], r.FrontOnRemnant[p][k]);
        r.BarrierFrontTransfer[p][k] = frontTransfer(r.RemnantSF[k], frontTransferBase(in, k, r));
    }
}

std::optional<Fault> barriers(const WorkingInputs& in, AnalysisResults& r) {
    const int p = in.Pass;
    for (const int k : {FirstSide, SecondSide})
        barrierCapacity(in, k, r);
    for (int k = FirstSide; k <= in.AnalysisCase; ++k) {
        if (in.BarrierWidth[k] == 0) continue; // no barrier, nothing that could be handed on
        barrierLoads(in, k, r);
        if (r.BarrierLoad[p][k] == 0) return zeroBarrierLoad(in, k);
        r.BarrierSF[p][k] = r.BarrierCapacity[k] / r.BarrierLoad[p][k];
        r.LTRANSBAR[p][k] = barrierTransfer(r.BarrierSF[p][k], r.BarrierSideAbutmentLoad[p][k] +
                                                                   r.BarrierArchLoad[p][k]);
    }
    return std::nullopt;
}

/// One pass of the core computation; the order of its stages is that of this function.
std::optional<Fault> computePass(const WorkingInputs& in, AnalysisResults& r) {
    r.RemnantSF = {};

    panelGeometry(in, r);
    pillarCapacities(in, r);
    activeCapacity(in, activeRows(in), r);

    const double loadedArea = in.AnalysisCase == ActiveGob ? r.ActiveArea : r.AMZArea;
    r.TributaryLoadAMZ = in.Gamma * in.H * loadedArea;
    r.AbutmentExtent = abutmentExtent(in.H, in.Units);
    r.RFactorFront = rFactor(r.AbutmentExtent, in.B);
    for (int k = FirstSide; k <= in.AnalysisCase; ++k)
        r.RFactorSide[k] = sideRFactor(in, k, r.AbutmentExtent);

    frontAbutment(in, r);
    for (const int k : {FirstSide, SecondSide})
        bleederRow(in, k, r);
    sideAbutments(in, r);
    remnants(in, r);
    if (auto fault = barriers(in, r)) return fault;

    cumulativeAMZLoads(in.Pass, r);
    if (r.AMZLoad[in.Pass][in.AnalysisCase] == 0) return zeroAMZLoad(in);
    r.TELVOSF[in.Pass] = panelStabilityFactor(r, in.Pass);
    plotStresses(in, r);
    return std::nullopt;
}

} // namespace

int analysisCase(int anal, int previousAnalysisCase) {
    if (anal == 4) return OneSideGob;
    return anal >= 0 && anal <= 3 ? anal + 1 : previousAnalysisCase;
}

std::variant<WorkingInputs, Refusal> PrepareAnalysis(const project::ProjectInput& input,
                                                     std::int16_t units, int previousAnalysisCase) {
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
    in.NumberPillars = std::clamp(input.NumberEntries - 1, 0, MaxPillars);
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
    if (auto refused = project::checkBeforeAnalysis(input)) return *refused;
    return in;
}

Result<AnalysisResults> ComputeAnalysis(const WorkingInputs& prepared) {
    if (auto fault = impossibleInput(prepared)) return *fault;
    Result<AnalysisResults> run{AnalysisResults{}};
    AnalysisResults& r = run.value();
    r.AnalysisCase = prepared.AnalysisCase;
    r.NumberPillars = prepared.NumberPillars;
    r.ArchFactor = pressureArchFactor(prepared);
    for (const int pass : {Development, Retreat})
        if (auto fault = computePass(forPass(prepared, pass), r)) return *fault;
    if (auto fault = unboundedQuantity(prepared, r)) return *fault;
    return run;
}

std::vector<std::string_view> analysisNotes(const AnalysisResults& results) {
    const auto negative = [](const PerSide& sides) {
        return sides[FirstSide] < 0 || sides[SecondSide] < 0;
    };
    if (std::none_of(results.FrontOnRemnant.begin(), results.FrontOnRemnant.end(), negative))
        return {};
    return {"Front abutment over the remnant is negative; check the slab cuts"};
}

} // namespace telvo::engine
