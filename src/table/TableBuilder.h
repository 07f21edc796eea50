// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "table/CaseTable.h"
#include "table/DecimalSigns.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace telvo::table {

/// A cell as a reader of text or workbooks finds it.
struct Cell {
    enum class Kind {
        Blank,
        Text,    // text; in a column of numbers it has to be one
        Number,  // number
        Boolean, // number is 0 or 1
        Refused  // text says why there is no value
    };
    Kind kind = Kind::Blank;
    std::string text;
    double number = 0;
};

/// Makes a table of rows of cells: finds the columns by the headings, reads the cells of each row.
class TableBuilder {
  public:
    /// Given: wholeRows  whether a row has a cell for each heading, and was cut off where it has
    ///                   not: so in text, while workbooks leave blank cells out
    TableBuilder(std::string file, bool wholeRows) : m_wholeRows(wholeRows) {
        m_table.file = std::move(file);
    }

    /// Whether one of the headings is an input field.
    static bool namesField(const std::vector<std::string>& headings);
    /// Takes the headings.
    /// Given:  row  number of the row that they stand in
    /// Faults: no heading is an input field; two are the same one.
    Status setHeadings(const std::vector<std::string>& headings, std::uint32_t row);
    /// Whether a column of the file, counted from 0, is read at all, and as numbers.
    bool isRead(std::size_t column) const;
    bool isNumeric(std::size_t column) const;

    /// Reads a row; a blank one is skipped. Faults: the table has too many rows.
    Status addRow(std::uint32_t number, const std::vector<Cell>& cells, const DecimalSigns& signs);

    /// Refuses the cells of a merged range but the first one: a spreadsheet shows its value for all
    /// of them, while the file may hold nothing or something else there. Rows and columns count
    /// from 1 and 0.
    /// Faults: more ranges over each other than a sheet can have.
    Status refuseMerged(std::uint32_t firstRow, std::size_t firstColumn, std::uint32_t lastRow,
                        std::size_t lastColumn);

    /// The table, once; nothing may be added afterwards.
    CaseTable take();
    std::size_t rowCount() const { return m_table.rows.size(); }
    void setSheet(std::string name) { m_table.sheet = std::move(name); }
    void setOpenRow(std::uint32_t number) { m_table.openRow = number; }

  private:
    bool takesFault(const CaseRow& row) const;
    void addFault(CaseRow& row, std::string why, std::size_t place, std::string_view name);
    void readFields(CaseRow& row, const std::vector<Cell>& cells, const DecimalSigns& signs);
    void computeAutomatic(CaseRow& row, const std::vector<Cell>& cells);
    const Cell& cellOf(std::size_t column, const std::vector<Cell>& cells) const;

    CaseTable m_table;
    bool m_wholeRows;
    std::size_t m_headings = 0; // up to the last one that is not blank
    std::size_t m_faults = 0;
    std::size_t m_merged = 0;                          // cells of merged ranges
    std::vector<std::optional<std::size_t>> m_columns; // of the file: which column it is
    std::vector<std::optional<std::size_t>> m_places;  // of each column: where it is in the file
};

} // namespace telvo::table
