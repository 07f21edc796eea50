// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/calc.h"
#include "criteria/limits.h"
#include "engine/RunResults.h"
#include "project/advisories.h"
#include "project/units.h"

/// How a run compares with the case-history data base: sixteen flags, no words.
namespace telvo::criteria {

/// Modes in which stability factors are shown and compared.
inline constexpr int HalfEven = 0; // two decimals, a tie goes to the even digit
inline constexpr int Cut = 2;      // cut after two decimals; any other mode leaves the factor

/// A stability factor as it is shown and compared: narrowed to single precision and rounded by
/// `mode`. A factor too large to have decimals is not cut.
template <class N>
TELVO_INLINE N shownFactor(const N& factor, int mode) {
    const N single = toSingle(factor);
    if (mode == HalfEven) return toSingle(hundredths(single));
    if (mode != Cut) return single;
    const N scaled = toSingle(single * 100), size = absolute(scaled), nearest = nearestEven(size);
    const N whole = nearest - select(nearest > size, N(1), N(0));
    constexpr double greatest = 3.4028234663852886e38; // of single precision
    return select(size <= greatest, toSingle(select(scaled < 0, -whole, whole) / 100), single);
}

/// Suggested minimum factor at intermediate depth: 1.5 at 650 ft falling linearly to 1.3 at 1000 ft,
/// rounded as every stability factor is.
/// Given: H  depth of cover in feet
template <class N>
TELVO_INLINE N suggestedFactor(const N& H, int mode) {
    return shownFactor(
        SuggestedSF - SuggestedFall * (H - ShallowLimit) / (DeepLimit - ShallowLimit), mode);
}

/// The factors of a run that the criteria look at.
template <class N>
struct FactorsOf {
    IndexedArray<N, engine::Development, engine::Retreat> panel;
    IndexedArray<engine::PerSideOf<N>, engine::Development, engine::Retreat> barrier;
};

/// Stands for the barrier factor where there is no barrier.
inline constexpr double NoBarrierSF = 10000;

/// What the limits are compared with; depths and widths in feet.
template <class N>
struct FiguresOf {
    N H;             ///< depth of cover; ft
    N panelWidth;    ///< ft
    N barrierSF;     ///< least of the run, unrounded; a factor of 0 counts
    N widthToHeight; ///< mean pillar width over mining height
    N suggestedSF;   ///< at this depth
    N panelLimit;    ///< what the factors of the panel are compared with here
};

/// Given: mode  of the factors, as shownFactor() has it
template <class C>
TELVO_INLINE FiguresOf<Num<C>> figures(C& c, const engine::Frame& f,
                                       const engine::SymbolsOf<Num<C>>& s,
                                       const FactorsOf<Num<C>>& factors, int mode) {
    using N = Num<C>;
    FiguresOf<N> a;
    c.at({});
    const double n = f.NumberPillars;
    a.widthToHeight = c.named("rwh", (s.PanelWidth - n * s.We) / (n * s.h));
    a.H = c.named("Hft", f.english() ? s.H : s.H * project::FeetPerMetre);
    a.panelWidth = f.english() ? s.PanelWidth : s.PanelWidth * project::FeetPerMetre;
    a.suggestedSF = c.named("SFsug", suggestedFactor(a.H, mode));
    a.barrierSF = NoBarrierSF;
    for (int p = engine::Development; p <= engine::Retreat; ++p)
        for (const int k : f.sidesInUse()) {
            c.at({p, k});
            const N& SF = factors.barrier[p][k];
            a.barrierSF = c.choose(Rule::LowestBarrier, s.BarrierWidth[k] != 0 && SF < a.barrierSF,
                                   SF, a.barrierSF);
        }
    a.barrierSF = c.named("SFmin", a.barrierSF);
    // Narrow panels between strong barriers may have less at depth.
    auto excepted = a.panelWidth <= PanelWidthLimit;
    if (f.AnalysisCase >= engine::OneSideGob) excepted = excepted && a.barrierSF >= StrongSF;
    const N atDepth = select(a.H > DeepLimit, toSingle(N(LeastSF)), a.suggestedSF);
    a.panelLimit = select(excepted && a.H > ShallowLimit, atDepth, N(SuggestedSF));
    return a;
}

/// The flags 0 to 15, bit by bit; 4 and 8 are never set.
/// Given: Input  project::ProjectInput or a record of the same fields
/// Notes: 1) at least and at most include the boundary, although the texts of the warnings say
///           "less than" and "greater than".
///        2) flags 0 to 7 hang on depth, factors and gob, 9 to 15 tell inputs that depart from
///           those with which the data base was analyzed.
template <class C, class Input>
TELVO_INLINE BitsOf<Num<C>> flags(C&, const engine::Frame& f, const Input& in,
                                  const FiguresOf<Num<C>>& a, const FactorsOf<Num<C>>& factors,
                                  int mode) {
    using N = Num<C>;
    using engine::ActiveGob, engine::OneSideGob, engine::TwoSideGobs;
    BitsOf<N> raised(0);
    const auto raise = [&](int flag, const Tru<C>& yes) {
        raised = raised | bitWhere(yes, std::uint64_t{1} << flag);
    };
    const bool sideGob = f.AnalysisCase >= OneSideGob;
    const auto shallow = a.H <= ShallowLimit;
    const auto deep = a.H > DeepLimit;
    const auto intermediate = a.H > ShallowLimit && a.H <= DeepLimit;
    const auto activeGob = in.ExtentActiveGob > 0;
    const auto slender = a.widthToHeight < SlenderRatio;
    for (int p = engine::Development; p <= engine::Retreat; ++p) {
        const N SF = shownFactor(factors.panel[p], mode);
        const auto low = SF < a.panelLimit;
        raise(0, low && shallow);
        raise(1, low && intermediate);
        raise(2, low && deep);
        raise(5, SF < StrongSF && slender);
    }
    if (sideGob) raise(3, a.H > ShallowLimit && a.barrierSF < SuggestedSF);
    raise(6, activeGob && a.H > VeryDeepLimit);
    raise(7, activeGob && deep);

    const auto departs = [](const auto& angle) {
        return angle != project::CalibratedAbutmentAngle;
    };
    if (in.AMZ != 1) raise(9, true);
    raise(10, !project::isCalibratedUnitWeight<N>(in.UnitWeight, f.Units));
    raise(11, !project::isCalibratedCoalStrength<N>(in.CoalStrength, f.Units));
    if (f.AnalysisCase >= ActiveGob) raise(12, departs(in.AbutmentAngleActiveGob));
    if (f.AnalysisCase >= OneSideGob) raise(12, departs(in.AbutmentAngleFirstGob));
    if (f.AnalysisCase == TwoSideGobs) {
        raise(12, departs(in.AbutmentAngleSecondGob));
        raise(13, true);
    }
    if (in.Arch != 1) raise(14, true);
    raise(15, in.ArchFactor < 1);
    return raised;
}

} // namespace telvo::criteria
