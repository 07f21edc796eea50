// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/calc.h"

/// Figures that the report shows beside the results.
namespace telvo::engine::rules {

/// Depth of cover over panel width.
template <class C>
TELVO_INLINE Num<C> depthToPanelWidth(C& c, const Num<C>& H, const Num<C>& width) {
    return c.named("rHW", H / width);
}

/// A load as it comes onto the AMZ, as the rows of the loadings show it: times the arch factor.
/// Given: symbol  "Qf" front, "Qs" side, "Qr" transferred by the remnant
template <class C>
TELVO_INLINE Num<C> loadingRow(C& c, const char* symbol, const Num<C>& arch, const Num<C>& load) {
    return c.named(symbol, arch * load);
}

/// Front abutment on a barrier: what a weak remnant lets go, and the corner over the slab cut.
template <class C>
TELVO_INLINE Num<C> barrierFrontAbutment(C& c, const Num<C>& transfer, const Num<C>& corner) {
    return c.named("Lbf", transfer + corner);
}

/// Overburden of one pillar of an outer row A or B that is left.
/// Given: distance  entry center distance of the row (ft | m)
template <class C>
TELVO_INLINE Num<C> outerRowLoad(C& c, const Num<C>& Gamma, const Num<C>& H, const Num<C>& distance,
                                 const Num<C>& Sc) {
    return c.named("To", Gamma * H * distance * Sc);
}

/// What such a pillar can carry beyond it.
template <class C>
TELVO_INLINE Num<C> outerRowExcess(C& c, const Num<C>& capacity, const Num<C>& load) {
    return c.named("Xo", c.atLeast(Rule::LeavePillarOverloaded, capacity - load, 0));
}

/// What a pillar of bleeder row C or D lends over the effective length of the remnant beside it.
/// Given: lends   the side takes part; else it has no remnant to lend to
///        length  of the remnant (ft | m)     excess  of the row over the breadth
template <class C>
TELVO_INLINE Num<C> bleederRowExcess(C& c, bool lends, const Num<C>& length, const Num<C>& excess,
                                     const Num<C>& Sc) {
    using N = Num<C>;
    return c.named("Xo", lends ? N(length * excess / Sc) : N(0));
}

} // namespace telvo::engine::rules
