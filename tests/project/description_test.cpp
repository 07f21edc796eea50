// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/description.h"

#include "project/CaseFile.h"

#include <gtest/gtest.h>

using namespace telvo::project;

TEST(Description, WhatIsPastedCannotBreakTheCaseFile) {
    const std::string pasted("A\tB\0C\r\nD\rE\x1A\n\n##EndDesc##\xE2\x80\xA8"
                             "F\xC2\x85G\xC2\x9DH \xC3\x85\xC2\xB0 I",
                             41);
    EXPECT_EQ(titleFromText(pasted), "A B C D E   ##EndDesc## F G H \u00C5\u00B0 I");
    EXPECT_EQ(descriptionFromText(pasted),
              "A B C\r\nD\r\nE \r\n ##EndDesc##\r\nF\r\nG H \u00C5\u00B0 I");
    EXPECT_EQ(titleFromText("\xC2"), "\xC2"); // half a character at the end

    ProjectCase made = newCase(English);
    made.Title = titleFromText(pasted);
    made.Description = descriptionFromText(pasted);
    ProjectCase read;
    const auto text = writeCaseText(made);
    ASSERT_FALSE(readCaseText(*text, "case", read).fault);
    EXPECT_EQ(read.Title, titleFromText(pasted));
    EXPECT_EQ(read.Description, descriptionFromText(pasted));
}
