// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/calc.h"
#include "engine/RunResults.h"

/// Strength of pillars and barriers and what they can carry.
namespace telvo::engine::rules {

/// Unit strength of a rectangular pillar: strength = S1 (0.64 + 0.54 w/h - 0.18 w^2 / (h L)).
/// Empirical strength after the width-to-height ratio, with the gain of a pillar longer than wide.
/// Given:    S1  in situ coal strength (psf | kPa)     h  mining height (ft | m)
///           w   least dimension (ft | m)              L  greatest dimension (ft | m)
/// Returned: unit strength (psf | kPa)
/// Notes:    1) barriers count as infinitely long and drop the third term: barrierStrength().
///           2) zero width is settled by the caller.
template <class N>
TELVO_INLINE N pillarStrength(const N& S1, const N& w, const N& L, const N& h) {
    return S1 * (0.64 + 0.54 * w / h - 0.18 * square(w) / (h * L));
}

/// Unit strength of a barrier or remnant barrier: strength = S1 (0.64 + 0.54 w/h), 0 when w < h.
/// The barrier is taken as infinitely long, so the length term of pillarStrength() is dropped.
/// Given: rule  BarrierTooNarrow or RemnantTooNarrow
template <class C>
TELVO_INLINE Num<C> barrierStrength(C& c, Rule rule, const Num<C>& S1, const Num<C>& w,
                                    const Num<C>& h) {
    return c.choose(rule, w < h, 0, S1 * (0.64 + 0.54 * w / h));
}

/// Strength and capacity of every panel pillar and the capacity of all within the active mining
/// zone; a pillar of width 0 has no strength.
template <class C>
TELVO_INLINE void pillarCapacities(C& c, const Frame& f, const SymbolsOf<Num<C>>& s,
                                   PanelResultsOf<Num<C>>& r) {
    using N = Num<C>;
    N capacities = 0;
    for (int i = 1; i <= f.NumberPillars; ++i) {
        if (f.EqualPillars && i > 1) {
            r.PillarStrength[i] = r.PillarStrength[1];
            r.PillarCapacity[i] = r.PillarCapacity[1];
            capacities = capacities + r.PillarCapacity[1];
            continue;
        }
        c.at({0, 0, i});
        const N& w = r.MinDimension[i];
        r.PillarStrength[i] =
            c.named("s", c.choose(Rule::NoPillarWidth, w == 0, 0,
                                  pillarStrength(s.S1, w, r.MaxDimension[i], s.h)));
        r.PillarCapacity[i] = c.named("K", r.PillarStrength[i] * r.PillarArea[i]);
        capacities = capacities + r.PillarCapacity[i];
    }
    c.at({});
    r.TotalCapacityAMZ = c.named("Kt", capacities * s.B / s.Sc);
}

/// Capacity within the active mining zone of the pillars between the outer rows that are left.
template <class C>
TELVO_INLINE void activeCapacity(C& c, const Frame& f, const SymbolsOf<Num<C>>& s,
                                 PanelResultsOf<Num<C>>& r) {
    using N = Num<C>;
    N capacities = 0;
    for (int i = f.firstActivePillar(); i <= f.lastActivePillar(); ++i)
        capacities = capacities + r.PillarCapacity[i];
    c.at({});
    r.ActiveCapacityAMZ = c.named("Ka", capacities * s.B / s.Sc);
}

/// Bleeder pillars of row C or D: strength, capacity, tributary load, and the excess that the row
/// lends to the barrier beside it over the breadth: (Kr - Tr) B / Sc, nothing below 0.01.
/// Given: k  3 row C, 4 row D
template <class C>
TELVO_INLINE void bleederRow(C& c, const Frame& f, const SymbolsOf<Num<C>>& s, int k,
                             PanelResultsOf<Num<C>>& r) {
    using N = Num<C>;
    r.BleederStrength[k] = r.BleederCapacity[k] = r.BleederLoad[k] = r.BleederExcess[k] = 0;
    if (!f.rowLeft(k)) return;
    c.at({0, k});
    const N& W = s.BleederWidth[k];
    r.BleederStrength[k] = c.named("sr", pillarStrength(s.S1, W, s.PillarLengthAlong, s.h));
    r.BleederCapacity[k] = c.named("Kr", W * r.BleederStrength[k] * s.PillarLengthAlong);
    r.BleederLoad[k] = c.named("Tr", (s.We + W) * s.Sc * s.H * s.Gamma);
    const N excess = (r.BleederCapacity[k] - r.BleederLoad[k]) * s.B / s.Sc;
    r.BleederExcess[k] = c.named("Xr", c.choose(Rule::BleederNegligible, excess < 0.01, 0, excess));
}

/// Strength and capacity of side barrier k, its bleeder row's excess included.
template <class C>
TELVO_INLINE void barrierCapacity(C& c, const SymbolsOf<Num<C>>& s, int k,
                                  PanelResultsOf<Num<C>>& r) {
    const Num<C>& width = s.BarrierWidth[k];
    c.at({0, k});
    r.BarrierStrength[k] =
        c.named("sb", barrierStrength(c, Rule::BarrierTooNarrow, s.S1, width, s.h));
    r.BarrierCapacity[k] = c.named("Kb", width * r.BarrierStrength[k] * s.B + r.BleederExcess[k]);
}

} // namespace telvo::engine::rules
