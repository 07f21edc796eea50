// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/ProjectInput.h"

#include <cstdint>
#include <string_view>

namespace telvo::project {

/// What an input field measures; with the unit system it tells the unit.
enum class FieldKind { Number, Length, Angle, Strength, UnitWeight };

/// Unit of an input field without parentheses: "ft", "psi", "m", "MPa", "degrees"; "" for numbers.
constexpr std::string_view fieldUnit(FieldKind kind, std::int16_t units) {
    const bool english = units == English;
    switch (kind) {
    case FieldKind::Length:
        return english ? "ft" : "m";
    case FieldKind::Angle:
        return "degrees";
    case FieldKind::Strength:
        return english ? "psi" : "MPa";
    case FieldKind::UnitWeight:
        return english ? "pcf" : "kN/m3";
    case FieldKind::Number:
        break;
    }
    return "";
}

/// Calls visit(name, kind, field) for the 31 fields of a record in record order.
template <typename Input, typename Visit>
constexpr void visitInputFields(Input& in, Visit&& visit) {
    visit("EntryHeight", FieldKind::Length, in.EntryHeight);
    visit("DepthCover", FieldKind::Length, in.DepthCover);
    visit("EntryWidth", FieldKind::Length, in.EntryWidth);
    visit("XcutSpacing", FieldKind::Length, in.XcutSpacing);
    visit("XcutAngle", FieldKind::Angle, in.XcutAngle);
    visit("NumberEntries", FieldKind::Number, in.NumberEntries);
    visit("XcutCenters", FieldKind::Length, in.XcutCenters);
    visit("CoalStrength", FieldKind::Strength, in.CoalStrength);
    visit("UnitWeight", FieldKind::UnitWeight, in.UnitWeight);
    visit("BreadthAMZ", FieldKind::Length, in.BreadthAMZ);
    visit("Anal", FieldKind::Number, in.Anal);
    visit("Reserved", FieldKind::Number, in.Reserved);
    visit("AMZ", FieldKind::Number, in.AMZ);
    visit("ArchFactor", FieldKind::Number, in.ArchFactor);
    visit("Arch", FieldKind::Number, in.Arch);
    visit("ExtentActiveGob", FieldKind::Length, in.ExtentActiveGob);
    visit("AbutmentAngleActiveGob", FieldKind::Angle, in.AbutmentAngleActiveGob);
    visit("ExtentFirstGob", FieldKind::Length, in.ExtentFirstGob);
    visit("AbutmentAngleFirstGob", FieldKind::Angle, in.AbutmentAngleFirstGob);
    visit("BarrierFirstGob", FieldKind::Length, in.BarrierFirstGob);
    visit("SlabcutFirstGob", FieldKind::Length, in.SlabcutFirstGob);
    visit("ExtentSecondGob", FieldKind::Length, in.ExtentSecondGob);
    visit("AbutmentAngleSecondGob", FieldKind::Angle, in.AbutmentAngleSecondGob);
    visit("BarrierSecondGob", FieldKind::Length, in.BarrierSecondGob);
    visit("SlabcutSecondGob", FieldKind::Length, in.SlabcutSecondGob);
    visit("RowA", FieldKind::Number, in.RowA);
    visit("RowB", FieldKind::Number, in.RowB);
    visit("RowC", FieldKind::Number, in.RowC);
    visit("RowD", FieldKind::Number, in.RowD);
    visit("WidthC", FieldKind::Length, in.WidthC);
    visit("WidthD", FieldKind::Length, in.WidthD);
}

} // namespace telvo::project
