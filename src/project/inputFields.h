// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/ProjectInput.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

/// The input fields of a case: one row each, and what walks over the rows.
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

/// What a field holds.
enum class FieldRole {
    Value,   // a number that is measured or chosen freely, so that a study may vary it
    Count,   // the number of entries
    Choice,  // the loading condition
    Flag,    // 0 or 1
    Carried, // kept with the case, used by nothing
};

/// Tabs of the parameter form, in the order of the input echo.
enum class ParameterTab { DevelopmentGeometry, DefaultParameters, RetreatMining };

/// The fields in the order of the record, which is that of tables and results.
enum class Field : std::uint8_t {
    EntryHeight,
    DepthCover,
    EntryWidth,
    XcutSpacing,
    XcutAngle,
    NumberEntries,
    XcutCenters,
    CoalStrength,
    UnitWeight,
    BreadthAMZ,
    Anal,
    Reserved,
    AMZ,
    ArchFactor,
    Arch,
    ExtentActiveGob,
    AbutmentAngleActiveGob,
    ExtentFirstGob,
    AbutmentAngleFirstGob,
    BarrierFirstGob,
    SlabcutFirstGob,
    ExtentSecondGob,
    AbutmentAngleSecondGob,
    BarrierSecondGob,
    SlabcutSecondGob,
    RowA,
    RowB,
    RowC,
    RowD,
    WidthC,
    WidthD,
};
inline constexpr std::size_t FieldCount = 31;

/// The center-to-center distances of a record.
using Distances = IndexedArray<double, 1, MaxEntries - 1>;

/// Where the record holds a field, which tells its type as well.
using FieldMember = std::variant<double ProjectInput::*, float ProjectInput::*,
                                 std::int16_t ProjectInput::*, Distances ProjectInput::*>;

/// One input field as everything knows it that walks over the fields.
struct InputField {
    Field id;
    std::string_view name; ///< of the record, in case files, tables and results
    FieldMember member;
    FieldKind kind = FieldKind::Number;
    FieldRole role = FieldRole::Value;

    // Case file
    int level = 0;      ///< of the file that brought the item in; 0: it was always there
    bool plain = false; ///< written with a blank in the sign position

    // Parameter form; a field without a control is not on it
    std::string_view control = {}; ///< of the distances without their number
    ParameterTab tab = ParameterTab::DevelopmentGeometry;
    std::string_view group = {}; ///< frame on that tab
    std::string_view label = {}; ///< within the frame
    std::string_view valid = {}; ///< what the acceptance check wants

    std::string_view echo = {};    ///< in the input echo where the frame's label would not do
    std::string_view meaning = {}; ///< in the list of columns where the label would not do
    double low = 0, high = 0;      ///< limits of a whole number in a table

    constexpr bool isFlag() const { return role == FieldRole::Flag; }
    constexpr bool isWhole() const {
        return std::holds_alternative<std::int16_t ProjectInput::*>(member);
    }
    constexpr bool isSingle() const {
        return std::holds_alternative<float ProjectInput::*>(member);
    }
    constexpr bool isDistances() const {
        return std::holds_alternative<Distances ProjectInput::*>(member);
    }
    /// A text box of the form: neither a check box nor an option.
    constexpr bool isTextBox() const { return role == FieldRole::Value && !control.empty(); }
    constexpr std::string_view echoLabel() const { return echo.empty() ? label : echo; }
};

