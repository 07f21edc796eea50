// SPDX-License-Identifier: GPL-3.0-or-later
//
// Table of cases side by side.
#include "base/files.h"
#include "project/CaseFile.h"
#include "study/ui/drawings/caseBars.h"
#include "study/ui/studies/ComparePage.h"

#include <algorithm>

namespace telvo::study::ui {

namespace {

using CasesPtr = std::shared_ptr<const ComparedCases>;

// Columns: what it is, unit, a column per case, then two per case but the base.
enum { WhatColumn, UnitColumn, FirstCaseColumn };

/// The file without its folder, with it where two cases would have one name.
std::string fileName(const std::string& path, const std::vector<std::string>& all) {
    const std::string name = withoutFolder(path);
    const auto alike = std::count_if(all.begin(), all.end(), [&](const std::string& other) {
        return withoutFolder(other) == name;
    });
    return alike > 1 ? path : name;
}

std::vector<NamedCase> casesOf(const CompareOrder& order, std::vector<std::string>& remarks) {
    std::vector<NamedCase> cases = {{order.ownName, order.own}};
    for (const Scenario& scenario : order.scenarios)
        cases.emplace_back(scenario.name, withScenario(order.own, scenario));
    cases.insert(cases.end(), order.cases.begin(), order.cases.end());
    for (const std::string& path : order.files) {
        NamedCase one{fileName(path, order.files), project::newCase(project::English)};
        const project::CaseReading reading = project::readCaseFile(path, one.second);
        for (const std::string& remark : reading.remarks)
            remarks.push_back(one.first + ": " + remark);
        if (reading.fault)
            remarks.push_back("left out: " + faultText(*reading.fault));
        else
            cases.push_back(std::move(one));
    }
    for (std::size_t i = 1; i < cases.size(); ++i) { // one name is one case
        const std::string name = cases[i].first;
        const auto known = [&](const std::string& wanted) {
            return std::any_of(cases.begin(), cases.begin() + static_cast<std::ptrdiff_t>(i),
                               [&](const NamedCase& one) { return one.first == wanted; });
        };
        for (int again = 2; known(cases[i].first); ++again)
            cases[i].first = name + " (" + std::to_string(again) + ")";
    }
    return cases;
}

StudyCell compareCell(const ComparedCases& all, std::size_t place, int column) {
    const ComparedRow& row = all.comparison.rows[all.rows[place]];
    if (column == WhatColumn) return row.label.empty() ? row.name : row.label;
    if (column == UnitColumn) return row.unit;
    const auto number = [](const std::optional<double>& x) {
        return x ? StudyCell(*x) : StudyCell();
    };
    const auto at = static_cast<std::size_t>(column - FirstCaseColumn);
    const std::size_t cases = all.comparison.cases.size();
    if (at < cases) return row.values.empty() ? StudyCell(row.texts[at]) : number(row.values[at]);
    const std::size_t which = all.others[(at - cases) / 2];
    return (at - cases) % 2 == 0 ? number(all.comparison.difference(row, which))
                                 : number(all.comparison.percent(row, which));
}

std::shared_ptr<const StudyTable> compareTable(const CasesPtr& all) {
    auto table = std::make_shared<StudyTable>();
    table->columns = {{.label = "Input or Result", .isText = true},
                      {.label = "Unit", .isText = true}};
    for (const ComparedCase& one : all->comparison.cases)
        table->columns.push_back({.label = one.name, .digits = 7});
    for (const std::size_t which : all->others) {
        const std::string& name = all->comparison.cases[which].name;
        table->columns.push_back({.label = name + ": difference"});
        table->columns.push_back({.label = name + ": percent", .digits = 4});
    }
    table->rows = all->rows.size();
    table->cell = [all](std::size_t row, std::size_t column) {
        return compareCell(*all, row, static_cast<int>(column));
    };
    return table;
}

CaseChoice choiceOfCompared(const ComparedCase& one) {
    return {one.name, [current = one.current] { return current; }};
}

} // namespace

std::optional<std::size_t> ComparedCases::caseAt(int column) const {
    if (column < FirstCaseColumn) return std::nullopt;
    const auto at = static_cast<std::size_t>(column - FirstCaseColumn);
    const std::size_t cases = comparison.cases.size();
    if (at < cases) return at;
    const std::size_t pair = (at - cases) / 2;
    return pair < others.size() ? std::optional(others[pair]) : std::nullopt;
}

Result<StudyResult> compareResult(const CompareOrder& order) {
    ComparedCases made;
    std::vector<std::pair<std::string, project::ProjectCase>> cases;
    std::size_t base = 0;
    for (NamedCase& one : casesOf(order, made.remarks)) {
        if (one.first == order.base) base = cases.size();
        cases.emplace_back(std::move(one.first), std::move(one.second));
    }
    std::string remark;
    for (const std::string& one : made.remarks)
        remark += (remark.empty() ? "" : "; ") + one;
    if (cases.size() < 2)
        return Fault{remark.empty()
                         ? "There is nothing yet to compare the case with: add files, or "
                           "scenarios on their page"
                         : remark,
                     ""};
    auto comparison = compare(std::move(cases), base, order.RoundTELVOSF);
    if (!comparison) return comparison.fault();
    made.comparison = std::move(*comparison);
    for (std::size_t i = 0; i < made.comparison.rows.size(); ++i)
        if (!order.onlyDifferences || made.comparison.rows[i].differs) made.rows.push_back(i);
    for (std::size_t i = 0; i < made.comparison.cases.size(); ++i)
        if (i != made.comparison.base) made.others.push_back(i);
    const auto all = std::make_shared<const ComparedCases>(std::move(made));

    StudyResult result;
    result.remark = remark;
    result.tally.runs = all->comparison.cases.size();
    for (const ComparedCase& one : all->comparison.cases)
        if (!one.run) result.tally.leaveOut(one.name + ": " + one.message);
    result.made = all;
    result.table = compareTable(all);
    result.drawing = compareDrawing(all->comparison, comparedOutcomes(all->comparison));
    result.headline = result.drawing.headline;
    result.ofRow = [all](std::size_t, int column) {
        std::vector<CaseChoice> choices;
        const auto first = all->caseAt(column);
        if (first) choices.push_back(choiceOfCompared(all->comparison.cases[*first]));
        for (std::size_t i = 0; i < all->comparison.cases.size(); ++i)
            if (i != first) choices.push_back(choiceOfCompared(all->comparison.cases[i]));
        return choices;
    };
    result.ofSpot = [all](std::size_t id) -> std::optional<CaseChoice> {
        return choiceOfCompared(all->comparison.cases[id / MostBars]);
    };
    return result;
}

} // namespace telvo::study::ui
