// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "project/ProjectInput.h"

#include <bitset>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace telvo::table {

/// Columns of a table by their numbers in columns().
using ColumnSet = std::bitset<64>;

/// A cell that cannot be read; `where` names its row and column.
struct CellFault : Fault {
    std::string column; ///< its letter and name alone: "column C (DepthCover)"
};

/// One row of a table after reading.
struct CaseRow {
    std::uint32_t number = 0;      ///< as a spreadsheet counts, from 1; the headings stand in row 1
    project::ProjectCase current;  ///< usable only where there is no fault
    std::vector<CellFault> faults; ///< at most some
    ColumnSet blank;     ///< cells that are blank, in columns that are there: values of a new case
    ColumnSet automatic; ///< breadth or arch factor that the row leaves to be computed

    bool good() const { return faults.empty(); }
};

/// Most faults that are kept of one row: enough to repair it, few enough for a wrong file.
inline constexpr std::size_t MaxFaultsOfRow = 5;
/// Faults of a table beyond which each further row keeps one.
inline constexpr std::size_t MaxFaults = 10'000;

/// Most cases of a table, which bounds the memory that a table takes.
inline constexpr std::size_t MaxRows = 250'000;
/// Most columns of a table, a reader's own ones among them.
inline constexpr std::size_t MaxColumns = 1024;
/// Most bytes of a cell: 32767 characters, as spreadsheets have it.
inline constexpr std::size_t MaxCellBytes = 262'144;

/// A table of cases: one row per case, one column per input field. The rows that can be read come
/// through whatever the others hold.
struct CaseTable {
    std::string file;                    ///< as messages name it
    std::string sheet;                   ///< of a workbook; empty for text
    std::vector<std::string> sheetNotes; ///< which sheet was read and which others have cases
    std::vector<CaseRow> rows;
    std::vector<std::string> unknownColumns; ///< headings that are no field, each with its letter
    std::vector<std::string> missingColumns; ///< names of columns whose values are a new case's
    /// Number of a last row without an end of line, as a file has that was cut off.
    std::optional<std::uint32_t> openRow;

    /// The row of that number, or nullptr.
    const CaseRow* row(std::uint32_t number) const;
};

/// How messages name a row of a table: "panels.csv#7".
std::string rowName(const std::string& file, std::uint32_t number);

/// What a reader of the table has to know beside its rows, one sentence each, what matters most
/// first: which sheet was read, every value that was not in the file and where it comes from,
/// columns that are not read.
/// Given: only  the number of the one row that is asked for
std::vector<std::string> remarks(const CaseTable& table, std::optional<std::uint32_t> only = {});

/// What a search through the table looks at in a row: number, texts, values, problems.
std::string searchText(const CaseRow& row);

/// The first problem of a row without its number; empty where there is none.
std::string firstProblem(const CaseRow& row);

/// The same of a single row, with the values: "CoalStrength: blank; as in a new case, 900".
std::vector<std::string> rowRemarks(const CaseRow& row);

} // namespace telvo::table
