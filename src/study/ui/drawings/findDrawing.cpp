// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ui/qtText.h"
#include "study/ui/drawings/drawingParts.h"
#include "study/ui/drawings/studyDrawings.h"

#include <algorithm>

namespace telvo::study::ui {

using telvo::ui::toQt;

namespace {

void composeFind(QCustomPlot& chart, const FindAnswer& subject, const ChartInk& ink) {
    const Found& found = subject.made;
    const std::int16_t units = subject.base.Units;
    const QColor curve = studyColor(0, ink.palette), limit = studyColor(1, ink.palette);
    Extent extent;
    extent.take(found.curve);
    for (const GraphPoint& point : found.limit)
        extent.take(point.x, point.y);
    extent.x0 = std::min(extent.x0, subject.request.in.low);
    extent.x1 = std::max(extent.x1, subject.request.in.high);
    extent.apply(chart);
    for (const Interval& one : found.intervals)
        addBand(chart, one.from.x, one.to.x, holdsColor(ink.palette))->setObjectName("holds");
    addLine(chart, "limit", {found.limit}, QPen(limit, 1.4 * ink.pointsToPixels, Qt::DashLine))
        ->setName(QObject::tr("target"));
    addJumps(chart, found.jumps, curve, ink);
    addLine(chart, "curve", found.curve, QPen(curve, 1.6 * ink.pointsToPixels));
    const Outcome& outcome = subject.request.criterion.outcome;
    addKeyEntry(chart, toQt(outcome.label()), QPen(curve, 1.6 * ink.pointsToPixels));
    addKeyEntry(chart, QObject::tr("target"), QPen(limit, 1.4 * ink.pointsToPixels, Qt::DashLine));
    addKeyBox(chart, QObject::tr("it holds"), holdsColor(ink.palette));
    if (found.own)
        addMark(chart, QObject::tr("this case"), *found.own, QCPScatterStyle::ssCircle,
                ink.palette.color(QPalette::Text), ink);
    if (found.answer)
        addMark(chart, QObject::tr("safe answer"), {*found.answer, found.answerValue},
                QCPScatterStyle::ssDiamond, ink.palette.color(QPalette::Text), ink);
    chart.xAxis->setLabel(inputTitle(subject.request.variable, units));
    chart.yAxis->setLabel(outcomeTitle(outcome, units));
    chart.yAxis->grid()->setVisible(true);
    chart.legend->setVisible(true);
}

/// Ends of the intervals, the case's own point and the answer, from left to right.
std::vector<GraphPoint> pointsOf(const Found& found) {
    std::vector<GraphPoint> points;
    for (const Interval& one : found.intervals) {
        points.push_back({one.from.x, one.from.value});
        points.push_back({one.to.x, one.to.value});
    }
    if (found.own) points.push_back(*found.own);
    if (found.answer) points.push_back({*found.answer, found.answerValue});
    std::sort(points.begin(), points.end(),
              [](const GraphPoint& a, const GraphPoint& b) { return a.x < b.x; });
    return points;
}

} // namespace

Drawing findDrawing(std::shared_ptr<const FindAnswer> answer) {
    Drawing drawing;
    drawing.headline = asSentence(answer->made.headline);
    drawing.compose = [answer](QCustomPlot& chart, const ChartInk& ink) {
        composeFind(chart, *answer, ink);
    };
    const std::vector<GraphPoint> points = pointsOf(answer->made);
    for (std::size_t i = 0; i < points.size(); ++i)
        drawing.spots.push_back({points[i].x, points[i].y, i});
    drawing.tip = [answer, points](std::size_t id) {
        const Variable& variable = answer->request.variable;
        const Outcome& outcome = answer->request.criterion.outcome;
        const std::int16_t units = answer->base.Units;
        return toQt(variable.label() + " " + variable.text(points[id].x, units) + "\n" +
                    outcome.label() + " " + outcome.text(points[id].y, units));
    };
    return drawing;
}

} // namespace telvo::study::ui
