// SPDX-License-Identifier: GPL-3.0-or-later
//
// Table of what matters.
#include "base/numbers.h"
#include "study/ui/drawings/studyDrawings.h"
#include "study/ui/studies/TornadoPage.h"

#include <algorithm>

namespace telvo::study::ui {

namespace {

enum Column {
    Input,
    Ranged,
    Unit,
    From,
    To,
    Own,
    AtLow,
    AtHigh,
    Least,
    LeastAt,
    Most,
    MostAt,
    Swing,
    Jumps,
    Remark,
    ColumnCount
};

using TornadoPtr = std::shared_ptr<const TornadoAnswer>;

const RangedInput* rangeIn(const TornadoAnswer& answer, const Variable& variable) {
    const auto& inputs = answer.request.inputs;
    const auto found = std::find_if(inputs.begin(), inputs.end(), [&](const RangedInput& one) {
        return one.variable == variable;
    });
    return found == inputs.end() ? nullptr : &*found;
}

std::string rangeText(const RangedInput& input, std::int16_t units) {
    const auto sign = [](double x) { return (x > 0 ? "+" : "") + generalNumber(x, 6); };
    const std::string unit(input.variable.unit(units));
    std::string text;
    switch (input.range.form) {
    case Range::Form::Percent:
        text = sign(input.range.low) + " .. " + sign(input.range.high) + " %";
        break;
    case Range::Form::Offset:
        text = sign(input.range.low) + " .. " + sign(input.range.high) + " " + unit;
        break;
    case Range::Form::Absolute:
        text = generalNumber(input.range.low, 6) + " .. " + generalNumber(input.range.high, 6) +
               " " + unit;
        break;
    }
    return input.edited ? text + " (own)" : text;
}

StudyCell tornadoCell(const TornadoAnswer& subject, std::size_t row, std::size_t column) {
    const TornadoBar& bar = subject.made.bars[row];
    const auto number = [](const std::optional<double>& x) {
        return x ? StudyCell(*x) : StudyCell();
    };
    switch (column) {
    case Input:
        return bar.variable.label();
    case Ranged: {
        const RangedInput* input = rangeIn(subject, bar.variable);
        return input ? rangeText(*input, subject.base.Units) : std::string();
    }
    case Unit:
        return std::string(bar.variable.unit(subject.base.Units));
    case From:
        return bar.range.low;
    case To:
        return bar.range.high;
    case Own:
        return bar.own;
    case AtLow:
        return number(bar.atLow);
    case AtHigh:
        return number(bar.atHigh);
    case Least:
        return bar.least ? StudyCell(bar.least->y) : StudyCell();
    case LeastAt:
        return bar.least ? StudyCell(bar.least->x) : StudyCell();
    case Most:
        return bar.most ? StudyCell(bar.most->y) : StudyCell();
    case MostAt:
        return bar.most ? StudyCell(bar.most->x) : StudyCell();
    case Swing:
        return bar.least ? StudyCell(bar.swing()) : StudyCell();
    case Jumps:
        return static_cast<double>(bar.jumps.size());
    default:
        return tornadoRemark(bar);
    }
}

std::shared_ptr<const StudyTable> tableOf(const TornadoPtr& subject) {
    auto table = std::make_shared<StudyTable>();
    const std::string unit(engine::unitName(subject->request.outcome.kind(), subject->base.Units));
    table->columns = {{.label = "Input", .isText = true},
                      {.label = "Range", .isText = true},
                      {.label = "Unit", .isText = true},
                      {.label = "From"},
                      {.label = "To"},
                      {.label = "Own Value"},
                      {.label = "Result at From", .unit = unit},
                      {.label = "Result at To", .unit = unit},
                      {.label = "Smallest", .unit = unit},
                      {.label = "Smallest at"},
                      {.label = "Largest", .unit = unit},
                      {.label = "Largest at"},
                      {.label = "Swing", .unit = unit},
                      {.label = "Jumps"},
                      {.label = "Remark", .isText = true}};
    static_assert(ColumnCount == 15);
    table->rows = subject->made.bars.size();
    table->cell = [subject](std::size_t row, std::size_t column) {
        return tornadoCell(*subject, row, column);
    };
    return table;
}

std::optional<CaseChoice> choiceAt(const TornadoPtr& subject, std::size_t row, std::size_t end) {
    const TornadoBar& bar = subject->made.bars[row];
    const auto point = tornadoPoint(bar, end);
    if (!point) return std::nullopt;
    return CaseChoice{bar.variable.label() + " " + bar.variable.text(point->x, subject->base.Units),
                      [subject, variable = bar.variable, x = point->x] {
                          project::ProjectCase made = subject->base;
                          made.Input = variable.in(made.Input, made.Units, x);
                          return made;
                      }};
}

std::vector<CaseChoice> choicesAt(const TornadoPtr& subject, std::size_t row, int column) {
    std::size_t first = LeastEnd;
    if (column == AtLow || column == From) first = LowEnd;
    if (column == AtHigh || column == To) first = HighEnd;
    if (column == Most || column == MostAt) first = MostEnd;
    std::vector<CaseChoice> choices;
    const auto add = [&](std::size_t end) {
        auto choice = choiceAt(subject, row, end);
        const bool known = choice && std::any_of(choices.begin(), choices.end(), [&](auto& one) {
                               return one.what == choice->what;
                           });
        if (choice && !known) choices.push_back(std::move(*choice));
    };
    add(first);
    for (std::size_t end = 0; end < TornadoEnds; ++end)
        add(end);
    return choices;
}

} // namespace

StudyResult tornadoResult(std::shared_ptr<const TornadoAnswer> answer, bool spider,
                          std::optional<double> suggested) {
    StudyResult result;
    result.drawing = tornadoDrawing(answer, spider, suggested);
    result.headline = result.drawing.headline;
    result.tally = answer->made.tally;
    result.made = answer;
    result.table = tableOf(answer);
    result.ofRow = [answer](std::size_t row, int column) { return choicesAt(answer, row, column); };
    result.ofSpot = [answer](std::size_t id) {
        return choiceAt(answer, id / TornadoEnds, id % TornadoEnds);
    };
    return result;
}

} // namespace telvo::study::ui
