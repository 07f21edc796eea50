// SPDX-License-Identifier: GPL-3.0-or-later
//
// Table of a table of values.
#include "study/output/StudyOutput.h"
#include "study/ui/drawings/studyDrawings.h"
#include "study/ui/studies/TablePage.h"

#include <cmath>

namespace telvo::study::ui {

namespace {

using SweepPtr = std::shared_ptr<const Sweep>;

StudyCell sweepCell(const Sweep& sweep, std::size_t row, std::size_t column) {
    if (column == 0) return static_cast<double>(row + 1);
    if (column <= sweep.request.axes.size()) return sweep.input(row, column - 1);
    column -= sweep.request.axes.size() + 1;
    if (column < sweep.outcomes.size()) {
        const double value = sweep.outcomes[column][row];
        return std::isnan(value) ? StudyCell() : StudyCell(value);
    }
    if (column == sweep.outcomes.size()) return flagText(sweep.flags[row]);
    return sweep.computed[row] ? std::string() : sweep.message(row);
}

std::shared_ptr<const StudyTable> sweepTable(const SweepPtr& subject) {
    auto table = std::make_shared<StudyTable>();
    const std::int16_t units = subject->base().Units;
    table->columns.push_back({.label = "No.", .name = "id", .digits = 9});
    for (const SweepAxis& axis : subject->request.axes)
        table->columns.push_back({.label = axis.variable.label(),
                                  .unit = std::string(axis.variable.unit(units)),
                                  .name = axis.variable.name(),
                                  .digits = 8});
    for (const Outcome& outcome : subject->request.outcomes)
        table->columns.push_back({.label = outcome.label(),
                                  .unit = std::string(engine::unitName(outcome.kind(), units)),
                                  .name = outcome.name()});
    table->columns.push_back({.label = "Flags", .name = "flags", .isText = true});
    table->columns.push_back({.label = "Message", .name = "message", .isText = true});
    table->rows = subject->rows();
    table->cell = [subject](std::size_t row, std::size_t column) {
        return sweepCell(*subject, row, column);
    };
    return table;
}

CaseChoice rowChoice(const SweepPtr& subject, std::size_t row) {
    return {sweepRowName(*subject, row), [subject, row] { return subject->caseOf(row); }};
}

} // namespace

StudyResult sweepResult(std::shared_ptr<const Sweep> sweep,
                        const std::vector<std::optional<double>>& levels) {
    StudyResult result;
    result.drawing = sweepDrawing(sweep, sweepLines(*sweep, levels));
    result.headline = result.drawing.headline;
    if (!result.drawing.compose) result.remark = NoSweepPicture;
    result.tally = sweep->tally;
    result.stopped = sweep->stopped;
    result.made = sweep;
    result.table = sweepTable(sweep);
    result.ofRow = [sweep](std::size_t row, int) {
        return std::vector<CaseChoice>{rowChoice(sweep, row)};
    };
    result.ofSpot = [sweep](std::size_t row) { return std::optional(rowChoice(sweep, row)); };
    return result;
}

} // namespace telvo::study::ui