namespace fieldRows {

using enum FieldKind;
using enum FieldRole;
using enum ParameterTab;

constexpr std::string_view Entries = "Entries and Crosscuts";
constexpr std::string_view ActiveGob = "Active Gob";
constexpr std::string_view FirstGob = "First Gob";
constexpr std::string_view SecondGob = "Second Gob";
constexpr std::string_view NoOrYes = "0 no, 1 yes";

// One spelling for the three names of a field.
#define TELVO_FIELD(Name) .id = Field::Name, .name = #Name, .member = &ProjectInput::Name

inline constexpr std::array<InputField, FieldCount> Rows = {{
    {TELVO_FIELD(EntryHeight), .kind = Length, .control = "txtEntryHeight", .group = Entries,
     .label = "Entry Height", .valid = "above 0"},
    {TELVO_FIELD(DepthCover), .kind = Length, .control = "txtDepthCover", .group = Entries,
     .label = "Depth of Cover", .valid = "above 0"},
    {TELVO_FIELD(EntryWidth), .kind = Length, .control = "txtEntryWidth", .group = Entries,
     .label = "Entry Width", .valid = "above 0"},
    {TELVO_FIELD(XcutSpacing), .kind = Length, .control = "txtXcutSpacing", .group = Entries,
     .label = "Crosscut Spacing", .valid = "above the entry width"},
    {TELVO_FIELD(XcutAngle), .kind = Angle, .control = "txtXcutAngle", .group = Entries,
     .label = "Crosscut Angle", .valid = "30 to 90"},
    {TELVO_FIELD(NumberEntries), .role = Count, .plain = true, .control = "txtNumberEntries",
     .group = Entries, .label = "Number of Entries", .valid = "2 to 10",
     .meaning = "Number of entries", .low = 0, .high = MaxEntries},
    {TELVO_FIELD(XcutCenters), .kind = Length, .control = "txtXcutCenters",
     .group = "Center to Center Distances", .label = "Center to Center Distance",
     .valid = "above the entry width"},
    {TELVO_FIELD(CoalStrength), .kind = Strength, .control = "txtCoalStrength",
     .tab = DefaultParameters, .group = "Rock", .label = "In Situ Coal Strength",
     .valid = "above 0"},
    {TELVO_FIELD(UnitWeight), .kind = UnitWeight, .control = "txtUnitWeight",
     .tab = DefaultParameters, .group = "Rock", .label = "Unit Weight of Overburden",
     .valid = "above 0"},
    {TELVO_FIELD(BreadthAMZ), .kind = Length, .control = "txtBreadthAMZ", .tab = DefaultParameters,
     .group = "Active Mining Zone", .label = "Breadth of AMZ", .valid = "above 0"},
    {TELVO_FIELD(Anal), .role = Choice, .plain = true, .control = "optAnal", .tab = RetreatMining,
     .group = "Loading Condition", .label = "Loading Condition",
     .valid = "0 development, 1 one active section, 2 with one side gob, 3 with two",
     .meaning = "Loading condition", .low = 0, .high = 3},
    {TELVO_FIELD(Reserved), .role = Carried, .level = 51, .plain = true, .valid = "-32768 to 32767",
     .meaning = "Kept with the case, used by nothing", .low = -32768, .high = 32767},
    {TELVO_FIELD(AMZ), .role = Flag, .plain = true, .control = "chkAMZ", .tab = DefaultParameters,
     .group = "Active Mining Zone", .label = "Breadth of AMZ set automatically", .valid = NoOrYes,
     .meaning = "1: a BreadthAMZ that is blank or 0 is computed from DepthCover when the table is "
                "read, and the parameter form keeps it so; the analysis uses what BreadthAMZ holds",
     .low = 0, .high = 1},
    {TELVO_FIELD(ArchFactor), .level = 52, .plain = true, .control = "txtArchFactor",
     .tab = DefaultParameters, .group = "Pressure Arch", .label = "Pressure Arch Factor",
     .valid = "0.28 to 1"},
    {TELVO_FIELD(Arch), .role = Flag, .level = 53, .plain = true, .control = "chkArch",
     .tab = DefaultParameters, .group = "Pressure Arch",
     .label = "Pressure Arch Factor set automatically", .valid = NoOrYes,
     .meaning = "1: the analysis computes the pressure arch factor that it uses, whatever "
                "ArchFactor holds; an ArchFactor that is blank or 0 gets what the parameter form "
                "would show",
     .low = 0, .high = 1},
    {TELVO_FIELD(ExtentActiveGob), .kind = Length, .control = "txtExtentActiveGob",
     .tab = RetreatMining, .group = ActiveGob, .label = "Extent", .valid = "0 or more",
     .echo = "Extent of Active Gob"},
    {TELVO_FIELD(AbutmentAngleActiveGob), .kind = Angle, .control = "txtAbutmentAngleActiveGob",
     .tab = RetreatMining, .group = ActiveGob, .label = "Abutment Angle", .valid = "0 to 90",
     .echo = "Abutment Angle of Active Gob"},
    {TELVO_FIELD(ExtentFirstGob), .kind = Length, .control = "txtExtentFirstGob",
     .tab = RetreatMining, .group = FirstGob, .label = "Extent", .valid = "0 or more",
     .echo = "Extent of First Gob"},
    {TELVO_FIELD(AbutmentAngleFirstGob), .kind = Angle, .control = "txtAbutmentAngleFirstGob",
     .tab = RetreatMining, .group = FirstGob, .label = "Abutment Angle", .valid = "0 to 90",
     .echo = "Abutment Angle of First Gob"},
    {TELVO_FIELD(BarrierFirstGob), .kind = Length, .control = "txtBarrierFirstGob",
     .tab = RetreatMining, .group = FirstGob, .label = "Barrier Pillar Width", .valid = "0 or more",
     .echo = "Barrier Pillar Width of First Gob"},
    {TELVO_FIELD(SlabcutFirstGob), .kind = Length, .control = "txtSlabcutFirstGob",
     .tab = RetreatMining, .group = FirstGob, .label = "Depth of Slab Cut",
     .valid = "0 to the barrier's width",
     .echo = "Depth of Slab Cut in Barrier Pillar of First Gob"},
    {TELVO_FIELD(ExtentSecondGob), .kind = Length, .control = "txtExtentSecondGob",
     .tab = RetreatMining, .group = SecondGob, .label = "Extent", .valid = "0 or more",
     .echo = "Extent of Second Gob"},
    {TELVO_FIELD(AbutmentAngleSecondGob), .kind = Angle, .control = "txtAbutmentAngleSecondGob",
     .tab = RetreatMining, .group = SecondGob, .label = "Abutment Angle", .valid = "0 to 90",
     .echo = "Abutment Angle of Second Gob"},
    {TELVO_FIELD(BarrierSecondGob), .kind = Length, .control = "txtBarrierSecondGob",
     .tab = RetreatMining, .group = SecondGob, .label = "Barrier Pillar Width",
     .valid = "0 or more", .echo = "Barrier Pillar Width of Second Gob"},
    {TELVO_FIELD(SlabcutSecondGob), .kind = Length, .control = "txtSlabcutSecondGob",
     .tab = RetreatMining, .group = SecondGob, .label = "Depth of Slab Cut",
     .valid = "0 to the barrier's width",
     .echo = "Depth of Slab Cut in Barrier Pillar of Second Gob"},
    {TELVO_FIELD(RowA), .role = Flag, .level = 53, .plain = true, .control = "chkRowA",
     .tab = RetreatMining, .group = ActiveGob, .label = "Leave pillar Row 'A' in place",
     .valid = NoOrYes, .meaning = "Row A of pillars is left, beside the first side barrier",
     .low = 0, .high = 1},
    {TELVO_FIELD(RowB), .role = Flag, .level = 53, .plain = true, .control = "chkRowB",
     .tab = RetreatMining, .group = ActiveGob, .label = "Leave pillar Row 'B' in place",
     .valid = NoOrYes, .meaning = "Row B of pillars is left, beside the second side barrier",
     .low = 0, .high = 1},
    {TELVO_FIELD(RowC), .role = Flag, .level = 53, .plain = true, .control = "chkRowC",
     .tab = RetreatMining, .group = FirstGob, .label = "Leave pillar Row 'C' in place",
     .valid = NoOrYes, .meaning = "Row C of pillars is left", .low = 0, .high = 1},
    {TELVO_FIELD(RowD), .role = Flag, .level = 53, .plain = true, .control = "chkRowD",
     .tab = RetreatMining, .group = SecondGob, .label = "Leave pillar Row 'D' in place",
     .valid = NoOrYes, .meaning = "Row D of pillars is left", .low = 0, .high = 1},
    {TELVO_FIELD(WidthC), .kind = Length, .level = 53, .control = "txtWidthC", .tab = RetreatMining,
     .group = FirstGob, .label = "Width of Row 'C' Pillars", .valid = "above 0 when row C is left",
     .echo = "Width of pillars in row 'C'"},
    {TELVO_FIELD(WidthD), .kind = Length, .level = 53, .control = "txtWidthD", .tab = RetreatMining,
     .group = SecondGob, .label = "Width of Row 'D' Pillars", .valid = "above 0 when row D is left",
     .echo = "Width of pillars in row 'D'"},
}};

#undef TELVO_FIELD

/// Every row stands at the place of its field.
constexpr bool standInOrder() {
    for (std::size_t i = 0; i < FieldCount; ++i)
        if (static_cast<std::size_t>(Rows[i].id) != i) return false;
    return true;
}
static_assert(standInOrder());

} // namespace fieldRows

