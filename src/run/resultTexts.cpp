// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/resultTexts.h"

#include "base/csv.h"
#include "base/escapes.h"
#include "base/numbers.h"
#include "base/text.h"
#include "engine/quantities.h"
#include "engine/quantityNames.h"
#include "project/inputFields.h"

namespace telvo::run {

namespace {

/// A text on one line, so that a file of n cases has n + 1 lines.
std::string oneLine(std::string_view text) {
    std::string out;
    for (const auto line : splitLines(text)) {
        if (!out.empty() && !line.empty()) out += ' ';
        out += trimmed(line);
    }
    return out;
}

std::string unitPair(std::string_view english, std::string_view metric) {
    if (english.empty()) return {};
    if (english == metric) return " (" + std::string(english) + ")";
    return " (" + std::string(english) + "|" + std::string(metric) + ")";
}

std::string flagList(const CaseResult& result) {
    std::string out;
    for (int flag = 0; flag < CaseResult::flagCount; ++flag) {
        if (!result.flag(flag)) continue;
        if (!out.empty()) out += ' ';
        out += std::to_string(flag);
    }
    return out;
}

/// Cells of a row for one field; per-pillar fields always take their nine columns.
template <typename Field>
void appendCells(std::string& row, const Field& field, int pillars) {
    if constexpr (engine::isPerPillar<Field>) {
        for (int i = 1; i <= engine::MaxPillars; ++i) {
            row += ',';
            if (i <= pillars) appendGeneralNumber(row, field[i]);
        }
    } else if constexpr (engine::isIndexed<Field>) {
        for (const auto& element : field)
            appendCells(row, element, pillars);
    } else {
        row += ',';
        appendGeneralNumber(row, field);
    }
}

/// Calls visit(name, english unit, metric unit) for every value column.
template <typename Visit>
void visitColumns(Visit&& visit) {
    const project::ProjectInput inputs;
    const engine::AnalysisResults results;
    project::visitInputFields(
        inputs, [&](const char* name, project::FieldKind kind, const auto& field) {
            engine::flatten("inputs." + std::string(name), field, engine::MaxPillars,
                            [&](const std::string& path, auto) {
                                visit(path, project::fieldUnit(kind, project::English),
                                      project::fieldUnit(kind, project::Metric));
                            });
        });
    visit("AnalysisCase", "", "");
    engine::visitQuantities(results, [&](const char* name, engine::Kind kind, const auto& field) {
        engine::flatten(name, field, engine::MaxPillars, [&](const std::string& path, auto) {
            visit(path, engine::unitName(kind, project::English),
                  engine::unitName(kind, project::Metric));
        });
    });
}

std::size_t columnCount() {
    std::size_t count = 0;
    visitColumns([&](const std::string&, std::string_view, std::string_view) { ++count; });
    return count;
}

} // namespace

std::string resultText(const CaseResult& result) {
    std::string out = forTerminal(result.name) + "\n";
    const auto line = [&](const std::string& name, const std::string& value,
                          std::string_view unit) {
        out += "  " + name;
        out.append(name.size() < 38 ? 38 - name.size() : 1, ' ');
        out += value;
        if (!unit.empty()) out.append(" ").append(unit);
        out += '\n';
    };
    if (!result.message.empty()) line("message", forTerminal(result.message), "");
    if (!result.run) return out;

    const project::ProjectCase& current = *result.current;
    line("Title", withoutControls(current.Title), "");
    line("Units", generalNumber(current.Units), "");
    project::visitInputFields(current.Input, [&](const char* name, project::FieldKind kind,
                                                 const auto& field) {
        engine::flatten("inputs." + std::string(name), field, project::distanceCount(current.Input),
                        [&](const std::string& path, auto value) {
                            line(path, generalNumber(value),
                                 project::fieldUnit(kind, current.Units));
                        });
    });
    const engine::AnalysisResults& results = result.run->results;
    line("AnalysisCase", generalNumber(results.AnalysisCase), "");
    engine::visitQuantities(results, [&](const char* name, engine::Kind kind, const auto& field) {
        engine::flatten(name, field, results.NumberPillars,
                        [&](const std::string& path, auto value) {
                            line(path, generalNumber(static_cast<double>(value)),
                                 engine::unitName(kind, current.Units));
                        });
    });
    const std::string flags = flagList(result);
    line("warnings.flags", flags.empty() ? "none" : flags, "");
    for (const auto text : splitLines(result.warnings))
        if (!text.empty()) line("warnings.summary", std::string(text), "");
    return out;
}

std::string csvHeader() {
    std::string out = "file,valid,message,Title,Units";
    visitColumns([&](const std::string& name, std::string_view english, std::string_view metric) {
        out += "," + name + unitPair(english, metric);
    });
    return out + ",warnings.flags,warnings.summary\r\n";
}

std::string csvRow(const CaseResult& result) {
    std::string row;
    appendCsvCell(row, withEscapedBytes(result.name));
    row += result.run ? ",true," : ",false,";
    appendCsvCell(row, withEscapedBytes(result.message));
    if (!result.run) {
        row += ",,";
        row.append(columnCount() + 2, ',');
        return row + "\r\n";
    }
    row.reserve(6000);
    const project::ProjectCase& current = *result.current;
    const engine::AnalysisResults& results = result.run->results;
    row += ',';
    appendCsvCell(row, withoutControls(current.Title));
    row += ',' + generalNumber(current.Units);
    project::visitInputFields(
        current.Input, [&](const char*, project::FieldKind, const auto& field) {
            using Field = std::remove_cvref_t<decltype(field)>;
            if constexpr (std::is_same_v<Field, float>)
                row += ',' + generalNumber(field);
            else
                appendCells(row, field, project::distanceCount(current.Input));
        });
    row += ',' + generalNumber(results.AnalysisCase);
    engine::visitQuantities(results, [&](const char*, engine::Kind, const auto& field) {
        appendCells(row, field, results.NumberPillars);
    });
    row += ',' + flagList(result) + ',';
    appendCsvCell(row, oneLine(result.warnings));
    return row + "\r\n";
}

bool looksLikeFormula(const CaseResult& result) {
    const auto begins = [](std::string_view text) {
        return !text.empty() &&
               std::string_view("=+-@\t\r").find(text.front()) != std::string_view::npos;
    };
    return begins(result.name) || begins(result.message) ||
           (result.run && begins(result.current->Title));
}

} // namespace telvo::run
