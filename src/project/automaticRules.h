// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/calc.h"
#include "base/wholeNumber.h"
#include "project/unitFactors.h"

/// The automatic values of a record as rules over who computes; the values that form, tables and
/// studies take are in automatic.h.
namespace telvo::project {

/// Automatic breadth of the active mining zone: AMZ = 5 sqrt(H), H in feet. A metric depth is
/// turned into feet and the breadth back into metres.
/// Given:    H  depth of cover, 0 or more (ft | m)
/// Returned: the breadth as the whole number that the form shows and stores (158 for 1000 ft); a
///           half goes up.
template <class C>
TELVO_INLINE Num<C> automaticAMZBreadth(C& c, bool english, const Num<C>& H) {
    const Num<C> AMZ =
        english ? Num<C>(5 * root(H)) : Num<C>(5 * root(H * FeetPerMetre) / FeetPerMetre);
    return c.stepped(Rule::BreadthRounded, wholeOfDecimals(AMZ));
}

/// Automatic pressure arch factor of the parameter form: Fpa = 1 - 0.28 ln(H / W), from 0.28 to 1,
/// 1 where the depth is not more than a margin above the panel width; two decimals.
/// Given:    W  panel width (ft | m)
///           H  depth of cover (ft | m)
/// Returned: fraction, a number in single precision; 1 for a panel width of 0 or less, half-typed
///           in the form
/// Notes:    1) W and H are held in single precision.
///           2) the margin is 80 ft, and 80 m for a metric case although W and H are in feet by
///              then.
///           3) the analysis has a rule of its own, engine::pressureArchFactor(); the two are kept
///              different on purpose.
template <class C>
TELVO_INLINE Num<C> formArchFactor(C& c, bool english, const Num<C>& W, const Num<C>& H) {
    using N = Num<C>;
    const double margin = english ? 80 : 262.4671916010498;
    const N h = english ? toSingle(H) : toSingle(toSingle(H) * FeetPerMetre);
    const N w = english ? toSingle(W) : toSingle(toSingle(W) * FeetPerMetre);
    N F = c.choose(Rule::FormArchDeepEnough, h >= 25, 1 - 0.28 * ln(N(h / w)), N(0));
    F = c.choose(Rule::FormArchShallow, h - margin < w, N(1), F);
    F = c.atLeast(Rule::FormArchLowest, F, N(0.28));
    const N rounded = c.stepped(Rule::FormArchRounded, toSingle(hundredths(F)));
    return c.choose(Rule::FormArchNoPanel, !(w > 0), N(1), rounded);
}

} // namespace telvo::project
