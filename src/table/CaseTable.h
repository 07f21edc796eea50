// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "project/ProjectInput.h"

#include <cstdint>
#include <string>
#include <vector>

namespace telvo::table {

/// One row of a table after reading.
struct CaseRow {
    std::uint32_t number = 0;     ///< as a spreadsheet counts, from 1; the headings stand in row 1
    project::ProjectCase current; ///< usable only where there is no fault
    std::vector<Fault> faults;    ///< each with row, column letter and column name; at most some

    bool good() const { return faults.empty(); }
};

/// Most faults that are kept of one row: enough to repair it, few enough for a wrong file.
inline constexpr std::size_t MaxFaultsOfRow = 5;

/// Most cases of a table, which bounds the memory that a table takes.
inline constexpr std::size_t MaxRows = 250'000;

/// A table of cases: one row per case, one column per input field. The rows that can be read come
/// through whatever the others hold.
struct CaseTable {
    std::string file;        ///< as messages name it
    std::string sheet;       ///< of a workbook; empty for text
    bool laterSheet = false; ///< sheets before it have no such columns
    std::vector<CaseRow> rows;
    std::vector<std::string> unknownColumns; ///< headings that are no field, each with its letter
    std::vector<std::string> missingColumns; ///< names of fields that take the new-case defaults

    /// The row of that number, or nullptr.
    const CaseRow* row(std::uint32_t number) const;
};

/// How messages name a row of a table: "panels.csv#7".
std::string rowName(const std::string& file, std::uint32_t number);

/// What a reader of the table has to know beside its rows, one sentence each: the sheet where it
/// is not the first, columns that are not read, fields that no column gives.
std::vector<std::string> remarks(const CaseTable& table);

} // namespace telvo::table
