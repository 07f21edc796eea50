// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/SheetReader.h"

#include "base/numbers.h"
#include "base/text.h"
#include "table/columns.h"

#include <charconv>
#include <optional>
#include <utility>

namespace telvo::table {

namespace {

constexpr std::uint32_t LastRow = 1'048'576; // of a spreadsheet
constexpr std::size_t LastColumn = 16'384;
constexpr std::size_t MaxMerged = 1'000'000;

constexpr const char* NoStoredValue =
    "the formula has no stored value; open the workbook in a spreadsheet and save it, or put the "
    "value in the place of the formula";

/// The column that a reference like "AB12" names, counted from 0; more than any where it has none.
std::size_t columnOfReference(std::string_view reference) {
    std::size_t column = 0;
    for (std::size_t i = 0; i < reference.size() && i < 4; ++i) {
        if (reference[i] < 'A' || reference[i] > 'Z') break;
        column = column * 26 + static_cast<std::size_t>(reference[i] - 'A' + 1);
    }
    return column - 1;
}

/// The row of such a reference; 0 where it has none.
std::uint32_t rowOfReference(std::string_view reference) {
    const auto digits = std::min(reference.find_first_of("0123456789"), reference.size());
    const auto row = wholeNumber(reference.substr(digits)).value_or(0);
    return row <= LastRow ? static_cast<std::uint32_t>(row) : 0;
}

Cell refusedCell(std::string why) {
    return {Cell::Kind::Refused, std::move(why), 0};
}

Cell textCell(std::string_view value) {
    return {value.empty() ? Cell::Kind::Blank : Cell::Kind::Text, std::string(value), 0};
}

} // namespace

void SheetReader::start(std::string_view name, const XmlAttributes& attributes) {
    if (m_behindRows) {
        if (name == "mergeCell") addMerged(attributes.value("ref"));
        if (name == "sheetData") fail("has its rows twice");
        return;
    }
    m_runs.start(name);
    if (name == "row")
        startRow(attributes);
    else if (name == "c")
        startCell(attributes);
    else if (name == "f")
        m_hasFormula = true;
    else if (name == "v")
        m_takesValue = m_hasValue = true;
}

void SheetReader::end(std::string_view name) {
    if (m_behindRows) return;
    m_runs.end(name);
    if (name == "v")
        m_takesValue = false;
    else if (name == "c")
        endCell();
    else if (name == "row")
        endRow();
    else if (name == "sheetData")
        m_behindRows = true;
}

void SheetReader::characters(std::string_view text) {
    if (!m_takesValue && !(m_runs.taking() && m_type == "inlineStr")) return;
    m_text += text;
    if (m_text.size() > MaxCellBytes) fail(place() + "the text is longer than a cell can hold");
}

std::string SheetReader::place() const {
    return "row " + std::to_string(m_row) + ", column " + columnLetters(m_column) + ": ";
}

void SheetReader::startRow(const XmlAttributes& attributes) {
    const auto given = attributes.value("r");
    const std::uint64_t row = given.empty() ? m_row + 1 : wholeNumber(given).value_or(0);
    if (row <= m_row || row > LastRow)
        return fail("the rows are not in order behind row " + std::to_string(m_row));
    m_row = static_cast<std::uint32_t>(row);
    m_next = 0;
    m_used = 0;
    if (m_row % RowsPerLook == 0) m_watch.tell(m_builder.rowCount());
}

void SheetReader::startCell(const XmlAttributes& attributes) {
    m_text.clear();
    m_type = attributes.value("t");
    m_style = wholeNumber(attributes.value("s")).value_or(0);
    m_hasFormula = m_hasValue = m_takesValue = false;
    m_column = m_next;
    const auto reference = attributes.value("r");
    if (!reference.empty()) m_column = columnOfReference(reference);
    if (m_column >= LastColumn)
        return fail("row " + std::to_string(m_row) + ": a cell has no column");
    m_next = m_column + 1;
}

void SheetReader::endCell() {
    if (m_headed && !m_builder.isRead(m_column)) return;
    Cell cell = readCell();
    if (cell.kind == Cell::Kind::Blank) return;
    if (m_column >= m_cells.size()) m_cells.resize(m_column + 1);
    if (m_column >= m_used) {
        for (std::size_t i = m_used; i < m_column; ++i)
            m_cells[i].kind = Cell::Kind::Blank;
        m_used = m_column + 1;
    }
    m_cells[m_column] = std::move(cell);
}

Cell SheetReader::readCell() const {
    if (m_type == "inlineStr") return textCell(unescaped(m_text));
    const auto value = trimmed(m_text);
    // A text may be the empty result of a formula; a number, an error or a truth value may not:
    // programs that write formulas without computing them leave the value out, or empty.
    if (m_hasFormula && (m_type == "str" ? !m_hasValue : value.empty()))
        return refusedCell(NoStoredValue);
    if (!m_hasValue) return {};
    if (m_type == "e") return refusedCell("the cell holds the error " + excerpt(value));
    if (m_type == "d") return refusedCell("the cell holds a date");
    if (m_type == "str") return textCell(unescaped(m_text));
    if (m_type == "s") {
        const auto index = wholeNumber(value);
        if (!index || *index >= m_shared.size())
            return refusedCell("the cell points to a text that the workbook does not have");
        return textCell(m_shared[static_cast<std::size_t>(*index)]);
    }
    if (m_type == "b") {
        if (value != "0" && value != "1") return refusedCell("the cell is damaged");
        return {Cell::Kind::Boolean, {}, value == "1" ? 1.0 : 0.0};
    }
    if (value.empty()) return {};
    return readNumberCell(value);
}

Cell SheetReader::readNumberCell(std::string_view value) const {
    double number = 0;
    const char* const last = value.data() + value.size();
    const auto [end, error] = std::from_chars(value.data(), last, number);
    if (error == std::errc::result_out_of_range && end == last)
        return refusedCell("\"" + excerpt(value) + "\" is outside the range of numbers");
    if (error != std::errc() || end != last)
        return refusedCell("\"" + excerpt(value) + "\" is not a number");
    if (m_style < m_dates.size() && m_dates[static_cast<std::size_t>(m_style)])
        return refusedCell("the cell holds a date; give it the number format General and enter the "
                           "value again");
    return {Cell::Kind::Number, {}, number};
}

void SheetReader::endRow() {
    if (m_used == 0) return;
    if (m_headed) {
        m_cells.resize(m_used);
        if (const Status added = m_builder.addRow(m_row, m_cells, DecimalSigns()); !added)
            return fail(added.fault().message);
        if (m_extent == FirstCase && m_builder.rowCount() > 0) stop();
        return;
    }
    std::vector<std::string> headings(m_used);
    bool blank = true;
    for (std::size_t i = 0; i < m_used; ++i) {
        const Cell& cell = m_cells[i];
        // Why a heading has no text stands in the list of the columns that are not read.
        if (cell.kind == Cell::Kind::Text || cell.kind == Cell::Kind::Refused)
            headings[i] = cell.text;
        if (cell.kind == Cell::Kind::Number) headings[i] = generalNumber(cell.number);
        blank = blank && cell.kind == Cell::Kind::Blank;
    }
    if (blank) return;
    if (!TableBuilder::namesField(headings)) return stop();
    m_headed = true;
    if (const Status done = m_builder.setHeadings(headings, m_row); !done)
        fail(done.fault().message);
}

void SheetReader::addMerged(std::string_view reference) {
    if (m_merged.size() == MaxMerged) return fail("has too many merged cells");
    const auto colon = reference.find(':');
    if (colon == std::string_view::npos) return;
    const auto first = reference.substr(0, colon);
    const auto last = reference.substr(colon + 1);
    const Range range{rowOfReference(first), rowOfReference(last), columnOfReference(first),
                      columnOfReference(last)};
    if (range.firstRow == 0 || range.lastRow < range.firstRow || range.lastColumn >= LastColumn ||
        range.lastColumn < range.firstColumn)
        return fail("has merged cells that are damaged");
    m_merged.push_back(range);
}

Status SheetReader::finish() {
    for (const Range& range : m_merged)
        if (Status done = m_builder.refuseMerged(range.firstRow, range.firstColumn, range.lastRow,
                                                 range.lastColumn);
            !done)
            return done;
    return success();
}

} // namespace telvo::table
