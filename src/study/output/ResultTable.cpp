// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/output/ResultTable.h"

#include "base/csv.h"
#include "base/numbers.h"
#include "base/text.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>

namespace telvo::study {

namespace {

constexpr std::size_t PieceBytes = 65536; // handed on at once
constexpr int ShownDigits = 6;

std::string heading(const TableColumn& column) {
    return column.unit.empty() ? column.name : column.name + " (" + column.unit + ")";
}

void writeSeparated(const ResultTable& table, const TextSink& sink, char separator,
                    bool withUnits) {
    std::string piece;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        if (i > 0) piece += separator;
        const TableColumn& column = table.columns[i];
        appendCsvCell(piece, withUnits ? heading(column) : column.name, separator);
    }
    piece += "\r\n";
    std::vector<TableCell> cells;
    for (std::size_t row = 0; row < table.rows; ++row) {
        cells.assign(table.columns.size(), {});
        table.read(row, cells);
        for (std::size_t i = 0; i < cells.size(); ++i) {
            if (i > 0) piece += separator;
            if (const double* number = std::get_if<double>(&cells[i]))
                appendGeneralNumber(piece, *number);
            else if (const auto* text = std::get_if<std::string>(&cells[i]))
                appendCsvCell(piece, *text, separator);
        }
        piece += "\r\n";
        if (piece.size() < PieceBytes) continue;
        if (!sink(piece)) return;
        piece.clear();
    }
    sink(piece);
}

std::string separated(const ResultTable& table, char separator, bool withUnits) {
    std::string text;
    writeSeparated(
        table,
        [&](std::string_view piece) {
            text += piece;
            return true;
        },
        separator, withUnits);
    return text;
}

std::string shownCell(const TableCell& cell) {
    if (const double* number = std::get_if<double>(&cell))
        return generalNumber(*number, ShownDigits);
    const auto* text = std::get_if<std::string>(&cell);
    return text ? withoutControls(*text) : std::string();
}

} // namespace

TableCell numberCell(double value) {
    return std::isfinite(value) ? TableCell(value) : TableCell();
}

ResultTable joined(std::vector<std::pair<std::string, ResultTable>> tables,
                   const std::string& nameColumn) {
    ResultTable all;
    const auto placeOf = [&](const TableColumn& column) {
        return std::find_if(all.columns.begin(), all.columns.end(),
                            [&](const TableColumn& one) { return one.name == column.name; });
    };
    std::vector<std::size_t> ends; // rows up to the end of each table
    for (const auto& [name, table] : tables) {
        auto next = all.columns.begin();
        for (const TableColumn& column : table.columns) {
            auto here = placeOf(column);
            if (here == all.columns.end())
                here = all.columns.insert(next, column);
            else if (here->unit != column.unit) // cases in different units
                here->unit.clear();
            next = here + 1;
        }
        ends.push_back(all.rows += table.rows);
    }
    std::vector<std::vector<std::size_t>> places; // of each table's columns in the whole
    for (const auto& [name, table] : tables) {
        auto& own = places.emplace_back();
        for (const TableColumn& column : table.columns)
            own.push_back(static_cast<std::size_t>(placeOf(column) - all.columns.begin()) + 1);
    }
    all.columns.insert(all.columns.begin(), {nameColumn, ""});
    const auto parts =
        std::make_shared<std::vector<std::pair<std::string, ResultTable>>>(std::move(tables));
    all.read = [parts, ends, places](std::size_t row, std::vector<TableCell>& cells) {
        const auto part = static_cast<std::size_t>(std::upper_bound(ends.begin(), ends.end(), row) -
                                                   ends.begin());
        const auto& [name, table] = (*parts)[part];
        std::vector<TableCell> own(table.columns.size());
        table.read(row - (ends[part] - table.rows), own);
        cells[0] = name;
        for (std::size_t i = 0; i < own.size(); ++i)
            cells[places[part][i]] = std::move(own[i]);
    };
    return all;
}

void writeCsv(const ResultTable& table, const TextSink& sink) {
    writeSeparated(table, sink, ',', false);
}

std::string csvText(const ResultTable& table) {
    return separated(table, ',', false);
}

std::string tabText(const ResultTable& table) {
    return separated(table, '\t', true);
}

std::string alignedText(const ResultTable& table) {
    struct Column {
        std::vector<std::string> cells;
        std::size_t width = 0;
        bool numbers = false;
    };
    std::vector<Column> columns(table.columns.size());
    std::vector<TableCell> cells;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        columns[i].cells.push_back(heading(table.columns[i]));
        columns[i].width = characterCount(columns[i].cells.back());
    }
    const std::size_t rows = std::min(table.rows, MostAlignedRows);
    for (std::size_t row = 0; row < rows; ++row) {
        cells.assign(columns.size(), {});
        table.read(row, cells);
        for (std::size_t i = 0; i < columns.size(); ++i) {
            columns[i].numbers = columns[i].numbers || std::holds_alternative<double>(cells[i]);
            columns[i].cells.push_back(shownCell(cells[i]));
            columns[i].width = std::max(columns[i].width, characterCount(columns[i].cells.back()));
        }
    }
    std::string text;
    for (std::size_t row = 0; row <= rows; ++row) {
        std::string line;
        for (const Column& column : columns) {
            const std::string& cell = column.cells[row];
            const std::string blanks(column.width - characterCount(cell), ' ');
            line.append("  ").append(column.numbers ? blanks + cell : cell + blanks);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text.append(line).append("\n");
    }
    if (rows < table.rows)
        text += "  and " + std::to_string(table.rows - rows) + " more rows, which CSV has\n";
    return text;
}

table::Sheet sheetOf(const ResultTable& table, std::string name, const std::string& title) {
    constexpr double narrowest = 8, widest = 40, room = 2; // characters
    table::Sheet sheet;
    sheet.name = std::move(name);
    if (!title.empty()) {
        table::SheetCell cell;
        cell.text = title;
        cell.look = table::CellLook::Chapter;
        sheet.rows.push_back({std::move(cell)});
    }
    std::vector<table::SheetCell> headings;
    for (const TableColumn& column : table.columns) {
        table::SheetCell cell;
        cell.text = heading(column);
        cell.look = table::CellLook::Heading;
        sheet.widths.push_back(
            std::clamp(static_cast<double>(characterCount(cell.text)) + room, narrowest, widest));
        headings.push_back(std::move(cell));
    }
    sheet.rows.push_back(std::move(headings));
    sheet.frozenRows = static_cast<int>(sheet.rows.size());
    std::vector<TableCell> cells;
    for (std::size_t row = 0; row < table.rows; ++row) {
        cells.assign(table.columns.size(), {});
        table.read(row, cells);
        std::vector<table::SheetCell> line(cells.size());
        for (std::size_t i = 0; i < cells.size(); ++i) {
            if (const double* number = std::get_if<double>(&cells[i]))
                line[i].number = *number;
            else if (auto* text = std::get_if<std::string>(&cells[i]))
                line[i].text = std::move(*text);
        }
        sheet.rows.push_back(std::move(line));
    }
    return sheet;
}

} // namespace telvo::study
