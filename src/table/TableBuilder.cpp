// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/TableBuilder.h"

#include "base/numbers.h"
#include "base/text.h"
#include "project/automatic.h"
#include "table/columns.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace telvo::table {

namespace {

constexpr std::size_t MostListed = 20;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string inQuotes(std::string_view text) {
    return "\"" + excerpt(text.substr(0, 200)) + "\"";
}

bool isBlank(const Cell& cell) {
    return cell.kind == Cell::Kind::Blank ||
           (cell.kind == Cell::Kind::Text && trimmed(cell.text).empty());
}

/// Reads the units of a row into `units`; why they cannot be read.
std::optional<std::string> readUnits(const Cell& cell, std::int16_t& units) {
    if (isBlank(cell)) return std::nullopt;
    if (cell.kind == Cell::Kind::Refused) return cell.text;
    std::string name;
    for (const char c : trimmed(cell.text))
        name += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    if (cell.kind == Cell::Kind::Number) name = generalNumber(cell.number);
    if (name == "english" || name == "0") {
        units = project::English;
    } else if (name == "metric" || name == "1") {
        units = project::Metric;
    } else {
        return (cell.kind == Cell::Kind::Boolean ? "a truth value" : inQuotes(name)) +
               " is neither English nor metric";
    }
    return std::nullopt;
}

std::optional<std::string> readText(const Cell& cell, std::string& text) {
    switch (cell.kind) {
    case Cell::Kind::Refused:
        return cell.text;
    case Cell::Kind::Number:
        text = generalNumber(cell.number);
        break;
    case Cell::Kind::Boolean:
        text = cell.number != 0 ? "TRUE" : "FALSE";
        break;
    case Cell::Kind::Text:
        text = cell.text;
        break;
    case Cell::Kind::Blank: // whatever text an earlier row left there
        break;
    }
    return std::nullopt;
}

/// The number of a cell, read by the rules of the column.
Result<double> readNumber(const Cell& cell, const Column& column, const DecimalSigns& signs) {
    if (cell.kind == Cell::Kind::Refused) return Fault{cell.text, {}};
    double value = cell.number;
    std::string shown = cell.text;
    bool truth = cell.kind == Cell::Kind::Boolean;
    if (cell.kind == Cell::Kind::Text) {
        const std::string_view text = trimmed(cell.text);
        const std::string upper = text.size() <= 5 ? [&] {
            std::string made(text);
            for (char& c : made)
                if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
            return made;
        }() : std::string();
        if (upper == "TRUE" || upper == "FALSE") {
            truth = true;
            value = upper == "TRUE" ? 1 : 0;
        } else {
            const auto sure = signs.read(text);
            if (!sure) return sure.fault();
            const auto read = leadingNumber(*sure);
            if (!read) {
                const bool digits = isDigit((*sure)[sure->find_first_not_of("+-.")]);
                return Fault{
                    inQuotes(text) + (digits ? " is too large a number" : " is not a number"), {}};
            }
            if (!trimmed(std::string_view(*sure).substr(read->length)).empty())
                return Fault{inQuotes(text) + " is not a number alone", {}};
            value = read->value;
        }
    } else {
        shown = generalNumber(value);
    }
    if (truth && !column.flag) return Fault{"a truth value is not a number", {}};
    if (auto refused = refusedNumber(column, value, shown)) return Fault{*refused, {}};
    return value;
}

} // namespace

bool TableBuilder::namesField(const std::vector<std::string>& headings) {
    return std::any_of(headings.begin(), headings.end(), [](const std::string& heading) {
        const auto found = columnOf(trimmed(heading));
        return found && *found >= FirstFieldColumn;
    });
}

