// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/rules/geometry.h"
#include "engine/rules/loading.h"
#include "engine/rules/strength.h"
#include "engine/rules/stresses.h"
#include "engine/rules/transfer.h"

/// The method on one screen: the order of its stages.
namespace telvo::engine::rules {

/// What both passes share: geometry, strengths, tributary load, side abutments and what the
/// barriers take of them.
template <class C>
TELVO_INLINE void computePanel(C& c, const Frame& f, const SymbolsOf<Num<C>>& s,
                               PanelResultsOf<Num<C>>& r) {
    using N = Num<C>;
    panelGeometry(c, f, s, r);
    activeWidth(c, f, s, r);
    pillarCapacities(c, f, s, r);
    activeCapacity(c, f, s, r);
    for (const int k : AllSides)
        bleederRow(c, f, s, k, r);
    for (const int k : AllSides)
        barrierCapacity(c, s, k, r);

    c.at({});
    r.ArchFactor = c.named("Fpa", pressureArchFactor(c, f, s));
    r.TributaryLoadAMZ =
        c.named("Lt", s.Gamma * s.H * (f.oneActiveSection() ? r.ActiveArea : r.AMZArea));
    r.AbutmentExtent = c.named("D", abutmentExtent(f, s.H));
    c.demand(Stop::NoAbutmentExtent, r.AbutmentExtent != 0);
    r.RFactorFront = c.named("Rf", rFactor(c, r.AbutmentExtent, s.B));
    for (const int k : AllSides)
        r.RFactorSide[k] = r.SideAbutmentLoad[k] = r.SideLoadAMZ[k] = r.BarrierTributaryLoad[k] =
            r.BarrierSideAbutmentLoad[k] = 0;
    for (const int k : f.sidesInUse()) {
        c.at({0, k});
        const auto none = s.BarrierWidth[k] == 0;
        const N width = s.We / 2 + s.BarrierWidth[k]; // the barrier with half an entry
        r.RFactorSide[k] =
            c.named("Ru", c.choose(Rule::NoBarrier, none, 0, rFactor(c, r.AbutmentExtent, width)));
        const int gob = gobOfSide(k);
        r.SideAbutmentLoad[k] =
            c.named("Ls", abutmentLoad(c, s.Gamma, s.H, s.GobExtent[gob], s.AbutmentTangent[gob]));
        r.SideLoadAMZ[k] = c.named("Las", s.B * r.SideAbutmentLoad[k] * (1 - r.RFactorSide[k]));
        r.BarrierTributaryLoad[k] =
            c.named("Lbt", c.choose(Rule::NoBarrier, none, 0, s.Gamma * s.H * width * s.B));
        r.BarrierSideAbutmentLoad[k] =
            c.named("Lbs", c.choose(Rule::NoBarrier, none, 0,
                                    r.SideAbutmentLoad[k] * r.RFactorSide[k] * s.B));
    }
}

/// What a side that takes no part has of remnants.
template <class N>
TELVO_INLINE void noRemnants(PassResultsOf<N>& r) {
    for (const int k : AllSides)
        r.SlabCornerLoad[k] = r.FrontOnRemnant[k] = r.RemnantWidth[k] = r.RemnantStrength[k] =
            r.RemnantCapacity[k] = r.RemnantTotalCapacity[k] = r.RemnantSF[k] = r.LFBAR[k] =
                r.BarrierFrontTransfer[k] = r.LTRANSREM[k] = 0;
}

/// What the active gob brings: on the AMZ, over the remnants, and through weak remnants into the
/// barriers.
template <class C>
TELVO_INLINE void frontAndRemnants(C& c, const Frame& f, const SymbolsOf<Num<C>>& s,
                                   const PanelResultsOf<Num<C>>& panel, PassResultsOf<Num<C>>& r) {
    using N = Num<C>;
    const N& E = s.GobExtent[1];
    const N& R = panel.RFactorFront;
    r.FrontAbutmentLoad = c.named("Lf", abutmentLoad(c, s.Gamma, s.H, E, s.AbutmentTangent[1]));
    r.LoadedWidth = c.named("Wl", loadedWidth(f, panel.ActiveWidth, s.Slabcut));
    const FrontAbutment<C> front = frontAbutmentOnAMZ(c, s, E, r.LoadedWidth, R);
    noRemnants(r);
    r.AbutmentHalfWidth = front.halfWidth;
    N load = front.load;
    for (const int k : f.sidesInUse()) {
        c.at({Retreat, k});
        r.SlabCornerLoad[k] = c.named("Lc", slabCornerLoad(c, s, s.Slabcut[k], R));
        load = load - r.SlabCornerLoad[k];
    }
    c.at({Retreat});
    r.FrontLoadAMZ = c.named("Laf", load);
    // Only now: the share over the remnants is what the slab corners of all sides leave.
    for (const int k : f.sidesInUse()) {
        c.at({Retreat, k});
        r.FrontOnRemnant[k] =
            c.named("X", c.choose(Rule::FrontGobWider, front.gobWiderThanLoaded, r.FrontLoadAMZ / 2,
                                  s.PanelWidth * r.FrontAbutmentLoad * R / 2 - r.FrontLoadAMZ / 2));
        remnantBarrier(c, f, s, panel, s.Slabcut[k], k, r);
        r.LTRANSREM[k] = c.named(
            "Lrem", remnantTransfer(c, r.RemnantWidth[k], r.RemnantSF[k], r.FrontOnRemnant[k]));
        const N base = c.named("Xf", frontTransferBase(c, s, R, r, k));
        r.BarrierFrontTransfer[k] = c.named("Tf", frontTransfer(c, r.RemnantSF[k], base));
    }
}

/// Development knows no active gob and no slab cuts: every rule of the front gives 0 then.
template <class C>
TELVO_INLINE void noFront(C& c, const Frame& f, PassResultsOf<Num<C>>& r) {
    using N = Num<C>;
    r.FrontAbutmentLoad = r.LoadedWidth = r.AbutmentHalfWidth = r.FrontLoadAMZ = 0;
    if (f.AnalysisCase >= ActiveGob) {
        c.at({Development});
        r.FrontLoadAMZ = c.named("Laf", N(0));
    }
    noRemnants(r);
    for (const int k : f.sidesInUse()) {
        c.at({Development, k});
        r.SlabCornerLoad[k] = c.named("Lc", N(0));
        r.FrontOnRemnant[k] = c.named("X", N(0));
        r.LFBAR[k] = c.named("Lm", N(0));
        r.LTRANSREM[k] = c.named("Lrem", N(0));
        r.BarrierFrontTransfer[k] = c.named("Tf", N(0));
    }
}

/// Loads of barrier k, its stability factor, and what it hands to the AMZ; all 0 without a barrier.
template <class C>
TELVO_INLINE void barrier(C& c, const SymbolsOf<Num<C>>& s, const PanelResultsOf<Num<C>>& panel,
                          int k, PassResultsOf<Num<C>>& r) {
    using N = Num<C>;
    const auto none = s.BarrierWidth[k] == 0;
    const N shed = 1 - panel.ArchFactor; // what the pressure arch takes off the AMZ
    r.BarrierArchLoad[k] =
        c.named("Lba", c.choose(Rule::NoBarrier, none, 0,
                                shed / 2 * (panel.TributaryLoadAMZ + r.FrontLoadAMZ) +
                                    shed * (r.LTRANSREM[k] + panel.SideLoadAMZ[k])));
    const N load = panel.BarrierTributaryLoad[k] + r.BarrierFrontTransfer[k] +
                   panel.BarrierSideAbutmentLoad[k] + r.BarrierArchLoad[k] + r.SlabCornerLoad[k];
    c.demand(Stop::NoBarrierLoad, none || load != 0);
    r.BarrierLoad[k] = c.named("Lb", c.choose(Rule::NoBarrier, none, 0, load));
    r.BarrierSF[k] = c.named(
        "SFb", c.choose(Rule::NoBarrier, none, 0, panel.BarrierCapacity[k] / r.BarrierLoad[k]));
    r.LTRANSBAR[k] = c.named(
        "Ltb", c.choose(Rule::NoBarrier, none, 0,
                        barrierTransfer(c, r.BarrierSF[k],
                                        panel.BarrierSideAbutmentLoad[k] + r.BarrierArchLoad[k])));
}

/// Cumulative load on the AMZ, row by row: tributary, front, first side, second side.
/// Notes: 1) the first two rows are held in single precision.
///        2) LTRANSBAR is added unscaled, everything else times the pressure arch factor.
template <class C>
TELVO_INLINE void cumulativeAMZLoads(C& c, int pass, const PanelResultsOf<Num<C>>& panel,
                                     PassResultsOf<Num<C>>& r) {
    using N = Num<C>;
    const N& share = panel.ArchFactor;
    auto& load = r.AMZLoad;
    c.at({pass});
    load[Tributary] = c.named("Q1", toSingle(share * panel.TributaryLoadAMZ));
    load[Front] = c.named("Q2", toSingle(share * r.FrontLoadAMZ + load[Tributary]));
    for (const int k : AllSides) {
        c.at({pass, k});
        load[k] =
            c.named(k == FirstSide ? "Q3" : "Q4",
                    (r.LTRANSREM[k] + panel.SideLoadAMZ[k]) * share + load[k - 1] + r.LTRANSBAR[k]);
    }
}

/// One pass of the core computation.
template <class C>
TELVO_INLINE void computePass(C& c, const Frame& f, const SymbolsOf<Num<C>>& s,
                              const PanelResultsOf<Num<C>>& panel, int pass,
                              PassResultsOf<Num<C>>& r) {
    using N = Num<C>;
    c.at({pass});
    if (pass == Retreat)
        frontAndRemnants(c, f, s, panel, r);
    else
        noFront(c, f, r);
    for (const int k : AllSides)
        r.LTRANSBAR[k] = r.BarrierArchLoad[k] = r.BarrierLoad[k] = r.BarrierSF[k] = 0;
    for (const int k : f.sidesInUse()) {
        c.at({pass, k});
        barrier(c, s, panel, k, r);
    }
    cumulativeAMZLoads(c, pass, panel, r);
    c.at({pass});
    const N& load = r.AMZLoad[f.AnalysisCase];
    c.demand(Stop::NoAMZLoad, load != 0);
    r.TELVOSF = c.named(
        "SF", (f.oneActiveSection() ? panel.ActiveCapacityAMZ : panel.TotalCapacityAMZ) / load);
}

/// Both passes of a case.
template <class C>
TELVO_INLINE void computeRun(C& c, const Frame& f, const SymbolsOf<Num<C>>& s,
                             RunResultsOf<Num<C>>& run) {
    computePanel(c, f, s, run.panel);
    computePass(c, f, s, run.panel, Development, run.pass[Development]);
    computePass(c, f, s, run.panel, Retreat, run.pass[Retreat]);
}

} // namespace telvo::engine::rules
