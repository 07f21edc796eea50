// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "table/CaseTable.h"

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

/// The decimal signs that the numbers of a table have. A table in text keeps one sign; which one
/// shows only from all of its numbers: "1,234" alone may be 1.234 or 1234.
class DecimalSigns {
  public:
    /// Given: commaPossible  false where the comma separates the cells
    explicit DecimalSigns(bool commaPossible = false) : m_commaPossible(commaPossible) {}

    /// Takes note of a cell of a column of numbers.
    void note(std::string_view text);
    /// The text with "." as its decimal sign, or why it cannot be read.
    Result<std::string> read(std::string_view text) const;

  private:
    bool m_commaPossible;
    bool m_comma = false;      // like 6,5
    bool m_maybeComma = false; // like 1,234
    bool m_point = false;      // like 6.5
};

/// Makes a table of rows of cells: finds the columns by the headings, reads the cells of each row.
class TableBuilder {
  public:
    explicit TableBuilder(std::string file) { m_table.file = std::move(file); }

    /// Whether one of the headings is an input field.
    static bool namesField(const std::vector<std::string>& headings);
    /// Takes the headings. Faults: no heading is an input field; two are the same one.
    /// Given: row  number of the row that they stand in
    Status setHeadings(const std::vector<std::string>& headings, std::uint32_t row);
    /// Whether a column of the file, counted from 0, is read at all, and as numbers.
    bool isRead(std::size_t column) const;
    bool isNumeric(std::size_t column) const;

    /// Reads a row; a blank one is skipped. Faults: the table has too many rows.
    Status addRow(std::uint32_t number, const std::vector<Cell>& cells, const DecimalSigns& signs);

    CaseTable take() { return std::move(m_table); }
    const CaseTable& table() const { return m_table; }
    void setSheet(std::string name, bool isLater) {
        m_table.sheet = std::move(name);
        m_table.laterSheet = isLater;
    }

  private:
    CaseTable m_table;
    std::vector<std::optional<std::size_t>> m_columns; // of the file: which column it is
    std::vector<std::optional<std::size_t>> m_places;  // of each column: where it is in the file
};

} // namespace telvo::table
