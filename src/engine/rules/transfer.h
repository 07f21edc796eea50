// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/rules/strength.h"

/// What remnants and barriers that are weak hand on.
namespace telvo::engine::rules {

/// Stability factor below which a barrier or remnant hands load on.
inline constexpr double TransferThreshold = 1.5;
/// Share of the front abutment that a weak remnant lets go.
inline constexpr double TransferShare = 0.67;
/// Stability factor below which a barrier hands on all of its load.
inline constexpr double AllTransferred = 0.5;

/// Remnant of barrier k between side gob and active gob: what the slab cut leaves of the barrier,
/// its load LFBAR, capacity over the effective length a, and stability factor.
/// Notes: 1) LFBAR = Gamma H Wm a + a Ls + X; nothing without a width or a length.
///        2) a bleeder row lends a / Sc times what it has over the breadth.
///        3) the factor is 0 where it has no load or nothing is left of the barrier.
template <class C>
TELVO_INLINE void remnantBarrier(C& c, const Frame& f, const SymbolsOf<Num<C>>& s,
                                 const PanelResultsOf<Num<C>>& panel, const Num<C>& cut, int k,
                                 PassResultsOf<Num<C>>& r) {
    using N = Num<C>;
    const N& length = r.AbutmentHalfWidth;
    const N width = c.named("Wm", s.BarrierWidth[k] - cut);
    r.RemnantWidth[k] = width;
    r.LFBAR[k] =
        c.named("Lm", c.choose(Rule::RemnantWithoutLoad, width == 0 || length == 0, 0,
                               s.Gamma * s.H * width * length + length * panel.SideAbutmentLoad[k] +
                                   r.FrontOnRemnant[k]));
    r.RemnantStrength[k] =
        c.named("sm", barrierStrength(c, Rule::RemnantTooNarrow, s.S1, width, s.h));
    r.RemnantCapacity[k] = c.named("Km", length * r.RemnantStrength[k] * width);
    N capacity = r.RemnantCapacity[k];
    if (f.rowLeft(k)) capacity = capacity + length * panel.BleederExcess[k] / s.Sc;
    r.RemnantTotalCapacity[k] = c.named("Kn", capacity);
    r.RemnantSF[k] =
        c.named("SFm", c.choose(Rule::RemnantWithoutFactor, width <= 0 || r.LFBAR[k] == 0, 0,
                                r.RemnantTotalCapacity[k] / r.LFBAR[k]));
}

/// Load that a remnant hands to the AMZ: (1.5 - SF) 0.67 X for SF <= 1.5, all of X when the slab
/// cut took the whole barrier; at most X, also when X is negative.
/// Given: width  remnant width (ft | m)   SF  its stability factor   X  front abutment over it
/// Notes: kept different from barrierTransfer(), which has no 0.67 and a lower bound, on purpose.
template <class C>
TELVO_INLINE Num<C> remnantTransfer(C& c, const Num<C>& width, const Num<C>& SF, const Num<C>& X) {
    const Num<C> part = c.choose(Rule::RemnantIsWeak, SF <= TransferThreshold,
                                 (TransferThreshold - SF) * TransferShare * X, 0);
    return c.choose(Rule::RemnantGone, width <= 0, X, c.atMost(Rule::RemnantGivesAll, part, X));
}

/// Front abutment that moves into a barrier whose remnant is weak: (1.5 - SF) 0.67 X below SF 1.5.
/// Given: SF  stability factor of the remnant   X  the base of frontTransferBase()
template <class C>
TELVO_INLINE Num<C> frontTransfer(C& c, const Num<C>& SF, const Num<C>& X) {
    return c.choose(Rule::FrontMoves, SF < TransferThreshold,
                    (TransferThreshold - SF) * TransferShare * X, 0);
}

/// Front abutment over barrier k and half an entry, less the slab corner; 0 without a barrier.
template <class C>
TELVO_INLINE Num<C> frontTransferBase(C& c, const SymbolsOf<Num<C>>& s, const Num<C>& RFactorFront,
                                      const PassResultsOf<Num<C>>& r, int k) {
    return c.choose(Rule::NoBarrier, s.BarrierWidth[k] == 0, 0,
                    (s.We / 2 + s.BarrierWidth[k]) * r.FrontAbutmentLoad * RFactorFront -
                        r.SlabCornerLoad[k]);
}

/// Load that a barrier hands to the AMZ: (1.5 - SF) X from SF 0.5 to 1.5, nothing above, all of X
/// below (the linear rule would give more).
/// Notes: 0.67 does not apply here, unlike in remnantTransfer(), on purpose.
template <class C>
TELVO_INLINE Num<C> barrierTransfer(C& c, const Num<C>& SF, const Num<C>& X) {
    return c.choose(
        Rule::BarrierKeepsAll, SF > TransferThreshold, 0,
        c.choose(Rule::BarrierGivesAll, SF < AllTransferred, X, (TransferThreshold - SF) * X));
}

} // namespace telvo::engine::rules
