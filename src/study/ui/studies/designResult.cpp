// SPDX-License-Identifier: GPL-3.0-or-later
//
// Table and picture of a design chart.
#include "study/ui/studies/designResult.h"
#include "base/numbers.h"
#include "base/ui/qtText.h"
#include "study/ui/studies/drawingParts.h"

#include <algorithm>

namespace telvo::study::ui {

using telvo::ui::toQt;

namespace {

struct DesignSubject {
    DesignChart chart;
    DesignChartRequest request;
    project::ProjectCase base;

    struct Place {
        std::size_t curve = 0;
        DesignPoint point;
        double required = 0;
    };
    std::vector<Place> places; ///< of the picture

    const DesignPoint* at(std::size_t curve, double over) const {
        for (const DesignPoint& point : chart.curves[curve].points)
            if (point.over == over) return &point;
        return nullptr;
    }
};
using DesignSubjectPtr = std::shared_ptr<const DesignSubject>;

std::string targetText(const DesignSubject& subject, std::size_t curve) {
    const auto& target = subject.request.targets[curve];
    const std::int16_t units = subject.base.Units;
    return target ? subject.request.outcome.text(*target, units) : "suggested";
}

bool hasValue(const DesignPoint& point) {
    return point.state == DesignPoint::State::Required ||
           point.state == DesignPoint::State::Everywhere;
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

std::shared_ptr<const StudyTable> designTable(const DesignSubjectPtr& subject) {
    auto table = std::make_shared<StudyTable>();
    const std::int16_t units = subject->base.Units;
    const DesignChartRequest& request = subject->request;
    const std::string unit(request.required.unit(units));
    table->columns.push_back({.label = request.over.label(),
                              .unit = std::string(request.over.unit(units)),
                              .digits = 8});
    for (std::size_t c = 0; c < subject->chart.curves.size(); ++c) {
        const std::string target = targetText(*subject, c);
        table->columns.push_back({.label = "For " + target, .unit = unit, .digits = 8});
        table->columns.push_back({.label = "Exactly for " + target, .unit = unit});
    }
    table->columns.push_back({.label = "Remark", .isText = true});
    table->rows = request.values.size();
    table->cell = [subject, last = table->columns.size() - 1](std::size_t row,
                                                              std::size_t column) -> StudyCell {
        const double over = subject->request.values[row];
        if (column == 0) return over;
        if (column < last) return stateCell(subject->at((column - 1) / 2, over), column % 2 == 1);
        std::string remark;
        for (std::size_t c = 0; c < subject->chart.curves.size(); ++c)
            if (const DesignPoint* point = subject->at(c, over); point && point->holdsElsewhere)
                remark +=
                    (remark.empty() ? "also holds elsewhere for " : ", ") + targetText(*subject, c);
        return remark;
    };
    return table;
}

CaseChoice pointChoice(const DesignSubjectPtr& subject, double over, double required) {
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

std::vector<CaseChoice> cellChoices(const DesignSubjectPtr& subject, std::size_t row, int column) {
    std::vector<CaseChoice> choices;
    const double over = subject->request.values[row];
    const auto add = [&](std::size_t curve, bool practical) {
        const DesignPoint* point =
            curve < subject->chart.curves.size() ? subject->at(curve, over) : nullptr;
        if (!point || !hasValue(*point) || (practical && !point->practical)) return;
        CaseChoice choice =
            pointChoice(subject, over, practical ? *point->practical : point->required);
        if (std::none_of(choices.begin(), choices.end(),
                         [&](const CaseChoice& one) { return one.what == choice.what; }))
            choices.push_back(std::move(choice));
    };
    if (column > 0) add(static_cast<std::size_t>(column - 1) / 2, column % 2 == 1);
    for (std::size_t c = 0; c < subject->chart.curves.size(); ++c)
        add(c, true);
    return choices;
}

/// Where nothing helps for a target: hatched, for the first target over the whole height, for the
/// others from further up, so that all are seen.
void addHatching(QCustomPlot& chart, const DesignSubject& subject, std::size_t curve,
                 const QColor& color) {
    const auto& points = subject.chart.curves[curve].points;
    const auto count = static_cast<double>(subject.chart.curves.size());
    const auto band = [&](double from, double to) {
        auto* rect = addBand(chart, from, to, QBrush(color, Qt::BDiagPattern));
        rect->setObjectName("nothing");
        const double top = static_cast<double>(curve) / count * 0.3;
        rect->topLeft->setCoords(from, top);
        rect->bottomRight->setCoords(to, top + 0.3 / count);
    };
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (hasValue(points[i])) continue;
        std::size_t last = i;
        while (last + 1 < points.size() && !hasValue(points[last + 1]))
            ++last;
        const double from = i > 0 ? points[i - 1].over : points[i].over;
        const double to = last + 1 < points.size() ? points[last + 1].over : points[last].over;
        band(from, to);
        i = last;
    }
}

void composeDesign(QCustomPlot& chart, const DesignSubject& subject, const ChartInk& ink) {
    const DesignChartRequest& request = subject.request;
    const std::int16_t units = subject.base.Units;
    Extent extent;
    extent.take(request.values.front(), request.in.low);
    extent.take(request.values.back(), request.in.high);
    bool hatched = false;
    for (std::size_t c = 0; c < subject.chart.curves.size(); ++c) {
        const QColor color = studyColor(c, ink.palette);
        std::vector<Stretch> pieces(1);
        for (const DesignPoint& point : subject.chart.curves[c].points) {
            if (hasValue(point)) {
                pieces.back().push_back({point.over, point.required});
                continue;
            }
            hatched = true;
            if (!pieces.back().empty()) pieces.emplace_back();
        }
        const QPen pen(color, 1.6 * ink.pointsToPixels, c % 2 == 0 ? Qt::SolidLine : Qt::DashLine);
        addLine(chart, "curve:" + QString::number(c), pieces, pen);
        addHatching(chart, subject, c, color);
        addKeyEntry(chart, toQt(targetText(subject, c)), pen);
    }
    if (hatched) {
        auto* key = chart.addGraph();
        key->setName(QObject::tr("hatched: nothing in the range helps"));
        key->setPen(Qt::NoPen);
        key->addToLegend();
    }
    extent.apply(chart);
    const GraphPoint own{request.over.of(subject.base.Input),
                         request.required.of(subject.base.Input)};
    if (own.x >= extent.x0 && own.x <= extent.x1 && own.y >= extent.y0 && own.y <= extent.y1)
        addMark(chart, QObject::tr("this case"), own, QCPScatterStyle::ssCircle,
                ink.palette.color(QPalette::Text), ink);
    chart.xAxis->setLabel(axisTitle(request.over.label(), request.over.unit(units)));
    chart.yAxis->setLabel(axisTitle(request.required.label(), request.required.unit(units)));
    chart.xAxis->grid()->setVisible(true);
    chart.yAxis->grid()->setVisible(true);
    chart.legend->setVisible(true);
}

} // namespace

StudyResult designResult(DesignChart made, const project::ProjectCase& base,
                         const DesignChartRequest& request) {
    DesignSubject own{std::move(made), request, base, {}};
    for (std::size_t c = 0; c < own.chart.curves.size(); ++c)
        for (const DesignPoint& point : own.chart.curves[c].points)
            if (hasValue(point)) own.places.push_back({c, point, point.required});
    const auto subject = std::make_shared<const DesignSubject>(std::move(own));
    StudyResult result;
    result.headline = subject->chart.headline;
    if (!result.headline.ends_with('.')) result.headline += '.';
    result.tally = subject->chart.tally;
    result.made = subject;
    result.table = designTable(subject);
    result.ofRow = [subject](std::size_t row, int column) {
        return cellChoices(subject, row, column);
    };
    result.ofSpot = [subject](std::size_t id) {
        const auto& place = subject->places[id];
        return std::optional(pointChoice(subject, place.point.over, place.required));
    };
    result.drawing.compose = [subject](QCustomPlot& chart, const ChartInk& ink) {
        composeDesign(chart, *subject, ink);
    };
    for (std::size_t i = 0; i < subject->places.size(); ++i)
        result.drawing.spots.push_back(
            {subject->places[i].point.over, subject->places[i].required, i});
    result.drawing.tip = [subject](std::size_t id) {
        const auto& place = subject->places[id];
        return toQt(pointChoice(subject, place.point.over, place.required).what + "\nfor " +
                    targetText(*subject, place.curve));
    };
    result.drawing.summary = toQt(result.headline);
    return result;
}

} // namespace telvo::study::ui
