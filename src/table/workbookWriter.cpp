// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/workbookWriter.h"

#include "base/files.h"
#include "base/numbers.h"
#include "table/CaseTable.h"
#include "table/columns.h"
#include "table/exactNumbers.h"
#include "table/workbookBook.h"

#include <filesystem>
#include <vector>

namespace telvo::table {

namespace {

void writeHeadings(Book& book, lxw_worksheet* sheet, std::span<const std::string> names) {
    for (std::size_t i = 0; i < names.size(); ++i)
        book.check(worksheet_write_string(sheet, 0, static_cast<lxw_col_t>(i), names[i].c_str(),
                                          book.bold()),
                   names[i]);
    worksheet_freeze_panes(sheet, 1, 0);
}

/// The sheet of the cases. Returned: whether numbers stand in it that exactNumbers() has to put in.
/// Given: left  columns whose cells stay blank
bool writeCases(Book& book, lxw_worksheet* sheet, std::span<const project::ProjectCase> cases,
                const ColumnSet& left) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < columns().size(); ++i) {
        const Column& column = columns()[i];
        names.push_back(column.name);
        // Room for the heading and the button of the filter beside it.
        double width = static_cast<double>(column.name.size()) * 1.15 + 3;
        if (i == TitleColumn) width = 32;
        if (i == DescriptionColumn) width = 40;
        worksheet_set_column(sheet, static_cast<lxw_col_t>(i), static_cast<lxw_col_t>(i), width,
                             nullptr);
    }
    worksheet_autofilter(sheet, 0, 0, static_cast<lxw_row_t>(cases.size()),
                         static_cast<lxw_col_t>(names.size() - 1));
    writeHeadings(book, sheet, names);
    bool inexact = false;
    lxw_row_t row = 0;
    for (const project::ProjectCase& current : cases) {
        ++row;
        const auto cells = cellsOf(current);
        if (!cells) {
            book.fail({cells.fault().message, current.FileName + ", " + cells.fault().where});
            break;
        }
        for (std::size_t i = 0; i < cells->size(); ++i) {
            const CellValue& cell = (*cells)[i];
            const auto column = static_cast<lxw_col_t>(i);
            if (cell.blank || left[i]) continue;
            if (cell.isNumber && !needsExactNumber(cell.text)) {
                book.check(worksheet_write_number(sheet, row, column, cell.number, nullptr), "");
                continue;
            }
            inexact = inexact || cell.isNumber;
            const std::string text =
                cell.isNumber ? std::string(ExactNumberMark) + cell.text : escapedText(cell.text);
            const auto error = worksheet_write_string(sheet, row, column, text.c_str(), nullptr);
            if (error != LXW_NO_ERROR)
                book.check(error, current.FileName + ", " + columns()[i].name);
        }
        if (book.fault()) break;
    }
    return inexact;
}

std::string unitPair(project::FieldKind kind) {
    const auto english = project::fieldUnit(kind, project::English);
    const auto metric = project::fieldUnit(kind, project::Metric);
    if (english == metric) return std::string(english);
    return std::string(english) + " | " + std::string(metric);
}

void writeColumns(Book& book, lxw_worksheet* sheet) {
    const std::string headings[] = {"Column", "Meaning",           "Unit (English | metric)",
                                    "Valid",  "New case, English", "New case, metric"};
    const double widths[] = {24, 60, 24, 70, 18, 20};
    for (std::size_t i = 0; i < std::size(widths); ++i)
        worksheet_set_column(sheet, static_cast<lxw_col_t>(i), static_cast<lxw_col_t>(i), widths[i],
                             nullptr);
    writeHeadings(book, sheet, headings);
    const auto english = cellsOf(project::newCase(project::English));
    const auto metric = cellsOf(project::newCase(project::Metric));
    for (std::size_t i = 0; i < columns().size(); ++i) {
        const Column& column = columns()[i];
        const std::string texts[] = {column.name, column.meaning, unitPair(column.kind),
                                     column.valid};
        const auto row = static_cast<lxw_row_t>(i + 1);
        lxw_col_t at = 0;
        for (const std::string& text : texts)
            book.check(worksheet_write_string(sheet, row, at++, text.c_str(), nullptr), "Columns");
        for (const auto* cells : {&*english, &*metric}) {
            const CellValue& cell = (*cells)[i];
            if (cell.isNumber)
                book.check(worksheet_write_number(sheet, row, at, cell.number, nullptr), "Columns");
            else
                book.check(worksheet_write_string(sheet, row, at, cell.text.c_str(), nullptr),
                           "Columns");
            ++at;
        }
    }
}

Result<std::string> writeBook(std::span<const project::ProjectCase> cases, const ColumnSet& left) {
    if (cases.size() > MaxRows)
        return Fault{"a table has at most " + std::to_string(MaxRows) + " cases", {}};
    bool inexact = false;
    auto bytes = bookBytes([&](Book& book) {
        lxw_worksheet* sheet = book.addSheet("Cases");
        if (!book.fault()) inexact = writeCases(book, sheet, cases, left);
        if (!book.fault()) writeColumns(book, book.addSheet("Columns"));
    });
    if (!bytes || !inexact) return bytes;
    return withExactNumbers(*bytes);
}

/// A panel of five entries under 500 ft that runs as it is.
project::ProjectCase templateCase() {
    project::ProjectCase first = project::newCase(project::English);
    first.Title = "First case";
    first.Description = "Example: replace these values by your own.";
    first.DescriptionLines = 1;
    project::ProjectInput& in = first.Input;
    in.EntryHeight = 6;
    in.DepthCover = 500;
    in.EntryWidth = 20;
    in.XcutSpacing = 80;
    in.NumberEntries = 5;
    for (int i = 1; i < in.NumberEntries; ++i)
        in.XcutCenters[i] = 80;
    return first;
}

} // namespace

Result<std::string> writeWorkbook(std::span<const project::ProjectCase> cases) {
    return writeBook(cases, {});
}

Result<std::string> writeTemplate() {
    const project::ProjectCase first = templateCase();
    // A copy of the row with another depth gets the values of that depth.
    ColumnSet automatic;
    automatic.set(*columnOf("BreadthAMZ"));
    automatic.set(*columnOf("ArchFactor"));
    return writeBook({&first, 1}, automatic);
}

} // namespace telvo::table
