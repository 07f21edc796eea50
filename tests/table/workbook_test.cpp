// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/workbookReader.h"
#include "table/workbookWriter.h"

#include "project/checks.h"
#include "table/cases.h"
#include "table/sheets.h"

#include <algorithm>
#include <clocale>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <stop_token>
#include <tuple>
#include <zip.h>

using namespace telvo;
using namespace telvo::table;
using std::string;

namespace {

using PartTexts = std::map<string, string>;

/// A workbook of one sheet "S" with the rows given as XML.
PartTexts workbookOf(const string& rows, const string& behind = "") {
    return {{"xl/workbook.xml",
             "<workbook><sheets><sheet name=\"Notes\" r:id=\"r9\" xmlns:r=\"r\"/>"
             "<sheet name=\"S\" r:id=\"r1\" xmlns:r=\"r\"/></sheets></workbook>"},
            {"xl/_rels/workbook.xml.rels",
             "<R><Relationship Id=\"r1\" Type=\"t/worksheet\" Target=\"worksheets/a.xml\"/>"
             "<Relationship Id=\"r9\" Type=\"t/worksheet\" Target=\"/xl/notes.xml\"/>"
             "<Relationship Id=\"r2\" Type=\"t/styles\" Target=\"styles.xml\"/>"
             "<Relationship Id=\"r3\" Type=\"t/sharedStrings\" Target=\"strings.xml\"/></R>"},
            {"xl/notes.xml", "<worksheet><sheetData><row><c t=\"inlineStr\"><is><t>Title</t></is>"
                             "</c></row></sheetData></worksheet>"},
            {"xl/styles.xml",
             "<styleSheet><numFmts><numFmt numFmtId=\"170\" formatCode=\"0.0&quot; m&quot;\"/>"
             "<numFmt numFmtId=\"171\" formatCode=\"[Red]d\\.m\\.yy\"/></numFmts><cellStyleXfs>"
             "<xf numFmtId=\"14\"/></cellStyleXfs><cellXfs><xf numFmtId=\"0\"/>"
             "<xf numFmtId=\"170\"/><xf numFmtId=\"171\"/><xf numFmtId=\"14\"/></cellXfs>"
             "</styleSheet>"},
            {"xl/strings.xml",
             "<sst><si><t>DepthCover</t></si><si><r><t>Ti</t></r><r><t>tle</t></r>"
             "<rPh><t>xx</t></rPh></si><si><t>6.5</t></si><si><t>NumberEntries</t></si></sst>"},
            {"xl/worksheets/a.xml", "<x:worksheet xmlns:x=\"u\"><x:sheetData>" + rows +
                                        "</x:sheetData>" + behind + "</x:worksheet>"}};
}

Result<CaseTable> readParts(const PartTexts& texts) {
    return readWorkbookParts(
        [&](const string& name) -> Result<std::optional<PartReader>> {
            const auto found = texts.find(name);
            if (found == texts.end()) return std::optional<PartReader>();
            return std::optional<PartReader>(
                [rest = std::string_view(found->second)](
                    char* into, std::size_t room) mutable -> Result<std::size_t> {
                    const auto got = std::min({rest.size(), room, std::size_t(7)}); // cuts tokens
                    rest.copy(into, got);
                    rest.remove_prefix(got);
                    return got;
                });
        },
        "t.xlsx");
}

const string Headings = "<row><c t=\"s\"><v>1</v></c><c t=\"s\"><v>0</v></c>"
                        "<c t=\"s\"><v>3</v></c><c t=\"inlineStr\"><is><t>RowA</t></is></c></row>";

string zipped(const PartTexts& texts, bool locked = false) {
    zip_error_t error;
    zip_source_t* made = zip_source_buffer_create(nullptr, 0, 0, &error);
    zip_source_keep(made);
    zip_t* archive = zip_open_from_source(made, ZIP_TRUNCATE, &error);
    for (const auto& [name, text] : texts) {
        const auto index = zip_file_add(archive, name.c_str(),
                                        zip_source_buffer(archive, text.data(), text.size(), 0), 0);
        if (locked)
            zip_file_set_encryption(archive, static_cast<zip_uint64_t>(index), ZIP_EM_AES_256, "p");
    }
    zip_close(archive);
    zip_stat_t stat;
    zip_source_stat(made, &stat);
    string out(stat.size, '\0');
    zip_source_open(made);
    zip_source_read(made, out.data(), out.size());
    zip_source_close(made);
    zip_source_free(made);
    return out;
}

string faultOfWorkbook(const string& bytes) {
    const auto read = readWorkbook(bytes, "t.xlsx");
    return read ? "" : faultText(read.fault());
}

TEST(Workbook, EveryCaseComesBackToTheLastDigit) {
    // A decimal comma of the user must not reach the file (where the system has such a locale).
    std::setlocale(LC_ALL, "de_DE.UTF-8");
    const auto cases = test::awkwardCases();
    const auto written = writeWorkbook(cases);
    std::setlocale(LC_ALL, "C");
    ASSERT_TRUE(written) << faultText(written.fault());
    const auto read = readWorkbook(*written, "t.xlsx");
    ASSERT_TRUE(read) << faultText(read.fault());
    EXPECT_EQ(test::difference(cases, *read), "");
    EXPECT_EQ(read->sheet, "Cases");

    const auto sample = readWorkbook(*writeTemplate(), "t.xlsx");
    ASSERT_TRUE(sample) << faultText(sample.fault());
    // Depth 500 ft: 5 sqrt(500) = 111.8 ft. Width 320 ft: 1 - 0.28 ln(500/320) = 0.875.
    EXPECT_EQ(project::checkBeforeAnalysis(sample->rows.at(0).current.Input), std::nullopt);
    EXPECT_EQ(sample->rows[0].current.Input.BreadthAMZ, 112);
    EXPECT_EQ(sample->rows[0].current.Input.ArchFactor, 0.88F);
    EXPECT_EQ(remarks(*sample).size(), 1U);
}

TEST(Workbook, NumbersOfEverySheetAndColumnKeepTheirDigitsAndTextsStayTexts) {
    const double exact = 900.12345678901234; // 17 digits
    for (const string& title : {string("#12 Left"), string("#12"), string("12"),
                                string("\xEF\xBF\xBE"
                                       "12"),
                                string("_xFFFE_12")}) {
        Sheet first, second;
        first.name = "Notes";
        second.name = "Cases";
        const auto text = [](const string& words) {
            SheetCell cell;
            cell.text = words;
            return cell;
        };
        const auto number = [](double value) {
            SheetCell cell;
            cell.number = value;
            return cell;
        };
        first.rows = {{text(title), number(exact)}};
        second.rows = {{text("DepthCover"), text("Title"), text("EntryHeight")},
                       {number(exact), text(title), number(0.1 + 0.2)}};
        const std::vector<Sheet> sheets = {first, second};
        const auto bytes = writeSheets(sheets);
        ASSERT_TRUE(bytes) << faultText(bytes.fault());
        const auto table = readWorkbook(*bytes, "a.xlsx");
        ASSERT_TRUE(table) << faultText(table.fault());
        ASSERT_EQ(table->rows.size(), 1U);
        EXPECT_EQ(table->rows[0].current.Title, title);
        EXPECT_EQ(table->rows[0].current.Input.DepthCover, exact);
        EXPECT_EQ(table->rows[0].current.Input.EntryHeight, 0.1 + 0.2);
    }
}

TEST(Workbook, ATextThatNoCellHoldsIsRefused) {
    auto current = project::newCase(project::English);
    current.Title = string(32768, 'x');
    const auto written = writeWorkbook({&current, 1});
    ASSERT_FALSE(written);
    EXPECT_TRUE(written.fault().where.ends_with(", Title"));
}

TEST(Workbook, CellsOfEveryKindAreReadOrNamed) {
    const auto read = readParts(workbookOf(
        "<row r=\"2\"/>" + Headings +
        "<row r=\"5\"><c r=\"A5\" t=\"str\"><f>B5</f><v>a</v></c><c r=\"B5\" "
        "s=\"1\"><v>3.5E2</v></c>"
        "<c r=\"D5\" t=\"b\"><v>1</v></c><c r=\"Z5\" t=\"e\"><v>#N/A</v></c></row>"
        "<row><c/><c t=\"s\"><v>2</v></c><c><f>1+3</f><v>4</v></c></row>"
        "<row><c><v>12</v></c><c s=\"2\"><v>45000</v></c><c t=\"e\"><v>#N/A</v></c>"
        "<c><f>1</f></c></row>"
        "<row><c s=\"3\"><v>1</v></c><c t=\"s\"><v>99</v></c><c t=\"d\"><v>2020-01-01</v></c>"
        "<c><v>1e999</v></c></row>"
        "<row><c t=\"inlineStr\"><is><t>_x0041_&#10;b</t></is></c><c><v>1e</v></c></row>"));
    ASSERT_TRUE(read) << faultText(read.fault());
    EXPECT_EQ(read->sheet, "S");
    ASSERT_EQ(read->rows.size(), 5U);
    EXPECT_EQ(read->rows[0].number, 5U);
    EXPECT_EQ(read->rows[0].current.Title, "a");
    EXPECT_EQ(read->rows[0].current.Input.DepthCover, 350);
    EXPECT_EQ(read->rows[0].current.Input.RowA, 1);
    EXPECT_EQ(read->rows[1].current.Input.DepthCover, 6.5);
    EXPECT_EQ(read->rows[1].current.Input.NumberEntries, 4);
    EXPECT_EQ(read->rows[2].current.Title, "12");
    EXPECT_EQ(read->rows[4].current.Title, "A b");
    const string found = test::faults(*read);
    for (const char* expected :
         {"row 7, column B (DepthCover): the cell holds a date; give",
          "row 7, column C (NumberEntries): the cell holds the error #N/A",
          "row 7, column D (RowA): the formula has no stored value",
          "row 8, column A (Title): the cell holds a date",
          "row 8, column B (DepthCover): the cell "
          "points to a text",
          "row 8, column C (NumberEntries): the cell holds a date\n",
          "row 8, column D (RowA): \"1e999\" is outside", "row 9, column B (DepthCover): \"1e\""})
        EXPECT_NE(found.find(expected), string::npos) << expected << "\n" << found;
    EXPECT_EQ(std::count(found.begin(), found.end(), '\n'), 8) << found;
}

/// Cells of a row of the headings Title, DepthCover, NumberEntries, RowA.
string rowOf(const string& depth, const string& rest = "") {
    return "<row><c t=\"inlineStr\"><is><t>a</t></is></c>" + depth + rest + "</row>";
}

TEST(Workbook, AFormulaThatWasNeverComputedIsNoValue) {
    // As openpyxl and pandas, other writers, and a spreadsheet for an empty text write them.
    for (const char* cell :
         {"<c><f>1400/2</f><v></v></c>", "<c><f>1400/2</f><v/></c>", "<c><f>1400/2</f></c>",
          "<c t=\"n\"><f>1400/2</f><v> </v></c>", "<c t=\"b\"><f>1&lt;2</f><v/></c>",
          "<c t=\"e\"><f>A1</f><v/></c>", "<c t=\"str\"><f>A1</f></c>"}) {
        const auto read = readParts(workbookOf(Headings + rowOf(cell)));
        ASSERT_TRUE(read) << faultText(read.fault());
        EXPECT_NE(
            test::faults(*read).find("row 2, column B (DepthCover): the formula has no stored"),
            string::npos)
            << cell;
    }
    const auto read = readParts(workbookOf(Headings + rowOf("<c t=\"str\"><f>A1</f><v></v></c>") +
                                           rowOf("<c><v></v></c>") + rowOf("<c/>")));
    ASSERT_TRUE(read);
    EXPECT_EQ(test::faults(*read), "");
    EXPECT_NE(remarks(*read).at(1).find("DepthCover in rows 2 to 4"), string::npos);
}

TEST(Workbook, CellsMergedWithAnotherOneAreRefused) {
    const string depth = "<c><v>300</v></c>";
    const auto read = readParts(
        workbookOf(Headings + rowOf(depth) + rowOf("<c/>", "<c><v>4</v></c>") + rowOf(depth) +
                       rowOf("<c r=\"B5\"><v>7</v></c>") + rowOf(depth),
                   "<mergeCells count=\"4\"><mergeCell ref=\"B2:B3\"/><mergeCell ref=\"C3:D3\"/>"
                   "<mergeCell ref=\"A4:B5\"/><mergeCell ref=\"A1:A6\"/></mergeCells>"));
    ASSERT_TRUE(read) << faultText(read.fault());
    const string why = "; unmerge the cells and give each its own value\n";
    EXPECT_EQ(test::faults(*read),
              "row 3, column B (DepthCover): the cell is merged with B2" + why +
                  "row 3, column D (RowA): the cell is merged with C3" + why +
                  "row 4, column B (DepthCover): the cell is merged with A4" + why +
                  "row 5, column B (DepthCover): the cell is merged with A4" + why);
    EXPECT_TRUE(read->rows[0].good() && read->rows[4].good()) << "a merged title makes no value up";
    EXPECT_FALSE(readParts(workbookOf(Headings, "<mergeCell ref=\"B3:B2\"/>")));
    string many;
    for (int i = 0; i < 20'000; ++i)
        many += "<mergeCell ref=\"A1:XFD1048576\"/>";
    string rows = Headings;
    for (int i = 0; i < 1000; ++i)
        rows += "<row><c/><c><v>1</v></c></row>";
    EXPECT_NE(faultText(readParts(workbookOf(rows, many)).fault()).find("over each other"),
              string::npos);
}

/// A workbook of these sheets: name, state and whether it has a case.
PartTexts workbookOfSheets(const std::vector<std::tuple<string, string, bool>>& sheets) {
    PartTexts texts = workbookOf("");
    string list, relations;
    for (const auto& [name, state, hasCase] : sheets) {
        list += "<sheet name=\"" + name + "\" state=\"" + state + "\" id=\"" + name + "\"/>";
        relations +=
            "<Relationship Id=\"" + name + "\" Type=\"t/worksheet\" Target=\"" + name + ".xml\"/>";
        texts["xl/" + name + ".xml"] = "<worksheet><sheetData>" + Headings +
                                       (hasCase ? rowOf("<c><v>1</v></c>") : "") +
                                       "</sheetData></worksheet>";
    }
    auto& related = texts["xl/_rels/workbook.xml.rels"];
    related.insert(related.find("</R>"), relations);
    texts["xl/workbook.xml"] = "<workbook><sheets>" + list + "</sheets></workbook>";
    return texts;
}

TEST(Workbook, TheFirstSheetInSightWithCasesIsReadAndTheOthersAreNamed) {
    using Lines = std::vector<string>;
    auto read = readParts(workbookOfSheets({{"Old", "hidden", true},
                                            {"Empty", "visible", false},
                                            {"New", "", true},
                                            {"Later", "visible", true},
                                            {"Secret", "veryHidden", true}}));
    ASSERT_TRUE(read) << faultText(read.fault());
    EXPECT_EQ(read->sheet, "New");
    EXPECT_EQ(read->sheetNotes,
              (Lines{"read from the sheet \"New\"",
                     "other sheets with cases, which are not read: \"Old\" (hidden), \"Later\", "
                     "\"Secret\" (hidden)"}));
    read = readParts(workbookOfSheets({{"Old", "hidden", true}}));
    EXPECT_NE(faultText(read.fault()).find("the only sheet with cases is hidden: \"Old\""),
              string::npos);
    // Damage beside the cases is told and leaves them alone.
    PartTexts texts = workbookOfSheets({{"New", "", true}, {"Later", "", true}});
    texts["xl/Later.xml"] = "<worksheet><a></b>";
    read = readParts(texts);
    ASSERT_TRUE(read) << faultText(read.fault());
    EXPECT_EQ(read->rows.size(), 1U);
    EXPECT_EQ(read->sheetNotes, (Lines{"sheets that are damaged and are not read: \"Later\""}));
}

TEST(Workbook, NoFileEatsTheProgram) {
    const auto told = [](const string& inside) {
        return faultOfWorkbook(zipped(workbookOf(Headings + inside)));
    };
    const auto many = [](int count, const std::function<string(int)>& each) {
        string out;
        for (int i = 0; i < count; ++i)
            out += each(i);
        return out;
    };
    const auto same = [&](const string& text, int count) {
        return many(count, [&](int) { return text; });
    };
    EXPECT_NE(told(same("<b>", 100'000)).find("nested deeper than 64"), string::npos);
    const string megabytes(3 << 20, 'a');
    EXPECT_NE(told("<!--" + megabytes + "-->").find("of more than 1 MB"), string::npos);
    EXPECT_NE(told("<row x=\"" + megabytes + "\"/>").find("of more than 1 MB"), string::npos);
    EXPECT_NE(told("<" + megabytes + "/>").find("of more than 1 MB"), string::npos);
    EXPECT_EQ(told("<!--" + string(900'000, 'a') + "-->"), "");
    const auto names = [](const string& before, const string& behind) {
        return [=](int i) { return before + std::to_string(i) + behind; };
    };
    EXPECT_NE(told(many(5000, names("<n", "/>"))).find("more kinds of elements"), string::npos);
    EXPECT_NE(told(many(5000, names("<n a", "=\"1\"/>"))).find("more kinds of"), string::npos);
    EXPECT_NE(told(same("<c/>", 20'000)).find("has no column"), string::npos);

    PartTexts twice = workbookOf(Headings);
    twice["xl/workbook.xml"] =
        "<workbook><sheets>" + same("<sheet name=\"S\" id=\"r9\"/>", 999) + "</sheets></workbook>";
    EXPECT_EQ(faultText(readParts(twice).fault()),
              "t.xlsx, xl/notes.xml: is the part of more than one sheet");
    PartTexts crowd = workbookOf(Headings);
    for (int i = 0; i < 10'001; ++i)
        crowd["p" + std::to_string(i)];
    EXPECT_EQ(faultOfWorkbook(zipped(crowd)), "t.xlsx: has too many parts for a workbook");

    std::stop_source stop;
    std::size_t rows = 0;
    string long_ = Headings;
    long_ += same("<row><c/><c><v>1</v></c></row>", 20'000);
    const auto watched = readWorkbook(zipped(workbookOf(long_)), "t.xlsx",
                                      {stop.get_token(), [&](std::size_t count) {
                                           rows = count;
                                           if (count > 1000) stop.request_stop();
                                       }});
    ASSERT_FALSE(watched);
    EXPECT_TRUE(watched.fault().message == ReadingStopped && rows > 1000 && rows < 20'000) << rows;
}

TEST(Workbook, OtherFilesOfSpreadsheetsAreCalledWhatTheyAre) {
    EXPECT_EQ(faultOfWorkbook(zipped({{"mimetype", "x"}, {"content.xml", "<a/>"}})),
              "t.xlsx: is an OpenDocument file (.ods); save it as .xlsx or CSV");
    EXPECT_EQ(faultOfWorkbook(zipped({{"xl/workbook.bin", "x"}})),
              "t.xlsx: is a binary workbook (.xlsb); save it as .xlsx or CSV");
}

TEST(Workbook, DamageIsTold) {
    const auto told = [](const string& rows) {
        const auto read = readParts(workbookOf(rows));
        return read ? "" : faultText(read.fault());
    };
    EXPECT_NE(told("").find("no sheet names an input field"), string::npos);
    EXPECT_NE(told(Headings + "<row r=\"1\"/>").find("not in order"), string::npos);
    EXPECT_NE(told(Headings + "<row><c r=\"7\"/></row>").find("no column"), string::npos);
    EXPECT_NE(told("<row></c>").find("is damaged: mismatched tag"), string::npos);
    PartTexts texts = workbookOf(Headings);
    texts["xl/styles.xml"] = "<!DOCTYPE a [<!ENTITY b \"c\">]><a/>";
    EXPECT_EQ(faultText(readParts(texts).fault()), "t.xlsx, xl/styles.xml: has a document type");
}

TEST(Workbook, HostileFilesAreRefused) {
    EXPECT_NE(faultOfWorkbook("PK\x03\x04 and so on").find("damaged"), string::npos);
    EXPECT_NE(faultOfWorkbook("\xD0\xCF\x11\xE0").find("password"), string::npos);
    EXPECT_NE(faultOfWorkbook(zipped({{"mimetype", "x"}})).find("is not an XLSX workbook"),
              string::npos);
    if (zip_encryption_method_supported(ZIP_EM_AES_256, 1)) {
        EXPECT_NE(faultOfWorkbook(zipped(workbookOf(Headings), true)).find("encrypted"),
                  string::npos);
    }
    EXPECT_EQ(faultOfWorkbook(zipped(workbookOf(Headings))), "");
    const string bomb = zipped(workbookOf(Headings + string(20'000'000, ' ')));
    EXPECT_LT(bomb.size(), 40'000U);
    EXPECT_NE(faultOfWorkbook(bomb).find("unpacks to more than 300 times"), string::npos);
    PartTexts cut = workbookOf(Headings);
    cut["xl/strings.xml"] = "<sst><si/>";
    EXPECT_NE(faultOfWorkbook(zipped(cut)).find("is damaged"), string::npos);
    string broken = zipped(workbookOf(Headings));
    for (std::size_t at = 40; at < broken.size(); at += 7) { // never a crash
        string other = broken;
        other[at] = static_cast<char>(other[at] ^ 0x55);
        (void)readWorkbook(other, "t.xlsx");
        (void)readWorkbook(broken.substr(0, at), "t.xlsx");
    }
}

} // namespace
