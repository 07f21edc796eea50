// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/CaseTable.h"
#include "table/columns.h"

#include <utility>

namespace telvo::table {

namespace {

constexpr std::size_t MostRowRanges = 10; // that one remark lists

std::string joined(const std::vector<std::string>& names, const char* separator) {
    std::string out;
    for (const std::string& name : names)
        out += (out.empty() ? "" : separator) + name;
    return out;
}

/// Row numbers as a text: "rows 3, 7 to 9", shortened where they are many.
class RowList {
  public:
    /// Given: number    of a row, in ascending order
    ///        followsOn whether the row before it in the table was the last one added
    void add(std::uint32_t number, bool followsOn) {
        ++m_count;
        if (m_inRanges + 1 < m_count) return; // no more room
        if (followsOn && !m_ranges.empty())
            m_ranges.back().second = number;
        else if (m_ranges.size() < MostRowRanges)
            m_ranges.emplace_back(number, number);
        else
            return;
        ++m_inRanges;
    }
    bool empty() const { return m_count == 0; }
    std::string text() const {
        std::vector<std::string> parts;
        for (const auto& [first, last] : m_ranges)
            parts.push_back(std::to_string(first) +
                            (last == first ? "" : " to " + std::to_string(last)));
        std::string out = (m_count == 1 ? "row " : "rows ") + joined(parts, ", ");
        if (m_count > m_inRanges) out += " and " + std::to_string(m_count - m_inRanges) + " more";
        return out;
    }

  private:
    std::vector<std::pair<std::uint32_t, std::uint32_t>> m_ranges;
    std::size_t m_count = 0;
    std::size_t m_inRanges = 0;
};

/// "CoalStrength in rows 3, 7; UnitWeight in row 4" for the columns that `of` marks.
std::string columnsWithRows(const CaseTable& table, std::optional<std::uint32_t> only,
                            ColumnSet CaseRow::*of) {
    std::vector<std::string> parts;
    ColumnSet any;
    for (const CaseRow& row : table.rows)
        any |= row.*of;
    for (std::size_t column = 0; column < columns().size(); ++column) {
        if (!any[column]) continue;
        RowList list;
        bool before = false;
        for (const CaseRow& row : table.rows) {
            const bool here = row.good() && (row.*of)[column] && (!only || row.number == *only);
            if (here) list.add(row.number, before);
            before = here;
        }
        if (!list.empty()) parts.push_back(columns()[column].name + " in " + list.text());
    }
    return joined(parts, "; ");
}

/// The value of a column in a case, with its unit.
std::string shownValue(const project::ProjectCase& current, std::size_t column) {
    std::string text = cellText(current, column);
    const auto unit = project::fieldUnit(columns()[column].kind, current.Units);
    if (!unit.empty()) text.append(" ").append(unit);
    return text;
}

} // namespace

std::vector<std::string> remarks(const CaseTable& table, std::optional<std::uint32_t> only) {
    std::vector<std::string> lines = table.sheetNotes;
    if (table.openRow && (!only || *only == *table.openRow))
        lines.push_back("row " + std::to_string(*table.openRow) +
                        " is the last one and has no line end; look whether the file was cut off");
    if (const auto blank = columnsWithRows(table, only, &CaseRow::blank); !blank.empty())
        lines.push_back("blank cells take the values of a new case: " + blank);
    if (const auto made = columnsWithRows(table, only, &CaseRow::automatic); !made.empty())
        lines.push_back("not given and marked automatic, so computed on reading: " + made);
    if (!table.missingColumns.empty())
        lines.push_back("fields without a column, which take the values of a new case: " +
                        joined(table.missingColumns, ", "));
    if (!table.unknownColumns.empty())
        lines.push_back("columns that are no input field and are not read: " +
                        joined(table.unknownColumns, ", "));
    return lines;
}

std::string searchText(const CaseRow& row) {
    std::string text = std::to_string(row.number);
    for (std::size_t column = 0; column < columns().size(); ++column)
        text += '\n' + cellText(row.current, column);
    for (const Fault& fault : row.faults)
        text += '\n' + faultText(fault);
    return text;
}

std::string firstProblem(const CaseRow& row) {
    if (row.good()) return {};
    return row.faults.front().column + ": " + row.faults.front().message;
}

std::vector<std::string> rowRemarks(const CaseRow& row) {
    std::vector<std::string> lines;
    if (!row.good()) return lines;
    for (std::size_t column = 0; column < columns().size(); ++column) {
        if (!row.blank[column] && !row.automatic[column]) continue;
        lines.push_back(columns()[column].name +
                        (row.blank[column] ? ": blank; as in a new case, "
                                           : ": not given and marked automatic; computed, ") +
                        shownValue(row.current, column));
    }
    return lines;
}

} // namespace telvo::table
