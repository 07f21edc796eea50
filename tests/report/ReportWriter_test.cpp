// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/ReportWriter.h"

#include "base/numbers.h"
#include "base/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace telvo::report {
namespace {

using std::string;

string withoutBlanks(string text) {
    std::erase_if(text, [](char c) { return c == ' ' || c == '\r' || c == '\n'; });
    return text;
}

TEST(Layout, TextsAreFilledToTheirWidthAndNeverCut) {
    const string fifty(50, 'x');
    const struct {
        const char* label;
        string got, expected;
    } rows[] = {
        {"leader of 45", DotLeader("Development", 45), "Development" + string(34, '.')},
        {"label as long as the leader", DotLeader("abc", 3), "abc"},
        {"label beyond the leader", DotLeader(fifty, 45), fifty},
        {"leader of no width", DotLeader("", -1), ""},
        {"factor in 6", AlignValue(formatPattern(1.5, "##0.00"), 6), "  1.50"},
        {"number by its own text", AlignValue(0.25, 6), "  0.25"},
        {"value wider than 6", AlignValue("1234.50", 6), "1234.50"},
        {"right", PadLeft("ab", 4), "  ab"},
        {"right, too long", PadLeft("abcde", 4), "abcde"},
        {"left", PadRight("ab", 4), "ab  "},
        {"left, exact", PadRight("abcd", 4), "abcd"},
        {"letters beyond ASCII count once", PadLeft("\xC3\xA9", 3), "  \xC3\xA9"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.got, row.expected) << row.label;
}

TEST(WrapText, BreaksAtTheLastBlankWithinTheWidth) {
    const string w69(69, 'w');
    const string w70(70, 'w');
    const struct {
        const char* label;
        string text;
        int width;
        string expected;
    } rows[] = {
        {"71 characters, blank in column 70", w69 + " y", 70, w69 + "\r\ny"},
        {"70 characters stay", w69 + "y", 70, w69 + "y"},
        {"blank in column 71 is too late", "a " + string(68, 'w') + " y", 70,
         "a\r\n" + string(68, 'w') + " y"},
        {"blanks at a break go, others stay", "aa  bb " + w69 + "   cc  dd", 70,
         "aa  bb\r\n" + w69 + "\r\ncc  dd"},
        {"width 20 breaks nothing", "one two three four five six", 20,
         "one two three four five six"},
        {"width 21 breaks", "one two three four five six", 21, "one two three four\r\nfive six"},
        {"empty", "", 70, ""},
        {"70 two-byte letters are 70 characters", string(35, 'x') + " \xC3\xA9" + string(33, 'y'),
         70, string(35, 'x') + " \xC3\xA9" + string(33, 'y')},
    };
    for (const auto& row : rows)
        EXPECT_EQ(WrapText(row.text, row.width), row.expected) << row.label;
}

TEST(WrapText, AfterCutLongWordsNoLineIsTooLongAndOnlyBlanksAreLost) {
    std::mt19937 random(1);
    for (int round = 0; round < 500; ++round) {
        string text;
        for (auto words = 1 + random() % 6; words > 0; --words) {
            text.append(random() % 4, ' ');
            // Words around the limit, some of two-byte letters.
            const unsigned length = round % 2 ? 66 + random() % 8 : random() % 300;
            for (unsigned i = 0; i < length; ++i)
                text += random() % 50 ? "w" : "\xC3\xA9";
            text += ' ';
        }
        const string wrapped = WrapText(cutLongWords(text, TextWidth), TextWidth);
        EXPECT_EQ(withoutBlanks(wrapped), withoutBlanks(text));
        EXPECT_TRUE(isValidUtf8(wrapped)) << text;
        for (const auto line : splitLines(wrapped))
            ASSERT_LE(characterCount(line), 70U) << text;
    }
}

TEST(WrapText, WordThatFillsTheLineStaysWholeAtTheEnd) {
    const string word(70, 'x');
    EXPECT_EQ(cutLongWords(word, 70), word);
    EXPECT_EQ(WrapText(cutLongWords("a " + word, 70), 70), "a\r\n" + word);
    // With text behind it there is no blank within the line to break at.
    EXPECT_EQ(WrapText(cutLongWords(word + " b", 70), 70), string(69, 'x') + "\r\nx b");
    EXPECT_EQ(WrapText(cutLongWords(word + "x", 70), 70), string(69, 'x') + "\r\nxx");
}

TEST(RoundSF, NarrowsToSingleThenFollowsTheMode) {
    const struct {
        double factor;
        int mode;
        float expected;
    } rows[] = {
        {1.625, 0, 1.62F},
        {1.625, 2, 1.62F},
        {1.625, 1, 1.625F},
        {1.499, 0, 1.5F},
        {1.499, 2, 1.49F},
        {1.375, 0, 1.38F},
        {1.499, 7, 1.499F},
        {1.499, -1, 1.499F},
        {1.635, 0, 1.63F}, // the single next to 1.635 is 1.63499999
        {1.15, 2, 1.15F},
        {2.01, 2, 2.01F},           // 2.00999999 x 100 is 201 in single precision
        {1.0 / 3, 1, 0.333333343F}, // 1/3 in single precision
        {0, 0, 0.0F},
        {-1.009, 2, -1.0F} // cut toward zero
    };
    for (const auto& row : rows)
        EXPECT_EQ(RoundSF(row.factor, row.mode), row.expected)
            << row.factor << " in mode " << row.mode;
}

} // namespace
} // namespace telvo::report
