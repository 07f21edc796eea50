// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/studies/StudyTable.h"

#include "base/AtomicFile.h"
#include "base/csv.h"
#include "base/files.h"
#include "base/numbers.h"
#include "table/sheets.h"
#include "table/tableFile.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace telvo::study::ui {

namespace {

constexpr std::size_t RowsBetweenLooks = 4096; // at the token

std::size_t rowAt(const RowOrder& order, std::size_t place) {
    return order.empty() ? place : order[place];
}

struct Stopped {};

template <typename Less>
RowOrder ordered(std::size_t rows, const std::stop_token& stop, Less less) {
    RowOrder order(rows);
    std::iota(order.begin(), order.end(), 0U);
    std::size_t compared = 0;
    try {
        std::stable_sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
            if (++compared % RowsBetweenLooks == 0 && stop.stop_requested()) throw Stopped{};
            return less(a, b);
        });
    } catch (const Stopped&) {
        return {};
    }
    return order;
}

RowOrder sortedByNumber(const StudyTable& table, std::size_t column, bool descending,
                        const std::stop_token& stop) {
    constexpr double last = std::numeric_limits<double>::infinity();
    std::vector<double> keys(table.rows, last);
    for (std::size_t row = 0; row < table.rows; ++row)
        if (const StudyCell cell = table.cell(row, column);
            const auto* n = std::get_if<double>(&cell))
            if (!std::isnan(*n)) keys[row] = descending ? -*n : *n;
    return ordered(table.rows, stop,
                   [&](std::uint32_t a, std::uint32_t b) { return keys[a] < keys[b]; });
}

RowOrder sortedByText(const StudyTable& table, std::size_t column, bool descending,
                      const std::stop_token& stop) {
    std::vector<std::string> keys(table.rows);
    for (std::size_t row = 0; row < table.rows; ++row)
        if (StudyCell cell = table.cell(row, column); auto* text = std::get_if<std::string>(&cell))
            keys[row] = std::move(*text);
    return ordered(table.rows, stop, [&](std::uint32_t a, std::uint32_t b) {
        if (keys[a].empty() || keys[b].empty()) return !keys[a].empty() && keys[b].empty();
        return descending ? keys[b] < keys[a] : keys[a] < keys[b];
    });
}

void appendPlain(std::string& out, const StudyCell& cell) {
    if (const auto* number = std::get_if<double>(&cell)) {
        if (!std::isnan(*number)) appendGeneralNumber(out, *number);
    } else if (const auto* text = std::get_if<std::string>(&cell)) {
        for (const char c : *text)
            out += c == '\t' || c == '\n' || c == '\r' ? ' ' : c;
    }
}

const std::string& fileHeading(const StudyColumn& column, std::string& made) {
    if (!column.name.empty()) return column.name;
    return made = column.heading();
}

Status writeCsvTable(const StudyTable& table, const RowOrder& order, const std::string& path,
                     const std::stop_token& stop, const RowsDone& done, TableDigits* digits) {
    auto file = AtomicFile::create(path);
    if (!file) return file.fault();
    const auto write = [&](const std::string& bytes) {
        if (digits) digits->add(bytes);
        return file->write(bytes);
    };
    std::string block, heading;
    for (std::size_t c = 0; c < table.columns.size(); ++c) {
        if (c > 0) block += ',';
        appendCsvCell(block, fileHeading(table.columns[c], heading));
    }
    block += "\r\n";
    for (std::size_t place = 0; place < table.rows; ++place) {
        const std::size_t row = rowAt(order, place);
        for (std::size_t c = 0; c < table.columns.size(); ++c) {
            if (c > 0) block += ',';
            const StudyCell cell = table.cell(row, c);
            if (const auto* number = std::get_if<double>(&cell)) {
                if (!std::isnan(*number)) appendGeneralNumber(block, *number);
            } else if (const auto* text = std::get_if<std::string>(&cell)) {
                appendCsvCell(block, *text);
            }
        }
        block += "\r\n";
        if ((place + 1) % RowsBetweenLooks != 0) continue;
        if (stop.stop_requested()) return Fault{"The export was stopped", path};
        if (Status written = write(block); !written) return written;
        block.clear();
        if (done) done(place + 1);
    }
    if (Status written = write(block); !written) return written;
    return file->commit();
}