/// The rows in record order.
inline constexpr const std::array<InputField, FieldCount>& InputFields = fieldRows::Rows;

/// The row of a field.
constexpr const InputField& rowOf(Field field) {
    return InputFields[static_cast<std::size_t>(field)];
}

/// Whether a list holds every field once: another order of the same rows.
constexpr bool holdsEveryField(const std::array<Field, FieldCount>& order) {
    std::array<bool, FieldCount> seen{};
    for (const Field field : order)
        seen[static_cast<std::size_t>(field)] = true;
    for (const bool each : seen)
        if (!each) return false;
    return true;
}

/// Order of the case file, where the angle comes before the width.
inline constexpr std::array<Field, FieldCount> FileOrder = [] {
    using enum Field;
    return std::array<Field, FieldCount>{EntryHeight,
                                         DepthCover,
                                         XcutAngle,
                                         EntryWidth,
                                         XcutSpacing,
                                         NumberEntries,
                                         XcutCenters,
                                         CoalStrength,
                                         UnitWeight,
                                         BreadthAMZ,
                                         AMZ,
                                         Arch,
                                         Anal,
                                         Reserved,
                                         ArchFactor,
                                         ExtentActiveGob,
                                         AbutmentAngleActiveGob,
                                         ExtentFirstGob,
                                         AbutmentAngleFirstGob,
                                         BarrierFirstGob,
                                         SlabcutFirstGob,
                                         ExtentSecondGob,
                                         AbutmentAngleSecondGob,
                                         BarrierSecondGob,
                                         SlabcutSecondGob,
                                         RowA,
                                         RowB,
                                         RowC,
                                         RowD,
                                         WidthC,
                                         WidthD};
}();
static_assert(holdsEveryField(FileOrder));

