// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/rules/geometry.h"

#include <limits>

/// Inputs that pass the check before analysis and still leave a quantity without a value.
namespace telvo::engine::rules {

enum class Impossible {
    PanelTooWide, // its width leaves single precision, in which the arch factor takes it
    CrosscutAngle,
    NoPillar,
    TooManyEntries,
    PillarLength,
    PillarWidth, // of one pillar
    ActiveGobAngle,
    SideGob, // of one side: angle and extent both 0
    OnlyPillarClaimedTwice,
    NoActivePillar,
    BleederLength // of one side's row
};

/// Calls visit(what, where, truth) for each of them in a fixed order; the first one that holds is
/// told.
/// Given: entries  the number of entries as the record has it
///        length   the pillarLength() of these inputs
template <class N, class Visit>
TELVO_INLINE void visitImpossible(const Frame& f, int entries, const SymbolsOf<N>& s,
                                  const N& length, Visit&& visit) {
    using Truth = TruthOf<N>;
    constexpr double greatest = std::numeric_limits<float>::max();
    if (f.ArchAutomatic)
        visit(Impossible::PanelTooWide, Where{}, !(toSingle(s.PanelWidth) <= N(greatest)));
    visit(Impossible::CrosscutAngle, Where{}, s.SinTheta == 0);
    visit(Impossible::NoPillar, Where{}, Truth(f.NumberPillars < 1));
    visit(Impossible::TooManyEntries, Where{}, Truth(entries > project::MaxEntries));
    visit(Impossible::PillarLength, Where{}, length < 0);
    for (int i = 1; i <= f.NumberPillars; ++i)
        visit(Impossible::PillarWidth, Where{0, 0, i}, s.PillarGrossWidth[i] < 0);
    // The development pass has an active gob of extent 0, whatever the input says.
    visit(Impossible::ActiveGobAngle, Where{}, s.AbutmentTangent[1] == 0);
    for (const int k : f.sidesInUse())
        visit(Impossible::SideGob, Where{0, k},
              s.AbutmentTangent[gobOfSide(k)] == 0 && s.GobExtent[gobOfSide(k)] == 0);
    visit(
        Impossible::OnlyPillarClaimedTwice, Where{},
        Truth(f.AnalysisCase >= ActiveGob && f.NumberPillars == 1 && f.rowLeft(1) && f.rowLeft(2)));
    visit(Impossible::NoActivePillar, Where{},
          Truth(f.oneActiveSection() && f.firstActivePillar() > f.lastActivePillar()));
    for (const int k : AllSides)
        if (f.rowLeft(k)) visit(Impossible::BleederLength, Where{0, k}, s.PillarLengthAlong == 0);
}

} // namespace telvo::engine::rules
