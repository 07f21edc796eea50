// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/outdated.h"
#include "project/inputFields.h"

#include <gtest/gtest.h>

namespace telvo::app {
namespace {

ShownCase aRun() {
    ShownCase run;
    run.current = project::newCase(project::English);
    run.current.FileName = "/cases/Panel 3.TLV";
    run.current.Input.DepthCover = 800;
    run.current.Input.NumberEntries = 5;
    return run;
}

TEST(Outdated, ARunOfTheSameValuesBelongsToTheCase) {
    const ShownCase run = aRun();
    ShownCase now = run;
    EXPECT_EQ(outdatedBecause(run, now), "");
    // Saved under another name, read from an older level, a distance that no entry has.
    now.current.FileName = "/elsewhere/Panel 4.TLV";
    now.current.FileVersion = 50;
    now.current.Input.XcutCenters[9] = 44;
    now.current.Input.Reserved = 7;
    EXPECT_EQ(outdatedBecause(run, now), "");
}

TEST(Outdated, EveryFieldThatCountsIsNoticed) {
    const ShownCase run = aRun();
    int fields = 0;
    ShownCase now = run;
    project::visitInputFields(
        now.current.Input, [&](std::string_view name, project::FieldKind, auto& field) {
            if (name == "Reserved") return;
            ++fields;
            const auto kept = field;
            if constexpr (std::is_arithmetic_v<std::remove_cvref_t<decltype(field)>>)
                ++field;
            else
                field[1] += 1;
            const std::string why = outdatedBecause(run, now);
            EXPECT_TRUE(why.starts_with("The case was changed since: ")) << name << why;
            // Another entry brings a distance with it.
            EXPECT_EQ(why.find(';') != std::string::npos, name == "NumberEntries") << why;
            // In the words of the form, not in those of the file.
            if (name != "Arch" && name != "AMZ") {
                EXPECT_EQ(why.find(std::string(name) + ' '), std::string::npos) << why;
            }
            field = kept;
        });
    EXPECT_EQ(fields, 30);
}

TEST(Outdated, TheTextTellsFromWhatToWhat) {
    const ShownCase run = aRun();
    ShownCase now = run;
    now.current.Input.DepthCover = 1200;
    EXPECT_EQ(outdatedBecause(run, now),
              "The case was changed since: Depth of Cover 800 ft, now 1200 ft.");
    now.current.Input.RowC = 1;
    now.current.Input.ExtentFirstGob = 250.5;
    now.current.Input.NumberEntries = 3; // two distances fewer
    EXPECT_EQ(
        outdatedBecause(run, now),
        "The case was changed since: Depth of Cover 800 ft, now 1200 ft; Number of Entries 5, "
        "now 3; Center to Center Distance #3 0 ft, now none; and 3 more.");
    now.current.FileName = "Other.TLV";
    EXPECT_EQ(outdatedBecause(run, now),
              "This belongs to Panel 3.TLV, not to Other.TLV, the case on screen.");
}

TEST(Outdated, UnitsTextsAndOptionsCountToo) {
    const ShownCase run = aRun();
    ShownCase now = run;
    now.current.Units = project::Metric;
    EXPECT_EQ(outdatedBecause(run, now),
              "The case on screen is in metric units; this is of before.");
    now = run;
    now.current.Title = "third panel";
    EXPECT_EQ(outdatedBecause(run, now), "Title or description of the case were changed since.");
    now = run;
    now.options.OutputStrUnits = 1;
    EXPECT_TRUE(outdatedBecause(run, now).starts_with("The options of the output"));
}

} // namespace
} // namespace telvo::app