/// Order of the parameter form and, but for the count of the entries, of the input echo.
inline constexpr std::array<Field, FieldCount> FormOrder = [] {
    using enum Field;
    return std::array<Field, FieldCount>{EntryHeight,
                                         DepthCover,
                                         XcutAngle,
                                         EntryWidth,
                                         XcutSpacing,
                                         NumberEntries,
                                         XcutCenters,
                                         CoalStrength,
                                         UnitWeight,
                                         BreadthAMZ,
                                         AMZ,
                                         ArchFactor,
                                         Arch,
                                         Anal,
                                         ExtentActiveGob,
                                         AbutmentAngleActiveGob,
                                         RowA,
                                         RowB,
                                         ExtentFirstGob,
                                         AbutmentAngleFirstGob,
                                         BarrierFirstGob,
                                         SlabcutFirstGob,
                                         RowC,
                                         WidthC,
                                         ExtentSecondGob,
                                         AbutmentAngleSecondGob,
                                         BarrierSecondGob,
                                         SlabcutSecondGob,
                                         RowD,
                                         WidthD,
                                         Reserved};
}();
static_assert(holdsEveryField(FormOrder));

/// One number of a record: a field and, of the center-to-center distances, which one.
struct FieldId {
    Field field = Field::EntryHeight;
    int index = 0; ///< 1 to 9 of XcutCenters, 0 of every other field

    constexpr FieldId() = default;
    constexpr FieldId(Field f, int i = 0) : field(f), index(i) {} // a Field alone names its number
    bool operator==(const FieldId&) const = default;
};

