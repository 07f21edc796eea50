// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/columns.h"

#include "base/numbers.h"
#include "base/text.h"
#include "project/description.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

namespace telvo::table {

namespace {

Column describedColumn(project::FieldId id) {
    const project::InputField& row = project::rowOf(id.field);
    Column column;
    column.name = project::nameOf(id);
    column.kind = row.kind;
    column.whole = row.isWhole();
    column.flag = row.isFlag();
    column.low = row.low;
    column.high = row.high;
    column.valid = row.valid;
    column.meaning = row.meaning.empty() ? row.label : row.meaning;
    if (id.index > 0) {
        column.meaning = "Center-to-center distance between entry " + std::to_string(id.index) +
                         " and " + std::to_string(id.index + 1);
        column.valid += "; blank where there is no entry";
    } else if (!column.whole && row.group.ends_with("Gob")) {
        column.meaning.insert(0, std::string(row.group) + ": ");
    }
    if (row.id == project::Field::BreadthAMZ) column.valid += "; blank or 0 with AMZ 1: computed";
    if (row.id == project::Field::ArchFactor) column.valid += "; blank or 0 with Arch 1: computed";
    return column;
}

std::vector<Column> makeColumns() {
    std::vector<Column> made;
    made.push_back(
        {"Title", "Title of the case", {}, "text on one line", 0, 0, false, false, true});
    made.push_back({"Description",
                    "Description of the case",
                    {},
                    "text of any lines",
                    0,
                    0,
                    false,
                    false,
                    true});
    made.push_back({"Units", "Unit system of the row", {}, "English or metric"});
    for (const project::FieldId id : project::RecordNumbers)
        made.push_back(describedColumn(id));
    return made;
}

std::string folded(std::string_view heading) {
    constexpr std::string_view passed = " \t\r\n.()";
    constexpr std::string_view noBreakBlank = "\xC2\xA0";
    std::string out;
    for (std::size_t i = 0; i < heading.size(); ++i) {
        const char c = heading[i];
        if (heading.substr(i, noBreakBlank.size()) == noBreakBlank) {
            ++i;
            continue;
        }
        if (passed.find(c) == std::string_view::npos)
            out += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return out;
}

} // namespace

const std::vector<Column>& columns() {
    static const std::vector<Column> all = makeColumns();
    return all;
}

std::optional<std::size_t> columnOf(std::string_view heading) {
    static const std::map<std::string, std::size_t> byName = [] {
        std::map<std::string, std::size_t> made;
        for (std::size_t i = 0; i < columns().size(); ++i)
            made[folded(columns()[i].name)] = i;
        return made;
    }();
    const auto found = byName.find(folded(heading));
    if (found == byName.end()) return std::nullopt;
    return found->second;
}

std::size_t columnOf(project::FieldId id) {
    return FirstFieldColumn + project::placeOf(id);
}

std::string columnLetters(std::size_t index) {
    std::string letters;
    for (std::size_t rest = index + 1; rest > 0; rest = (rest - 1) / 26)
        letters.insert(letters.begin(), static_cast<char>('A' + (rest - 1) % 26));
    return letters;
}

std::optional<std::string> refusedNumber(const Column& column, double value,
                                         std::string_view shown) {
    const std::string quoted = "\"" + excerpt(shown) + "\"";
    if (!std::isfinite(value)) return quoted + " is not a finite number";
    if (column.whole) {
        if (value != std::floor(value)) return quoted + " is not a whole number";
        if (column.flag && value != 0 && value != 1) return quoted + " is neither 0 nor 1";
        if (value < column.low || value > column.high)
            return quoted + " is outside " + generalNumber(column.low) + " to " +
                   generalNumber(column.high);
    }
    return std::nullopt;
}

Result<std::vector<CellValue>> cellsOf(const project::ProjectCase& current) {
    std::vector<CellValue> cells;
    cells.reserve(columns().size());
    const auto text = [&](std::string value) {
        cells.push_back({false, value.empty(), 0, std::move(value)});
    };
    text(current.Title);
    std::string description;
    for (const auto line : splitLines(current.Description)) {
        if (!description.empty()) description += '\n';
        description += line;
    }
    text(std::move(description));
    text(cellText(current, UnitsColumn));
    std::optional<Fault> fault;
    const project::ProjectInput& in = current.Input;
    for (const project::FieldId id : project::RecordNumbers) {
        const Column& column = columns()[cells.size()];
        std::string shown = project::shownText(in, id);
        const double number = project::get(in, id);
        const bool blank = id.index > project::distanceCount(in) && number == 0;
        if (auto refused = refusedNumber(column, number, shown); refused && !fault)
            fault = Fault{*refused, column.name};
        cells.push_back({true, blank, project::shownValue(in, id), std::move(shown)});
    }
    if (fault) return *fault;
    return cells;
}

std::string cellText(const project::ProjectCase& current, std::size_t column) {
    switch (column) {
    case TitleColumn:
        return current.Title;
    case DescriptionColumn:
        return current.Description;
    case UnitsColumn:
        return current.Units == project::English ? "English" : "metric";
    default:
        return project::shownText(current.Input, fieldOf(column));
    }
}

void setTitle(project::ProjectCase& current, std::string_view text) {
    current.Title = project::onOneLine(text);
}

void setDescription(project::ProjectCase& current, std::string_view text) {
    current.Description.clear();
    std::size_t count = 0;
    for (const auto line : splitLines(text)) {
        if (trimmed(line).empty()) continue;
        if (!current.Description.empty()) current.Description += LineBreak;
        current.Description += line;
        ++count;
    }
    current.DescriptionLines = static_cast<std::int16_t>(
        std::min<std::size_t>(count, std::numeric_limits<std::int16_t>::max()));
}

} // namespace telvo::table
