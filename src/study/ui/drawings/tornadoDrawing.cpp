// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbers.h"
#include "base/ui/qtText.h"
#include "chart/ui/chartParts.h"
#include "study/ui/drawings/drawingParts.h"
#include "study/ui/drawings/studyDrawings.h"

#include <algorithm>
#include <cmath>

namespace telvo::study::ui {

using chart::ui::mixed;
using telvo::ui::toQt;

namespace {

struct TornadoPicture {
    std::shared_ptr<const TornadoAnswer> answer;
    std::optional<double> suggested;

    const Tornado& made() const { return answer->made; }
    const TornadoBar& bar(std::size_t i) const { return answer->made.bars[i]; }
    const Outcome& outcome() const { return answer->request.outcome; }
    std::int16_t units() const { return answer->base.Units; }
};

QString tipOf(const TornadoPicture& subject, std::size_t id) {
    const TornadoBar& bar = subject.bar(id / TornadoEnds);
    const auto point = tornadoPoint(bar, id % TornadoEnds);
    if (!point) return {};
    const std::int16_t units = subject.units();
    std::string text = bar.variable.label() + " " + bar.variable.text(point->x, units) + "\n" +
                       subject.outcome().label() + " " + subject.outcome().text(point->y, units) +
                       "\nvaried from " + generalNumber(bar.range.low, 6) + " to " +
                       bar.variable.text(bar.range.high, units, 6) + ", own value " +
                       bar.variable.text(bar.own, units, 6);
    for (std::size_t i = 0; i < bar.jumps.size() && i < 3; ++i)
        text +=
            "\njumps at " + bar.variable.text(bar.jumps[i].x, units, 6) + ": " + bar.jumps[i].rule;
    if (bar.jumps.size() > 3)
        text += "\nand " + std::to_string(bar.jumps.size() - 3) + " more jumps";
    return toQt(text);
}

/// A box without a frame.
void addRect(QCustomPlot& chart, double x0, double y0, double x1, double y1, const QColor& color) {
    auto* rect = new QCPItemRect(&chart);
    rect->topLeft->setCoords(std::min(x0, x1), std::max(y0, y1));
    rect->bottomRight->setCoords(std::max(x0, x1), std::min(y0, y1));
    rect->setPen(QPen(color, 1));
    rect->setBrush(color);
}

void addUpright(QCustomPlot& chart, double x, const QPen& pen) {
    auto* line = new QCPItemStraightLine(&chart);
    line->point1->setCoords(x, 0);
    line->point2->setCoords(x, 1);
    line->setPen(pen);
}

double barPlace(const TornadoPicture& subject, std::size_t row) {
    return static_cast<double>(subject.made().bars.size() - 1 - row);
}

Span outcomeSpan(const TornadoPicture& subject) {
    Span span{subject.made().own.value_or(0), subject.made().own.value_or(0)};
    for (const TornadoBar& bar : subject.made().bars) {
        if (!bar.withoutEffect.empty() || !bar.least) continue;
        span.low = std::min(span.low, bar.least->y);
        span.high = std::max(span.high, bar.most->y);
    }
    const double room = 0.06 * (span.high - span.low);
    if (subject.suggested && *subject.suggested > span.low - 3 * room &&
        *subject.suggested < span.high + 3 * room)
        span = {std::min(span.low, *subject.suggested), std::max(span.high, *subject.suggested)};
    const double margin = span.high > span.low ? 0.06 * (span.high - span.low)
                                               : std::max(std::abs(span.low) * 0.1, 1e-9);
    return {span.low - margin, span.high + margin};
}

void addLines(QCustomPlot& chart, const TornadoPicture& subject, const ChartInk& ink,
              bool upright) {
    const QColor text = ink.palette.color(QPalette::Text);
    const double width = ink.pointsToPixels;
    const auto add = [&](double at, const QPen& pen, const QString& name) {
        if (upright) {
            addUpright(chart, at, pen);
        } else {
            auto* line = new QCPItemStraightLine(&chart);
            line->point1->setCoords(0, at);
            line->point2->setCoords(1, at);
            line->setPen(pen);
        }
        addKeyEntry(chart, name, pen);
    };
    if (subject.made().own)
        add(*subject.made().own, QPen(text, 1.2 * width), QObject::tr("this case"));
    if (subject.suggested)
        add(*subject.suggested, QPen(studyColor(3, ink.palette), 1.5 * width, Qt::DashLine),
            QObject::tr("suggested %1").arg(toQt(generalNumber(*subject.suggested, 4))));
}

void composeTornado(QCustomPlot& chart, const TornadoPicture& subject, const ChartInk& ink) {
    const auto& bars = subject.made().bars;
    const QColor base = ink.palette.color(QPalette::Base), text = ink.palette.color(QPalette::Text);
    const QColor low = studyColor(0, ink.palette), high = studyColor(1, ink.palette);
    const QColor light = mixed(base, text, 0.2), faint = mixed(base, text, 0.6);
    auto names = QSharedPointer<QCPAxisTickerText>::create();
    const Span span = outcomeSpan(subject);
    const double own = subject.made().own.value_or(span.low);
    std::vector<double> diamondsX, diamondsY;
    for (std::size_t row = 0; row < bars.size(); ++row) {
        const TornadoBar& bar = bars[row];
        const double y = barPlace(subject, row);
        std::string name = bar.variable.label();
        if (!bar.withoutEffect.empty() || !bar.least) {
            auto* note = new QCPItemText(&chart);
            note->setFont(ink.font);
            note->setColor(faint);
            note->setText(toQt(tornadoRemark(bar)));
            note->position->setTypeX(QCPItemPosition::ptAxisRectRatio);
            note->position->setAxes(chart.xAxis, chart.yAxis);
            note->position->setTypeY(QCPItemPosition::ptPlotCoords);
            note->position->setCoords(0.01, y);
            note->setPositionAlignment(Qt::AlignLeft | Qt::AlignVCenter);
            names->addTick(y, toQt(name));
            continue;
        }
        names->addTick(y, toQt(name + ", " + spanText(bar.variable, bar.range, subject.units())));
        addRect(chart, bar.least->y, y - 0.36, bar.most->y, y + 0.36, light);
        if (bar.atLow) addRect(chart, own, y + 0.02, *bar.atLow, y + 0.28, low);
        if (bar.atHigh) addRect(chart, own, y - 0.28, *bar.atHigh, y - 0.02, high);
        for (const Jump& jump : bar.jumps)
            for (const auto& side : {jump.before, jump.after})
                if (side) {
                    diamondsX.push_back(*side);
                    diamondsY.push_back(y);
                }
    }
    chart.yAxis->setTicker(names);
    chart.yAxis->setSubTicks(false);
    chart.yAxis->setTickLength(0);
    chart.yAxis->setRange(-0.7, static_cast<double>(bars.size()) - 0.3);
    chart.xAxis->setRange(span.low, span.high);
    chart.xAxis->grid()->setVisible(true);
    chart.xAxis->setLabel(outcomeTitle(subject.outcome(), subject.units()));
    addKeyBox(chart, QObject::tr("input at its low end"), low);
    addKeyBox(chart, QObject::tr("at its high end"), high);
    addKeyBox(chart, QObject::tr("anywhere in its range"), light);
    if (!diamondsX.empty()) {
        QCPGraph* marks = chart.addGraph();
        marks->setObjectName("jumps");
        marks->setName(QObject::tr("jump"));
        marks->setLineStyle(QCPGraph::lsNone);
        marks->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssDiamond, QPen(text, 1),
                                               QBrush(base), 6 * ink.pointsToPixels));
        marks->setLayer("axes"); // above the bars
        marks->setData(QVector<double>(diamondsX.begin(), diamondsX.end()),
                       QVector<double>(diamondsY.begin(), diamondsY.end()));
        marks->addToLegend();
    }
    addLines(chart, subject, ink, true);
    chart.legend->setVisible(true);
}

