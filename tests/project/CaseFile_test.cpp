// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/CaseFile.h"

#include "base/TemporaryFolder.h"
#include "base/text.h"

#include <limits>
#include <tuple>

using namespace telvo;
using namespace telvo::project;

namespace {

// A whole case file: item, level that brought it in, line. Every value differs from the others, so
// that two items read or written in each other's place show.
// clang-format off
const struct { std::string item; int level; std::string line; } Lines[] = {
    {"", 0, "TELVO_602"}, {"Units", 0, " 1"}, {"Title", 0, "Fl\xC3\xB6z 7, West"},
    {"Description", 0, "##StartDesc##"}, {"Description", 0, "first"}, {"Description", 0, " second"},
    {"Description", 0, "##EndDesc##"}, {"EntryHeight", 0, "5.5"}, {"DepthCover", 0, "1000.25"},
    {"XcutAngle", 0, "61"}, {"EntryWidth", 0, "20.5"}, {"XcutSpacing", 0, "100.1"},
    {"NumberEntries", 0, " 10"}, {"XcutCenters(1)", 0, "71"}, {"XcutCenters(2)", 0, "72"},
    {"XcutCenters(3)", 0, "73"}, {"XcutCenters(4)", 0, "74"}, {"XcutCenters(5)", 0, "75"},
    {"XcutCenters(6)", 0, "76"}, {"XcutCenters(7)", 0, "77"}, {"XcutCenters(8)", 0, "78"},
    {"XcutCenters(9)", 0, "79"}, {"CoalStrength", 0, "6.2"}, {"UnitWeight", 0, "25"},
    {"BreadthAMZ", 0, "1.5E-06"}, {"AMZ", 0, " 21"}, {"Arch", 53, " 22"}, {"Anal", 0, " 2"},
    {"Reserved", 51, "-7"}, {"ArchFactor", 52, " 0.82"}, {"ExtentActiveGob", 0, "301"},
    {"AbutmentAngleActiveGob", 0, "31"}, {"ExtentFirstGob", 0, "302"},
    {"AbutmentAngleFirstGob", 0, "32"}, {"BarrierFirstGob", 0, "303"},
    {"SlabcutFirstGob", 0, "-303.5"}, {"ExtentSecondGob", 0, "304"},
    {"AbutmentAngleSecondGob", 0, "34"}, {"BarrierSecondGob", 0, "305"},
    {"SlabcutSecondGob", 0, "306"}, {"RowA", 53, " 11"}, {"RowB", 53, " 12"}, {"RowC", 53, " 13"},
    {"RowD", 53, " 14"}, {"WidthC", 53, "33.3"}, {"WidthD", 53, "44.4"}};
// clang-format on
constexpr std::size_t Count = std::size(Lines);
constexpr std::size_t FirstNumber = 7;

/// The record of that file, its fields in record order.
ProjectCase sample() {
    // clang-format off
    return {{5.5, 1000.25, 20.5, 100.1, 61, 10, {{71, 72, 73, 74, 75, 76, 77, 78, 79}}, 6.2, 25, 1.5e-6,
             2, -7, 21, 0.82F, 22, 301, 31, 302, 32, 303, -303.5, 304, 34, 305, 306, 11, 12, 13, 14,
             33.3F, 44.4F}, Metric, "Fl\xC3\xB6z 7, West", "first\r\n second", 2, 53, "Untitled"};
    // clang-format on
}

/// What a record held before a reading; no item of it is as in the file.
ProjectCase before() {
    ProjectCase held = newCase(English);
    held.Input.NumberEntries = 10;
    held.Title = held.Description = held.FileName = "held";
    return held;
}

std::size_t indexOf(std::string_view item) {
    std::size_t i = 0;
    while (i + 1 < Count && Lines[i].item != item)
        ++i;
    return i;
}

/// The file up to a line, one item replaced, without the items that a level lacks.
std::string text(std::size_t lines = Count, std::string_view item = "-",
                 const std::string& replacement = "", int level = 53,
                 std::string_view lineBreak = "\r\n") {
    std::string out;
    for (std::size_t i = 0; i < lines; ++i)
        if (Lines[i].level <= level)
            (out += i == indexOf(item) && i + 1 < Count ? replacement : Lines[i].line) += lineBreak;
    return out;
}

/// Whether the numbers of a record are those of the file where `read` says so, else as held before.
template <typename Predicate>
void expectNumbers(ProjectCase record, std::string_view label, Predicate read) {
    ProjectCase held = before();
    const std::string now = *writeCaseText(record);
    const std::string then = *writeCaseText(held);
    const auto lines = splitLines(now);
    const auto old = splitLines(then);
    for (std::size_t i = FirstNumber; i < Count; ++i)
        EXPECT_EQ(lines[lines.size() - Count + i],
                  read(i) ? std::string_view(Lines[i].line) : old[old.size() - Count + i])
            << label << ": " << Lines[i].item;
}

std::string x(std::size_t n) {
    return std::string(n, 'x');
}

} // namespace

