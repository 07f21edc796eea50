// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/advisories.h"
#include "project/checks.h"

#include <gtest/gtest.h>

using namespace telvo::project;

namespace {

/// A case with two side gobs that passes both checks.
ProjectInput sound() {
    return {6,   800, 20,  80,  60, 5,   {{70, 70, 70, 70}},
            900, 162, 141, 3,   0,  1,   0.9F,
            1,   500, 21,  400, 21, 100, 40,
            300, 21,  100, 40,  0,  0,   1,
            1,   30,  30};
}

template <typename Values>
struct Row {
    const char* control;
    void (*spoil)(Values&);
    const char* message;
};
#define SET(control, value) [](auto& in) { in.control = value; }
#define TEXT(control, text) #control, SET(control, text)
#define FIELD(field, value) "txt" #field, SET(field, value)
#define DISTANCE(i, value) "txtXcutCenters_" #i, SET(XcutCenters[i], value)
#define DISTANCE_TEXT(i, text) "txtXcutCenters_" #i, SET(txtXcutCenters[i], text)

const char* const CutBesideRowA =
    "Cannot take slab cut from first side barrier when Row A pillars are left";
const char* const CutBesideRowB =
    "Cannot take slab cut from second side barrier when Row B pillars are left";

// Both tables stand in the order of the check. The second side's Row B hangs on the first gob.
// clang-format off
const Row<ParameterTexts> Acceptance[] = {
    {TEXT(txtEntryHeight, "0"), "Invalid entry height"},
    {TEXT(txtDepthCover, "deep"), "Invalid depth of cover"},
    {TEXT(txtXcutAngle, " "), "Crosscut Angle: Blank field not allowed"},
    {TEXT(txtXcutAngle, " 0 "), "Crosscut Angle: Value '0' is outside input range\nValid range is: 30-90"},
    {TEXT(txtXcutAngle, "90.1"), "Crosscut Angle: Value '90.1' is outside input range\nValid range is: 30-90"},
    {TEXT(txtEntryWidth, "-1"), "Invalid entry width"},
    {TEXT(txtXcutSpacing, "20"), "Invalid crosscut spacing"},
    {TEXT(txtCoalStrength, "0"), "Invalid in situ coal strength"},
    {TEXT(txtUnitWeight, ""), "Invalid overburden unit weight"},
    {TEXT(txtBreadthAMZ, "0"), "Invalid breadth of AMZ"},
    {TEXT(txtArchFactor, "0.2"), "Invalid Arch Factor"},
    {TEXT(txtArchFactor, "1.001"), "Invalid Arch Factor"},
    {TEXT(txtWidthC, "0"), "Invalid Pillar Width for Row C"},
    {TEXT(txtWidthD, "-1"), "Invalid Pillar Width for Row D"},
    {"txtSlabcutFirstGob", [](auto& in) { in.chkRowA = true; in.txtSlabcutFirstGob = "1"; }, CutBesideRowA},
    {"txtSlabcutSecondGob", [](auto& in) { in.chkRowB = true; in.txtSlabcutSecondGob = "1"; }, CutBesideRowB},
    {TEXT(txtExtentActiveGob, "-1"), "Invalid extent of active gob"},
    {TEXT(txtAbutmentAngleActiveGob, "-1"), "Invalid abutment angle of active gob"},
    {TEXT(txtAbutmentAngleActiveGob, "91"), "Invalid abutment angle of active gob"},
    {TEXT(txtExtentFirstGob, "-1"), "Invalid extent of first gob"},
    {TEXT(txtAbutmentAngleFirstGob, "-1"), "Invalid abutment angle of first gob"},
    {TEXT(txtAbutmentAngleFirstGob, "91"), "Invalid abutment angle of first gob"},
    {TEXT(txtBarrierFirstGob, "-1"), "Invalid extent of barrier of first gob"},
    {TEXT(txtSlabcutFirstGob, "-1"), "Invalid extent of slab cut in barrier of first gob"},
    {TEXT(txtSlabcutFirstGob, "100.5"), "Invalid extent of slab cut in barrier of first gob"},
    {TEXT(txtExtentSecondGob, "-1"), "Invalid extent of second gob"},
    {TEXT(txtAbutmentAngleSecondGob, "-1"), "Invalid abutment angle of second gob"},
    {TEXT(txtAbutmentAngleSecondGob, "91"), "Invalid abutment angle of second gob"},
    {TEXT(txtBarrierSecondGob, "-1"), "Invalid extent of barrier of second gob"},
    {TEXT(txtSlabcutSecondGob, "-1"), "Invalid extent of slab cut in barrier of second gob"},
    {TEXT(txtSlabcutSecondGob, "100.5"), "Invalid extent of slab cut in barrier of second gob"},
    {DISTANCE_TEXT(2, "20"), "Entry spacing should be more than Entry Width"},
    {DISTANCE_TEXT(4, "0"), "Invalid entry spacing"}};

const Row<ProjectInput> BeforeAnalysis[] = {
    {FIELD(EntryHeight, 0), "Invalid entry height"},
    {FIELD(DepthCover, -1), "Invalid depth of cover"},
    {FIELD(XcutAngle, -1), "Invalid crosscut angle"},
    {FIELD(XcutAngle, 91), "Invalid crosscut angle"},
    {FIELD(EntryWidth, 0), "Invalid entry width"},
    {FIELD(XcutSpacing, 0), "Invalid crosscut spacing"},
    {FIELD(CoalStrength, 0), "Invalid coal strength"},
    {FIELD(BreadthAMZ, 0), "Invalid breadth of AMZ"},
    {FIELD(UnitWeight, 0), "Invalid unit weight"},
    {FIELD(ArchFactor, -0.01F), "Invalid Arch Percent"},
    {FIELD(ArchFactor, 1.01F), "Invalid Arch Percent"},
    {FIELD(WidthC, 0), "Invalid Pillar Width for Row C"},
    {FIELD(WidthD, 0), "Invalid Pillar Width for Row D"},
    {"txtSlabcutFirstGob", SET(RowA, 1), CutBesideRowA},
    {"txtSlabcutSecondGob", SET(RowB, 1), CutBesideRowB},
    {FIELD(ExtentActiveGob, -1), "Invalid extent of active gob"},
    {FIELD(AbutmentAngleActiveGob, -1), "Invalid abutment angle of active gob"},
    {FIELD(AbutmentAngleActiveGob, 91), "Invalid abutment angle of active gob"},
    {FIELD(ExtentFirstGob, -1), "Invalid extent of first gob"},
    {FIELD(AbutmentAngleFirstGob, -1), "Invalid abutment angle of first gob"},
    {FIELD(AbutmentAngleFirstGob, 91), "Invalid abutment angle of first gob"},
    {FIELD(BarrierFirstGob, -1), "Invalid extent of barrier of first gob"},
    {FIELD(SlabcutFirstGob, 100.5), "Invalid extent of slab cut in barrier of first gob"},
    {FIELD(ExtentSecondGob, -1), "Invalid extent of second gob"},
    {FIELD(AbutmentAngleSecondGob, -1), "Invalid abutment angle of second gob"},
    {FIELD(AbutmentAngleSecondGob, 91), "Invalid abutment angle of second gob"},
    {FIELD(BarrierSecondGob, -1), "Invalid extent of barrier of second gob"},
    {FIELD(SlabcutSecondGob, 100.5), "Invalid extent of slab cut in barrier of second gob"},
    {DISTANCE(2, -1), "Invalid center-to-center distance #2"},
    {DISTANCE(4, 0), "Invalid center-to-center distance #4"}};
// clang-format on

/// Every row alone is refused with its message; with the later rows spoilt as well it still wins.
template <typename Values, std::size_t Size, typename Check>
void expectRefusals(const Row<Values> (&rows)[Size], const Values& good, Check check) {
    EXPECT_FALSE(check(good));
    Values cumulative = good;
    for (std::size_t i = Size; i-- > 0;) {
        Values alone = good;
        rows[i].spoil(alone);
        rows[i].spoil(cumulative);
        for (const Values& values : {alone, cumulative}) {
            const auto refusal = check(values);
            ASSERT_TRUE(refusal) << rows[i].message;
            EXPECT_EQ(refusal->message, rows[i].message);
            EXPECT_EQ(refusal->control, rows[i].control) << rows[i].message;
        }
    }
}

} // namespace

TEST(Checks, AcceptanceRefusesInItsOrder) {
    expectRefusals(Acceptance, textsFromInput(sound()), checkAcceptance);
}

TEST(Checks, AnalysisRefusesInItsOrder) {
    expectRefusals(BeforeAnalysis, sound(), checkBeforeAnalysis);
}
