// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/driver.h"

#include "engine/faults.h"
#include "engine/geometry.h"
#include "engine/loading.h"
#include "engine/quantities.h"
#include "engine/strength.h"
#include "engine/transfer.h"

namespace telvo::engine {

namespace {

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

std::optional<Stop> barriers(const WorkingInputs& in, AnalysisResults& r) {
    const int p = in.Pass;
    for (const int k : {FirstSide, SecondSide})
        barrierCapacity(in, k, r);
    for (int k = FirstSide; k <= in.AnalysisCase; ++k) {
        if (in.BarrierWidth[k] == 0) continue; // no barrier, nothing that could be handed on
        barrierLoads(in, k, r);
        if (r.BarrierLoad[p][k] == 0)
            return Stop{"BarrierSF", p, k, "the load on the barrier is 0"};
        r.BarrierSF[p][k] = r.BarrierCapacity[k] / r.BarrierLoad[p][k];
        r.LTRANSBAR[p][k] = barrierTransfer(r.BarrierSF[p][k], r.BarrierSideAbutmentLoad[p][k] +
                                                                   r.BarrierArchLoad[p][k]);
    }
    return std::nullopt;
}

/// One pass of the core computation; the order of its stages is that of this function.
std::optional<Stop> computePass(const WorkingInputs& in, AnalysisResults& r) {
    r.RemnantSF = {};

    panelGeometry(in, r);
    pillarCapacities(in, r);
    activeCapacity(in, activeRows(in), r);

    const double loadedArea = in.AnalysisCase == ActiveGob ? r.ActiveArea : r.AMZArea;
    r.TributaryLoadAMZ = in.Gamma * in.H * loadedArea;
    r.AbutmentExtent = abutmentExtent(in.H, in.Units);
    if (r.AbutmentExtent == 0) return Stop{"AbutmentExtent", 0, 0, "it is 0"};
    r.RFactorFront = rFactor(r.AbutmentExtent, in.B);
    for (int k = FirstSide; k <= in.AnalysisCase; ++k)
        r.RFactorSide[k] = sideRFactor(in, k, r.AbutmentExtent);

    frontAbutment(in, r);
    for (const int k : {FirstSide, SecondSide})
        bleederRow(in, k, r);
    sideAbutments(in, r);
    remnants(in, r);
    if (auto stop = barriers(in, r)) return stop;

    cumulativeAMZLoads(in.Pass, r);
    if (r.AMZLoad[in.Pass][in.AnalysisCase] == 0)
        return Stop{"TELVOSF", in.Pass, 0, "the load on the AMZ is 0",
                    !in.ArchAutomatic && in.ArchFactorInput == 0 ? "ArchFactor" : ""};
    r.TELVOSF[in.Pass] = panelStabilityFactor(r, in.Pass);
    // They have no pass of their own: the retreat pass would overwrite those of development.
    if (in.Pass == Retreat) plotStresses(in, r);
    return std::nullopt;
}

} // namespace

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

std::optional<Stop> computePasses(const WorkingInputs& prepared, AnalysisResults& r, int lastPass) {
    r.AnalysisCase = prepared.AnalysisCase;
    r.NumberPillars = prepared.NumberPillars;
    r.ArchFactor = pressureArchFactor(prepared);
    for (int pass = Development; pass <= lastPass; ++pass)
        if (auto stop = computePass(forPass(prepared, pass), r)) return stop;
    return unboundedQuantity(r);
}

Result<AnalysisResults> ComputeAnalysis(const WorkingInputs& prepared) {
    Result<AnalysisResults> run{std::in_place}; // the one that is returned, so never copied
    if (auto fault = impossibleInput(prepared))
        run = *fault;
    else if (const auto stop = computePasses(prepared, run.value()))
        run = faultOf(*stop, prepared);
    return run;
}

std::vector<std::string_view> analysisNotes(const AnalysisResults& results) {
    const auto anyNegative = [](const auto& field) {
        bool negative = false;
        visitNumbers(field, [&](double value) { negative = negative || value < 0; });
        return negative;
    };
    std::vector<std::string_view> notes;
    if (anyNegative(results.FrontOnRemnant))
        notes.push_back("Front abutment over the remnant is negative; check the slab cuts");
    // Slab cuts take from the front load of the AMZ what an active gob may never have brought.
    if (results.AbutmentLoadAMZ[Retreat][Front] < 0)
        notes.push_back(results.FrontAbutmentLoad > 0
                            ? "Front abutment load on the AMZ is negative; check the slab cuts and "
                              "the extent of the active gob"
                            : "Slab cuts without an active gob: no retreat factor is shown, yet "
                              "the warnings count it; check the extent of the active gob");
    if (anyNegative(results.SlabCornerLoad))
        notes.push_back("Front abutment over a slab cut is negative; check the slab cuts and the "
                        "abutment angle of the active gob");
    if (anyNegative(results.BleederStrength))
        notes.push_back("Strength of the bleeder pillars is negative; check the widths of rows C "
                        "and D");
    return notes;
}

} // namespace telvo::engine
