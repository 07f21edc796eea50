// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/parameterFields.h"

#include <array>

namespace telvo::project {

namespace {

using enum ParameterTab;
using enum FieldKind;
using T = ParameterTexts;

// The labels are those of the input echo; the frames name the gob.
constexpr auto Fields = std::to_array<ParameterField>({
    {"txtEntryHeight", &T::txtEntryHeight, DevelopmentGeometry, "Entries and Crosscuts",
     "Entry Height", Length, "above 0"},
    {"txtDepthCover", &T::txtDepthCover, DevelopmentGeometry, "Entries and Crosscuts",
     "Depth of Cover", Length, "above 0"},
    {"txtXcutAngle", &T::txtXcutAngle, DevelopmentGeometry, "Entries and Crosscuts",
     "Crosscut Angle", Angle, "30 to 90"},
    {"txtEntryWidth", &T::txtEntryWidth, DevelopmentGeometry, "Entries and Crosscuts",
     "Entry Width", Length, "above 0"},
    {"txtXcutSpacing", &T::txtXcutSpacing, DevelopmentGeometry, "Entries and Crosscuts",
     "Crosscut Spacing", Length, "above the entry width"},
    {"txtCoalStrength", &T::txtCoalStrength, DefaultParameters, "Rock", "In Situ Coal Strength",
     Strength, "above 0"},
    {"txtUnitWeight", &T::txtUnitWeight, DefaultParameters, "Rock", "Unit Weight of Overburden",
     UnitWeight, "above 0"},
    {"txtBreadthAMZ", &T::txtBreadthAMZ, DefaultParameters, "Active Mining Zone", "Breadth of AMZ",
     Length, "above 0"},
    {"txtArchFactor", &T::txtArchFactor, DefaultParameters, "Pressure Arch", "Pressure Arch Factor",
     Number, "0.28 to 1"},
    {"txtExtentActiveGob", &T::txtExtentActiveGob, RetreatMining, "Active Gob", "Extent", Length,
     "0 or more"},
    {"txtAbutmentAngleActiveGob", &T::txtAbutmentAngleActiveGob, RetreatMining, "Active Gob",
     "Abutment Angle", Angle, "0 to 90"},
    {"txtExtentFirstGob", &T::txtExtentFirstGob, RetreatMining, "First Gob", "Extent", Length,
     "0 or more"},
    {"txtAbutmentAngleFirstGob", &T::txtAbutmentAngleFirstGob, RetreatMining, "First Gob",
     "Abutment Angle", Angle, "0 to 90"},
    {"txtBarrierFirstGob", &T::txtBarrierFirstGob, RetreatMining, "First Gob",
     "Barrier Pillar Width", Length, "0 or more"},
    {"txtSlabcutFirstGob", &T::txtSlabcutFirstGob, RetreatMining, "First Gob", "Depth of Slab Cut",
     Length, "0 to the barrier's width"},
    {"txtWidthC", &T::txtWidthC, RetreatMining, "First Gob", "Width of Row 'C' Pillars", Length,
     "above 0 when row C is left"},
    {"txtExtentSecondGob", &T::txtExtentSecondGob, RetreatMining, "Second Gob", "Extent", Length,
     "0 or more"},
    {"txtAbutmentAngleSecondGob", &T::txtAbutmentAngleSecondGob, RetreatMining, "Second Gob",
     "Abutment Angle", Angle, "0 to 90"},
    {"txtBarrierSecondGob", &T::txtBarrierSecondGob, RetreatMining, "Second Gob",
     "Barrier Pillar Width", Length, "0 or more"},
    {"txtSlabcutSecondGob", &T::txtSlabcutSecondGob, RetreatMining, "Second Gob",
     "Depth of Slab Cut", Length, "0 to the barrier's width"},
    {"txtWidthD", &T::txtWidthD, RetreatMining, "Second Gob", "Width of Row 'D' Pillars", Length,
     "above 0 when row D is left"},
});

} // namespace

std::span<const ParameterField> parameterFields() {
    return Fields;
}

} // namespace telvo::project
