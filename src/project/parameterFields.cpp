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

std::optional<InputName> inputNamed(std::string_view key, std::int16_t units) {
    for (const ParameterField& field : Fields) {
        if (field.control.substr(3) != key) continue; // "txt"
        InputName name{std::string(field.label), std::string(fieldUnit(field.kind, units)),
                       std::string(field.control)};
        // The three gobs have the same boxes.
        if (field.tab == RetreatMining) name.label.append(", ").append(field.group);
        return name;
    }
    constexpr std::string_view distance = "XcutCenters(";
    if (key.starts_with(distance) && key.size() == distance.size() + 2 && key.back() == ')') {
        const std::string number(key.substr(distance.size(), 1));
        return InputName{"Center to Center Distance #" + number,
                         std::string(fieldUnit(Length, units)), "txtXcutCenters_" + number};
    }
    if (key == "XcutCenters")
        return InputName{"Center to Center Distances", std::string(fieldUnit(Length, units)),
                         "txtXcutCenters_1"};
    if (key == "NumberEntries") return InputName{"Number of Entries", {}, "Combo1"};
    if (key == "Anal") return InputName{"Loading Condition", {}, "optAnal_0"};
    if (key.size() == 4 && key.starts_with("Row") && key[3] >= 'A' && key[3] <= 'D')
        return InputName{"Leave pillar Row '" + std::string(key.substr(3)) + "' in place",
                         {},
                         "chk" + std::string(key)};
    return std::nullopt;
}

} // namespace telvo::project
