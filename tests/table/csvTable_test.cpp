// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/csvTable.h"

#include "table/caseFiles.h"
#include "table/cases.h"
#include "table/columns.h"

#include <gtest/gtest.h>

using namespace telvo;
using namespace telvo::table;
using std::string;

namespace {

string faultOf(const string& bytes) {
    const auto read = readCsv(bytes, "t.csv");
    return read ? "" : faultText(read.fault());
}

TEST(CsvTable, EveryCaseComesBackToTheLastDigit) {
    const auto cases = test::awkwardCases();
    for (const char separator : {',', ';', '\t'}) {
        const auto written = writeCsv(cases, separator);
        ASSERT_TRUE(written) << faultText(written.fault());
        const auto read = readCsv(written->bytes, "t.csv");
        ASSERT_TRUE(read) << faultText(read.fault());
        EXPECT_EQ(test::difference(cases, *read), "") << separator;
        EXPECT_TRUE(read->unknownColumns.empty() && read->missingColumns.empty());
        // The two titles that a spreadsheet would compute.
        ASSERT_EQ(written->notes.size(), 2U);
        EXPECT_TRUE(written->notes[0].starts_with("row 2, column A (Title): "));
    }
}

TEST(CsvTable, WhatNoReaderWouldAcceptIsNotWritten) {
    std::vector<project::ProjectCase> cases(2, project::newCase(project::English));
    cases[1].FileName = "b.TLV";
    cases[1].Input.AMZ = -1;
    EXPECT_EQ(faultText(writeCsv(cases, ',').fault()), "b.TLV, AMZ: \"-1\" is neither 0 nor 1");
    cases[1].Input = {};
    cases[1].Input.NumberEntries = 11;
    EXPECT_FALSE(writeCsv(cases, ','));
}

TEST(CsvTable, ColumnsAreFoundByNameAndTheRestTakesTheDefaultsOfItsUnits) {
    // Blank rows are skipped but counted; a row of two lines is one row.
    const auto read = readCsv("\xEF\xBB\xBFseam;depth cover;UNITS;xcutcenters(2);Title\n"
                              "x;300;1;60;\"a\nb\"\n;;;;\n\ny;;english;;c\n",
                              "t.csv");
    ASSERT_TRUE(read) << faultText(read.fault());
    ASSERT_EQ(read->rows.size(), 2U);
    EXPECT_EQ(test::faults(*read), "");
    const auto& first = read->rows[0].current;
    EXPECT_EQ(first.Input.DepthCover, 300);
    EXPECT_EQ(first.Input.XcutCenters[2], 60);
    EXPECT_EQ(first.Input.CoalStrength, 900 / 145.0377);
    EXPECT_EQ(first.Title, "a b");
    EXPECT_EQ(first.FileName, "t.csv#2");
    EXPECT_EQ(read->rows[1].number, 5U);
    EXPECT_EQ(read->row(5)->current.Input.CoalStrength, 900);
    EXPECT_EQ(read->row(4), nullptr);
    EXPECT_EQ(read->unknownColumns, std::vector<string>{"A (seam)"});
    // All but the titles, those that are there, breadth and arch factor, which are computed, what
    // nothing uses and the distances behind the two entries of a new case.
    EXPECT_EQ(read->missingColumns.size(), columns().size() - 3 - 2 - 2 - 1 - 7);
    // What no cell gave: row 2 lacks nothing of its columns, row 5 its depth. The distance behind
    // its last entry is none.
    EXPECT_EQ(remarks(*read)[0], "blank cells take the values of a new case: DepthCover in row 5");
}

TEST(CsvTable, BadCellsAreNamedAndGoodRowsComeThrough) {
    const auto read = readCsv("Units,DepthCover,NumberEntries,RowA,WidthC,Anal\n"
                              "0,300,4,TRUE,1.5,3\n"
                              "feet,deep,4.5,2,1e39,4\n"
                              "0,1e999,11,FALSE,,\n"
                              "0,TRUE,\"6,5\",0,0x,-1,7\n",
                              "t.csv");
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->rows[0].good());
    EXPECT_EQ(read->rows[0].current.Input.RowA, 1);
    EXPECT_EQ(test::faults(*read),
              "row 3, column A (Units): \"feet\" is neither English nor metric\n"
              "row 3, column B (DepthCover): \"deep\" is not a number\n"
              "row 3, column C (NumberEntries): \"4.5\" is not a whole number\n"
              "row 3, column F (Anal): \"4\" is outside 0 to 3\n"
              "row 3, column D (RowA): \"2\" is neither 0 nor 1\n"
              "row 4, column B (DepthCover): \"1e999\" is too large a number\n"
              "row 4, column C (NumberEntries): \"11\" is outside 0 to 10\n"
              "row 5, column G: this cell has no heading above it; a separator within a cell needs "
              "quotes around the cell\n"
              "row 5, column B (DepthCover): a truth value is not a number\n"
              "row 5, column C (NumberEntries): \"6,5\" has a decimal comma; numbers take a \".\"\n"
              "row 5, column F (Anal): \"-1\" is outside 0 to 3\n"
              "row 5, column E (WidthC): \"0x\" is not a number alone\n");
}

