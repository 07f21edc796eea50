// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/calc.h"
#include "engine/WorkingInputs.h"

/// From the inputs of a record to the symbols of the formulas.
namespace telvo::engine::rules {

/// 89.9 degrees in radians; stands for every abutment angle of 90 degrees and more, to keep its
/// tangent finite.
inline constexpr double SteepestAbutmentAngle = 1.5690509975429008;

/// Tangent of an abutment angle in degrees.
template <class C>
TELVO_INLINE Num<C> abutmentTangent(C& c, const Num<C>& degrees) {
    return tangent(c.choose(Rule::AngleBelowRight, degrees < 90, radians(degrees),
                            c.constant("89.9 deg", SteepestAbutmentAngle)));
}

/// Sine of the crosscut angle and tangents of the abutment angles. A batch whose angles do not vary
/// computes them once.
template <class C, class Input>
TELVO_INLINE void prepareAngles(C& c, const Input& in, SymbolsOf<Num<C>>& s) {
    c.at({});
    s.SinTheta = c.named("sinT", sine(radians(in.XcutAngle)));
    s.AbutmentTangent[1] = c.named("ta", abutmentTangent(c, in.AbutmentAngleActiveGob));
    c.at({0, FirstSide});
    s.AbutmentTangent[gobOfSide(FirstSide)] =
        c.named("ts", abutmentTangent(c, in.AbutmentAngleFirstGob));
    c.at({0, SecondSide});
    s.AbutmentTangent[gobOfSide(SecondSide)] =
        c.named("ts", abutmentTangent(c, in.AbutmentAngleSecondGob));
    c.at({});
}

/// Everything else. Input is project::ProjectInput or a record of the same fields.
template <class C, class Input>
TELVO_INLINE void prepareSizes(C& c, const Frame& f, const Input& in, SymbolsOf<Num<C>>& s) {
    using N = Num<C>;
    c.at({});
    s.h = in.EntryHeight;
    s.H = in.DepthCover;
    s.Sc = in.XcutSpacing;
    s.Gamma = in.UnitWeight;
    // psi to psf, MPa to kPa: depth times unit weight gives psf and kPa
    s.S1 = c.named("S1", in.CoalStrength * (f.english() ? 144 : 1000));
    s.We = in.EntryWidth;
    s.B = c.named("B", in.BreadthAMZ);
    s.PillarLengthAlong = in.XcutSpacing - in.EntryWidth;
    if (f.rowLeft(FirstSide) || f.rowLeft(SecondSide))
        s.PillarLengthAlong = c.named("Lr", s.PillarLengthAlong);
    N width = 0;
    for (int i = 1; i <= f.NumberPillars; ++i) {
        c.at({0, 0, i});
        s.EntryCenter[i] = in.XcutCenters[i];
        s.PillarGrossWidth[i] = c.named("Wg", s.EntryCenter[i] - s.We);
        width = width + s.EntryCenter[i];
    }
    c.at({});
    s.PanelWidth = c.named("Wp", width);
    s.GobExtent[1] = in.ExtentActiveGob;
    s.GobExtent[gobOfSide(FirstSide)] = in.ExtentFirstGob;
    s.GobExtent[gobOfSide(SecondSide)] = in.ExtentSecondGob;
    s.BarrierWidth[FirstSide] = in.BarrierFirstGob;
    s.BarrierWidth[SecondSide] = in.BarrierSecondGob;
    s.Slabcut[FirstSide] = in.SlabcutFirstGob;
    s.Slabcut[SecondSide] = in.SlabcutSecondGob;
    s.BleederWidth[FirstSide] = in.WidthC;
    s.BleederWidth[SecondSide] = in.WidthD;
    s.ArchFactorInput = in.ArchFactor;
}

} // namespace telvo::engine::rules
