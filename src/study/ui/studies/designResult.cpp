// SPDX-License-Identifier: GPL-3.0-or-later
//
// Table of a design chart.
#include "study/ui/studies/designResult.h"
#include "base/numbers.h"
#include "study/ui/drawings/studyDrawings.h"

#include <algorithm>

namespace telvo::study::ui {

namespace {

using DesignPtr = std::shared_ptr<const DesignAnswer>;

const DesignPoint* pointAt(const DesignAnswer& answer, std::size_t curve, double over) {
    for (const DesignPoint& point : answer.made.curves[curve].points)
        if (point.over == over) return &point;
    return nullptr;
}

StudyCell stateCell(const DesignPoint* point, bool practical) {
    if (!point) return {};
    switch (point->state) {
    case DesignPoint::State::Never:
        return std::string("nothing helps");
    case DesignPoint::State::Uncomputable:
        return std::string("not computed");
    default:
        if (!practical) return point->required;
        return point->practical ? StudyCell(*point->practical) : StudyCell();
    }
}

std::shared_ptr<const StudyTable> designTable(const DesignPtr& subject) {
    auto table = std::make_shared<StudyTable>();
    const std::int16_t units = subject->base.Units;
    const DesignChartRequest& request = subject->request;
    const std::string unit(request.required.unit(units));
    table->columns.push_back({.label = request.over.label(),
                              .unit = std::string(request.over.unit(units)),
                              .digits = 8});
    for (std::size_t c = 0; c < subject->made.curves.size(); ++c) {
        const std::string target = designTarget(*subject, c);
        table->columns.push_back({.label = "For " + target, .unit = unit, .digits = 8});
        table->columns.push_back({.label = "Exactly for " + target, .unit = unit});
    }
    table->columns.push_back({.label = "Remark", .isText = true});
    table->rows = request.values.size();
    table->cell = [subject, last = table->columns.size() - 1](std::size_t row,
                                                              std::size_t column) -> StudyCell {
        const double over = subject->request.values[row];
        if (column == 0) return over;
        if (column < last)
            return stateCell(pointAt(*subject, (column - 1) / 2, over), column % 2 == 1);
        std::string remark;
        for (std::size_t c = 0; c < subject->made.curves.size(); ++c)
            if (const DesignPoint* point = pointAt(*subject, c, over);
                point && point->holdsElsewhere)
                remark += (remark.empty() ? "also holds elsewhere for " : ", ") +
                          designTarget(*subject, c);
        return remark;
    };
    return table;
}

CaseChoice pointChoice(const DesignPtr& subject, double over, double required) {
    const Variable first = subject->request.over, second = subject->request.required;
    const std::int16_t units = subject->base.Units;
    return {first.label() + " " + first.text(over, units) + ", " + second.label() + " " +
                second.text(required, units),
            [subject, first, second, over, required] {
                project::ProjectCase made = subject->base;
                made.Input = first.in(made.Input, made.Units, over);
                made.Input = second.in(made.Input, made.Units, required);
                return made;
            }};
}

std::vector<CaseChoice> cellChoices(const DesignPtr& subject, std::size_t row, int column) {
    std::vector<CaseChoice> choices;
    const double over = subject->request.values[row];
    const auto add = [&](std::size_t curve, bool practical) {
        const DesignPoint* point =
            curve < subject->made.curves.size() ? pointAt(*subject, curve, over) : nullptr;
        if (!point || !point->hasValue() || (practical && !point->practical)) return;
        CaseChoice choice =
            pointChoice(subject, over, practical ? *point->practical : point->required);
        if (std::none_of(choices.begin(), choices.end(),
                         [&](const CaseChoice& one) { return one.what == choice.what; }))
            choices.push_back(std::move(choice));
    };
    if (column > 0) add(static_cast<std::size_t>(column - 1) / 2, column % 2 == 1);
    for (std::size_t c = 0; c < subject->made.curves.size(); ++c)
        add(c, true);
    return choices;
}

} // namespace

StudyResult designResult(std::shared_ptr<const DesignAnswer> answer) {
    StudyResult result;
    result.drawing = designDrawing(answer);
    result.headline = result.drawing.headline;
    result.tally = answer->made.tally;
    result.made = answer;
    result.table = designTable(answer);
    result.ofRow = [answer](std::size_t row, int column) {
        return cellChoices(answer, row, column);
    };
    result.ofSpot = [answer, spots = result.drawing.spots](std::size_t id) {
        return std::optional(pointChoice(answer, spots[id].x, spots[id].y));
    };
    return result;
}

} // namespace telvo::study::ui