/// Depths of the rows as they are read, "?" where a row is refused.
string depths(const string& separator, const string& cells) {
    const auto read = readCsv("Title" + separator + "DepthCover\n" + cells, "t.csv");
    if (!read) return faultText(read.fault());
    string out;
    for (const CaseRow& row : read->rows)
        out += (row.good() ? std::to_string(row.current.Input.DepthCover).substr(0, 6) : "?") + " ";
    return out;
}

TEST(CsvTable, DecimalSignsAreReadRightOrNotAtAll) {
    EXPECT_EQ(depths(";", "a;6,5\na;1,234\na;-,5\na;0,125\n"), "6.5000 1.2340 -0.500 0.1250 ");
    EXPECT_EQ(depths("\t", "a\t6,5\n"), "6.5000 ");
    EXPECT_EQ(depths(";", "a;1,234\n"), "? ") << "a thousand, or a bit more than one";
    EXPECT_EQ(depths(";", "a;1.234\n"), "? ") << "the same of the other sign";
    EXPECT_EQ(depths(";", "a;1.2340\nb;1.234\n"), "1.2340 1.2340 ");
    EXPECT_EQ(depths(",", "a,1.234\n"), "1.2340 ");
    EXPECT_EQ(depths(";", "a;6,5\na;1.234\n"), "6.5000 ? ") << "the point parts thousands here";
    EXPECT_EQ(depths(";", "a;6.5\na;6,5\na;1.234\n"), "6.5000 ? ? ");
    EXPECT_EQ(depths(";", "a;1.234,5\na;1,234.5\n"), "? ? ");
    EXPECT_EQ(depths(",", "a,\"6,5\"\na,6,5\na,7\n"), "? ? 7.0000 ");
    EXPECT_EQ(depths(";", "a;6,5E2\na; 7 \na;+\n"), "650.00 7.0000 ? ");
}

TEST(CsvTable, DoubtfulNumbersAreToldWithHowToWriteThem) {
    const auto told = [](const string& bytes) {
        const auto read = readCsv(bytes, "t.csv");
        return read ? test::faults(*read) : faultText(read.fault());
    };
    const string where = "row 2, column B (DepthCover): ";
    EXPECT_EQ(told("Title,DepthCover\na,\"1,500\"\n"),
              where + "\"1,500\" is doubtful; write 1500 or 1.5\n");
    EXPECT_EQ(told("Title;DepthCover\na;-1,234\n"),
              where + "\"-1,234\" is doubtful; write -1234 or -1.2340\n");
    EXPECT_EQ(told("Title;DepthCover\na;2.000\n"),
              where + "\"2.000\" is doubtful, because a comma may be the decimal sign here; write "
                      "2000 or 2.0\n");
    // Written by this program it is not.
    auto current = project::newCase(project::English);
    current.Input.DepthCover = 412.125;
    for (const char separator : {',', ';', '\t'}) {
        const auto read = readCsv(writeCsv({&current, 1}, separator)->bytes, "t.csv");
        EXPECT_EQ(read->rows.at(0).current.Input.DepthCover, 412.125);
    }
}