Status writeWorkbookTable(const StudyTable& table, const RowOrder& order, const std::string& path,
                          const std::stop_token& stop, TableDigits* digits) {
    if (table.rows > MostWorkbookRows)
        return Fault{"A workbook takes at most 100,000 rows of a study; export as CSV", path};
    table::Sheet sheet;
    sheet.name = "Study";
    sheet.frozenRows = 1;
    std::vector<table::SheetCell> headings;
    for (const StudyColumn& column : table.columns) {
        std::string made;
        headings.push_back({.text = fileHeading(column, made), .look = table::CellLook::Heading});
        sheet.widths.push_back(
            std::clamp(static_cast<double>(headings.back().text.size()) + 2, 10.0, 40.0));
    }
    sheet.rows.push_back(std::move(headings));
    for (std::size_t place = 0; place < table.rows; ++place) {
        if (place % RowsBetweenLooks == 0 && stop.stop_requested())
            return Fault{"The export was stopped", path};
        std::vector<table::SheetCell> cells(table.columns.size());
        for (std::size_t c = 0; c < cells.size(); ++c) {
            StudyCell cell = table.cell(rowAt(order, place), c);
            if (const auto* number = std::get_if<double>(&cell)) {
                if (!std::isnan(*number)) cells[c].number = *number;
            } else if (auto* text = std::get_if<std::string>(&cell)) {
                cells[c].text = std::move(*text);
            }
        }
        sheet.rows.push_back(std::move(cells));
    }
    const auto bytes = table::writeSheets({&sheet, 1});
    if (!bytes) return bytes.fault();
    if (digits) digits->add(*bytes);
    return writeFile(path, *bytes);
}

} // namespace

RowOrder sortedBy(const StudyTable& table, std::size_t column, bool descending,
                  const std::stop_token& stop) {
    return table.columns[column].isText ? sortedByText(table, column, descending, stop)
                                        : sortedByNumber(table, column, descending, stop);
}

std::string shownCell(const StudyTable& table, std::size_t row, std::size_t column) {
    StudyCell cell = table.cell(row, column);
    if (const auto* number = std::get_if<double>(&cell))
        return std::isnan(*number) ? std::string()
                                   : generalNumber(*number, table.columns[column].digits);
    if (auto* text = std::get_if<std::string>(&cell)) return std::move(*text);
    return {};
}

std::string tabText(const StudyTable& table, const RowOrder& rows) {
    std::string out;
    for (std::size_t c = 0; c < table.columns.size(); ++c)
        out.append(c > 0 ? "\t" : "").append(table.columns[c].heading());
    out += '\n';
    for (const std::uint32_t row : rows) {
        for (std::size_t c = 0; c < table.columns.size(); ++c) {
            if (c > 0) out += '\t';
            appendPlain(out, table.cell(row, c));
        }
        out += '\n';
    }
    return out;
}

Status writeTable(const StudyTable& table, const RowOrder& order, const std::string& path,
                  const std::stop_token& stop, const RowsDone& done, TableDigits* digits) {
    const auto ending = path.size() >= table::WorkbookEnding.size()
                            ? path.substr(path.size() - table::WorkbookEnding.size())
                            : std::string();
    const bool workbook =
        std::equal(ending.begin(), ending.end(), table::WorkbookEnding.begin(),
                   table::WorkbookEnding.end(), [](char a, char b) {
                       return (a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a) == b;
                   });
    return workbook ? writeWorkbookTable(table, order, path, stop, digits)
                    : writeCsvTable(table, order, path, stop, done, digits);
}

} // namespace telvo::study::ui
