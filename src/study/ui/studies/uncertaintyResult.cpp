// SPDX-License-Identifier: GPL-3.0-or-later
//
// Tables of samples and of what they say.
#include "base/numbers.h"
#include "study/ui/studies/UncertaintyPage.h"

#include <array>

namespace telvo::study::ui {

namespace {

constexpr double Percent = 100;

std::string outcomeUnit(const UncertaintyAnswer& answer, std::size_t criterion) {
    return std::string(
        engine::unitName(answer.request.criteria[criterion].outcome.kind(), answer.base.Units));
}

/// A row per limit and one for any of them.
std::shared_ptr<const StudyTable> shareTable(const UncertaintyPtr& answer) {
    auto table = std::make_shared<StudyTable>();
    table->columns = {{.label = "Limit", .isText = true},
                      {.label = "Samples that Miss", .unit = "%", .digits = 3},
                      {.label = "Interval from", .unit = "%", .digits = 3},
                      {.label = "to", .unit = "%", .digits = 3},
                      {.label = "Number", .digits = 10},
                      {.label = "Result", .isText = true},
                      {.label = "Unit", .isText = true},
                      {.label = "Mean"},
                      {.label = "Standard Deviation"}};
    constexpr std::size_t FirstQuantile = 9;
    for (const double p : ShownQuantiles)
        table->columns.push_back({.label = generalNumber(Percent * p, 4) + " % Point"});
    table->rows = answer->request.criteria.size() + 1;
    table->cell = [answer](std::size_t row, std::size_t column) -> StudyCell {
        const bool any = row == answer->request.criteria.size();
        const sampling::Estimate& missed =
            any ? answer->made.any : answer->made.criteria[row].missed;
        switch (column) {
        case 0:
            return any ? std::string("Any of them")
                       : answer->request.criteria[row].title(answer->base.Units);
        case 1:
            return Percent * missed.value;
        case 2:
            return Percent * missed.low;
        case 3:
            return Percent * missed.high;
        default:
            break;
        }
        if (any) return {};
        const CriterionShare& share = answer->made.criteria[row];
        switch (column) {
        case 4:
            return static_cast<double>(share.misses);
        case 5:
            return answer->request.criteria[row].outcome.label();
        case 6:
            return outcomeUnit(*answer, row);
        case 7:
            return share.mean.value;
        case 8:
            return share.sd;
        default:
            return share.quantiles[column - FirstQuantile].value;
        }
    };
    return table;
}

using ImportancePtr = std::shared_ptr<const std::vector<Importance>>;

std::shared_ptr<const StudyTable> importanceTable(const UncertaintyPtr& answer,
                                                  const ImportancePtr& importance) {
    auto table = std::make_shared<StudyTable>();
    table->columns = {{.label = "Input", .isText = true},
                      {.label = "Unit", .isText = true},
                      {.label = "Mean"},
                      {.label = "Standard Deviation"},
                      {.label = "Rank Correlation", .digits = 3},
                      {.label = "Share of the Variance", .unit = "%", .digits = 3},
                      {.label = "Samples that Miss: Mean off by", .unit = "st. dev.", .digits = 3}};
    constexpr std::size_t FirstBin = 7;
    const std::size_t bins = importance->empty() ? 0 : importance->front().binMeans.size();
    for (std::size_t bin = 0; bin < bins; ++bin)
        table->columns.push_back({.label = "Result in Tenth " + std::to_string(bin + 1)});
    table->rows = importance->size();
    table->cell = [answer, importance](std::size_t row, std::size_t column) -> StudyCell {
        const UncertainInput& input = answer->request.inputs[row];
        const Importance& one = (*importance)[row];
        switch (column) {
        case 0:
            return input.variable.label();
        case 1:
            return std::string(input.variable.unit(answer->base.Units));
        case 2:
            return input.distribution.mean();
        case 3:
            return input.distribution.sd();
        case 4:
            return one.rankCorrelation;
        case 5:
            return Percent * one.betweenBins;
        case 6:
            return one.missesAt ? StudyCell(*one.missesAt) : StudyCell();
        default:
            return one.binMeans[column - FirstBin];
        }
    };
    return table;
}

std::shared_ptr<const StudyTable> convergenceTable(const UncertaintyPtr& answer,
                                                   std::size_t criterion) {
    auto table = std::make_shared<StudyTable>();
    table->columns = {{.label = "Samples", .digits = 10},
                      {.label = "Samples that Miss", .unit = "%", .digits = 3},
                      {.label = "Interval from", .unit = "%", .digits = 3},
                      {.label = "to", .unit = "%", .digits = 3}};
    table->rows = answer->made.convergence[criterion].size();
    table->cell = [answer, criterion](std::size_t row, std::size_t column) -> StudyCell {
        const Convergence& one = answer->made.convergence[criterion][row];
        const std::array<double, 4> cells = {static_cast<double>(one.samples),
                                             Percent * one.missed.value, Percent * one.missed.low,
                                             Percent * one.missed.high};
        return cells[column];
    };
    return table;
}

/// All samples: their inputs, results and what they miss.
std::shared_ptr<const StudyTable> sampleTable(const UncertaintyPtr& answer) {
    auto table = std::make_shared<StudyTable>();
    const std::int16_t units = answer->base.Units;
    table->columns.push_back({.label = "Sample", .digits = 10});
    const auto& variables = answer->made.evaluator->variables();
    for (const Variable& variable : variables)
        table->columns.push_back({.label = variable.label(),
                                  .unit = std::string(variable.unit(units)),
                                  .name = variable.name()});
    const auto& criteria = answer->request.criteria;
    for (std::size_t c = 0; c < criteria.size(); ++c)
        table->columns.push_back({.label = criteria[c].outcome.label(),
                                  .unit = outcomeUnit(*answer, c),
                                  .name = criteria[c].outcome.name()});
    table->columns.push_back({.label = "Misses", .isText = true});
    table->rows = answer->made.samples.size();
    table->cell = [answer, inputs = variables.size()](std::size_t row,
                                                      std::size_t column) -> StudyCell {
        const Uncertainty& made = answer->made;
        if (column == 0) return static_cast<double>(row + 1);
        if (column <= inputs) return made.variables(row)[column - 1];
        const std::size_t criterion = column - 1 - inputs;
        if (criterion < answer->request.criteria.size()) {
            const double value = made.samples.outcomes[criterion][row];
            return made.isComputed(row) && value == value ? StudyCell(value) : StudyCell();
        }
        if (!made.isComputed(row))
            return "not computed: " + made.evaluator->whyNot(made.variables(row));
        std::string missed;
        for (std::size_t c = 0; c < answer->request.criteria.size(); ++c)
            if ((made.samples.missed[row] >> c & 1U) != 0)
                missed += (missed.empty() ? "" : "; ") +
                          answer->request.criteria[c].title(answer->base.Units);
        return missed;
    };
    return table;
}

std::vector<CaseChoice> sampleCase(const UncertaintyPtr& answer, std::size_t row) {
    return {
        {"sample " + std::to_string(row + 1), [answer, row] { return answer->made.caseOf(row); }}};
}

} // namespace

StudyResult uncertaintyResult(const UncertaintyPtr& answer, UncertaintyView view,
                              std::size_t criterion) {
    criterion = std::min(criterion, answer->request.criteria.size() - 1);
    StudyResult result;
    result.remark = ShareNote;
    result.tally = answer->made.tally;
    result.stopped = answer->made.samples.stopped;
    result.made = answer;
    switch (view) {
    case UncertaintyView::Shares:
        result.table = shareTable(answer);
        result.drawing = distributionDrawing(answer, criterion);
        break;
    case UncertaintyView::Importance: {
        const auto drivers = std::make_shared<const std::vector<Importance>>(
            importance(answer->made, criterion, answer->request));
        result.table = importanceTable(answer, drivers);
        result.drawing = importanceDrawing(answer, drivers, criterion);
        if (const std::string where = whereMissesLie(*drivers, answer->request); !where.empty())
            result.remark = where + ". " + result.remark;
        break;
    }
    case UncertaintyView::Convergence:
        result.table = convergenceTable(answer, criterion);
        result.drawing = convergenceDrawing(answer, criterion);
        break;
    case UncertaintyView::Samples:
        result.table = sampleTable(answer);
        result.drawing = distributionDrawing(answer, criterion);
        result.ofRow = [answer](std::size_t row, int) { return sampleCase(answer, row); };
        break;
    }
    result.headline = result.drawing.headline;
    return result;
}

} // namespace telvo::study::ui
