// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/TableBuilder.h"

#include "base/numbers.h"
#include "base/text.h"
#include "table/columns.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace telvo::table {

namespace {

constexpr std::size_t MostListed = 20;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string inQuotes(std::string_view text) {
    return "\"" + excerpt(text.substr(0, 200)) + "\"";
}

/// Whether the number would be a whole one if its sign parted the thousands: 1 to 3 digits, no
/// leading zero, the sign, exactly three digits.
bool maybeThousands(std::string_view text, char sign) {
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
    const auto at = text.find(sign);
    if (at == std::string_view::npos || at < 1 || at > 3 || text.size() != at + 4) return false;
    if (text.front() == '0') return false;
    return std::all_of(text.begin(), text.end(), [&](char c) { return c == sign || isDigit(c); });
}

bool isNumberAlone(std::string_view text) {
    const auto read = leadingNumber(text);
    return read && trimmed(text.substr(read->length)).empty();
}

std::string withPoint(std::string_view text) {
    std::string out(text);
    std::replace(out.begin(), out.end(), ',', '.');
    return out;
}

/// Reads the units of a row into `units`; why they cannot be read.
std::optional<std::string> readUnits(const Cell& cell, std::int16_t& units) {
    if (cell.kind == Cell::Kind::Blank) return std::nullopt;
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

void DecimalSigns::note(std::string_view text) {
    text = trimmed(text);
    const auto commas = std::count(text.begin(), text.end(), ',');
    const auto points = std::count(text.begin(), text.end(), '.');
    if (commas + points != 1 || !isNumberAlone(withPoint(text))) return;
    if (points == 1)
        m_point = m_point || !maybeThousands(text, '.');
    else if (maybeThousands(text, ','))
        m_maybeComma = true;
    else
        m_comma = true;
}

Result<std::string> DecimalSigns::read(std::string_view text) const {
    const auto refuse = [&](std::string_view why) {
        return Fault{inQuotes(text) + " " + std::string(why), {}};
    };
    const auto commas = std::count(text.begin(), text.end(), ',');
    const auto points = std::count(text.begin(), text.end(), '.');
    if (commas > 0 && points > 0)
        return refuse("has a sign between the thousands; write the number without it");
    if (points == 1 && maybeThousands(text, '.') && (m_comma || (m_maybeComma && !m_point)))
        return refuse("may have a decimal point or a point between the thousands, because other "
                      "numbers of the table have a comma");
    if (commas == 1 && isNumberAlone(withPoint(text))) {
        if (!m_commaPossible) return refuse("has a decimal comma; numbers take a \".\"");
        if (m_point)
            return refuse("has a decimal comma, while other numbers of the table have a point");
        if (!m_comma)
            return refuse("may be a decimal number or a whole one with a sign between the "
                          "thousands; write it with a point, or without the sign");
        return withPoint(text);
    }
    if (text.find_first_not_of("+-.") == std::string_view::npos) return refuse("is not a number");
    return std::string(text);
}

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
    std::size_t unknown = 0;
    for (std::size_t i = 0; i < headings.size(); ++i) {
        const auto name = trimmed(headings[i]);
        if (name.empty()) continue;
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
    for (std::size_t i = FirstFieldColumn; i < columns().size(); ++i)
        if (!m_places[i]) m_table.missingColumns.push_back(columns()[i].name);
    return success();
}

bool TableBuilder::isRead(std::size_t column) const {
    return column < m_columns.size() && m_columns[column].has_value();
}

bool TableBuilder::isNumeric(std::size_t column) const {
    return isRead(column) && *m_columns[column] >= FirstFieldColumn;
}

Status TableBuilder::addRow(std::uint32_t number, const std::vector<Cell>& cells,
                            const DecimalSigns& signs) {
    const bool blank = std::all_of(cells.begin(), cells.end(), [](const Cell& cell) {
        return cell.kind == Cell::Kind::Blank ||
               (cell.kind == Cell::Kind::Text && trimmed(cell.text).empty());
    });
    if (blank) return success();
    if (m_table.rows.size() == MaxRows)
        return Fault{"the table has more than " + std::to_string(MaxRows) + " cases", m_table.file};
    CaseRow& row = m_table.rows.emplace_back();
    row.number = number;
    static const Cell none;
    const auto cellOf = [&](std::size_t column) -> const Cell& {
        const auto place = m_places[column];
        return place && *place < cells.size() ? cells[*place] : none;
    };
    const auto fail = [&](std::size_t column, std::string why) {
        if (row.faults.size() >= MaxFaultsOfRow) return;
        row.faults.push_back({std::move(why), "row " + std::to_string(number) + ", column " +
                                                  columnLetters(*m_places[column]) + " (" +
                                                  columns()[column].name + ")"});
    };
    for (std::size_t i = m_columns.size(); i < cells.size(); ++i) {
        if (cells[i].kind == Cell::Kind::Blank || trimmed(cells[i].text).empty()) continue;
        row.faults.push_back({"this cell has no heading above it; a separator within a cell needs "
                              "quotes around the cell",
                              "row " + std::to_string(number) + ", column " + columnLetters(i)});
        break;
    }
    std::int16_t units = project::English;
    if (auto refused = readUnits(cellOf(UnitsColumn), units)) fail(UnitsColumn, *refused);
    row.current = project::newCase(units);
    row.current.FileName = rowName(m_table.file, number);
    std::string text;
    if (auto refused = readText(cellOf(TitleColumn), text)) fail(TitleColumn, *refused);
    setTitle(row.current, text);
    text.clear();
    if (auto refused = readText(cellOf(DescriptionColumn), text)) fail(DescriptionColumn, *refused);
    setDescription(row.current, text);
    std::size_t column = FirstFieldColumn;
    visitNumbers(row.current.Input, [&](std::string_view, project::FieldKind, auto& field) {
        using Field = std::remove_cvref_t<decltype(field)>;
        const std::size_t here = column++;
        const Cell& cell = cellOf(here);
        if (cell.kind == Cell::Kind::Blank ||
            (cell.kind == Cell::Kind::Text && trimmed(cell.text).empty()))
            return;
        const auto value = readNumber(cell, columns()[here], signs);
        if (!value) return fail(here, value.fault().message);
        if constexpr (std::is_same_v<Field, float>)
            if (std::abs(*value) > static_cast<double>(std::numeric_limits<float>::max()))
                return fail(here, inQuotes(generalNumber(*value)) + " is too large");
        field = static_cast<Field>(*value);
    });
    // As the reader of case files has it: a panel has at least one entry.
    if (row.current.Input.NumberEntries == 0) row.current.Input.NumberEntries = 1;
    return success();
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

std::vector<std::string> remarks(const CaseTable& table) {
    const auto list = [](const std::vector<std::string>& names) {
        std::string out;
        for (const std::string& name : names)
            out += (out.empty() ? "" : ", ") + name;
        return out;
    };
    std::vector<std::string> lines;
    if (table.laterSheet) lines.push_back("read from the sheet \"" + table.sheet + "\"");
    if (!table.unknownColumns.empty())
        lines.push_back("columns that are no input field and are not read: " +
                        list(table.unknownColumns));
    if (!table.missingColumns.empty())
        lines.push_back("fields without a column, which take the values of a new case: " +
                        list(table.missingColumns));
    return lines;
}

} // namespace telvo::table
