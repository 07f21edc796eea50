// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ui/qtText.h"
#include "study/ui/drawings/drawingParts.h"
#include "study/ui/drawings/studyDrawings.h"

namespace telvo::study::ui {

using telvo::ui::toQt;

namespace {

/// Where nothing helps for a target: hatched, for the first target over the whole height, for the
/// others from further up, so that all are seen.
void addHatching(QCustomPlot& chart, const DesignAnswer& subject, std::size_t curve,
                 const QColor& color) {
    const auto& points = subject.made.curves[curve].points;
    const auto count = static_cast<double>(subject.made.curves.size());
    const auto band = [&](double from, double to) {
        auto* rect = addBand(chart, from, to, QBrush(color, Qt::BDiagPattern));
        rect->setObjectName("nothing");
        const double top = static_cast<double>(curve) / count * 0.3;
        rect->topLeft->setCoords(from, top);
        rect->bottomRight->setCoords(to, top + 0.3 / count);
    };
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (points[i].hasValue()) continue;
        std::size_t last = i;
        while (last + 1 < points.size() && !points[last + 1].hasValue())
            ++last;
        const double from = i > 0 ? points[i - 1].over : points[i].over;
        const double to = last + 1 < points.size() ? points[last + 1].over : points[last].over;
        band(from, to);
        i = last;
    }
}

void composeDesign(QCustomPlot& chart, const DesignAnswer& subject, const ChartInk& ink) {
    const DesignChartRequest& request = subject.request;
    const std::int16_t units = subject.base.Units;
    Extent extent;
    extent.take(request.values.front(), request.in.low);
    extent.take(request.values.back(), request.in.high);
    bool hatched = false;
    for (std::size_t c = 0; c < subject.made.curves.size(); ++c) {
        const QColor color = studyColor(c, ink.palette);
        std::vector<Stretch> pieces(1);
        for (const DesignPoint& point : subject.made.curves[c].points) {
            if (point.hasValue()) {
                pieces.back().push_back({point.over, point.required});
                continue;
            }
            hatched = true;
            if (!pieces.back().empty()) pieces.emplace_back();
        }
        const QPen pen(color, 1.6 * ink.pointsToPixels, c % 2 == 0 ? Qt::SolidLine : Qt::DashLine);
        addLine(chart, "curve:" + QString::number(c), pieces, pen);
        addHatching(chart, subject, c, color);
        addKeyEntry(chart, toQt(designTarget(subject, c)), pen);
    }
    if (hatched) {
        addKeyEntry(chart, QObject::tr("hatched: nothing in the range helps"), Qt::NoPen);
    }
    extent.apply(chart);
    const GraphPoint own{request.over.of(subject.base.Input),
                         request.required.of(subject.base.Input)};
    if (own.x >= extent.x0 && own.x <= extent.x1 && own.y >= extent.y0 && own.y <= extent.y1)
        addMark(chart, QObject::tr("this case"), own, QCPScatterStyle::ssCircle,
                ink.palette.color(QPalette::Text), ink);
    chart.xAxis->setLabel(inputTitle(request.over, units));
    chart.yAxis->setLabel(inputTitle(request.required, units));
    chart.xAxis->grid()->setVisible(true);
    chart.yAxis->grid()->setVisible(true);
    chart.legend->setVisible(true);
}

} // namespace

std::string designTarget(const DesignAnswer& answer, std::size_t curve) {
    const auto& target = answer.request.targets[curve];
    return target ? answer.request.outcome.text(*target, answer.base.Units) : "suggested";
}

Drawing designDrawing(std::shared_ptr<const DesignAnswer> answer) {
    Drawing drawing;
    drawing.headline = asSentence(answer->made.headline);
    drawing.compose = [answer](QCustomPlot& chart, const ChartInk& ink) {
        composeDesign(chart, *answer, ink);
    };
    std::vector<std::size_t> curveOf; // of each place
    for (std::size_t c = 0; c < answer->made.curves.size(); ++c)
        for (const DesignPoint& point : answer->made.curves[c].points) {
            if (!point.hasValue()) continue;
            drawing.spots.push_back({point.over, point.required, curveOf.size()});
            curveOf.push_back(c);
        }
    drawing.tip = [answer, curveOf, spots = drawing.spots](std::size_t id) {
        const DesignChartRequest& request = answer->request;
        const std::int16_t units = answer->base.Units;
        return toQt(request.over.label() + " " + request.over.text(spots[id].x, units) + ", " +
                    request.required.label() + " " + request.required.text(spots[id].y, units) +
                    "\nfor " + designTarget(*answer, curveOf[id]));
    };
    return drawing;
}

} // namespace telvo::study::ui