TEST(CsvTable, WhatTheFileDoesNotHoldIsNeverMadeUpInSilence) {
    // Depth 400 ft: 5 sqrt(400) = 100 ft; 1000 ft: 158.1 ft, as a whole number. Width 120 ft:
    // 1 - 0.28 ln(400/120) = 0.663; ln(1000/120) gives 0.406.
    const auto read = readCsv("DepthCover,NumberEntries,XcutCenters.1,XcutCenters.2,XcutCenters.3,"
                              "AMZ,BreadthAMZ,Arch,ArchFactor,CoalStrength,Units\n"
                              "400,3,60,60,,1,,1,,,0\n"
                              "1000,3,60,60,,1,0,1,0,700,\n"
                              "400,3,60,,,0,,0,,,0\n"
                              "400,3,60,60,,1,112,1,0.5,700,0\n"
                              "400,3,60,60,,1,112,1\n"
                              "400,3,60,60,,1,112,1,0.5,700,0",
                              "t.csv");
    ASSERT_TRUE(read) << faultText(read.fault());
    ASSERT_EQ(read->rows.size(), 6U);
    const auto& in = read->rows[0].current.Input;
    EXPECT_EQ(in.BreadthAMZ, 100);
    EXPECT_EQ(in.ArchFactor, 0.66F);
    EXPECT_EQ(in.CoalStrength, 900);
    EXPECT_EQ(read->rows[1].current.Input.BreadthAMZ, 158);
    EXPECT_EQ(read->rows[1].current.Input.ArchFactor, 0.41F);
    EXPECT_EQ(read->rows[2].current.Input.BreadthAMZ, 0)
        << "not automatic, and the check refuses it";
    EXPECT_EQ(read->rows[3].current.Input.BreadthAMZ, 112) << "given, and kept";
    EXPECT_EQ(
        test::faults(*read),
        "row 6, column H: the row ends here, while the headings go on to column K; a row that "
        "may have been cut off is not read. Blank cells need their separators, too\n");
    const auto lines = remarks(*read);
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[1],
              "blank cells take the values of a new case: Units in row 3; XcutCenters.2 in "
              "row 4; CoalStrength in rows 2, 4; BreadthAMZ in row 4; ArchFactor in row 4");
    EXPECT_EQ(lines[2],
              "not given and marked automatic, so computed on reading: BreadthAMZ in rows "
              "2 to 3; ArchFactor in rows 2 to 3");
    EXPECT_EQ(lines[0],
              "row 7 is the last one and has no line end; look whether the file was cut off");
    // Of one row, what concerns it.
    EXPECT_EQ(remarks(*read, 4).size(), 2U);
    EXPECT_EQ(remarks(*read, 5).size(), 1U);
    EXPECT_EQ(rowRemarks(read->rows[0]),
              (std::vector<string>{"CoalStrength: blank; as in a new case, 900 psi",
                                   "BreadthAMZ: not given and marked automatic; computed, 100 ft",
                                   "ArchFactor: not given and marked automatic; computed, 0.66"}));
}

TEST(CsvTable, AFileThatWasCutOffNeverGivesOtherResultsInSilence) {
    std::vector<project::ProjectCase> cases(2, project::newCase(project::English));
    cases[1].Input.DepthCover = 437.25;
    cases[1].Input.WidthD = 16.25F;
    const string whole = writeCsv(cases, ',')->bytes;
    const auto start = whole.rfind("\r\n", whole.size() - 3) + 2;
    for (std::size_t cut = start + 1; cut < whole.size() - 1; ++cut) {
        const auto read = readCsv(whole.substr(0, cut), "t.csv");
        const bool told = !read || read->rows.size() < 2 || !read->rows[1].good() || read->openRow;
        EXPECT_TRUE(told) << whole.substr(start, cut - start);
    }
}

TEST(CsvTable, TablesAreKnownByTheirContent) {
    EXPECT_TRUE(looksLikeCsv("\xEF\xBB\xBFTitle;DepthCover\n"));
    EXPECT_TRUE(looksLikeCsv("sep=;\r\n\r\n\"Depth\nCover\";x"));
    EXPECT_TRUE(looksLikeCsv("DepthCover\r"));
    EXPECT_FALSE(looksLikeCsv(""));
    EXPECT_FALSE(looksLikeCsv("Title,Units\nDepthCover\n"));
    EXPECT_FALSE(looksLikeCsv("TELVO_602\n0\nDepthCover\n"));
}

