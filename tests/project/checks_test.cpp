// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/advisories.h"
#include "project/checks.h"

#include "project/inputFields.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace telvo::project;

namespace {

/// A case with two side gobs that passes both checks.
ProjectInput sound() {
    ProjectInput in;
    in.EntryHeight = 6, in.DepthCover = 800, in.EntryWidth = 20, in.XcutSpacing = 80;
    in.XcutAngle = 60, in.NumberEntries = 5, in.XcutCenters = {{70, 70, 70, 70}};
    in.CoalStrength = 900, in.UnitWeight = 162, in.BreadthAMZ = 141, in.ArchFactor = 0.9F;
    in.Anal = 3, in.ExtentActiveGob = 500;
    in.ExtentFirstGob = 400, in.BarrierFirstGob = 100, in.SlabcutFirstGob = 40;
    in.ExtentSecondGob = 300, in.BarrierSecondGob = 100, in.SlabcutSecondGob = 40;
    in.RowC = in.RowD = 1, in.WidthC = in.WidthD = 30;
    return in; // the rest as in a new case: angles 21, AMZ and arch factor automatic
}

/// One refusal: how it comes about in the form's texts and in a record (null: not there).
struct Row {
    const char* control;
    void (*text)(ParameterTexts&);
    void (*field)(ProjectInput&);
    const char* message;
};
#define SET(name, value) [](auto& in) { in.name = value; }
#define TEXT(name, text) [](ParameterTexts& in) { in[Field::name] = text; }
#define BOTH(name, value) "txt" #name, TEXT(name, #value), SET(name, value)
#define FORM(name, text) "txt" #name, TEXT(name, text), nullptr
#define RECORD(name, value) "txt" #name, nullptr, SET(name, value)
#define DISTANCE_TEXT(i, text)                                                                     \
    "txtXcutCenters_" #i, [](ParameterTexts& in) { in[{Field::XcutCenters, i}] = text; }, nullptr
#define DISTANCE(i, value) "txtXcutCenters_" #i, nullptr, SET(XcutCenters[i], value)

// In the order of both checks; what the two word or bound differently stands apart.
// clang-format off
const Row Rows[] = {
    {BOTH(EntryHeight, 0), "Invalid entry height"},
    {BOTH(DepthCover, -1), "Invalid depth of cover"},
    {FORM(XcutAngle, " "), "Crosscut Angle: Blank field not allowed"},
    {FORM(XcutAngle, " 0 "), "Crosscut Angle: Value '0' is outside input range\nValid range is: 30-90"},
    {FORM(XcutAngle, "91"), "Crosscut Angle: Value '91' is outside input range\nValid range is: 30-90"},
    {RECORD(XcutAngle, -1), "Invalid crosscut angle"},
    {RECORD(XcutAngle, 91), "Invalid crosscut angle"},
    {BOTH(EntryWidth, 0), "Invalid entry width"},
    {BOTH(XcutSpacing, 0), "Invalid crosscut spacing"},
    {FORM(XcutSpacing, "20"), "Invalid crosscut spacing"},
    {FORM(CoalStrength, "hard"), "Invalid in situ coal strength"},
    {FORM(UnitWeight, ""), "Invalid overburden unit weight"},
    {RECORD(CoalStrength, 0), "Invalid coal strength"},
    {BOTH(BreadthAMZ, 0), "Invalid breadth of AMZ"},
    {RECORD(UnitWeight, 0), "Invalid unit weight"},
    {FORM(ArchFactor, "0.2"), "Invalid Arch Factor"},
    {FORM(ArchFactor, "1.001"), "Invalid Arch Factor"},
    {RECORD(ArchFactor, -0.01F), "Invalid Arch Percent"},
    {RECORD(ArchFactor, 1.01F), "Invalid Arch Percent"},
    {BOTH(WidthC, 0), "Invalid Pillar Width for Row C"},
    {BOTH(WidthD, 0), "Invalid Pillar Width for Row D"},
    {"txtSlabcutFirstGob", TEXT(RowA, "1"), SET(RowA, 1),
     "Cannot take slab cut from first side barrier when Row A pillars are left"},
    {"txtSlabcutSecondGob", TEXT(RowB, "1"), SET(RowB, 1),
     "Cannot take slab cut from second side barrier when Row B pillars are left"},
    {BOTH(ExtentActiveGob, -1), "Invalid extent of active gob"},
    {BOTH(AbutmentAngleActiveGob, -1), "Invalid abutment angle of active gob"},
    {BOTH(AbutmentAngleActiveGob, 91), "Invalid abutment angle of active gob"},
    {BOTH(ExtentFirstGob, -1), "Invalid extent of first gob"},
    {BOTH(AbutmentAngleFirstGob, -1), "Invalid abutment angle of first gob"},
    {BOTH(AbutmentAngleFirstGob, 91), "Invalid abutment angle of first gob"},
    {BOTH(BarrierFirstGob, -1), "Invalid extent of barrier of first gob"},
    {BOTH(SlabcutFirstGob, 100.5), "Invalid extent of slab cut in barrier of first gob"},
    {BOTH(ExtentSecondGob, -1), "Invalid extent of second gob"},
    {BOTH(AbutmentAngleSecondGob, -1), "Invalid abutment angle of second gob"},
    {BOTH(AbutmentAngleSecondGob, 91), "Invalid abutment angle of second gob"},
    {BOTH(BarrierSecondGob, -1), "Invalid extent of barrier of second gob"},
    {BOTH(SlabcutSecondGob, 100.5), "Invalid extent of slab cut in barrier of second gob"},
    {DISTANCE_TEXT(2, "20"), "Entry spacing should be more than Entry Width"},
    {DISTANCE_TEXT(4, "0"), "Invalid entry spacing"},
    {DISTANCE(2, -1), "Invalid center-to-center distance #2"},
    {DISTANCE(4, 0), "Invalid center-to-center distance #4"}};

/// Cases beside that table, by a label: in use or not, on a limit or beyond it. "" is accepted.
const Row Limits[] = {
    {"angle 30", TEXT(XcutAngle, "30"), SET(XcutAngle, 0), ""},
    {"angle 90", TEXT(XcutAngle, "90"), SET(XcutAngle, 90), ""},
    {"arch factor, lowest", TEXT(ArchFactor, "0.28"), SET(ArchFactor, 0), ""},
    {"arch factor, highest", TEXT(ArchFactor, "1"), SET(ArchFactor, 1), ""},
    {"arch factor 0.2", nullptr, SET(ArchFactor, 0.2F), ""},
    {"spacing below the width", nullptr, SET(XcutSpacing, 1), ""},
    {"unit typed", TEXT(EntryHeight, "6 ft"), nullptr, ""},
    {"no entries", [](auto& in) { in[Field::NumberEntries] = in[{Field::XcutCenters, 1}] = "0"; }, nullptr, ""},
    {"slab = barrier", TEXT(SlabcutFirstGob, "100"), SET(SlabcutFirstGob, 100), ""},
    {"slab below 0", TEXT(SlabcutSecondGob, "-1"), SET(SlabcutSecondGob, -1),
     "Invalid extent of slab cut in barrier of second gob"},
    {"row C not left", [](auto& in) { in[Field::RowC] = "0"; in[Field::WidthC] = "0"; },
     [](auto& in) { in.RowC = 0; in.WidthC = 0; }, ""},
    {"row B with one side gob", [](auto& in) { in[Field::Anal] = "2"; in[Field::RowB] = "1"; },
     [](auto& in) { in.Anal = 2; in.RowB = 1; },
     "Cannot take slab cut from second side barrier when Row B pillars are left"},
    {"second gob not in use", [](auto& in) { in[Field::Anal] = "2"; in[Field::ExtentSecondGob] = "-1"; },
     [](auto& in) { in.Anal = 2; in.ExtentSecondGob = -1; }, ""},
    {"no side gob in use, values below 0 or too large",
     [](auto& in) { in[Field::Anal] = "1"; in[Field::AbutmentAngleFirstGob] = "91"; in[Field::SlabcutFirstGob] = "101";
                    in[Field::BarrierSecondGob] = in[Field::ExtentFirstGob] = "-1"; in[Field::RowA] = "1"; },
     [](auto& in) { in.Anal = 1; in.ExtentFirstGob = in.AbutmentAngleFirstGob = -1; in.RowA = in.RowB = 1;
                    in.BarrierFirstGob = in.SlabcutFirstGob = in.ExtentSecondGob = -1;
                    in.AbutmentAngleSecondGob = in.BarrierSecondGob = in.SlabcutSecondGob = -1; }, ""},
    {"first angle 91, not in use", nullptr, [](auto& in) { in.Anal = 0; in.AbutmentAngleFirstGob = 91; },
     "Invalid abutment angle of first gob"},
    {"second angle 91, not in use", nullptr, [](auto& in) { in.Anal = 2; in.AbutmentAngleSecondGob = 91; },
     "Invalid abutment angle of second gob"},
    {"slab above barrier, not in use", nullptr, [](auto& in) { in.Anal = 0; in.SlabcutSecondGob = 101; },
     "Invalid extent of slab cut in barrier of second gob"}};
// clang-format on

/// Every row alone is refused by its control; with all later rows spoilt as well it still wins.
template <typename Values, typename Check>
void expectRefusals(const Values& sound, void (*Row::*spoil)(Values&), Check check) {
    EXPECT_FALSE(check(sound));
    Values cumulative = sound;
    for (auto row = std::rbegin(Rows); row != std::rend(Rows); ++row) {
        if (!((*row).*spoil)) continue;
        Values alone = sound;
        ((*row).*spoil)(alone);
        ((*row).*spoil)(cumulative);
        for (const Values& values : {alone, cumulative}) {
            const auto refusal = check(values);
            ASSERT_TRUE(refusal) << row->message;
            EXPECT_EQ(refusal->message, row->message);
            EXPECT_EQ(refusal->control, row->control) << row->message;
        }
    }
}

} // namespace