TEST(CaseFile, IsWrittenByteForByteAndReadBackWhole) {
    ProjectCase record = sample();
    record.FileVersion = 50;
    record.DescriptionLines = 9;
    const auto written = writeCaseText(record);
    ASSERT_TRUE(written) << faultText(written.fault());
#ifdef _WIN32
    EXPECT_EQ(asUtf8(*written), text()); // in the code page of the system
#else
    EXPECT_EQ(*written, text());
#endif
    EXPECT_EQ(record, sample()) << "counts the description's lines and sets the file version";
    ProjectCase read = before();
    const auto reading = readCaseText(*written, "a.TLV", read);
    EXPECT_TRUE(reading.accepted && !reading.fault);
    read.FileName = sample().FileName;
    EXPECT_EQ(read, sample());
}

TEST(CaseFile, ItemsThatALevelLacksKeepWhatTheyHeld) {
    const std::pair<int, const char*> levels[] = {
        {53, "TELVO_602"}, {52, "TELVO_601"}, {51, "TELVO_501"}, {50, "TELVO_500"}};
    for (const auto& [level, tag] : levels) {
        ProjectCase read = before();
        const auto reading = readCaseText(text(Count, "", tag, level), "a.TLV", read);
        EXPECT_TRUE(reading.accepted && !reading.fault) << tag;
        EXPECT_EQ(read.FileVersion, level) << tag;
        expectNumbers(read, tag, [&, since = level](auto i) { return Lines[i].level <= since; });
    }
}

TEST(CaseFile, FilesWithoutMarkersHaveFiveLinesOfDescription) {
    std::string items = " 1\r\ntitle\r\none\r\n\r\n  \r\nfour\r\n##EndDesc##\r\n";
    for (std::size_t i = FirstNumber; i < Count; ++i)
        if (Lines[i].level <= 49) items += Lines[i].line + "\r\n";
    ProjectCase read = before();
    EXPECT_FALSE(readCaseItems(items, 49, "a.TLV", read));
    EXPECT_EQ(read.Description, "one\r\nfour\r\n##EndDesc##");
    EXPECT_EQ(read.DescriptionLines, 3);
    EXPECT_EQ(read.Input.EntryHeight, 5.5);
    EXPECT_EQ(read.Input.SlabcutSecondGob, 306);
    EXPECT_EQ(read.Input.Reserved, before().Input.Reserved);
}

TEST(CaseFile, TagAndEncodingAreRecognised) {
    std::string windows = text();
    windows.replace(windows.find("\xC3\xB6"), 2, "\xF6");
    // clang-format off
    const struct { const char* label; std::string bytes; bool accepted; } rows[] = {
        {"byte-order mark", "\xEF\xBB\xBF" + text(), true}, {"Windows-1252", windows, true},
        {"item ends at a comma", text(Count, "", "TELVO_602,rest of the line"), true},
        {"line feeds alone", text(Count, "-", "", 53, "\n"), true},
        {"carriage returns alone", text(Count, "-", "", 53, "\r"), true},
        {"no last line break", text().substr(0, text().size() - 2), true},
        {"more lines behind", text() + "extra\r\n\r\n", true}, {"empty", "", false},
        {"unknown level", text(Count, "", "TELVO_603"), false},
        {"longer tag", text(Count, "", "TELVO_6021"), false},
        {"small letters", text(Count, "", "telvo_602"), false},
        {"NUL bytes", std::string(64, '\0'), false}};
    // clang-format on
    for (const auto& row : rows) {
        ProjectCase read = before();
        const auto reading = readCaseText(row.bytes, "a.TLV", read);
        EXPECT_EQ(reading.accepted, row.accepted) << row.label;
        const std::string fault = reading.fault ? faultText(*reading.fault) : "";
        EXPECT_EQ(fault.substr(0, 34), row.accepted ? "" : "a.TLV, line 1: Invalid file format")
            << row.label;
        EXPECT_EQ(read.FileName, "held") << row.label;
        ProjectCase expected = row.accepted ? sample() : before();
        expected.FileName = "held";
        EXPECT_EQ(read, expected) << row.label << ": an unknown tag changes nothing";
    }
}

