// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/calc.h"
#include "engine/RunResults.h"

/// Areas and dimensions of the panel and its pillars.
namespace telvo::engine::rules {

/// Distance between the crosscut ribs, square to the crosscuts:
/// Lp = (Sc - We / sin Theta) sin Theta. A length that is below 0 by rounding alone is 0.
/// Given:    Sc    crosscut spacing (ft | m)     We  entry width (ft | m)
///           sine  of the crosscut angle
/// Returned: ft | m
template <class C>
TELVO_INLINE Num<C> pillarLength(C& c, const Num<C>& Sc, const Num<C>& We, const Num<C>& sine) {
    const Num<C> length = (Sc - We / sine) * sine;
    return c.choose(Rule::PillarLengthIsRounding, length < 0 && length > -(1e-12 * Sc), 0, length);
}

/// Areas of the active mining zone and its pillars, and the dimensions by which pillars are strong:
/// the minimum is the length where the pillar is no longer than it is wide (tie included).
template <class C>
TELVO_INLINE void panelGeometry(C& c, const Frame& f, const SymbolsOf<Num<C>>& s,
                                PanelResultsOf<Num<C>>& r) {
    using N = Num<C>;
    c.at({});
    r.AMZArea = c.named("Az", s.B * s.PanelWidth);
    r.PillarLength = c.named("Lp", pillarLength(c, s.Sc, s.We, s.SinTheta));
    const N lengthAlong = r.PillarLength / s.SinTheta;
    N areas = 0;
    for (int i = 1; i <= f.NumberPillars; ++i) {
        if (f.EqualPillars && i > 1) {
            r.PillarSkewWidth[i] = r.PillarSkewWidth[1];
            r.PillarArea[i] = r.PillarArea[1];
            r.MinDimension[i] = r.MinDimension[1];
            r.MaxDimension[i] = r.MaxDimension[1];
            areas = areas + r.PillarArea[1];
            continue;
        }
        c.at({0, 0, i});
        const N& gross = s.PillarGrossWidth[i];
        r.PillarSkewWidth[i] = c.named("Ws", gross / s.SinTheta);
        r.PillarArea[i] = c.named("A", r.PillarLength * r.PillarSkewWidth[i]);
        areas = areas + r.PillarArea[i];
        const auto shorter = r.PillarLength <= gross;
        r.MinDimension[i] =
            c.named("w", c.choose(Rule::LengthIsMinimum, shorter, r.PillarLength, gross));
        r.MaxDimension[i] = c.named(
            "L", c.choose(Rule::LengthIsMinimum, shorter, r.PillarSkewWidth[i], lengthAlong));
    }
    c.at({});
    r.PillarAreaAMZ = c.named("Ap", areas * s.B / s.Sc);
    r.ExtractionRatioAMZ = c.named("e", (r.AMZArea - r.PillarAreaAMZ) / r.AMZArea);
}

/// Width and area of the active mining zone without the outer rows A and B where they are left.
template <class C>
TELVO_INLINE void activeWidth(C& c, const Frame& f, const SymbolsOf<Num<C>>& s,
                              PanelResultsOf<Num<C>>& r) {
    using N = Num<C>;
    N width = s.PanelWidth;
    if (f.rowLeft(1)) width = s.PanelWidth - s.EntryCenter[1];
    if (f.rowLeft(2)) width = width - s.EntryCenter[f.NumberPillars];
    c.at({});
    r.ActiveWidth = c.named("Wa", width);
    r.ActiveArea = c.named("Aa", r.ActiveWidth * s.B);
}

} // namespace telvo::engine::rules