TEST(Checks, FormAndAnalysisRefuseInTheirOrder) {
    expectRefusals(textsFromInput(sound()), &Row::text, checkAcceptance);
    expectRefusals(sound(), &Row::field, checkBeforeAnalysis);
}

TEST(Checks, LimitsAreAcceptedAndGobsOutOfUsePass) {
    const auto expect = [](const Row& row, auto values, auto spoil, auto check) {
        if (!spoil) return;
        spoil(values);
        const auto refusal = check(values);
        EXPECT_EQ(refusal ? refusal->message : "", row.message) << row.control;
    };
    for (const auto& row : Limits) {
        expect(row, textsFromInput(sound()), row.text, checkAcceptance);
        expect(row, sound(), row.field, checkBeforeAnalysis);
    }
    const telvo::Refusal range{"Value 'x' is outside input range\nValid range is: 0.28-1",
                               "Range Error", "box"};
    EXPECT_EQ(checkRange(" x ", 0.28, 1, "", "box"), range);
}

TEST(Checks, SpansHoldWhatIsAccepted) {
    int limits = 0;
    for (std::int16_t anal = 0; anal < 4; ++anal) {
        ProjectInput in = sound();
        in.Anal = anal;
        in.XcutCenters[3] = 45;
        for (const FieldId id : NumericInputs) {
            if (id.index > distanceCount(in)) continue;
            const Span form = validSpan(acceptanceRequirements(), in, id);
            const Span run = validSpan(analysisRequirements(), in, id);
            for (const double limit : {form.low, form.high, run.low, run.high}) {
                if (!std::isfinite(limit)) continue;
                ++limits;
                for (const double x : {limit - 0.01, limit, limit + 0.01}) {
                    ProjectInput other = in;
                    set(other, id, x);
                    EXPECT_EQ(form.contains(x), !checkAcceptance(textsFromInput(other)))
                        << nameOf(id) << " = " << x << ", loading condition " << anal;
                    EXPECT_EQ(run.contains(x), !checkBeforeAnalysis(other))
                        << nameOf(id) << " = " << x << ", loading condition " << anal;
                }
            }
        }
    }
    EXPECT_GT(limits, 200);
}