constexpr std::size_t NamedLegs = 7; // lines that can be told apart

/// Where a value lies between the ends of its range: -1 low, 0 the case's own, 1 high.
double legPlace(const TornadoBar& bar, double x) {
    if (x < bar.own) return bar.own > bar.range.low ? (x - bar.own) / (bar.own - bar.range.low) : 0;
    return bar.range.high > bar.own ? (x - bar.own) / (bar.range.high - bar.own) : 0;
}

void composeSpider(QCustomPlot& chart, const TornadoPicture& subject, const ChartInk& ink) {
    const QColor base = ink.palette.color(QPalette::Base), text = ink.palette.color(QPalette::Text);
    const auto& bars = subject.made().bars;
    for (std::size_t at = bars.size(); at-- > 0;) { // the widest ones above the others
        const TornadoBar& bar = bars[at];
        if (!bar.withoutEffect.empty()) continue;
        const bool named = at < NamedLegs;
        QPen pen(named ? studyColor(at, ink.palette) : mixed(base, text, 0.3),
                 (named ? 1.5 : 0.75) * ink.pointsToPixels,
                 at % 2 == 0 ? Qt::SolidLine : Qt::DashLine);
        auto* leg = new QCPCurve(chart.xAxis, chart.yAxis);
        leg->setObjectName("leg:" + toQt(bar.variable.name()));
        leg->setPen(pen);
        double key = 0;
        for (const Stretch& stretch : bar.curve) {
            for (const GraphPoint& point : stretch)
                leg->addData(key++, legPlace(bar, point.x), point.y);
            leg->addData(key++, qQNaN(), qQNaN());
        }
    }
    for (std::size_t at = 0; at < std::min(bars.size(), NamedLegs); ++at) {
        if (!bars[at].withoutEffect.empty()) continue;
        addKeyEntry(chart, toQt(bars[at].variable.label()),
                    QPen(studyColor(at, ink.palette), 1.5 * ink.pointsToPixels,
                         at % 2 == 0 ? Qt::SolidLine : Qt::DashLine));
    }
    const Span span = outcomeSpan(subject);
    chart.yAxis->setRange(span.low, span.high);
    chart.xAxis->setRange(-1.05, 1.05);
    chart.yAxis->grid()->setVisible(true);
    chart.yAxis->setLabel(outcomeTitle(subject.outcome(), subject.units()));
    chart.xAxis->setLabel(QObject::tr("Input: -1 low end of its range, 0 this case, 1 high end"));
    addLines(chart, subject, ink, false);
    chart.legend->setVisible(true);
}

