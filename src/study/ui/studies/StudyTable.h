// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "study/file/Record.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <stop_token>
#include <string>
#include <variant>
#include <vector>

/// A table of a study on its way to screen, clipboard and file.
namespace telvo::study::ui {

struct StudyColumn {
    std::string label;   ///< "Depth of Cover"
    std::string unit{};  ///< "ft"; empty of texts and plain numbers
    std::string name{};  ///< heading in a file; empty: label and unit
    bool isText = false; ///< stands at the left
    int digits = 6;      ///< on the screen; copied and written are all

    /// "Depth of Cover (ft)".
    std::string heading() const { return unit.empty() ? label : label + " (" + unit + ")"; }
};

using StudyCell = std::variant<std::monostate, double, std::string>;

/// Cells are made when they are asked for, so that a million rows cost nothing; from any thread.
struct StudyTable {
    std::vector<StudyColumn> columns;
    std::size_t rows = 0;
    std::function<StudyCell(std::size_t row, std::size_t column)> cell =
        [](std::size_t, std::size_t) { return StudyCell(); };
};

/// Rows in the order in which they are shown; empty: as they come.
using RowOrder = std::vector<std::uint32_t>;

/// The order of a table by a column: blanks last, rows that are alike as they come. Empty when it
/// was stopped.
RowOrder sortedBy(const StudyTable& table, std::size_t column, bool descending,
                  const std::stop_token& stop = {});

/// What the screen shows of a cell.
std::string shownCell(const StudyTable& table, std::size_t row, std::size_t column);

inline constexpr std::size_t MostCopiedRows = 200'000;
inline constexpr std::size_t MostWorkbookRows = 100'000;

/// Tab separated with headings, numbers with every digit.
/// Given: rows  to copy, in this order
std::string tabText(const StudyTable& table, const RowOrder& rows);

/// Told now and then: rows done.
using RowsDone = std::function<void(std::size_t rows)>;

/// Writes a table as CSV or, by the ending, as a workbook, in one atomic step.
/// Given: digits  takes the bytes of the file; may be null
/// Faults: those of AtomicFile, more rows than a workbook takes, "Stopped".
Status writeTable(const StudyTable& table, const RowOrder& order, const std::string& path,
                  const std::stop_token& stop = {}, const RowsDone& done = {},
                  TableDigits* digits = nullptr);

} // namespace telvo::study::ui
