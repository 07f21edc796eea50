// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/calc.h"
#include "engine/RunResults.h"
#include "project/units.h"

/// Loads: pressure arch, tributary area, abutments of gobs.
namespace telvo::engine::rules {

/// Pressure arch factor of a run: the entered one, or Fpa = 1 - 0.28 ln(H / W) from 0.28 to 1, with
/// 1 where H - 80 < W; two decimals.
/// Notes:    1) 25 and 80 are compared in the length unit of the case, metric cases included.
///           2) the panel width W is summed in single precision, and so is the factor held.
///           3) the parameter form shows a factor by its own rule, project::formArchFactor(); the
///              two are kept different on purpose.
template <class C>
TELVO_INLINE Num<C> pressureArchFactor(C& c, const Frame& f, const SymbolsOf<Num<C>>& s) {
    using N = Num<C>;
    if (!f.ArchAutomatic) return s.ArchFactorInput;
    N sum = 0;
    for (int i = 1; i <= f.NumberPillars; ++i)
        sum = toSingle(sum + s.EntryCenter[i]);
    const N W = c.shownAs("Wp", sum);
    const N curve = c.choose(Rule::ArchDeepEnough, s.H > 25, 1 - 0.28 * ln(s.H / W), 0);
    const N F = c.stepped(Rule::ArchRounded, hundredths(c.atLeast(Rule::ArchLowest, curve, 0.28)));
    return c.choose(Rule::ArchNoPanel, W == 0, 1,
                    c.choose(Rule::ArchShallow, s.H - 80 < W, 1, toSingle(F)));
}

/// Extent of the abutment load from a gob's edge: D = 9.3 sqrt(H), H in feet. A case in unit system
/// 1 turns its depth into feet (single precision) and the extent back into metres; any other
/// nonzero system, metric elsewhere, keeps the plain formula.
template <class N>
TELVO_INLINE N abutmentExtent(const Frame& f, const N& H) {
    if (f.Units != project::Metric) return 9.3 * root(H);
    return 9.3 * root(toSingle(H * project::FeetPerMetre)) / project::FeetPerMetre;
}

/// Share of an abutment load that falls within distance x of the gob's edge:
/// R = 1 - ((D - x) / D)^3, at most 1.
template <class C>
TELVO_INLINE Num<C> rFactor(C& c, const Num<C>& D, const Num<C>& x) {
    return c.atMost(Rule::RFactorFull, 1 - cube((D - x) / D), 1);
}

/// Abutment load per unit length of gob edge, the overburden that leans over from the gob.
/// Given:    E     extent of the gob (ft | m)            t     tangent of the abutment angle
///           H     depth of cover (ft | m)               Gamma unit weight (pcf | kN/m3)
/// Returned: subcritical gob (E/2 <= H t, tie included): Gamma (H E/2 - E^2 / (8 t));
///           supercritical: Gamma H^2 t / 2 (lb/ft | kN/m)
template <class C>
TELVO_INLINE Num<C> abutmentLoad(C& c, const Num<C>& Gamma, const Num<C>& H, const Num<C>& E,
                                 const Num<C>& t) {
    return c.choose(Rule::GobSubcritical, E / 2 <= H * t, Gamma * (H * E / 2 - square(E) / (8 * t)),
                    Gamma * square(H) * t / 2);
}

/// Width over which the front abutment of the active gob loads the section: the active width, and
/// the slab cuts of the sides that take part.
template <class N>
TELVO_INLINE N loadedWidth(const Frame& f, const N& active, const PerSideOf<N>& cut) {
    switch (f.AnalysisCase) {
    case ActiveGob:
        return active;
    case OneSideGob:
        return active + cut[FirstSide];
    case TwoSideGobs:
        return active + cut[FirstSide] + cut[SecondSide];
    default:
        return 0;
    }
}

/// Volume of overburden over the panel end that the front abutment brings onto the AMZ.
template <class C>
struct FrontAbutment {
    Num<C> load;               ///< lb | kN
    Num<C> halfWidth;          ///< half-width a of the corner volumes; ft | m
    Tru<C> gobWiderThanLoaded; ///< the branch E > Wl was taken
};

/// The load is (P1 + P2 + 2 P3 + 2 P4) R: blocks P1 and P3 of height z1 and the wedges P2 and P4
/// below them of height z2, over the panel end (P1, P2) and its two corners (P3, P4).
/// Given: E   extent of the active gob (ft | m)        Wl  loaded width (ft | m)
///        R   R-factor of the front abutment
/// Notes: 1) gob and loaded width both beyond the reach a = H t of the abutment angle (tie
///           included): wedges of the full height alone.
///        2) gob no wider than the loaded width (tie included): a = E / 2.
///        3) gob wider: a = Wl / 2, corners alone.
template <class C>
TELVO_INLINE FrontAbutment<C> frontAbutmentOnAMZ(C& c, const SymbolsOf<Num<C>>& s, const Num<C>& E,
                                                 const Num<C>& Wl, const Num<C>& R) {
    using N = Num<C>;
    const N &H = s.H, &Gamma = s.Gamma, &t = s.AbutmentTangent[1];
    const N reach = H * t;
    const auto full = lesser(E, Wl) / 2 >= reach;
    const auto wide = E > Wl;
    const auto ofThree = [&](const N& whenFull, const N& whenWide, const N& within) {
        return c.choose(Rule::FrontFullHeight, full, whenFull,
                        c.choose(Rule::FrontGobWider, wide, whenWide, within));
    };
    const N a = c.named("a", ofThree(reach, Wl / 2, E / 2));
    const N z1 = c.named("z1", ofThree(0, H - a / t, H - a / t));
    const N z2 = c.named("z2", ofThree(H, H - z1, a / t));
    const N P1 = c.named("P1", ofThree(0, 0, (Wl - E) * z1 * a * Gamma));
    const N P2 =
        c.named("P2", ofThree((Wl - 2 * a) * z2 * a / 2 * Gamma, 0, (Wl - E) * z2 * a / 2 * Gamma));
    const N P3 = c.named("P3", ofThree(0, a * z1 * a / 2 * Gamma, a * z1 * a / 2 * Gamma));
    const N P4 = c.named("P4", a * z2 * a / 3 * Gamma);
    return {c.named("Lv", (P1 + P2 + 2 * P3 + 2 * P4) * R), a, wide && !full};
}

/// Part of the front abutment over the slab cut of a barrier, which the barrier takes off the AMZ:
/// a corner of half-width a = cut / 2, of a block (height z1 = H - a / t) and the wedge below it.
template <class C>
TELVO_INLINE Num<C> slabCornerLoad(C& c, const SymbolsOf<Num<C>>& s, const Num<C>& cut,
                                   const Num<C>& R) {
    using N = Num<C>;
    const N a = c.named("ac", cut / 2);
    const N z1 = c.named("zc", s.H - a / s.AbutmentTangent[1]);
    const N z2 = s.H - z1;
    const N P3 = a * z1 * a / 2 * s.Gamma;
    const N P4 = a * z2 * a / 3 * s.Gamma;
    return (P3 + P4) * R;
}

} // namespace telvo::engine::rules