TEST(Checks, TextsBecomeARecordByTheLeadingNumber) {
    EXPECT_EQ(inputFromTexts({}, textsFromInput(sound())), sound());
    ParameterTexts texts = textsFromInput(sound());
    texts[Field::NumberEntries] = "2.5"; // half to even: 2
    texts[{Field::XcutCenters, 1}] = "55.5 ft";
    texts[{Field::XcutCenters, 2}] = "1"; // beyond the last entry: not read
    texts[Field::DepthCover] = "deep";
    ProjectInput expected = sound();
    expected.NumberEntries = 2;
    expected.XcutCenters[1] = 55.5;
    expected.DepthCover = 0;
    EXPECT_EQ(inputFromTexts(sound(), texts), expected);
}

TEST(Advisories, ComeWhereAValueLeavesTheDataBase) {
    constexpr auto left = AdvisoryTrigger::FocusLeft;
    // clang-format off
    const struct { AdvisoryTrigger trigger; const char* control; double value; std::int16_t units;
                   std::string_view text; } rows[] = {
        {left, "txtCoalStrength", 900, English, ""}, {left, "txtCoalStrength", 6.21, Metric, ""},
        {left, "txtCoalStrength", 900.001, English, CoalStrengthAdvisory},
        {left, "txtCoalStrength", 900 / 145.0377, Metric, CoalStrengthAdvisory},
        {left, "txtUnitWeight", 162, English, ""}, {left, "txtUnitWeight", 25.45, Metric, ""},
        {left, "txtUnitWeight", 25.45, English, UnitWeightAdvisory},
        {left, "txtUnitWeight", 25.4465, Metric, UnitWeightAdvisory},
        {left, "txtAbutmentAngleActiveGob", 21, Metric, ""}, {left, "txtDepthCover", 1, English, ""},
        {left, "txtAbutmentAngleActiveGob", 20, Metric, AbutmentAngleAdvisory},
        {left, "txtAbutmentAngleFirstGob", 90, English, AbutmentAngleAdvisory},
        {left, "txtAbutmentAngleSecondGob", 0, English, AbutmentAngleAdvisory},
        {AdvisoryTrigger::Cleared, "chkAMZ", 0, English, AMZAdvisory},
        {AdvisoryTrigger::Cleared, "chkArch", 0, English, ArchAdvisory},
        {AdvisoryTrigger::Cleared, "chkRowA", 0, English, ""},
        {AdvisoryTrigger::AnalSelected, "optAnal", 2, English, ""},
        {AdvisoryTrigger::AnalSelected, "optAnal", 3, English, TwoSideGobsAdvisory}};
    // clang-format on
    for (const auto& row : rows)
        EXPECT_EQ(advisory(row.trigger, row.control, row.value, row.units).value_or(""), row.text)
            << row.control << " " << row.value;
}