/// Numbers of a record; each distance is one.
inline constexpr std::size_t NumberCount = FieldCount - 1 + (MaxEntries - 1);

/// Place of a number among all numbers of a record, 0 to NumberCount - 1, in record order.
constexpr std::size_t placeOf(FieldId id) {
    const auto place = static_cast<std::size_t>(id.field);
    if (id.field == Field::XcutCenters) return place + static_cast<std::size_t>(id.index - 1);
    return id.field < Field::XcutCenters ? place : place + MaxEntries - 2;
}

/// All numbers of a record in record order; `placeOf` counts them.
inline constexpr std::array<FieldId, NumberCount> RecordNumbers = [] {
    std::array<FieldId, NumberCount> ids{};
    for (const InputField& row : InputFields)
        if (!row.isDistances())
            ids[placeOf(row.id)] = row.id;
        else
            for (int i = 1; i < MaxEntries; ++i)
                ids[placeOf({row.id, i})] = {row.id, i};
    return ids;
}();

inline constexpr std::size_t NumericInputCount = 30;
/// The numbers that a study or a batch may vary, in record order: all but counts, choices, flags.
inline constexpr std::array<FieldId, NumericInputCount> NumericInputs = [] {
    std::array<FieldId, NumericInputCount> ids{};
    std::size_t count = 0;
    for (const FieldId id : RecordNumbers)
        if (rowOf(id.field).role == FieldRole::Value) ids[count++] = id;
    return ids;
}();
static_assert(NumericInputs.back() == FieldId(Field::WidthD));

/// What a number measures.
constexpr FieldKind kindOf(FieldId id) {
    return rowOf(id.field).kind;
}

/// A number of a record.
double get(const ProjectInput& in, FieldId id);

/// Gives a record a number, narrowed to the type of its field: to single precision, infinite
/// beyond its range, or rounded half to even to a whole number and held within its range.
void set(ProjectInput& in, FieldId id, double value);

/// A number as it was typed: of a field in single precision the shortest decimal number, 0.82 where
/// get() gives 0.81999999.
double shownValue(const ProjectInput& in, FieldId id);

/// A number as the form shows it, in general number format of its own precision.
std::string shownText(const ProjectInput& in, FieldId id);

/// Name of a number in tables and results: "DepthCover", "XcutCenters.3".
std::string nameOf(FieldId id);

/// Its name in messages and in the case file: "DepthCover", "XcutCenters(3)".
std::string itemNameOf(FieldId id);

/// Name of the control of the parameter form that edits a number: "txtDepthCover",
/// "txtXcutCenters_3"; of a loading condition what its options have in common, "optAnal".
std::string controlOf(FieldId id);

/// The label of a number by itself, with the frame where that tells of which gob: "Depth of Cover",
/// "Extent, First Gob", "Center to Center Distance #3"; empty for one that is not on the form.
std::string fullLabelOf(FieldId id);

/// The number of a name of either kind; nothing for any other text, such as "XcutCenters".
std::optional<FieldId> fieldNamed(std::string_view name);

/// Calls visit(name, kind, field) for the 31 fields of a record in record order; `field` has the
/// type of the record, the distances are one field.
template <typename Input, typename Visit>
constexpr void visitInputFields(Input& in, Visit&& visit) {
    for (const InputField& row : InputFields) // their names are literals and end with a NUL
        std::visit([&](auto member) { visit(row.name.data(), row.kind, in.*member); }, row.member);
}

/// Calls visit(row, id, number) for every number of a record in record order; `number` has the type
/// of the record.
template <typename Input, typename Visit>
constexpr void visitRecordNumbers(Input& in, Visit&& visit) {
    for (const InputField& row : InputFields)
        std::visit(
            [&](auto member) {
                auto& field = in.*member;
                if constexpr (requires { field[1]; })
                    for (int i = 1; i < MaxEntries; ++i)
                        visit(row, FieldId(row.id, i), field[i]);
                else
                    visit(row, FieldId(row.id), field);
            },
            row.member);
}

} // namespace telvo::project