TEST(CaseFile, ALastNumberThatMayBeCutAndASecondCaseAreRemarked) {
    const auto remarks = [](const std::string& bytes) {
        ProjectCase read = before();
        const auto reading = readCaseText(bytes, "a.TLV", read);
        EXPECT_FALSE(reading.fault) << bytes;
        return reading.remarks;
    };
    const std::string whole = text();
    EXPECT_TRUE(remarks(whole).empty());
    EXPECT_TRUE(remarks(whole + "\r\nnotes of a colleague").empty());
    EXPECT_TRUE(remarks(whole.substr(0, whole.size() - 2) + "\n").empty());
    for (const std::size_t cut : {2, 3}) { // the line end; a digit, too
        const auto told = remarks(whole.substr(0, whole.size() - cut));
        ASSERT_EQ(told.size(), 1U) << cut;
        EXPECT_NE(told[0].find("may have been cut"), std::string::npos);
    }
    for (const char* between : {"", "\r\n", "from the archive\n"}) {
        const auto told = remarks(whole + between + whole);
        ASSERT_EQ(told.size(), 1U) << between;
        EXPECT_NE(told[0].find("second case"), std::string::npos);
    }
}

TEST(CaseFile, SectionIsFoundInTheFileOfTheSiblingProgram) {
    // The first line that is a tag alone begins the case; damage is told by the line of the file.
    const std::string before = "KORV_100\nTELVO_602,not alone\n TELVO_60\nx\xFFy\n\n";
    ProjectCase read = newCase(English);
    EXPECT_TRUE(readCaseSection(before + text() + "more\n", "mine.KRV", read).accepted);
    ProjectCase whole = newCase(English);
    readCaseText(text(), "case", whole);
    EXPECT_EQ(read.Input, whole.Input);
    EXPECT_EQ(read.FileVersion, CurrentLevel);
    ProjectCase untouched = newCase(Metric);
    for (const std::string& none : {before, std::string(), std::string("\0\0", 2)}) {
        const auto reading = readCaseSection(none, "mine.KRV", untouched);
        EXPECT_FALSE(reading.accepted);
        EXPECT_EQ(reading.fault->message, "Invalid file format");
        EXPECT_EQ(untouched, newCase(Metric));
    }
    const auto damaged =
        readCaseSection(before + "TELVO_602 \n0\nTitle\n##EndDesc##\nx\n", "mine.KRV", read);
    EXPECT_TRUE(damaged.accepted);
    EXPECT_EQ(damaged.fault->where, "mine.KRV, line 10");
}

TEST(CaseFile, EndingTooEarlyKeepsTheItemsReadSoFar) {
    for (std::size_t cut = 1; cut < Count; ++cut) {
        ProjectCase read = before();
        const auto reading = readCaseText(text(cut), "a.TLV", read);
        ASSERT_TRUE(reading.accepted && reading.fault) << cut;
        const std::string line = "a.TLV, line " + std::to_string(cut + 1) + ": ";
        EXPECT_EQ(faultText(*reading.fault),
                  line + Lines[cut].item + ": the file ends before this item");
        expectNumbers(read, line, [&](auto i) { return i < cut; });
    }
}

