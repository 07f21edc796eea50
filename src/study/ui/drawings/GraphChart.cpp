// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/drawings/GraphChart.h"

#include "base/numbers.h"
#include "base/ui/qtText.h"
#include "chart/ui/chartParts.h"
#include "report/sections.h"
#include "study/graph/graphLabels.h"

#include <algorithm>
#include <cmath>

namespace telvo::study::ui {

using telvo::ui::toQt;

using chart::ui::brokenAt;
using chart::ui::frameChart;
using chart::ui::inkAxes;
using chart::ui::mixed;
using chart::ui::PlainTicker;
using chart::ui::titleFont;

namespace {

constexpr double CurveWidth = 1.5; // points
constexpr double ThinWidth = 0.75;
constexpr double OwnMarkScale = 1.9; // of the symbols
constexpr double EndMarkScale = 1.1;
constexpr double MarkedStep = 0.03; // share of the axis from which the ends of a jump are marked
constexpr double CoverPixels = 4;   // between points that a label may not cover

} // namespace

GraphChart::GraphChart(SfGraph graph, std::string caption, QWidget* parent)
    : QCustomPlot(parent), m_graph(std::move(graph)), m_caption(std::move(caption)) {
    setLocale(QLocale::c());
    setAutoAddPlottableToLegend(false);
    const auto heading = chart::ui::addHeading(*this);
    m_title = heading.title;
    m_subtitle = heading.subtitle;
    legend->setFillOrder(QCPLegend::foColumnsFirst);
    axisRect()->setMinimumMargins({0, 6, 0, 0});
    axisRect()->setAutoMargins(QCP::msLeft | QCP::msTop | QCP::msBottom);
    for (QCPAxis* axis : {xAxis, yAxis})
        axis->setTicker(QSharedPointer<PlainTicker>::create());
    frameChart(*this);
    connect(this, &QCustomPlot::afterLayout, this, &GraphChart::placeLabels);
}

void GraphChart::setSubject(SfGraph graph, std::string caption) {
    m_graph = std::move(graph);
    m_caption = std::move(caption);
}

QColor GraphChart::curveColour(std::size_t curve) const {
    // Blue and orange differ for every colour vision, and in lightness on paper.
    const QPalette& palette = m_ink.palette;
    const bool dark = palette.color(QPalette::Base).lightness() < 128;
    if (curve % 2 == 0) return dark ? QColor(0x56, 0xB4, 0xE9) : QColor(0x00, 0x72, 0xB2);
    return dark ? QColor(0xE6, 0x9F, 0x00) : QColor(0xC8, 0x50, 0x00);
}

void GraphChart::compose(const GraphOptions& options, const ChartInk& ink) {
    m_options = options;
    m_ink = ink;
    clearPlottables();
    clearItems();
    m_limitLabels.clear();
    m_ownLabels.clear();
    setBackground(QBrush(ink.palette.color(QPalette::Base)));
    composeAxes();
    composeLimits();
    for (std::size_t i = 0; i < m_graph.curves.size(); ++i)
        composeCurve(i);
    for (std::size_t i = 0; i < m_graph.curves.size(); ++i)
        composeOwnPoint(i);
    composeKey();
    composeTitles();
    fitTexts(size());
}

void GraphChart::composeTitles() {
    const QColor text = m_ink.palette.color(QPalette::Text);
    m_title->setFont(titleFont(m_ink.font));
    m_subtitle->setFont(m_ink.font);
    for (QCPTextElement* element : {m_title, m_subtitle})
        element->setTextColor(text);
}

void GraphChart::composeAxes() {
    inkAxes(*this, m_ink.palette, m_ink.font);
    // A horizontal line belongs to a value of the vertical axis.
    yAxis->grid()->setVisible((m_options.GridStyle & 1) != 0);
    xAxis->grid()->setVisible((m_options.GridStyle & 2) != 0);

    const double low = axisValue(m_graph.low);
    const double high = axisValue(m_graph.high);
    const double margin = high > low ? 0.02 * (high - low) : 1; // symbols at the ends are whole
    xAxis->setRange(low - margin, high + margin);
    const Span factors = factorSpan(m_graph);
    yAxis->setRange(factors.low, factors.high);
}

QCPGraph* GraphChart::addSeries(const QString& name, const std::vector<GraphPoint>& points) {
    QCPGraph* series = addGraph();
    series->setName(name);
    series->setObjectName(name);
    for (const GraphPoint& point : points)
        series->addData(axisValue(point.x), point.y);
    return series;
}

void GraphChart::addMarks(const QString& name, const std::vector<GraphPoint>& points,
                          const QCPScatterStyle& style) {
    std::vector<GraphPoint> seen;
    std::copy_if(
        points.begin(), points.end(), std::back_inserter(seen),
        [span = factorSpan(m_graph)](const auto& point) { return span.contains(point.y); });
    if (seen.empty()) return;
    QCPGraph* marks = addSeries(name, seen);
    marks->setLineStyle(QCPGraph::lsNone);
    marks->setScatterStyle(style);
}

QCPItemText* GraphChart::addLabel(const QColor& colour, const QFont& font) {
    auto* label = new QCPItemText(this);
    label->setClipToAxisRect(false);
    label->setTextAlignment(Qt::AlignLeft);
    label->position->setType(QCPItemPosition::ptAbsolute);
    label->setPositionAlignment(Qt::AlignLeft | Qt::AlignTop);
    label->setColor(colour);
    label->setFont(font);
    return label;
}

void GraphChart::composeLimits() {
    const QColor ink =
        mixed(m_ink.palette.color(QPalette::Base), m_ink.palette.color(QPalette::Text), 0.75);
    for (const ReferenceLine& limit : m_graph.limits) {
        if (limit.points.empty()) continue;
        const QString label = toQt(limit.label);
        addSeries("limit:" + label, limit.points)
            ->setPen(QPen(ink, ThinWidth * m_ink.pointsToPixels));
        const GraphPoint& end = limit.points.back();
        m_limitLabels.push_back({addLabel(ink, m_ink.font), label, {axisValue(end.x), end.y}});
    }
}

void GraphChart::composeCurve(std::size_t index) {
    const Curve& curve = m_graph.curves[index];
    const QString name = toQt(curve.name);
    const QColor colour = curveColour(index);
    const QPen line(colour, CurveWidth * m_ink.pointsToPixels,
                    index % 2 == 0 ? Qt::SolidLine : Qt::DashLine);
    // Cut here and not by the painter: not every picture file knows clipping.
    for (const auto& piece : piecesWithin(curve, factorSpan(m_graph))) {
        QCPGraph* series = addSeries("piece:" + name, piece);
        series->setPen(m_options.GraphStyle == SymbolsOnly ? QPen(Qt::NoPen) : line);
    }
    const double size = m_options.SymbolSize * m_ink.pointsToPixels;
    if (m_options.GraphStyle != LinesOnly)
        addMarks(
            "symbols:" + name, symbolPoints(m_graph, curve),
            QCPScatterStyle(index % 2 == 0 ? QCPScatterStyle::ssDisc : QCPScatterStyle::ssTriangle,
                            QPen(colour), QBrush(colour), size));
    composeEnds(index);
}

/// Connectors of the jumps and marks of the ends: closed where the piece holds the value of the
/// place itself, open on the other side.
void GraphChart::composeEnds(std::size_t index) {
    const Curve& curve = m_graph.curves[index];
    const QString name = toQt(curve.name);
    const QColor colour = curveColour(index);
    const Span span = factorSpan(m_graph);
    const auto cut = [&span](double y) { return std::clamp(y, span.low, span.high); };
    std::vector<GraphPoint> open, closed;
    for (const Jump& jump : curve.jumps) {
        if (jump.before && jump.after)
            addSeries("jumps:" + name, {{jump.x, cut(*jump.before)}, {jump.x, cut(*jump.after)}})
                ->setPen(QPen(colour, ThinWidth * m_ink.pointsToPixels, Qt::DotLine));
        // The many small steps of rounded factors would hide the curve behind their ends.
        if (jump.before && jump.after &&
            std::abs(*jump.after - *jump.before) < MarkedStep * (span.high - span.low))
            continue;
        double left = HUGE_VAL, right = HUGE_VAL; // distances to the ends of the pieces beside it
        for (const auto& piece : curve.pieces) {
            if (piece.empty()) continue;
            left = std::min(left, std::abs(piece.back().x - jump.x));
            right = std::min(right, std::abs(piece.front().x - jump.x));
        }
        const bool closedBefore = !jump.after || left <= right;
        if (jump.before) (closedBefore ? closed : open).push_back({jump.x, *jump.before});
        if (jump.after)
            (closedBefore && jump.before ? open : closed).push_back({jump.x, *jump.after});
    }
    const double size = EndMarkScale * 4.5 * m_ink.pointsToPixels;
    const QPen pen(colour, ThinWidth * m_ink.pointsToPixels);
    addMarks(
        "open:" + name, open,
        QCPScatterStyle(QCPScatterStyle::ssCircle, pen, m_ink.palette.color(QPalette::Base), size));
    addMarks("closed:" + name, closed,
             QCPScatterStyle(QCPScatterStyle::ssCircle, pen, colour, size));
}

void GraphChart::composeOwnPoint(std::size_t index) {
    const Curve& curve = m_graph.curves[index];
    if (!curve.own) return;
    const double size =
        OwnMarkScale * std::max<double>(m_options.SymbolSize, 5) * m_ink.pointsToPixels;
    const QColor text = m_ink.palette.color(QPalette::Text);
    addMarks("own:" + toQt(curve.name), {*curve.own},
             QCPScatterStyle(QCPScatterStyle::ssDiamond, QPen(text, 1.2 * m_ink.pointsToPixels),
                             curveColour(index), size));
    QFont bold = m_ink.font;
    bold.setBold(true);
    QCPItemText* label = addLabel(text, bold);
    label->setObjectName("ownLabel:" + toQt(curve.name));
    QColor backing = m_ink.palette.color(QPalette::Base);
    backing.setAlpha(200);
    label->setBrush(backing);
    label->setPadding({2, 0, 2, 0});
    label->setText(toQt(report::factorText(curve.own->y, m_options.RoundTELVOSF)));
    m_ownLabels.push_back({label, {axisValue(curve.own->x), curve.own->y}});
}

/// The key shows line and symbol together, which the series hold apart.
void GraphChart::composeKey() {
    legend->clearItems();
    const bool shown = m_options.CurveLegend == 1;
    legend->setVisible(shown);
    legend->setMargins(shown ? QMargins(6, 2, 6, 4) : QMargins());
    if (!shown) return;
    legend->setFont(m_ink.font);
    legend->setTextColor(m_ink.palette.color(QPalette::Text));
    const double tallest = std::max<double>(m_options.SymbolSize, 9) * m_ink.pointsToPixels;
    legend->setIconSize(static_cast<int>(36 * m_ink.pointsToPixels),
                        std::max(QFontMetrics(m_ink.font).height(), static_cast<int>(tallest) + 4));
    legend->setIconTextPadding(12);
    legend->setColumnSpacing(QFontMetrics(m_ink.font).height());
    const auto addKey = [this](const QString& name, const QPen& pen, QCPScatterStyle symbol) {
        QCPGraph* key = addGraph();
        key->setName(name);
        key->setObjectName("key:" + name);
        key->setPen(pen);
        key->setScatterStyle(symbol);
        key->addToLegend();
    };
    const int series = graphCount();
    for (std::size_t i = 0; i < m_graph.curves.size(); ++i) {
        const QString name = toQt(m_graph.curves[i].name);
        QPen pen(Qt::NoPen);
        QCPScatterStyle symbol;
        for (int k = 0; k < series; ++k) {
            if (graph(k)->name() == "piece:" + name) pen = graph(k)->pen();
            if (graph(k)->name() == "symbols:" + name) symbol = graph(k)->scatterStyle();
        }
        addKey(name, pen, symbol);
    }
    if (m_ownLabels.empty()) return;
    const QColor text = m_ink.palette.color(QPalette::Text);
    addKey(tr("This case"), Qt::NoPen,
           QCPScatterStyle(QCPScatterStyle::ssDiamond, QPen(text, 1.2 * m_ink.pointsToPixels),
                           m_ink.palette.color(QPalette::Base), 9 * m_ink.pointsToPixels));
}

void GraphChart::fitTexts(QSize size) {
    const QFontMetrics metrics(m_ink.font);
    const int line = metrics.height();
    const int width = std::max(size.width() - 2 * line, line);
    m_title->setText(QFontMetrics(m_title->font())
                         .elidedText(toQt(m_options.GraphTitle), Qt::ElideRight, width));
    m_subtitle->setText(metrics.elidedText(toQt(m_caption), Qt::ElideMiddle, width));

    double labels = 0;
    for (const LimitLabel& label : m_limitLabels) {
        label.item->setText(brokenAt(label.text, QFontMetricsF(m_ink.font), 0.16 * size.width()));
        labels = std::max<double>(labels, metrics.size(0, label.item->text()).width());
    }
    const int right = std::max(static_cast<int>(labels) + line / 2, line) + line / 4;
    axisRect()->setMargins({0, 0, right, 0});
    xAxis->setLabel(metrics.elidedText(toQt(axisTitle(m_graph, m_options)), Qt::ElideMiddle,
                                       std::max(width - right, 4 * line)));
    yAxis->setLabel(metrics.elidedText(toQt(m_options.YAxisTitle), Qt::ElideRight,
                                       std::max(size.height() - 9 * line, 4 * line)));
}

void GraphChart::resizeEvent(QResizeEvent* event) {
    fitTexts(event->size());
    QCustomPlot::resizeEvent(event);
}

void GraphChart::placeLabels() {
    placeLimitLabels();
    placeOwnLabels();
}

/// Each beside the right end of its line, or as near as the others leave room.
void GraphChart::placeLimitLabels() {
    const QFontMetrics metrics(m_ink.font);
    const QRect plot = axisRect()->rect();
    std::vector<const LimitLabel*> labels;
    for (const LimitLabel& label : m_limitLabels) {
        const bool seen = yAxis->range().contains(label.end.y);
        label.item->setVisible(seen);
        if (seen) labels.push_back(&label);
    }
    std::sort(labels.begin(), labels.end(),
              [](const auto* a, const auto* b) { return a->end.y > b->end.y; });
    std::vector<EndLabel> ends;
    for (const LimitLabel* label : labels)
        ends.push_back({yAxis->coordToPixel(label->end.y),
                        static_cast<double>(metrics.size(0, label->item->text()).height())});
    const double half = metrics.height() / 2.0;
    const auto tops =
        columnTops(ends, plot.top() - half, plot.bottom() + half, 0.4 * metrics.height());
    for (std::size_t i = 0; i < labels.size(); ++i)
        labels[i]->item->position->setCoords(plot.right() + half, tops[i]);
}

std::vector<Pixel> GraphChart::drawnInk() const {
    std::vector<Pixel> ink;
    for (int i = 0; i < graphCount(); ++i) {
        const QCPGraph& series = *graph(i);
        std::vector<Pixel> points;
        for (const QCPGraphData& point : *series.data())
            points.push_back({xAxis->coordToPixel(point.key), yAxis->coordToPixel(point.value)});
        if (series.lineStyle() == QCPGraph::lsNone)
            ink.insert(ink.end(), points.begin(), points.end());
        else
            addInk(ink, points, CoverPixels);
    }
    return ink;
}

void GraphChart::placeOwnLabels() {
    std::vector<MarkLabel> labels;
    for (const OwnLabel& label : m_ownLabels) {
        const QSizeF size =
            QFontMetricsF(label.item->font()).size(0, label.item->text()) + QSizeF(5, 0);
        labels.push_back({{xAxis->coordToPixel(label.at.x), yAxis->coordToPixel(label.at.y)},
                          size.width(),
                          size.height()});
    }
    const QRectF plot = axisRect()->rect();
    const double away =
        0.4 * OwnMarkScale * std::max<double>(m_options.SymbolSize, 5) * m_ink.pointsToPixels;
    const auto boxes =
        labelBoxes(labels, drawnInk(), {plot.x(), plot.y(), plot.width(), plot.height()}, away);
    for (std::size_t i = 0; i < boxes.size(); ++i)
        m_ownLabels[i].item->position->setCoords(boxes[i].left, boxes[i].top);
}

} // namespace telvo::study::ui
