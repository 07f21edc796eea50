// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "table/sheets.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace telvo::study {

struct TableColumn {
    std::string name; ///< as scripts know it: "id", "DepthCover", "TELVOSF.retreat"
    std::string unit; ///< empty: has none
};

/// Nothing, a number or a text.
using TableCell = std::variant<std::monostate, double, std::string>;

/// A number, or nothing for what is none.
TableCell numberCell(double value);

/// The result of a study as rows and columns. Rows are made when they are asked for, so that a
/// table of millions of rows takes no more room than the study itself.
struct ResultTable {
    std::vector<TableColumn> columns;
    std::size_t rows = 0;
    /// Fills the cells of a row, one per column. Given: row  from 0
    std::function<void(std::size_t row, std::vector<TableCell>& cells)> read;
};

/// Tables below each other, with their names in a first column; a column that a table lacks stays
/// empty there.
ResultTable joined(std::vector<std::pair<std::string, ResultTable>> tables,
                   const std::string& nameColumn);

/// Takes a text piece by piece. Returned: whether more is wanted.
using TextSink = std::function<bool(std::string_view text)>;

/// Writes a heading and a line per row, ended by CR LF, numbers in their shortest exact form.
void writeCsv(const ResultTable& table, const TextSink& sink);
std::string csvText(const ResultTable& table);
/// Separated by tabs, with units in the heading: for the clipboard.
std::string tabText(const ResultTable& table);
/// More rows than anybody reads, for which the widths of columns have to be known at once.
inline constexpr std::size_t MostAlignedRows = 50'000;

/// Columns below each other for the eye; numbers to six digits. Beyond MostAlignedRows it says how
/// many are missing.
std::string alignedText(const ResultTable& table);
/// As a sheet of a workbook.
/// Given: title  a line above the table; may be empty
table::Sheet sheetOf(const ResultTable& table, std::string name, const std::string& title);

} // namespace telvo::study
