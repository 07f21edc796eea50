// SPDX-License-Identifier: GPL-3.0-or-later
//
// Table of scenarios.
#include "base/numbers.h"
#include "base/text.h"
#include "project/fieldNames.h"
#include "project/fieldText.h"
#include "study/output/StudyOutput.h"
#include "study/questions/ranges.h"
#include "study/ui/drawings/caseBars.h"
#include "study/ui/studies/ScenariosPage.h"
#include "table/columns.h"

#include <algorithm>

namespace telvo::study::ui {

using project::FieldId;

namespace {

using SheetPtr = std::shared_ptr<const ScenarioSheet>;

constexpr auto WorstRowName = "(worst of all)";

/// "One active section and two side gobs" for the same in capitals.
std::string inSmallLetters(std::string text) {
    for (std::size_t i = 1; i < text.size(); ++i)
        if (text[i] >= 'A' && text[i] <= 'Z') text[i] = static_cast<char>(text[i] - 'A' + 'a');
    return text;
}

std::string wordOf(FieldId id, double value) {
    const auto choices = scenarioChoices(id);
    const auto at = static_cast<std::size_t>(std::clamp(value, 0.0, 3.0));
    return at < choices.size() ? choices[at] : generalNumber(value);
}

/// Inputs that a scenario sets and its case does not use.
std::string withoutEffect(const ScenarioDraft& draft, const project::ProjectCase& current) {
    std::string text;
    for (const FieldId id : project::NumericInputs) {
        if (!draft.at(id)) continue;
        const std::string why = id.index > 0 && id.index >= current.Input.NumberEntries
                                    ? "there are fewer entries"
                                    : whyWithoutEffect(current, Variable(id));
        if (!why.empty())
            text += (text.empty() ? "no effect: " : "; ") + project::fullLabelOf(id) + ": " + why;
    }
    return text;
}

std::string refusedText(const ScenarioDraft& draft) {
    std::string text;
    for (const ScenarioDraft::Refused& one : draft.refused)
        text += (text.empty() ? "" : "; ") + (one.id ? project::fullLabelOf(*one.id) + ": " : "") +
                one.why;
    return text;
}

std::string worstRemark(const ScenarioSheet& sheet) {
    std::string text;
    for (std::size_t i = 0; i < sheet.outcomes.size() && i < sheet.made.worst.size(); ++i) {
        if (!sheet.made.worst[i]) continue;
        const std::string& name = sheet.made.rows[*sheet.made.worst[i]].name;
        text += (text.empty() ? "" : "; ") + sheet.outcomes[i].label() + ": " +
                (name.empty() ? "the case" : name);
    }
    return text;
}

std::string scenarioRemark(const ScenarioSheet& sheet, std::size_t row) {
    if (row + 1 == sheet.rows()) return worstRemark(sheet);
    const ScenarioDraft* draft = sheet.draftAt(row);
    if (draft && !draft->refused.empty()) return refusedText(*draft);
    const ScenarioRow* result = sheet.resultAt(row);
    if (!result) return {};
    if (!result->run) return result->message;
    return draft ? withoutEffect(*draft, result->current) : std::string();
}

StudyCell inputCell(const ScenarioSheet& sheet, std::size_t row, FieldId id) {
    if (row + 1 == sheet.rows()) return {};
    const bool choice = !scenarioChoices(id).empty();
    const ScenarioDraft* draft = sheet.draftAt(row);
    if (!draft) {
        if (choice) return wordOf(id, project::get(sheet.base.Input, id));
        if (id.index > 0 && id.index >= sheet.base.Input.NumberEntries) return {};
        return project::shownValue(sheet.base.Input, id);
    }
    if (const auto* refused = draft->refusedAt(id)) return refused->text;
    const auto value = draft->at(id);
    if (!value) return {};
    return choice ? StudyCell(wordOf(id, *value)) : StudyCell(*value);
}

StudyCell outcomeCell(const ScenarioSheet& sheet, std::size_t row, std::size_t which) {
    if (row + 1 == sheet.rows()) {
        if (which >= sheet.made.worst.size() || !sheet.made.worst[which]) return {};
        return *sheet.made.rows[*sheet.made.worst[which]].outcomes[which];
    }
    const ScenarioRow* result = sheet.resultAt(row);
    if (!result || !result->run || which >= result->outcomes.size() || !result->outcomes[which])
        return {};
    return *result->outcomes[which];
}

StudyCell scenarioCell(const ScenarioSheet& sheet, std::size_t row, int column) {
    if (column == 0) {
        if (row == 0) return CaseItself;
        const ScenarioDraft* draft = sheet.draftAt(row);
        if (!draft) return WorstRowName;
        const auto* refused = draft->refusedAt(std::nullopt);
        return refused ? refused->text : draft->scenario.name;
    }
    if (const auto id = sheet.inputAt(column)) return inputCell(sheet, row, *id);
    if (const auto which = sheet.outcomeAt(column)) return outcomeCell(sheet, row, *which);
    const bool flags = column == static_cast<int>(1 + sheet.inputs.size() + sheet.outcomes.size());
    if (!flags) return scenarioRemark(sheet, row);
    std::uint16_t raised = 0;
    if (row + 1 == sheet.rows())
        for (const ScenarioRow& one : sheet.made.rows)
            raised |= one.flags;
    else if (const ScenarioRow* result = sheet.resultAt(row))
        raised = result->flags;
    return flagText(raised);
}

CaseChoice choiceOf(const ScenarioRow& row) {
    return {row.name.empty() ? "the case itself" : "Scenario " + row.name,
            [current = row.current] { return current; }};
}

std::vector<CaseChoice> scenarioChoicesAt(const ScenarioSheet& sheet, std::size_t row, int column) {
    if (const ScenarioRow* result = sheet.resultAt(row)) return {choiceOf(*result)};
    const auto which = sheet.outcomeAt(column);
    if (row + 1 != sheet.rows() || !which || !sheet.made.worst[*which]) return {};
    return {choiceOf(sheet.made.rows[*sheet.made.worst[*which]])};
}

Drawing drawingOf(const ScenarioSheet& sheet) {
    std::vector<DrawnCase> cases;
    for (std::size_t row = 0; row + 1 < sheet.rows(); ++row) {
        DrawnCase& drawn = cases.emplace_back();
        drawn.name = std::get<std::string>(scenarioCell(sheet, row, 0));
        const ScenarioRow* result = sheet.resultAt(row);
        if (!result || !result->run)
            drawn.note = scenarioRemark(sheet, row);
        else
            drawn.values = result->outcomes;
    }
    Drawing drawing = caseDrawing(sheet.outcomes, std::move(cases), sheet.base.Units);
    drawing.headline =
        sheet.drafts.empty()
            ? "No scenario yet. Add one, add the inputs that differ, and enter their values."
            : scenarioHeadline({sheet.outcomes, sheet.made},
                               sheet.drafts.size() + 1 - sheet.made.rows.size());
    return drawing;
}

} // namespace

const ScenarioDraft::Refused* ScenarioDraft::refusedAt(const std::optional<FieldId>& id) const {
    for (const Refused& one : refused)
        if (one.id == id) return &one;
    return nullptr;
}

std::optional<double> ScenarioDraft::at(FieldId id) const {
    for (const auto& [field, value] : scenario.set)
        if (field == id) return value;
    return std::nullopt;
}

void ScenarioDraft::clear(const std::optional<FieldId>& id) {
    std::erase_if(refused, [&](const Refused& one) { return one.id == id; });
    if (id) std::erase_if(scenario.set, [&](const auto& one) { return one.first == *id; });
}

const ScenarioDraft* ScenarioSheet::draftAt(std::size_t row) const {
    return row >= 1 && row <= drafts.size() ? &drafts[row - 1] : nullptr;
}

const ScenarioRow* ScenarioSheet::resultAt(std::size_t row) const {
    if (made.rows.empty()) return nullptr;
    if (row == 0) return &made.rows.front();
    if (row > madeRow.size() || !madeRow[row - 1]) return nullptr;
    return &made.rows[*madeRow[row - 1]];
}

std::optional<FieldId> ScenarioSheet::inputAt(int column) const {
    const auto at = static_cast<std::size_t>(column - 1);
    return column >= 1 && at < inputs.size() ? std::optional(inputs[at]) : std::nullopt;
}

std::optional<std::size_t> ScenarioSheet::outcomeAt(int column) const {
    const auto first = static_cast<int>(1 + inputs.size());
    if (column < first || column >= first + static_cast<int>(outcomes.size())) return std::nullopt;
    return static_cast<std::size_t>(column - first);
}

std::vector<std::string> scenarioChoices(FieldId id) {
    const project::InputField& row = project::rowOf(id.field);
    if (row.isFlag()) return {"no", "yes"};
    if (row.role != project::FieldRole::Choice) return {};
    std::vector<std::string> names;
    for (int i = 0; i <= 3; ++i)
        names.push_back(inSmallLetters(std::string(project::LoadingConditionNames[i])));
    return names;
}

Result<std::optional<double>> scenarioValue(FieldId id, const std::string& text,
                                            std::int16_t units) {
    std::string plain(trimmed(text));
    if (plain.empty()) return std::optional<double>();
    const auto choices = scenarioChoices(id);
    for (std::size_t i = 0; i < choices.size(); ++i)
        if (choices[i] == plain) return std::optional<double>(static_cast<double>(i));
    // As number boxes take it.
    if (std::count(plain.begin(), plain.end(), ',') == 1 && plain.find('.') == std::string::npos)
        plain[plain.find(',')] = '.';
    const auto read = project::readFieldText(plain, project::kindOf(id), units);
    if (!read.refusal.empty()) return Fault{read.refusal, project::nameOf(id)};
    const auto number = numberOf(read.number);
    if (!number) return Fault{"\"" + excerpt(text) + "\" is not a number", project::nameOf(id)};
    const auto& column = table::columns()[table::columnOf(id)];
    if (const auto why = table::refusedNumber(column, *number, text))
        return Fault{*why, project::nameOf(id)};
    project::ProjectInput in; // a number beyond the type of the record
    project::set(in, id, *number);
    if (!std::isfinite(project::get(in, id)))
        return Fault{"\"" + excerpt(text) + "\" is too large", project::nameOf(id)};
    return std::optional<double>(project::shownValue(in, id));
}

std::shared_ptr<const StudyTable> scenarioTable(SheetPtr sheet) {
    auto table = std::make_shared<StudyTable>();
    const std::int16_t units = sheet->base.Units;
    table->columns.push_back({.label = "Scenario", .isText = true});
    for (const FieldId id : sheet->inputs)
        table->columns.push_back(
            {.label = project::fullLabelOf(id),
             .unit = std::string(project::fieldUnit(project::kindOf(id), units)),
             .name = project::nameOf(id),
             .isText = !scenarioChoices(id).empty(),
             .digits = 10});
    for (const Outcome& outcome : sheet->outcomes)
        table->columns.push_back({.label = outcome.label(),
                                  .unit = std::string(engine::unitName(outcome.kind(), units)),
                                  .name = outcome.name()});
    table->columns.push_back({.label = "Flags", .isText = true});
    table->columns.push_back({.label = "Remark", .isText = true});
    table->rows = sheet->rows();
    table->cell = [sheet](std::size_t row, std::size_t column) {
        return scenarioCell(*sheet, row, static_cast<int>(column));
    };
    return table;
}

Result<StudyResult> scenarioResult(ScenarioSheet sheet, int RoundTELVOSF) {
    std::vector<Scenario> list;
    sheet.madeRow.clear();
    for (const ScenarioDraft& draft : sheet.drafts) {
        sheet.madeRow.emplace_back();
        if (!draft.refused.empty()) continue;
        list.push_back(draft.scenario);
        sheet.madeRow.back() = list.size(); // the case itself is row 0
    }
    auto made = scenarios(sheet.base, list, sheet.outcomes, RoundTELVOSF);
    if (!made) return made.fault();
    sheet.made = std::move(*made);
    const auto shared = std::make_shared<const ScenarioSheet>(std::move(sheet));
    StudyResult result;
    result.tally.runs = shared->drafts.size() + 1;
    for (std::size_t row = 0; row + 1 < shared->rows(); ++row) {
        const ScenarioRow* one = shared->resultAt(row);
        if (!one || !one->run) result.tally.leaveOut(scenarioRemark(*shared, row));
    }
    result.made = shared;
    result.table = scenarioTable(shared);
    result.drawing = drawingOf(*shared);
    result.headline = result.drawing.headline;
    result.ofRow = [shared](std::size_t row, int column) {
        return scenarioChoicesAt(*shared, row, column);
    };
    result.ofSpot = [shared](std::size_t id) -> std::optional<CaseChoice> {
        return choiceOf(*shared->resultAt(id / MostBars));
    };
    return result;
}

} // namespace telvo::study::ui
