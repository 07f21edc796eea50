// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/AnalysisResults.h"
#include "engine/WorkingInputs.h"

namespace telvo::engine {

/// What both passes share. Units as in AnalysisResults.
template <class N>
struct PanelResultsOf {
    N AMZArea{}, PillarLength{}, PillarAreaAMZ{}, ExtractionRatioAMZ{}, TotalCapacityAMZ{};
    N ActiveWidth{}, ActiveArea{}, ActiveCapacityAMZ{};
    PerPillarOf<N> PillarSkewWidth, PillarArea, MinDimension, MaxDimension;
    PerPillarOf<N> PillarStrength, PillarCapacity;
    PerSideOf<N> BleederStrength, BleederCapacity, BleederLoad, BleederExcess;
    PerSideOf<N> BarrierStrength, BarrierCapacity;
    N ArchFactor{}; // a single-precision value
    N TributaryLoadAMZ{}, AbutmentExtent{}, RFactorFront{};
    PerSideOf<N> RFactorSide; // as the loads take it: 1 stays 1
    PerSideOf<N> SideAbutmentLoad, SideLoadAMZ, BarrierTributaryLoad, BarrierSideAbutmentLoad;
};

/// What one pass has of its own.
template <class N>
struct PassResultsOf {
    N FrontAbutmentLoad{}, LoadedWidth{}, AbutmentHalfWidth{}, FrontLoadAMZ{};
    PerSideOf<N> SlabCornerLoad, FrontOnRemnant;
    PerSideOf<N> RemnantWidth, RemnantStrength, RemnantCapacity, RemnantTotalCapacity, RemnantSF;
    PerSideOf<N> LFBAR, BarrierFrontTransfer, LTRANSREM, LTRANSBAR;
    PerSideOf<N> BarrierArchLoad, BarrierLoad, BarrierSF;
    IndexedArray<N, 1, 4> AMZLoad;
    N TELVOSF{};
};

/// Stresses for the drawings, of the retreat pass.
template <class N>
struct StressesOf {
    PerSideOf<N> BarrierTributaryStress, BarrierFrontStress, BarrierSideStress, BarrierTotalStress;
    PerSideOf<N> ShownRFactorSide; // 0.999 stands for exactly 1
    N TributaryStress{};           // a single-precision value
    IndexedArray<PerPillarOf<N>, FirstSide, SecondSide> SideShare, PillarSideStress;
};

/// The results of one run, by pass.
template <class N>
struct RunResultsOf {
    PanelResultsOf<N> panel;
    IndexedArray<PassResultsOf<N>, Development, Retreat> pass;
    StressesOf<N> stresses;
};

using PanelResults = PanelResultsOf<double>;
using PassResults = PassResultsOf<double>;
using RunResults = RunResultsOf<double>;

/// The flat record by its given names: the only place that knows that a quantity without a pass
/// index is the retreat pass's.
template <class N, class Single>
void makeFlat(const Frame& f, const SymbolsOf<N>& s, const RunResultsOf<N>& run,
              AnalysisResultsOf<N, Single>& r) {
    const PanelResultsOf<N>& panel = run.panel;
    const PassResultsOf<N>& retreat = run.pass[Retreat];
    const auto single = [](const N& x) { return static_cast<Single>(x); };
    r.AnalysisCase = f.AnalysisCase;
    r.NumberPillars = f.NumberPillars;
    r.PanelWidth = s.PanelWidth;
    r.AMZBreadth = s.B;
    r.AMZArea = panel.AMZArea;
    r.PillarLength = panel.PillarLength;
    r.PillarSkewWidth = panel.PillarSkewWidth;
    r.PillarArea = panel.PillarArea;
    r.MinDimension = panel.MinDimension;
    r.MaxDimension = panel.MaxDimension;
    r.PillarAreaAMZ = panel.PillarAreaAMZ;
    r.ExtractionRatioAMZ = panel.ExtractionRatioAMZ;
    r.PillarStrength = panel.PillarStrength;
    r.PillarCapacity = panel.PillarCapacity;
    r.TotalCapacityAMZ = panel.TotalCapacityAMZ;
    r.ActiveWidth = panel.ActiveWidth;
    r.ActiveArea = panel.ActiveArea;
    r.ActiveCapacityAMZ = panel.ActiveCapacityAMZ;
    r.BleederStrength = panel.BleederStrength;
    r.BleederCapacity = panel.BleederCapacity;
    r.BleederLoad = panel.BleederLoad;
    r.BleederExcess = panel.BleederExcess;
    r.BarrierStrength = panel.BarrierStrength;
    r.BarrierCapacity = panel.BarrierCapacity;
    r.ArchFactor = single(panel.ArchFactor);
    r.TributaryLoadAMZ = panel.TributaryLoadAMZ;
    r.AbutmentExtent = panel.AbutmentExtent;
    r.RFactorFront = panel.RFactorFront;
    r.RFactorSide = run.stresses.ShownRFactorSide;
    r.FrontAbutmentLoad = retreat.FrontAbutmentLoad;
    r.SideAbutmentLoad = panel.SideAbutmentLoad;
    r.LoadedWidth = retreat.LoadedWidth;
    r.AbutmentHalfWidth = retreat.AbutmentHalfWidth;
    r.RemnantWidth = retreat.RemnantWidth;
    r.RemnantStrength = retreat.RemnantStrength;
    r.RemnantCapacity = retreat.RemnantCapacity;
    r.RemnantTotalCapacity = retreat.RemnantTotalCapacity;
    r.RemnantSF = retreat.RemnantSF;
    for (int p = Development; p <= Retreat; ++p) {
        const PassResultsOf<N>& pass = run.pass[p];
        r.AbutmentLoadAMZ[p] = {
            {pass.FrontLoadAMZ, panel.SideLoadAMZ[FirstSide], panel.SideLoadAMZ[SecondSide]}};
        r.SlabCornerLoad[p] = pass.SlabCornerLoad;
        r.FrontOnRemnant[p] = pass.FrontOnRemnant;
        r.LFBAR[p] = pass.LFBAR;
        r.BarrierFrontTransfer[p] = pass.BarrierFrontTransfer;
        r.LTRANSREM[p] = pass.LTRANSREM;
        r.LTRANSBAR[p] = pass.LTRANSBAR;
        r.BarrierTributaryLoad[p] = panel.BarrierTributaryLoad;
        r.BarrierSideAbutmentLoad[p] = panel.BarrierSideAbutmentLoad;
        r.BarrierArchLoad[p] = pass.BarrierArchLoad;
        r.BarrierLoad[p] = pass.BarrierLoad;
        r.BarrierSF[p] = pass.BarrierSF;
        r.AMZLoad[p] = pass.AMZLoad;
        r.TELVOSF[p] = pass.TELVOSF;
    }
    r.BarrierTributaryStress = run.stresses.BarrierTributaryStress;
    r.BarrierFrontStress = run.stresses.BarrierFrontStress;
    r.BarrierSideStress = run.stresses.BarrierSideStress;
    r.BarrierTotalStress = run.stresses.BarrierTotalStress;
    r.TributaryStress = single(run.stresses.TributaryStress);
    r.SideShare = run.stresses.SideShare;
    r.PillarSideStress = run.stresses.PillarSideStress;
}

} // namespace telvo::engine
