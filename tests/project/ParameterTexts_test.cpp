// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/ParameterTexts.h"

#include "project/checks.h"
#include "project/inputFields.h"

#include <gtest/gtest.h>

namespace telvo::project {
namespace {

/// Four distances of 60 and, beyond the last entry, another number.
ProjectInput fiveEntries() {
    ProjectInput in;
    in.EntryHeight = 6, in.DepthCover = 800, in.EntryWidth = 20, in.XcutSpacing = 80;
    in.CoalStrength = 900, in.UnitWeight = 162, in.BreadthAMZ = 141, in.ArchFactor = 0.9F;
    in.XcutAngle = 60, in.NumberEntries = 5, in.XcutCenters = {{60, 60, 60, 60, 45}};
    return in;
}

TEST(ParameterTexts, EqualSpacingIsThatOfTheDistancesInUse) {
    ProjectInput in = fiveEntries();
    EXPECT_TRUE(haveEqualSpacing(in));
    in.XcutCenters[4] = 61;
    EXPECT_FALSE(haveEqualSpacing(in));
    in.XcutCenters = {{0, 0, 0, 0}};
    EXPECT_FALSE(haveEqualSpacing(in));
    in = fiveEntries();
    in.NumberEntries = 2; // one distance is equal to nothing
    EXPECT_FALSE(haveEqualSpacing(in));
    in.NumberEntries = 3;
    EXPECT_TRUE(haveEqualSpacing(in));

    ParameterTexts texts = textsFromInput(fiveEntries());
    texts[{Field::XcutCenters, 1}] = "70 ft";
    texts = withEqualSpacing(texts);
    for (int i = 1; i <= 4; ++i)
        EXPECT_EQ((texts[{Field::XcutCenters, i}]), "70 ft") << i;
    EXPECT_EQ((texts[{Field::XcutCenters, 5}]), "45");
}

TEST(ParameterTexts, BoxesOfAutomaticValuesAndOfRowsThatAreNotLeftAreClosed) {
    const auto closed = [](const ProjectInput& in, bool equalSpacing) {
        const ControlStates states = controlStates(textsFromInput(in), equalSpacing);
        std::string names;
        for (const FieldId id : RecordNumbers)
            if (!states.isEnabled(id)) names += nameOf(id) + " ";
        return names + std::to_string(states.distances);
    };
    ProjectInput in = fiveEntries(); // both automatic
    EXPECT_EQ(closed(in, false), "BreadthAMZ ArchFactor WidthC WidthD 4");
    in.AMZ = 0, in.RowC = 1;
    EXPECT_EQ(closed(in, false), "ArchFactor WidthD 4");
    in.AMZ = 1, in.Arch = 0, in.RowC = 0, in.RowD = 1, in.NumberEntries = 10;
    EXPECT_EQ(closed(in, false), "BreadthAMZ WidthC 9");
    in.AMZ = 0, in.RowC = 1;
    EXPECT_EQ(closed(in, true),
              "XcutCenters.2 XcutCenters.3 XcutCenters.4 XcutCenters.5 XcutCenters.6 "
              "XcutCenters.7 XcutCenters.8 XcutCenters.9 9");
}

TEST(ParameterTexts, EveryBoxHasItsFirstRefusal) {
    ParameterTexts texts = textsFromInput(fiveEntries());
    EXPECT_TRUE(acceptanceRefusals(texts).empty());
    texts[Field::XcutSpacing] = "-1"; // not above 0 and not above the entry width
    texts[Field::XcutAngle] = "";
    texts[{Field::XcutCenters, 3}] = "20";
    std::string found;
    for (const Refusal& refusal : acceptanceRefusals(texts))
        found += refusal.control + ": " + refusal.message + "\n";
    EXPECT_EQ(found, "txtXcutAngle: Crosscut Angle: Blank field not allowed\n"
                     "txtXcutSpacing: Invalid crosscut spacing\n"
                     "txtXcutCenters_3: Entry spacing should be more than Entry Width\n");
    EXPECT_EQ(checkAcceptance(texts)->control, "txtXcutAngle");
}

TEST(ParameterTexts, ARowBesideASlabCutCannotBeLeft) {
    ParameterTexts texts = textsFromInput(fiveEntries());
    for (const Field row : {Field::RowA, Field::RowB, Field::RowC, Field::RowD})
        EXPECT_FALSE(checkLeavingRow(texts, row));
    const auto refusal = [&](Field row) {
        const auto refused = checkLeavingRow(texts, row);
        return refused ? refused->control + ": " + refused->message : "";
    };
    texts[Field::SlabcutFirstGob] = "5";
    EXPECT_EQ(refusal(Field::RowA), "chkRowA: Cannot leave Row A pillars when a slab cut is taken "
                                    "from the first side barrier");
    EXPECT_EQ(refusal(Field::RowB), "");
    EXPECT_EQ(refusal(Field::RowC), "");
    texts[Field::SlabcutFirstGob] = "0", texts[Field::SlabcutSecondGob] = "0.5 ft";
    EXPECT_EQ(refusal(Field::RowA), "");
    EXPECT_EQ(refusal(Field::RowB), "chkRowB: Cannot leave Row B pillars when a slab cut is taken "
                                    "from the second side barrier");
    EXPECT_EQ(refusal(Field::RowD), "");
}

} // namespace
} // namespace telvo::project
