// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/sheets.h"

#include "base/text.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace telvo::report {
namespace {

using std::string;
using std::vector;
using namespace std::chrono_literals;

const SheetHeading Heading{"/mines/north.TLV", 1, "", 2026y / 3 / 7};
constexpr int HeadingLines = 4; // without a module header

/// What stands on a sheet below its heading.
vector<string> body(const Sheet& sheet) {
    return {sheet.begin() + HeadingLines, sheet.end()};
}

TEST(Sheets, HeadingNamesDateFileUnitsAndSheet) {
    SheetHeading heading = Heading;
    heading.moduleBuild = "050817";
    const vector<string> pages = {"first\r\n", "second\r\n"};
    const auto sheets = layOutSheets(pages, heading, {60, 70});
    ASSERT_EQ(sheets.size(), 2U);
    EXPECT_EQ(sheets[1], (Sheet{"TELVO module build: 050817",
                                "Date/Time: 3/7/2026    Current Units: m, cm, kN, MPa, kN/m3    "
                                "Page: 2",
                                "File Name: /mines/north.TLV", string(70, '-'), "", "second"}));
}

TEST(Sheets, ThePageThatNamesTheModuleBuildHasItOnce) {
    SheetHeading heading = Heading;
    heading.moduleBuild = "050817";
    const vector<string> pages = {"TELVO module build: 050817\r\nProject File: x\r\n"};
    const auto sheets = layOutSheets(pages, heading, {60, 70});
    ASSERT_EQ(sheets.size(), 1U);
    EXPECT_EQ(std::count(sheets[0].begin(), sheets[0].end(), "TELVO module build: 050817"), 1);
}

TEST(Sheets, TheLongestSheetIsFoundAmongThoseThatFit) {
    const vector<Sheet> sheets = {Sheet(40), Sheet(70), Sheet(66)};
    EXPECT_EQ(longestSheet(sheets, 70), 70U);
    EXPECT_EQ(longestSheet(sheets, 69), 66U);
    EXPECT_EQ(longestSheet(sheets, 39), 0U);
}

TEST(Sheets, ALineThatNoLongerFitsBeginsASheetUnlessItIsBlank) {
    // Room for three lines under the heading.
    const vector<string> pages = {"1\r\n2\r\n3\r\n", "a\r\n\r\nc\r\n\r\nd\r\n\r\n", "\r\n",
                                  "x\r\ny\r\nz\r\n\r\n"};
    const auto sheets = layOutSheets(pages, Heading, {HeadingLines + 3, 87});
    ASSERT_EQ(sheets.size(), 4U);
    EXPECT_EQ(body(sheets[0]), (vector<string>{"1", "2", "3"}));
    EXPECT_EQ(body(sheets[1]), (vector<string>{"a", "", "c"}));
    EXPECT_EQ(body(sheets[2]), (vector<string>{"d"}));
    EXPECT_EQ(body(sheets[3]), (vector<string>{"x", "y", "z"}));
    for (std::size_t i = 0; i < sheets.size(); ++i)
        EXPECT_TRUE(sheets[i][0].ends_with(" Page: " + std::to_string(i + 1))) << sheets[i][0];
}

TEST(Sheets, LongLinesGoOnInTheNextLine) {
    const string exact(80, 'e');
    const string path = "Project File: /" + string(100, 'p') + "/north.TLV";
    string umlauts;
    for (int i = 0; i < 90; ++i)
        umlauts += "\u00fc";
    const vector<string> pages = {exact + "\r\n" + path + "\r\n" + umlauts + "\r\nA " +
                                  string(50, 'b') + ' ' + string(50, 'c') + "\r\n"};
    const auto lines = body(layOutSheets(pages, Heading, {60, 80}).at(0));
    ASSERT_EQ(lines.size(), 7U);
    EXPECT_EQ(lines[0], exact);
    EXPECT_EQ(lines[1] + lines[2], path);
    EXPECT_EQ(lines[3] + lines[4], umlauts);
    EXPECT_EQ(characterCount(lines[3]), 80U);
    EXPECT_EQ(lines[5], "A " + string(50, 'b')); // broken at the blank
    EXPECT_EQ(lines[6], string(50, 'c'));
}

TEST(Sheets, ABlankBreaksALineWhereItLeavesNoPieceHalfEmpty) {
    const vector<string> pages = {string(35, 'a') + ' ' + string(40, 'b') + "\r\n" +
                                  string(36, 'c') + ' ' + string(40, 'd') + "\r\n"};
    const auto lines = body(layOutSheets(pages, Heading, {60, 70}).at(0));
    EXPECT_EQ(lines, (vector<string>{string(35, 'a') + ' ' + string(34, 'b'), string(6, 'b'),
                                     string(36, 'c'), string(40, 'd')}));
}

TEST(Sheets, ALongFileNameLosesItsMiddleInTheHeading) {
    SheetHeading heading = Heading;
    heading.FileName = "C:\\Gr\u00fcben\\" + string(200, 'd') + "\\north mains.TLV";
    const vector<string> pages = {"text"};
    const string line = layOutSheets(pages, heading, {60, 87}).at(0).at(1);
    EXPECT_EQ(characterCount(line), 87U);
    EXPECT_TRUE(line.starts_with("File Name: C:\\Gr\u00fcben\\ddd")) << line;
    // One third of what is left beside "File Name: " and the dots is the beginning.
    EXPECT_EQ(characterCount(line.substr(0, line.find("d...d") + 1)), 11U + 24U) << line;
    EXPECT_TRUE(line.ends_with("d\\north mains.TLV")) << line;
}

TEST(Sheets, PaperWithoutRoomStillTakesEveryCharacter) {
    const vector<string> pages = {"ab\r\ncd\r\n"};
    string found;
    for (const Sheet& sheet : layOutSheets(pages, Heading, {0, 0}))
        found += sheet.back(); // one line on every sheet
    EXPECT_EQ(found, "abcd");
}

} // namespace
} // namespace telvo::report
