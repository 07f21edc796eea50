// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/inputFields.h"

#include "project/CaseFile.h"
#include "project/keptItems.h"
#include "project/ParameterTexts.h"
#include "project/units.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <set>

namespace telvo::project {
namespace {

/// A record whose numbers all differ and fit every field's type.
ProjectInput distinct() {
    ProjectInput in;
    for (const FieldId id : RecordNumbers)
        set(in, id, 1 + static_cast<double>(placeOf(id)));
    return in;
}

/// A case of ten entries whose numbers all differ and that every reader takes.
ProjectCase readable(std::int16_t units) {
    ProjectCase current = newCase(units);
    current.Input = distinct();
    current.Input.NumberEntries = MaxEntries;
    current.Input.Anal = 3;
    for (const InputField& row : InputFields)
        if (row.isFlag()) set(current.Input, row.id, 1);
    return current;
}

/// The record with one number changed to another that every reader takes.
ProjectInput changed(ProjectInput in, FieldId id) {
    const FieldRole role = rowOf(id.field).role;
    const bool down =
        role == FieldRole::Flag || role == FieldRole::Choice || role == FieldRole::Count;
    set(in, id, get(in, id) + (down ? -1 : 100));
    return in;
}

/// Stands for a value of any type where members are counted.
struct AnyValue {
    template <typename T>
    operator T() const;
};

/// Whether the record can be made from that many values.
template <std::size_t Count>
constexpr bool hasMembers() {
    return []<std::size_t... I>(std::index_sequence<I...>) {
        return requires {
            ProjectInput{(static_cast<void>(I), AnyValue{})...};
        };
    }
    (std::make_index_sequence<Count>());
}

TEST(InputFields, EveryNumberOfTheRecordIsReachedByItsName) {
    const ProjectInput in = distinct();
    // Some from all over the record, by the member that the name says.
    EXPECT_EQ(in.EntryHeight, 1);
    EXPECT_EQ(in.XcutCenters[1], 7);
    EXPECT_EQ(in.XcutCenters[9], 15);
    EXPECT_EQ(in.CoalStrength, 16);
    EXPECT_EQ(in.ArchFactor, 22.0F);
    EXPECT_EQ(in.RowD, 37);
    EXPECT_EQ(in.WidthD, 39.0F);
    std::set<std::string> names;
    for (const FieldId id : RecordNumbers) {
        EXPECT_EQ(get(in, id), 1 + static_cast<double>(placeOf(id)));
        EXPECT_EQ(fieldNamed(nameOf(id)), id) << nameOf(id);
        EXPECT_EQ(fieldNamed(itemNameOf(id)), id) << itemNameOf(id);
        names.insert(nameOf(id));
    }
    EXPECT_EQ(names.size(), NumberCount);
    // The record has no member that no row reaches: made from its numbers alone, it is the same.
    ProjectInput copy;
    for (const FieldId id : RecordNumbers)
        set(copy, id, get(in, id));
    EXPECT_EQ(copy, in);
    static_assert(hasMembers<FieldCount>() && !hasMembers<FieldCount + 1>(),
                  "every member of the record needs a row");
}

TEST(InputFields, NoOtherNameIsTaken) {
    for (const char* name :
         {"", "XcutCenters", "XcutCenters.0", "XcutCenters.10", "XcutCenters(1", "XcutCenters(0)",
          "XcutCenters.1)", "depthCover", "DepthCover ", "ArchFactors", "RowE"})
        EXPECT_EQ(fieldNamed(name), std::nullopt) << name;
}

TEST(InputFields, NumbersAreNarrowedToTheTypeOfTheRecord) {
    ProjectInput in;
    set(in, Field::ArchFactor, 0.82);
    EXPECT_EQ(in.ArchFactor, 0.82F);
    set(in, Field::WidthC, 1e39);
    EXPECT_EQ(in.WidthC, std::numeric_limits<float>::infinity());
    set(in, Field::WidthC, -1e39);
    EXPECT_EQ(in.WidthC, -std::numeric_limits<float>::infinity());
    set(in, Field::Reserved, 2.5); // half to even
    EXPECT_EQ(in.Reserved, 2);
    set(in, Field::Reserved, -1e9);
    EXPECT_EQ(in.Reserved, -32768);
    set(in, Field::Reserved, std::nan(""));
    EXPECT_EQ(in.Reserved, 0);
}

TEST(InputFields, CountsChoicesAndFlagsDoNotVary) {
    std::set<std::string> fixed;
    for (const FieldId id : RecordNumbers)
        fixed.insert(nameOf(id));
    for (const FieldId id : NumericInputs)
        fixed.erase(nameOf(id));
    EXPECT_EQ(fixed, (std::set<std::string>{"NumberEntries", "Anal", "Reserved", "AMZ", "Arch",
                                            "RowA", "RowB", "RowC", "RowD"}));
}

TEST(InputFields, EveryNumberTravelsThroughFileFormAndConversion) {
    ProjectCase base = readable(English);
    const std::string written = *writeCaseText(base);
    for (const FieldId id : RecordNumbers) {
        ProjectCase current = base;
        current.Input = changed(base.Input, id);
        // What a smaller number of entries leaves out is not written.
        const bool count = id.field == Field::NumberEntries;
        if (count) current.Input.XcutCenters[9] = 0;
        const std::string name = nameOf(id);

        const std::string bytes = *writeCaseText(current);
        EXPECT_NE(bytes, written) << name;
        ProjectCase read = newCase(Metric);
        EXPECT_FALSE(readCaseText(bytes, "a.TLV", read).fault) << name;
        EXPECT_EQ(read.Input, current.Input) << name;

        ProjectInput fromForm;
        fromForm.Reserved = current.Input.Reserved; // the one number that the form does not have
        const ParameterTexts texts = textsFromInput(current.Input);
        EXPECT_EQ(inputFromTexts(fromForm, texts), current.Input) << name;
        EXPECT_EQ(texts == textsFromInput(base.Input), id.field == Field::Reserved) << name;

        const FieldKind kind = kindOf(id);
        const bool converts = kind != FieldKind::Number && kind != FieldKind::Angle;
        ASSERT_TRUE(convertCase(current)) << name;
        const double metric = get(current.Input, id);
        EXPECT_EQ(metric != get(changed(base.Input, id), id), converts) << name;
        ASSERT_TRUE(convertCase(current)) << name;
        // Two decimals of a metric unit are at most 1.5 of the English one's hundredths off.
        EXPECT_NEAR(get(current.Input, id), get(changed(base.Input, id), id), converts ? 0.75 : 0)
            << name;

        const bool hasBox = id.field != Field::Reserved;
        EXPECT_EQ(controlOf(id).empty(), !hasBox) << name;
        EXPECT_EQ(itemLabel(itemNameOf(id)).empty(), !hasBox) << name;
    }
}

} // namespace
} // namespace telvo::project
