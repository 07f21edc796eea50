// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/IndexedArray.h"
#include "base/number.h"
#include "project/inputFields.h"

#include <cstdint>

namespace telvo::engine {

/// The fields of a record that the rules read, for numbers of any type: those of
/// project::ProjectInput by the same names.
template <class N>
struct InputsOf {
    N EntryHeight{}, DepthCover{}, EntryWidth{}, XcutSpacing{}, XcutAngle{};
    IndexedArray<N, 1, 9> XcutCenters;
    N CoalStrength{}, UnitWeight{}, BreadthAMZ{}, ArchFactor{};
    N ExtentActiveGob{}, AbutmentAngleActiveGob{};
    N ExtentFirstGob{}, AbutmentAngleFirstGob{}, BarrierFirstGob{}, SlabcutFirstGob{};
    N ExtentSecondGob{}, AbutmentAngleSecondGob{}, BarrierSecondGob{}, SlabcutSecondGob{};
    N WidthC{}, WidthD{};
    std::int16_t AMZ = 1, Arch = 1;
};

/// Whether an input is 0 or of a size from which no step of a run can leave the range of its type: in
/// between stand products and quotients of a few of them, whose divisors the rules keep off 0. Only
/// factors still can, where loads cancel.
template <class N>
TELVO_INLINE TruthOf<N> isTame(const N& x) {
    const N size = absolute(x);
    return size == 0 || (size >= 1e-9 && size <= 1e12);
}

/// The number of a field that may vary, one of project::NumericInputs; nullptr for any other.
template <class N>
TELVO_INLINE N* numberIn(InputsOf<N>& in, project::FieldId id) {
    using enum project::Field;
    switch (id.field) {
    case EntryHeight:
        return &in.EntryHeight;
    case DepthCover:
        return &in.DepthCover;
    case EntryWidth:
        return &in.EntryWidth;
    case XcutSpacing:
        return &in.XcutSpacing;
    case XcutAngle:
        return &in.XcutAngle;
    case XcutCenters:
        return &in.XcutCenters[id.index];
    case CoalStrength:
        return &in.CoalStrength;
    case UnitWeight:
        return &in.UnitWeight;
    case BreadthAMZ:
        return &in.BreadthAMZ;
    case ArchFactor:
        return &in.ArchFactor;
    case ExtentActiveGob:
        return &in.ExtentActiveGob;
    case AbutmentAngleActiveGob:
        return &in.AbutmentAngleActiveGob;
    case ExtentFirstGob:
        return &in.ExtentFirstGob;
    case AbutmentAngleFirstGob:
        return &in.AbutmentAngleFirstGob;
    case BarrierFirstGob:
        return &in.BarrierFirstGob;
    case SlabcutFirstGob:
        return &in.SlabcutFirstGob;
    case ExtentSecondGob:
        return &in.ExtentSecondGob;
    case AbutmentAngleSecondGob:
        return &in.AbutmentAngleSecondGob;
    case BarrierSecondGob:
        return &in.BarrierSecondGob;
    case SlabcutSecondGob:
        return &in.SlabcutSecondGob;
    case WidthC:
        return &in.WidthC;
    case WidthD:
        return &in.WidthD;
    default:
        return nullptr;
    }
}

} // namespace telvo::engine
