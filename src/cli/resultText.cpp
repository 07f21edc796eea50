// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/resultFormats.h"

#include "base/escapes.h"
#include "base/numbers.h"
#include "base/text.h"
#include "cli/resultNames.h"
#include "engine/quantities.h"
#include "project/inputFields.h"

namespace telvo::cli {

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

std::string quoted(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string out = "\"";
    for (const char c : text) {
        if (c == '"') out += '"';
        out += c;
    }
    return out + "\"";
}

std::string unitPair(std::string_view english, std::string_view metric) {
    if (english.empty()) return {};
    if (english == metric) return " (" + std::string(english) + ")";
    return " (" + std::string(english) + "|" + std::string(metric) + ")";
}

std::string flagList(const report::Warnings& warnings) {
    std::string out;
    for (std::size_t flag = 0; flag < warnings.WarningFlags.size(); ++flag) {
        if (!warnings.WarningFlags[flag]) continue;
        if (!out.empty()) out += ' ';
        out += std::to_string(flag);
    }
    return out;
}

/// Cells of a row for one field; per-pillar fields always take their nine columns.
template <typename Field>
void appendCells(std::string& row, const Field& field, int pillars) {
    if constexpr (isPerPillar<Field>) {
        for (int i = 1; i <= engine::MaxPillars; ++i) {
            row += ',';
            if (i <= pillars) appendGeneralNumber(row, field[i]);
        }
    } else if constexpr (isIndexed<Field>) {
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
            flatten("inputs." + std::string(name), field, engine::MaxPillars,
                    [&](const std::string& path, auto) {
                        visit(path, project::fieldUnit(kind, project::English),
                              project::fieldUnit(kind, project::Metric));
                    });
        });
    visit("AnalysisCase", "", "");
    engine::visitQuantities(results, [&](const char* name, engine::Kind kind, const auto& field) {
        flatten(name, field, engine::MaxPillars, [&](const std::string& path, auto) {
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

std::string resultText(const CaseOutcome& outcome) {
    std::string out = forTerminal(outcome.file) + "\n";
    const auto line = [&](const std::string& name, const std::string& value,
                          std::string_view unit) {
        out += "  " + name;
        out.append(name.size() < 38 ? 38 - name.size() : 1, ' ');
        out += value;
        if (!unit.empty()) out.append(" ").append(unit);
        out += '\n';
    };
    if (!outcome.message.empty()) line("message", forTerminal(outcome.message), "");
    if (!outcome.run) return out;

    const project::ProjectCase& current = *outcome.current;
    line("Title", withoutControls(current.Title), "");
    line("Units", generalNumber(current.Units), "");
    project::visitInputFields(
        current.Input, [&](const char* name, project::FieldKind kind, const auto& field) {
            flatten("inputs." + std::string(name), field, project::distanceCount(current.Input),
                    [&](const std::string& path, auto value) {
                        line(path, generalNumber(value), project::fieldUnit(kind, current.Units));
                    });
        });
    const engine::AnalysisResults& results = outcome.run->results;
    line("AnalysisCase", generalNumber(results.AnalysisCase), "");
    engine::visitQuantities(results, [&](const char* name, engine::Kind kind, const auto& field) {
        flatten(name, field, results.NumberPillars, [&](const std::string& path, auto value) {
            line(path, generalNumber(static_cast<double>(value)),
                 engine::unitName(kind, current.Units));
        });
    });
    const std::string flags = flagList(outcome.warnings);
    line("warnings.flags", flags.empty() ? "none" : flags, "");
    for (const auto text : splitLines(outcome.warnings.WarningSummary))
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

std::string csvRow(const CaseOutcome& outcome) {
    std::string row = quoted(withEscapedBytes(outcome.file));
    row += outcome.run ? ",true," : ",false,";
    row += quoted(withEscapedBytes(outcome.message));
    if (!outcome.run) {
        row += ",,";
        row.append(columnCount() + 2, ',');
        return row + "\r\n";
    }
    row.reserve(6000);
    const project::ProjectCase& current = *outcome.current;
    const engine::AnalysisResults& results = outcome.run->results;
    row += ',';
    row += quoted(withoutControls(current.Title));
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
    row += ',' + flagList(outcome.warnings) + ',';
    row += quoted(oneLine(outcome.warnings.WarningSummary));
    return row + "\r\n";
}

bool looksLikeFormula(const CaseOutcome& outcome) {
    const auto begins = [](std::string_view text) {
        return !text.empty() &&
               std::string_view("=+-@\t\r").find(text.front()) != std::string_view::npos;
    };
    return begins(outcome.file) || begins(outcome.message) ||
           (outcome.run && begins(outcome.current->Title));
}

} // namespace telvo::cli
