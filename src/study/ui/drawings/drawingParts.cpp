// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/drawings/drawingParts.h"

#include "base/ui/qtText.h"
#include "engine/quantities.h"

#include <algorithm>
#include <cmath>

namespace telvo::study::ui {

namespace {

QString titleWithUnit(const std::string& label, std::string_view unit) {
    return telvo::ui::toQt(unit.empty() ? label : label + " (" + std::string(unit) + ")");
}

} // namespace

QCPCurve* addLine(QCustomPlot& chart, const QString& name, const std::vector<Stretch>& pieces,
                  const QPen& pen) {
    auto* line = new QCPCurve(chart.xAxis, chart.yAxis);
    line->setObjectName(name);
    line->setName(name);
    line->setPen(pen);
    double key = 0;
    for (const Stretch& piece : pieces) {
        for (const GraphPoint& point : piece)
            line->addData(key++, point.x, point.y);
        if (piece.size() == 1) // a point by itself is seen
            line->addData(key++, piece[0].x, std::nextafter(piece[0].y, HUGE_VAL));
        line->addData(key++, qQNaN(), qQNaN());
    }
    return line;
}

void addJumps(QCustomPlot& chart, const std::vector<Jump>& jumps, const QColor& color,
              const ChartInk& ink) {
    std::vector<Stretch> risers;
    for (const Jump& jump : jumps)
        if (jump.before && jump.after)
            risers.push_back({{jump.x, *jump.before}, {jump.x, *jump.after}});
    addLine(chart, "jumps", risers, QPen(color, 0.9 * ink.pointsToPixels, Qt::DotLine));
}

QCPItemRect* addBand(QCustomPlot& chart, double from, double to, const QBrush& brush) {
    auto* band = new QCPItemRect(&chart);
    for (QCPItemPosition* corner : {band->topLeft, band->bottomRight}) {
        corner->setTypeX(QCPItemPosition::ptPlotCoords);
        corner->setTypeY(QCPItemPosition::ptAxisRectRatio);
    }
    band->topLeft->setCoords(from, 0);
    band->bottomRight->setCoords(to, 1);
    band->setLayer("background");
    band->setPen(Qt::NoPen);
    band->setBrush(brush);
    return band;
}

void addMark(QCustomPlot& chart, const QString& name, const GraphPoint& at,
             QCPScatterStyle::ScatterShape shape, const QColor& color, const ChartInk& ink) {
    QCPGraph* mark = chart.addGraph();
    mark->setObjectName(name);
    mark->setName(name);
    mark->setLineStyle(QCPGraph::lsNone);
    mark->setScatterStyle(QCPScatterStyle(shape, QPen(color, 1.2 * ink.pointsToPixels),
                                          QBrush(ink.palette.color(QPalette::Base)),
                                          8 * ink.pointsToPixels));
    mark->addData(at.x, at.y);
    mark->addToLegend();
}

void addKeyEntry(QCustomPlot& chart, const QString& text, const QPen& pen) {
    QCPGraph* key = chart.addGraph();
    key->setName(text);
    key->setPen(pen);
    key->addToLegend();
}

void addKeyBox(QCustomPlot& chart, const QString& text, const QColor& color) {
    addKeyEntry(chart, text, QPen(color, 6));
}

void Extent::take(double x, double y) {
    if (std::isnan(x) || std::isnan(y)) return;
    x0 = std::min(x0, x);
    x1 = std::max(x1, x);
    y0 = std::min(y0, y);
    y1 = std::max(y1, y);
}

void Extent::take(const std::vector<Stretch>& pieces) {
    for (const Stretch& piece : pieces)
        for (const GraphPoint& point : piece)
            take(point.x, point.y);
}

void Extent::apply(QCustomPlot& chart) const {
    const auto set = [](QCPAxis& axis, double low, double high, double room) {
        if (!(low <= high)) return axis.setRange(0, 1);
        const double margin =
            high > low ? room * (high - low) : std::max(std::abs(low) * 0.05, 1e-9);
        axis.setRange(low - margin, high + margin);
    };
    set(*chart.xAxis, x0, x1, 0.02);
    set(*chart.yAxis, y0, y1, 0.06);
}

QString inputTitle(const Variable& variable, std::int16_t units) {
    return titleWithUnit(variable.label(), variable.unit(units));
}

QString outcomeTitle(const Outcome& outcome, std::int16_t units) {
    return titleWithUnit(outcome.label(), engine::unitName(outcome.kind(), units));
}

QString outcomesTitle(const std::vector<Outcome>& outcomes, std::int16_t units) {
    const Outcome& first = outcomes.front();
    if (outcomes.size() == 1) return outcomeTitle(first, units);
    return titleWithUnit(first.kind() == engine::Kind::Factor ? "Stability factor" : "Result",
                         engine::unitName(first.kind(), units));
}

std::string asSentence(std::string text) {
    if (!text.ends_with('.')) text += '.';
    return text;
}

} // namespace telvo::study::ui