TEST(CaseFile, DamageNamesFileLineAndItem) {
    // clang-format off
    const struct { const char* item; std::string line, message; } rows[] = {
        {"Units", "metric", "\"metric\" is not a number"}, {"EntryWidth", "", "not a number"},
        {"DepthCover", "deep", "\"deep\" is not a number"}, {"XcutSpacing", "18,5", "decimal comma"},
        {"XcutAngle", "60 degrees", "not a number alone"}, {"CoalStrength", "1e999", "too large"}, {"CoalStrength", "-9e999", "too large"},
        {"WidthC", "1e39", "too large"}, {"Reserved", " 70000", "outside -32768 to 32767"},
        {"Anal", " 1.5", "not a whole number"}, {"NumberEntries", "-1", "-1 is outside 0 to 10"},
        {"NumberEntries", " 11", "11 is outside 0 to 10"}, {"Title", std::string("a\0b", 3), "NUL"},
        {"XcutCenters(4)", std::string("74\0", 3), "NUL"}, {"Description", x(65536), "longer than"},
        {"ArchFactor", std::string(1'000'000, ' ') + "1", "longer than 65535"}};
    // clang-format on
    for (const auto& row : rows) {
        const std::size_t index = indexOf(row.item);
        ProjectCase read = before();
        const auto reading = readCaseText(text(Count, row.item, row.line), "bad.TLV", read);
        ASSERT_TRUE(reading.accepted && reading.fault) << row.item << " " << row.message;
        const std::string fault = faultText(*reading.fault);
        const std::string place = "bad.TLV, line " + std::to_string(index + 1) + ": " + row.item;
        EXPECT_EQ(fault.substr(0, place.size() + 2), place + ": ");
        EXPECT_NE(fault.find(row.message), std::string::npos) << fault;
        ProjectCase truncated = before();
        readCaseText(text(index), "bad.TLV", truncated);
        EXPECT_EQ(read, truncated) << row.item << ": keeps what stands before the damage";
    }
}

TEST(CaseFile, ValuesOutsideTheirRangeAreBroughtBack) {
    const std::tuple<const char*, const char*, int, int> rows[] = {
        {"Units", " 5", 0, 2}, {"Units", "-1", 0, 2}, {"Anal", " 7", 1, 3}};
    for (const auto& [item, line, units, anal] : rows) {
        ProjectCase read = before();
        EXPECT_FALSE(readCaseText(text(Count, item, line), "a.TLV", read).fault);
        EXPECT_TRUE(read.Units == units && read.Input.Anal == anal) << item << line;
    }
    // No entry at all becomes one entry, which has no distance in the file.
    ProjectCase record = sample();
    record.Input.NumberEntries = 0;
    std::string bytes = *writeCaseText(record);
    EXPECT_EQ(record.Input.NumberEntries, 1);
    const auto at = bytes.find("\r\n100.1\r\n 1\r\n6.2\r\n");
    ASSERT_NE(at, std::string::npos);
    bytes[at + 10] = '0';
    ProjectCase read = before();
    EXPECT_FALSE(readCaseText(bytes, "a.TLV", read).fault);
    EXPECT_EQ(read.Input.NumberEntries, 1);
    EXPECT_EQ(read.Input.WidthD, 44.4F);
}