Status TableBuilder::setHeadings(const std::vector<std::string>& headings, std::uint32_t row) {
    m_columns.assign(headings.size(), std::nullopt);
    m_places.assign(columns().size(), std::nullopt);
    m_table.unknownColumns.clear();
    m_table.missingColumns.clear();
    m_headings = 0;
    std::size_t unknown = 0;
    for (std::size_t i = 0; i < headings.size(); ++i) {
        const auto name = trimmed(headings[i]);
        if (name.empty()) continue;
        m_headings = i + 1;
        const auto found = columnOf(name);
        if (!found) {
            if (++unknown <= MostListed)
                m_table.unknownColumns.push_back(columnLetters(i) + " (" + excerpt(name) + ")");
            continue;
        }
        if (m_places[*found])
            return Fault{"the columns " + columnLetters(*m_places[*found]) + " and " +
                             columnLetters(i) + " are both headed " + columns()[*found].name,
                         m_table.file + ", row " + std::to_string(row)};
        m_columns[i] = found;
        m_places[*found] = i;
    }
    if (unknown > MostListed)
        m_table.unknownColumns.push_back("and " + std::to_string(unknown - MostListed) + " more");
    if (!namesField(headings))
        return Fault{"the first row does not name an input field, such as DepthCover; a table of "
                     "cases needs the names of its columns there",
                     m_table.file};
    if (m_headings > MaxColumns)
        return Fault{"has more than " + std::to_string(MaxColumns) + " columns", m_table.file};
    for (std::size_t i = UnitsColumn; i < columns().size(); ++i)
        if (!m_places[i]) m_table.missingColumns.push_back(columns()[i].name);
    return success();
}

bool TableBuilder::isRead(std::size_t column) const {
    return column < m_columns.size() && m_columns[column].has_value();
}

bool TableBuilder::isNumeric(std::size_t column) const {
    return isRead(column) && *m_columns[column] >= FirstFieldColumn;
}

const Cell& TableBuilder::cellOf(std::size_t column, const std::vector<Cell>& cells) const {
    static const Cell none;
    const auto place = m_places[column];
    return place && *place < cells.size() ? cells[*place] : none;
}

bool TableBuilder::takesFault(const CaseRow& row) const {
    return row.faults.size() < (m_faults < MaxFaults ? MaxFaultsOfRow : 1);
}

void TableBuilder::addFault(CaseRow& row, std::string why, std::size_t place,
                            std::string_view name) {
    if (!takesFault(row)) return;
    ++m_faults;
    std::string cell = "column " + columnLetters(place);
    if (!name.empty()) cell += " (" + std::string(name) + ")";
    const std::string where = "row " + std::to_string(row.number) + ", " + cell;
    row.faults.push_back({{std::move(why), where}, std::move(cell)});
}

Status TableBuilder::addRow(std::uint32_t number, const std::vector<Cell>& cells,
                            const DecimalSigns& signs) {
    if (std::all_of(cells.begin(), cells.end(), isBlank)) return success();
    if (m_table.rows.size() == MaxRows)
        return Fault{"the table has more than " + std::to_string(MaxRows) + " cases", m_table.file};
    CaseRow& row = m_table.rows.emplace_back();
    row.number = number;
    if (m_wholeRows && cells.size() < m_headings)
        addFault(row,
                 "the row ends here, while the headings go on to column " +
                     columnLetters(m_headings - 1) +
                     "; a row that may have been cut off is not read. Blank cells need their "
                     "separators, too",
                 cells.size() - 1, {});
    for (std::size_t i = m_columns.size(); i < cells.size(); ++i) {
        if (isBlank(cells[i])) continue;
        addFault(row,
                 "this cell has no heading above it; a separator within a cell needs quotes around "
                 "the cell",
                 i, {});
        break;
    }
    readFields(row, cells, signs);
    if (row.good()) computeAutomatic(row, cells);
    return success();
}

void TableBuilder::readFields(CaseRow& row, const std::vector<Cell>& cells,
                              const DecimalSigns& signs) {
    const auto fail = [&](std::size_t column, std::string why) {
        addFault(row, std::move(why), *m_places[column], columns()[column].name);
    };
    std::int16_t units = project::English;
    if (auto refused = readUnits(cellOf(UnitsColumn, cells), units)) fail(UnitsColumn, *refused);
    row.blank[UnitsColumn] = m_places[UnitsColumn] && isBlank(cellOf(UnitsColumn, cells));
    row.current = project::newCase(units);
    row.current.FileName = rowName(m_table.file, row.number);
    std::string text;
    if (auto refused = readText(cellOf(TitleColumn, cells), text)) fail(TitleColumn, *refused);
    setTitle(row.current, text);
    text.clear();
    if (auto refused = readText(cellOf(DescriptionColumn, cells), text))
        fail(DescriptionColumn, *refused);
    setDescription(row.current, text);
    for (const project::FieldId id : project::RecordNumbers) {
        const std::size_t here = columnOf(id);
        const Cell& cell = cellOf(here, cells);
        if (isBlank(cell)) {
            row.blank[here] = m_places[here].has_value();
            continue;
        }
        const auto value = readNumber(cell, columns()[here], signs);
        if (!value)
            fail(here, value.fault().message);
        else if (project::rowOf(id.field).isSingle() &&
                 std::abs(*value) > double{std::numeric_limits<float>::max()})
            fail(here, inQuotes(generalNumber(*value)) + " is too large");
        else
            set(row.current.Input, id, *value);
    }
    // As the reader of case files has it: a panel has at least one entry.
    if (row.current.Input.NumberEntries == 0) row.current.Input.NumberEntries = 1;
    // Behind the last entry there is nothing to be given.
    for (int i = project::distanceCount(row.current.Input) + 1; i < project::MaxEntries; ++i)
        row.blank[columnOf({project::Field::XcutCenters, i})] = false;
}