std::vector<Spot> spotsOf(const TornadoPicture& subject, bool spider) {
    std::vector<Spot> spots;
    for (std::size_t row = 0; row < subject.made().bars.size(); ++row) {
        const TornadoBar& bar = subject.bar(row);
        if (!bar.withoutEffect.empty()) continue;
        std::vector<double> places;
        for (const std::size_t end : {LowEnd, HighEnd, LeastEnd, MostEnd}) {
            const auto point = tornadoPoint(bar, end);
            if (!point) continue;
            if (std::find(places.begin(), places.end(), point->x) != places.end()) continue;
            places.push_back(point->x);
            const double half = end == LowEnd ? 0.15 : end == HighEnd ? -0.15 : 0;
            spots.push_back(
                spider ? Spot{legPlace(bar, point->x), point->y, row * TornadoEnds + end}
                       : Spot{point->y, barPlace(subject, row) + half, row * TornadoEnds + end});
        }
    }
    return spots;
}

} // namespace

std::optional<GraphPoint> tornadoPoint(const TornadoBar& bar, std::size_t end) {
    switch (end) {
    case LowEnd:
        if (bar.atLow) return GraphPoint{bar.range.low, *bar.atLow};
        return std::nullopt;
    case HighEnd:
        if (bar.atHigh) return GraphPoint{bar.range.high, *bar.atHigh};
        return std::nullopt;
    case LeastEnd:
        return bar.least;
    default:
        return bar.most;
    }
}

std::string tornadoRemark(const TornadoBar& bar) {
    if (!bar.withoutEffect.empty()) return "no effect here: " + bar.withoutEffect;
    if (bar.notComputed > 0)
        return std::to_string(bar.notComputed) + " values could not be computed";
    return {};
}

Drawing tornadoDrawing(std::shared_ptr<const TornadoAnswer> answer, bool spider,
                       std::optional<double> suggested) {
    const TornadoPicture subject{std::move(answer), suggested};
    Drawing drawing;
    drawing.headline = asSentence(subject.made().headline);
    drawing.compose = [subject, spider](QCustomPlot& chart, const ChartInk& ink) {
        spider ? composeSpider(chart, subject, ink) : composeTornado(chart, subject, ink);
    };
    drawing.spots = spotsOf(subject, spider);
    drawing.tip = [subject](std::size_t id) { return tipOf(subject, id); };
    drawing.linesOfText = spider ? 0 : static_cast<int>(subject.made().bars.size()) + 6;
    return drawing;
}

} // namespace telvo::study::ui
