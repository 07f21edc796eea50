// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/elementary.h"
#include "base/number.h"
#include "base/Rule.h"

/// Who computes. A rule of the method is a template over its Calc, never over the bare number:
///
///     template <class C>
///     Num<C> barrierStrength(C& c, const Num<C>& S1, const Num<C>& w, const Num<C>& h) {
///         return c.choose(Rule::BarrierTooNarrow, w < h, 0, S1 * (0.64 + 0.54 * w / h));
///     }
///
/// Both sides of a decision are computed; an infinity or NaN on the side that is not taken does no
/// harm. What all cases of a batch share (loading condition, rows, pillars) is plain int and bool,
/// with ordinary `if` and `for`. No `if` or `?:` on numbers, no std:: functions, no `+=` in a rule.
namespace telvo {

/// One value or a pack of values; compiles away, but for the truth that a case has results.
template <class N>
struct Plain {
    using Number = N;
    using Truth = TruthOf<N>;

    Truth computes = true;

    /// The rules that follow are applied to this pass, side or pillar.
    TELVO_INLINE void at(const Where&) {}
    /// The decision of a rule.
    TELVO_INLINE N choose(Rule, const Truth& yes, const N& a, const N& b) {
        return select(yes, a, b);
    }
    /// x, but never more than the limit; the rule says yes where the limit holds it.
    TELVO_INLINE N atMost(Rule, const N& x, const N& limit) { return select(x > limit, limit, x); }
    /// x, but never less than the limit.
    TELVO_INLINE N atLeast(Rule, const N& x, const N& limit) { return select(x < limit, limit, x); }
    /// What a rounding came to: it steps where its argument passes a tie.
    TELVO_INLINE N stepped(Rule, const N& rounded) { return rounded; }
    /// A quantity under its symbol.
    TELVO_INLINE N named(const char*, const N& x) { return x; }
    /// A number that stands for a known symbol and differs from it in the last digits only.
    TELVO_INLINE N shownAs(const char*, const N& x) { return x; }
    /// A constant by the words that an engineer knows it by.
    TELVO_INLINE N constant(const char*, double x) { return x; }
    /// Without this the case has no results.
    TELVO_INLINE void demand(Stop, const Truth& holds) { computes = computes && holds; }
};

/// One case; tells what stopped it first.
struct Scalar : Plain<double> {
    Where here;
    Stop stop = Stop::None;
    Where stoppedAt;

    TELVO_INLINE void at(const Where& where) { here = where; }
    TELVO_INLINE void demand(Stop cause, bool holds) {
        if (holds || stop != Stop::None) return;
        computes = false;
        stop = cause;
        stoppedAt = here;
    }
};

template <class C>
using Num = typename C::Number;
template <class C>
using Tru = typename C::Truth;

template <class N>
TELVO_INLINE N square(const N& x) {
    return x * x;
}
template <class N>
TELVO_INLINE N cube(const N& x) {
    return x * x * x;
}

/// The lesser of two numbers.
template <class N>
TELVO_INLINE N lesser(const N& a, const N& b) {
    return select(a < b, a, b);
}

/// Two decimals, a tie goes to the even digit. Beyond 2^51 hundredths every double is whole.
template <class N>
TELVO_INLINE N hundredths(const N& x) {
    return nearestEven(x * 100) / 100;
}

/// pi / 180 as this system has always rounded it; every angle goes through it.
inline constexpr double RadiansPerDegree = 0.017453292519943278;

template <class N>
TELVO_INLINE N radians(const N& degrees) {
    return degrees * RadiansPerDegree;
}

} // namespace telvo
