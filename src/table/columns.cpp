// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/columns.h"

#include "base/numbers.h"
#include "base/text.h"
#include "project/parameterFields.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <map>

namespace telvo::table {

namespace {

struct WholeColumn {
    std::string_view name, meaning;
    double low, high;
    std::string_view valid;
};

constexpr WholeColumn WholeColumns[] = {
    {"NumberEntries", "Number of entries", 0, project::MaxEntries, "2 to 10"},
    {"Anal", "Loading condition", 0, 3,
     "0 development, 1 one active section, 2 with one side gob, 3 with two"},
    {"Reserved", "Kept with the case, used by nothing", -32768, 32767, "-32768 to 32767"},
    {"AMZ",
     "1: a BreadthAMZ that is blank or 0 is computed from DepthCover when the table is read, and "
     "the parameter form keeps it so; the analysis uses what BreadthAMZ holds",
     0, 1, "0 no, 1 yes"},
    {"Arch",
     "1: the analysis computes the pressure arch factor that it uses, whatever ArchFactor holds; "
     "an ArchFactor that is blank or 0 gets what the parameter form would show",
     0, 1, "0 no, 1 yes"},
    {"RowA", "Row A of pillars is left, beside the first side barrier", 0, 1, "0 no, 1 yes"},
    {"RowB", "Row B of pillars is left, beside the second side barrier", 0, 1, "0 no, 1 yes"},
    {"RowC", "Row C of pillars is left", 0, 1, "0 no, 1 yes"},
    {"RowD", "Row D of pillars is left", 0, 1, "0 no, 1 yes"},
};

Column describedColumn(std::string_view name, project::FieldKind kind) {
    Column column;
    column.name = name;
    column.kind = kind;
    if (const auto* whole =
            std::find_if(std::begin(WholeColumns), std::end(WholeColumns),
                         [name](const WholeColumn& each) { return each.name == name; });
        whole != std::end(WholeColumns)) {
        column.meaning = whole->meaning;
        column.valid = whole->valid;
        column.low = whole->low;
        column.high = whole->high;
        column.whole = true;
        column.flag = whole->low == 0 && whole->high == 1;
        return column;
    }
    const auto distance = std::find(DistanceColumns.begin(), DistanceColumns.end(), name);
    if (distance != DistanceColumns.end()) {
        const auto entry = static_cast<int>(distance - DistanceColumns.begin()) + 1;
        column.meaning = "Center-to-center distance between entry " + std::to_string(entry) +
                         " and " + std::to_string(entry + 1);
        column.valid = std::string(project::DistanceValid) + "; blank where there is no entry";
        return column;
    }
    for (const project::ParameterField& field : project::parameterFields()) {
        if (field.control.substr(3) != name) continue; // behind "txt"
        column.meaning = field.label;
        if (field.group.ends_with("Gob"))
            column.meaning = std::string(field.group) + ": " + std::string(field.label);
        column.valid = field.valid;
    }
    if (name == "BreadthAMZ") column.valid += "; blank or 0 with AMZ 1: computed";
    if (name == "ArchFactor") column.valid += "; blank or 0 with Arch 1: computed";
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
    const project::ProjectInput in;
    visitNumbers(in, [&](std::string_view name, project::FieldKind kind, auto) {
        made.push_back(describedColumn(name, kind));
    });
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

double valueOfShortForm(const std::string& text) {
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
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

std::size_t distanceColumn(int distance) {
    static const std::size_t first = *columnOf(DistanceColumns[0]);
    return first + static_cast<std::size_t>(distance - 1);
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
    text(current.Units == project::English ? "English" : "metric");
    std::optional<Fault> fault;
    int distance = 0;
    visitNumbers(current.Input, [&](std::string_view, project::FieldKind, auto value) {
        const Column& column = columns()[cells.size()];
        std::string shown = generalNumber(value);
        const bool isDistance = column.name.starts_with("XcutCenters.");
        if (isDistance) ++distance;
        const bool blank =
            isDistance && distance > project::distanceCount(current.Input) && value == 0;
        double number = static_cast<double>(value);
        if (auto refused = refusedNumber(column, number, shown); refused && !fault)
            fault = Fault{*refused, column.name};
        if constexpr (std::is_same_v<decltype(value), float>) number = valueOfShortForm(shown);
        cells.push_back({true, blank, number, std::move(shown)});
    });
    if (fault) return *fault;
    return cells;
}

void setTitle(project::ProjectCase& current, std::string_view text) {
    current.Title.clear();
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text.substr(at, LineBreak.size()) == LineBreak) continue; // the LF becomes the blank
        current.Title += text[at] == '\r' || text[at] == '\n' ? ' ' : text[at];
    }
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
