// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/keptItems.h"

#include "project/CaseFile.h"

#include <gtest/gtest.h>

namespace telvo::project {
namespace {

TEST(KeptItems, AreToldWithTheirValuesAndWhereTheyComeFrom) {
    ProjectCase current = newCase(Metric);
    current.Title = "North mains";
    current.Input.DepthCover = 150, current.Input.RowA = 1, current.Input.NumberEntries = 3;
    current.Input.XcutCenters = {{24, 25.5}};
    EXPECT_EQ(itemText("DepthCover", current, Metric), "Depth of Cover 150 (m)");
    EXPECT_EQ(itemText("DepthCover", current, English), "Depth of Cover 150 (ft)");
    EXPECT_EQ(itemText("Units", current, English), "Units metric");
    EXPECT_EQ(itemText("Title", current, Metric), "Title \"North mains\"");
    EXPECT_EQ(itemText("Description", current, Metric), "Description");
    EXPECT_EQ(itemText("Reserved", current, Metric), "");
    EXPECT_EQ(itemText("nothing", current, Metric), "");
    EXPECT_EQ(itemControl("DepthCover"), "txtDepthCover");
    EXPECT_EQ(itemControl("Title"), "txtTitle");
    EXPECT_EQ(itemControl("XcutCenters(2)"), "txtXcutCenters_2");

    KeptItems kept{{"EntryWidth", "XcutCenters(2)"}, "a.TLV", English, false};
    const std::string given = givenItemsText(kept, current);
    EXPECT_TRUE(given.starts_with("Units metric, Title \"North mains\", Description, ")) << given;
    EXPECT_NE(given.find(", Depth of Cover 150 (m), "), std::string::npos) << given;
    EXPECT_NE(given.find(" #1 24 (m)"), std::string::npos) << given;
    EXPECT_EQ(given.find("#2"), std::string::npos) << given;
    EXPECT_EQ(given.find("#3"), std::string::npos) << given; // beyond the last entry
    EXPECT_EQ(given.find("Entry Width"), std::string::npos) << given;
    const std::string told = keptItemsText(kept, current);
    EXPECT_TRUE(told.starts_with("Entry Width ")) << told;
    EXPECT_TRUE(told.ends_with(" #2 25.5 (ft)")) << told;

    EXPECT_EQ(keptOrigin(kept, current),
              "the case before, a.TLV, in English units (the numbers now count in metric units; "
              "nothing was converted)");
    kept.units = Metric;
    EXPECT_EQ(keptOrigin(kept, current), "the case before, a.TLV, in metric units");
    EXPECT_EQ(keptOrigin({{}, "", English, false}, newCase(English)),
              "the defaults of a new case, in English units");
}

} // namespace
} // namespace telvo::project
