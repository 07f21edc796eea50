// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/conversionNotes.h"

#include "project/units.h"

#include <gtest/gtest.h>

namespace telvo::project {
namespace {

TEST(ConversionNotes, TellOfTheArchFactorAndOfAFileThatIsThere) {
    ProjectCase current = newCase(English);
    current.Input.Arch = 0;
    EXPECT_EQ(conversionNotes(current, convertedCase(current), false).size(), 2U);
    auto notes = conversionNotes(current, convertedCase(current), true);
    ASSERT_EQ(notes.size(), 3U);
    EXPECT_TRUE(notes[2].starts_with("A file of the new name is already there."));
    // A case that cannot be converted has no new name.
    EXPECT_EQ(conversionNotes(current, Fault{"too large", ""}, true).size(), 2U);
    // Depth less width, 200 ft, is more than 80 ft but less than 80 m.
    current.Input.Arch = 1;
    current.Input.DepthCover = 600;
    current.Input.NumberEntries = 3;
    current.Input.XcutCenters[1] = current.Input.XcutCenters[2] = 200;
    notes = conversionNotes(current, convertedCase(current), false);
    ASSERT_EQ(notes.size(), 3U);
    EXPECT_EQ(notes[2], "The automatic pressure arch factor changes from 0.89 to 1 by the "
                        "conversion.");
}

} // namespace
} // namespace telvo::project