TEST(CsvTable, RowListsAndFaultsStayShort) {
    string many = "DepthCover,CoalStrength\n";
    for (int i = 0; i < 30'000; ++i)
        many += i % 2 == 0 ? "300,\n" : "x,y\n";
    const auto read = readCsv(many, "t.csv");
    ASSERT_TRUE(read);
    EXPECT_TRUE(remarks(*read)[0].ends_with(
        "CoalStrength in rows 2, 4, 6, 8, 10, 12, 14, 16, 18, 20 and 14990 more"))
        << remarks(*read)[0];
    EXPECT_EQ(read->rows[1].faults.size(), 2U);
    EXPECT_EQ(read->rows.back().faults.size(), 1U);
    string wide = "DepthCover";
    wide += string(MaxColumns, ',') + "CoalStrength\n";
    EXPECT_NE(faultOf(wide).find("more than 1024 columns"), string::npos);
    const auto longCell =
        readCsv("DepthCover,Title\n3," + string(MaxCellBytes + 1, 'x') + "\n", "t");
    EXPECT_NE(test::faults(*longCell).find("longer than a cell can hold"), string::npos);
    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(faultText(readCsv(many, "t.csv", {stop.get_token(), {}}).fault()),
              "t.csv: the reading was stopped");
}

TEST(CsvTable, WhatIsNoTableIsTold) {
    EXPECT_EQ(faultOf(""), "t.csv: the table is empty");
    EXPECT_EQ(faultOf(string("\xFF\xFE"
                             "D\0",
                             4)),
              "t.csv: is text in UTF-16; save it as CSV in UTF-8");
    EXPECT_EQ(faultOf(string("DepthCover\n\0\n", 13)), "t.csv: is not text");
    EXPECT_NE(faultOf("300,4\n400,5\n").find("does not name an input field"), string::npos);
    EXPECT_EQ(faultOf("Units,DepthCover,depthcover\n"),
              "t.csv, row 1: the columns B and C are both headed DepthCover");
    EXPECT_EQ(faultOf("Title,DepthCover\na,1\n\"b,2\n"),
              "t.csv, row 3: a cell begins with a quote that nothing ends");
    EXPECT_EQ(faultOf("sep=|\nDepthCover\n"),
              "t.csv: the separator named in the first line is neither comma, semicolon nor tab");
    // Old code page, a named separator and the line breaks of other systems are no fault.
    const auto read = readCsv("sep=;\r\nTitle;DepthCover\rM\xFCller;6,5\r", "t.csv");
    ASSERT_TRUE(read) << faultText(read.fault());
    EXPECT_EQ(read->rows.at(0).current.Title, "M\xC3\xBCller");
    EXPECT_EQ(read->rows[0].number, 2U);
}

TEST(CsvTable, FilesAreNamedSafelyAndOnce) {
    CaseFileNames names;
    const auto named = [&](std::uint32_t number, const string& title) {
        CaseRow row;
        row.number = number;
        row.current.Title = title;
        return names.next(row);
    };
    EXPECT_EQ(named(2, "Panel 7"), "Panel 7.TLV");
    EXPECT_EQ(named(3, "PANEL 7"), "PANEL 7 (row 3).TLV");
    EXPECT_EQ(named(4, "../../etc/passwd"), "_.._etc_passwd.TLV");
    EXPECT_EQ(named(5, " . "), "row 5.TLV");
    EXPECT_EQ(named(6, "Con.x"), "_Con.x.TLV");
    EXPECT_EQ(named(7, "-o\n"), "_o_.TLV");
    string wide;
    for (int i = 0; i < 100; ++i)
        wide += "\xF0\x9F\x98\x80";
    EXPECT_EQ(named(8, wide), wide.substr(0, 200) + ".TLV");
}

TEST(CsvTable, EveryNumberHasAColumnOfItsOwn) {
    project::ProjectCase base = project::newCase(project::English);
    base.Input.NumberEntries = project::MaxEntries;
    const auto cells = *cellsOf(base);
    for (const project::FieldId id : project::RecordNumbers) {
        // 1 fits every field; where it stands already, 0 does.
        project::ProjectCase current = base;
        const double value = get(base.Input, id) == 1 ? 0 : 1;
        set(current.Input, id, value);
        const auto changed = *cellsOf(current);
        for (std::size_t column = 0; column < changed.size(); ++column)
            EXPECT_EQ(changed[column].text != cells[column].text, column == columnOf(id))
                << nameOf(id) << ", " << columns()[column].name;
        EXPECT_EQ(changed[columnOf(id)].number, value) << nameOf(id);
        EXPECT_EQ(columns()[columnOf(id)].name, nameOf(id));
        EXPECT_EQ(columnOf(nameOf(id)), columnOf(id));
        EXPECT_FALSE(columns()[columnOf(id)].meaning.empty() ||
                     columns()[columnOf(id)].valid.empty())
            << nameOf(id);
        // An automatic value of 0 would be computed.
        current.Input.AMZ = current.Input.Arch = 0;
        const auto read = readCsv(writeCsv({{current}}, ',')->bytes, "t.csv");
        ASSERT_TRUE(read && read->rows.at(0).good()) << nameOf(id);
        EXPECT_EQ(read->rows[0].current.Input, current.Input) << nameOf(id);
    }
}

} // namespace
