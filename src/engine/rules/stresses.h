// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/rules/loading.h"

/// Stresses for the drawings and figures that only the report has.
namespace telvo::engine::rules {

/// Pillars next to a side gob that its abutment is followed over.
inline constexpr int StressReach = 3;

/// a / b, 0 where b is 0: these values only feed drawings.
template <class C>
TELVO_INLINE Num<C> quotient(C& c, const Num<C>& a, const Num<C>& b) {
    return c.choose(Rule::DivisionByZero, b == 0, 0, a / b);
}

/// Average stresses on barrier k, without the arch and the slab corner.
template <class C>
TELVO_INLINE void
barrierStresses(C& c, const SymbolsOf<Num<C>>& s, const PanelResultsOf<Num<C>>& panel,
                const PassResultsOf<Num<C>>& retreat, int k, StressesOf<Num<C>>& r) {
    using N = Num<C>;
    c.at({Retreat, k});
    const N A = s.B * s.BarrierWidth[k];
    const auto none = !(s.BarrierWidth[k] > 0);
    const auto stress = [&](const N& load) {
        return c.choose(Rule::NoBarrier, none, 0, quotient(c, load, A));
    };
    const N &tributary = panel.BarrierTributaryLoad[k], &front = retreat.BarrierFrontTransfer[k],
            &side = panel.BarrierSideAbutmentLoad[k];
    r.BarrierTributaryStress[k] = c.named("pt", stress(tributary));
    r.BarrierFrontStress[k] = c.named("pf", stress(front));
    r.BarrierSideStress[k] = c.named("ps", stress(side));
    r.BarrierTotalStress[k] = c.named("pb", stress(tributary + front + side));
}

/// Side abutment stress on the three pillars next to side gob k, walked from its edge: each takes
/// the share of the load between its edges of what passes the barrier.
/// Notes: an R-factor of exactly 1 is shown as 0.999, so that the division stays finite.
template <class C>
TELVO_INLINE void sideStresses(C& c, const Frame& f, const SymbolsOf<Num<C>>& s,
                               const PanelResultsOf<Num<C>>& panel,
                               const PassResultsOf<Num<C>>& retreat, int k, StressesOf<Num<C>>& r) {
    using N = Num<C>;
    constexpr double almostOne = 0.999;
    c.at({0, k});
    const N R = c.named("Rs", c.choose(Rule::RFactorAlmostOne, panel.RFactorSide[k] == 1, almostOne,
                                       panel.RFactorSide[k]));
    r.ShownRFactorSide[k] = R;
    const N load = quotient(c, retreat.LTRANSBAR[k] + panel.SideLoadAMZ[k], s.B);
    N distance = s.BarrierWidth[k], before = R;
    for (int step = 1; step <= StressReach && step <= f.NumberPillars; ++step) {
        const int i = k == FirstSide ? step : f.NumberPillars + 1 - step;
        c.at({Retreat, k, i});
        distance = distance + s.EntryCenter[i];
        const N share = c.named("R", rFactor(c, panel.AbutmentExtent, c.named("x", distance)));
        r.SideShare[k][i] = c.named("dR", quotient(c, share - before, 1 - R));
        r.PillarSideStress[k][i] =
            c.named("pp", quotient(c, load * r.SideShare[k][i] * s.Sc, panel.PillarArea[i]));
        before = share;
    }
}

template <class C>
TELVO_INLINE void plotStresses(C& c, const Frame& f, const SymbolsOf<Num<C>>& s,
                               const PanelResultsOf<Num<C>>& panel,
                               const PassResultsOf<Num<C>>& retreat, StressesOf<Num<C>>& r) {
    for (const int k : AllSides) {
        barrierStresses(c, s, panel, retreat, k, r);
        r.ShownRFactorSide[k] = 0;
        for (int i = 1; i <= f.NumberPillars; ++i)
            r.SideShare[k][i] = r.PillarSideStress[k][i] = 0;
    }
    c.at({});
    r.TributaryStress =
        c.named("pa", toSingle(quotient(c, s.Gamma * s.H, 1 - panel.ExtractionRatioAMZ)));
    for (const int k : f.sidesInUse())
        sideStresses(c, f, s, panel, retreat, k, r);
}

} // namespace telvo::engine::rules