void TableBuilder::computeAutomatic(CaseRow& row, const std::vector<Cell>& cells) {
    using project::Field;
    project::ProjectInput& in = row.current.Input;
    const bool wantsBreadth = in.AMZ == 1 && in.BreadthAMZ == 0;
    const bool wantsFactor =
        in.Arch == 1 && (in.ArchFactor == 0 || isBlank(cellOf(columnOf(Field::ArchFactor), cells)));
    for (const auto& [wanted, field] :
         {std::pair{wantsBreadth, Field::BreadthAMZ}, {wantsFactor, Field::ArchFactor}}) {
        const auto value = project::automaticValue(in, row.current.Units, field);
        if (!wanted || !value) continue;
        set(in, field, *value);
        row.automatic[columnOf(field)] = true;
        row.blank[columnOf(field)] = false;
    }
}

Status TableBuilder::refuseMerged(std::uint32_t firstRow, std::size_t firstColumn,
                                  std::uint32_t lastRow, std::size_t lastColumn) {
    constexpr std::size_t most = MaxRows * 64;
    std::vector<std::size_t> inside;
    for (std::size_t column = UnitsColumn; column < columns().size(); ++column)
        if (m_places[column] && *m_places[column] >= firstColumn && *m_places[column] <= lastColumn)
            inside.push_back(column);
    ++m_merged;
    if (!inside.empty()) {
        const std::string first = columnLetters(firstColumn) + std::to_string(firstRow);
        auto row = std::lower_bound(
            m_table.rows.begin(), m_table.rows.end(), firstRow,
            [](const CaseRow& each, std::uint32_t wanted) { return each.number < wanted; });
        for (; row != m_table.rows.end() && row->number <= lastRow; ++row) {
            m_merged += inside.size();
            for (const std::size_t column : inside)
                if ((row->number != firstRow || *m_places[column] != firstColumn) &&
                    takesFault(*row))
                    addFault(*row,
                             "the cell is merged with " + first +
                                 "; unmerge the cells and give each its own value",
                             *m_places[column], columns()[column].name);
        }
    }
    if (m_merged > most) return Fault{"has merged cells over each other", m_table.file};
    return success();
}

CaseTable TableBuilder::take() {
    int distances = 0;
    for (const CaseRow& row : m_table.rows)
        distances = std::max(distances, project::distanceCount(row.current.Input));
    std::erase_if(m_table.missingColumns, [&](const std::string& name) {
        const std::size_t column = *columnOf(name);
        // What no row has and what nothing uses needs no value.
        if (column >= FirstFieldColumn &&
            (fieldOf(column) == project::Field::Reserved || fieldOf(column).index > distances))
            return true;
        // Computed in every row, it takes no value of a new case.
        return !m_table.rows.empty() &&
               std::all_of(m_table.rows.begin(), m_table.rows.end(), [column](const CaseRow& row) {
                   return !row.good() || row.automatic[column];
               });
    });
    return std::move(m_table);
}

const CaseRow* CaseTable::row(std::uint32_t number) const {
    const auto found = std::lower_bound(
        rows.begin(), rows.end(), number,
        [](const CaseRow& each, std::uint32_t wanted) { return each.number < wanted; });
    return found != rows.end() && found->number == number ? &*found : nullptr;
}

std::string rowName(const std::string& file, std::uint32_t number) {
    return file + "#" + std::to_string(number);
}

} // namespace telvo::table