TEST(CaseFile, DescriptionIsBrokenColumnForColumn) {
    std::string umlauts = "\xC3\xB6";
    for (int i = 0; i < 6; ++i)
        umlauts += umlauts; // 64 of them
    const std::string o49 = umlauts.substr(0, 98);
    const std::string nl = "\r\n";
    // clang-format off
    const struct { const char* label; std::string typed, saved; } rows[] = {
        {"60 characters stay, blanks or not", o49 + " " + x(10), o49 + " " + x(10)},
        {"blanks in columns 50 and 60", x(49) + " " + x(9) + " " + x(8), x(49) + " " + x(9) + " " + nl + x(8)},
        {"blank in column 59", x(58) + " " + x(10), x(58) + " " + nl + x(10)},
        {"blank in column 40", x(39) + " " + x(30), x(39) + " " + nl + x(30)},
        {"blank in column 39 is too early", x(38) + " " + x(31), x(38) + " " + x(21) + nl + x(10)},
        {"last blank", x(44) + " " + x(4) + " " + x(20), x(44) + " " + x(4) + " " + nl + x(20)},
        {"no blank", x(121), x(60) + nl + x(60) + nl + x(1)},
        {"a rest below 60 is split too", x(105) + " " + x(5), x(60) + nl + x(45) + " " + nl + x(5)},
        {"blanks around do not count", "   " + x(58) + "  ", "   " + x(58) + "  "},
        {"but take columns", "  " + x(61), "  " + x(58) + nl + x(3)},
        {"blank lines go", "\r\na\r\n \r\n\r\nb\nc\rd\r\n", "a\r\nb\r\nc\r\nd"},
        {"only blank lines", " \r\n\r\n", ""},
        {"a NUL is a blank", std::string("a\n\0\nb\0c", 7), "a\r\nb c"},
        {"a piece of blanks goes", x(50) + std::string(80, ' ') + x(20),
         x(50) + std::string(10, ' ') + nl + std::string(10, ' ') + x(20)},
        {"end marker", "a\n##EndDesc##\nb", "a\r\n ##EndDesc##\r\nb"},
        {"start marker", "##StartDesc##", " ##StartDesc##"},
        {"characters, not bytes", umlauts, umlauts.substr(0, 120) + nl + umlauts.substr(120)}};
    // clang-format on
    for (const auto& row : rows) {
        EXPECT_EQ(normalisedDescription(row.typed), row.saved) << row.label;
        EXPECT_EQ(normalisedDescription(row.saved), row.saved) << row.label << ", saved again";
        ProjectCase record = sample();
        record.Title = "two\r\nlines";
        record.Description = row.typed;
        ProjectCase read = sample();
        EXPECT_FALSE(readCaseText(*writeCaseText(record), "a.TLV", read).fault) << row.label;
        EXPECT_EQ(read, record) << row.label << ": the record is as it is read back";
        EXPECT_EQ(read.Title, "two lines");
    }
}

TEST(CaseFile, ForeignBytesAndUnitsAreReadBackAsTheRecordHoldsThem) {
    ProjectCase record = sample();
    record.Title = "Grube \xFC"; // Windows-1252 beside UTF-8 would make the whole file Windows-1252
    record.Description = "\xC3\xB6";
    record.Units = 7; // metric, as every system but 0 is
    ProjectCase read = sample();
    EXPECT_FALSE(readCaseText(*writeCaseText(record), "a.TLV", read).fault);
    EXPECT_EQ(read, record);
    EXPECT_EQ(read.Title, "Grube \xC3\xBC");
    EXPECT_EQ(read.Units, Metric);
}

TEST(CaseFile, SaveThatFailsLeavesRecordAndFileAlone) {
    const test::TemporaryFolder folder;
    const std::string path = folder.put("case.TLV", "old");
    ProjectCase unsaved = sample();
    unsaved.Description = x(70);
    unsaved.Input.NumberEntries = 0;
    ProjectCase eleven = unsaved;
    eleven.Input.NumberEntries = 11;
    ProjectCase endless = unsaved;
    endless.Input.WidthC = std::numeric_limits<float>::infinity();
    ProjectCase tooLong = unsaved;
    tooLong.Description = std::string(70000, ' ') + "x";
    const struct {
        ProjectCase record;
        std::string path, where;
    } rows[] = {{eleven, path, "NumberEntries"},
                {tooLong, path, "Description"},
                {endless, path, "WidthC"},
                {unsaved, folder.root, folder.root},
                {unsaved, folder.root + "no/case.TLV", folder.root + "no/case.TLV"}};
    for (const auto& row : rows) {
        ProjectCase record = row.record;
        const auto saved = saveCaseFile(record, row.path);
        ASSERT_FALSE(saved) << row.where;
        EXPECT_EQ(saved.fault().where, row.where);
        EXPECT_EQ(record, row.record) << row.where;
        EXPECT_EQ(folder.content("case.TLV"), "old");
    }
    ASSERT_TRUE(saveCaseFile(unsaved, path));
    EXPECT_EQ(unsaved.FileName, path);
    ProjectCase read = unsaved;
    read.FileName = "held.TLV";
    EXPECT_EQ(readCaseFile(folder.root + "missing", read).fault->message,
              "Requested File not found: " + folder.root + "missing");
    EXPECT_EQ(read.FileName, "held.TLV");
    EXPECT_FALSE(readCaseFile(path, read).fault);
    EXPECT_EQ(read, unsaved);
}
