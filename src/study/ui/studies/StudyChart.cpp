// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/studies/StudyChart.h"

#include "base/ui/qtText.h"
#include "chart/ui/chartParts.h"
#include "chart/ui/paintPlot.h"

#include <array>
#include <cmath>
#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QToolTip>

namespace telvo::study::ui {

using chart::ui::frameChart;
using chart::ui::inkAxes;
using chart::ui::PlainTicker;
using chart::ui::titleFont;
using telvo::ui::toQt;

namespace {

constexpr double ReachPixels = 24; // between the mouse and a place that it points at
constexpr int PaperPixels = 12;    // of the font

void clearChart(QCustomPlot& chart) {
    chart.clearPlottables();
    chart.clearItems();
    for (auto* scale : chart.findChildren<QCPColorScale*>())
        chart.plotLayout()->remove(scale);
    chart.plotLayout()->simplify();
    chart.legend->setVisible(false);
    chart.axisRect()->setMarginGroup(QCP::msTop | QCP::msBottom, nullptr);
    for (QCPAxis* axis : {chart.xAxis, chart.yAxis}) {
        axis->setTicker(QSharedPointer<PlainTicker>::create());
        axis->setLabel({});
        axis->grid()->setVisible(false);
        axis->setSubTicks(true);
        axis->setTickLength(5);
    }
}

void setUpChart(QCustomPlot& chart) {
    chart.setLocale(QLocale::c());
    chart.setAutoAddPlottableToLegend(false);
    chart.axisRect()->setAutoMargins(QCP::msAll);
    chart.plotLayout()->insertRow(1); // the key has a row of its own, where it hides nothing
    chart.plotLayout()->addElement(1, 0, chart.legend);
    chart.plotLayout()->setRowStretchFactor(1, 0.001);
    chart.plotLayout()->setRowSpacing(0);
    chart.legend->setFillOrder(QCPLegend::foColumnsFirst);
    chart.legend->setWrap(4);
    frameChart(chart);
}

/// As many entries of the key in a line as there is room for.
void wrapKey(QCustomPlot& chart, int width) {
    int widest = 1;
    std::vector<QCPLayoutElement*> items;
    for (int i = 0; i < chart.legend->itemCount(); ++i)
        if (QCPAbstractLegendItem* item =
                chart.legend->item(i)) { // a last row may have free places
            widest = std::max(widest, item->minimumOuterSizeHint().width());
            items.push_back(item);
        }
    const int room = width - chart.legend->margins().left() - chart.legend->margins().right() - 12;
    chart.legend->setWrap(std::max(1, room / (widest + chart.legend->columnSpacing())));
    for (QCPLayoutElement* item : items) // once more, in rows of that length
        chart.legend->take(item);
    chart.legend->simplify();
    for (QCPLayoutElement* item : items)
        chart.legend->addElement(item);
}

void composeChart(QCustomPlot& chart, const Drawing& drawing, const ChartInk& ink) {
    clearChart(chart);
    chart.setBackground(QBrush(ink.palette.color(QPalette::Base)));
    inkAxes(chart, ink.palette, ink.font);
    chart.legend->setFont(ink.font);
    chart.legend->setTextColor(ink.palette.color(QPalette::Text));
    chart.legend->setBorderPen(Qt::NoPen);
    chart.legend->setBrush(Qt::NoBrush);
    if (drawing.compose) drawing.compose(chart, ink);
    wrapKey(chart, chart.viewport().width());
}

} // namespace

QColor studyColor(std::size_t number, const QPalette& palette) {
    // Okabe and Ito's colors, the pale ones darker on white.
    static constexpr std::array<std::array<QRgb, 2>, 7> colors = {{{0xff0072b2, 0xff56b4e9},
                                                                   {0xffc85000, 0xffe69f00},
                                                                   {0xff00795a, 0xff2fc79b},
                                                                   {0xffb0478d, 0xffdf8fc0},
                                                                   {0xff7a6a00, 0xfff0e442},
                                                                   {0xff2f8fc4, 0xff9bd3f2},
                                                                   {0xff555555, 0xffbbbbbb}}};
    const bool dark = palette.color(QPalette::Base).lightness() < 128;
    return QColor(colors[number % colors.size()][dark ? 1 : 0]);
}

QColor holdsColor(const QPalette& palette) {
    const bool dark = palette.color(QPalette::Base).lightness() < 128;
    return dark ? QColor(0x1d, 0x5c, 0x3f) : QColor(0xc4, 0xe8, 0xcf);
}

StudyChart::StudyChart(const QString& name, QWidget* parent) : QCustomPlot(parent) {
    setObjectName(name);
    setAccessibleName(tr("Picture"));
    setWhatsThis(tr("Point at a place of the picture with the mouse or the arrow keys to read it. "
                    "Double click or Enter opens its case."));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setUpChart(*this);
}

void StudyChart::setDrawing(Drawing drawing) {
    const bool same = m_drawing.spots.size() == drawing.spots.size();
    m_drawing = std::move(drawing);
    if (!same) m_current.reset();
    setAccessibleDescription(m_drawing.summary);
    updateGeometry();
    draw();
}

void StudyChart::draw() {
    composeChart(*this, m_drawing, {palette(), font(), logicalDpiY() / 72.0});
    m_mark = new QCPItemTracer(this);
    m_mark->setLayer("overlay");
    m_mark->setStyle(QCPItemTracer::tsCircle);
    mark();
    replot(QCustomPlot::rpQueuedReplot);
}

void StudyChart::mark() {
    if (!m_mark) return;
    m_mark->setVisible(m_current.has_value());
    if (!m_current) return;
    m_mark->setSize(1.6 * fontMetrics().height() / 2);
    m_mark->setPen(QPen(palette().color(QPalette::Text), 2));
    m_mark->setBrush(Qt::NoBrush);
    m_mark->position->setCoords(m_drawing.spots[*m_current].x, m_drawing.spots[*m_current].y);
}

chart::ui::Picture StudyChart::picture(const std::string& name, const QString& title,
                                       const QString& subtitle) const {
    chart::ui::Picture picture;
    picture.name = name;
    if (const double needed = m_drawing.linesOfText * PaperPixels * 1.5; needed > 560)
        picture.size.setHeight(needed + 140);
    picture.paint = [drawing = m_drawing, title, subtitle](QPainter& painter, const QRectF& page) {
        QCustomPlot chart;
        QFont font = QApplication::font();
        font.setPixelSize(PaperPixels);
        setUpChart(chart);
        chart.setViewport({QPoint(), page.size().toSize()});
        const QPalette paper = chart::ui::paperPalette();
        composeChart(chart, drawing, {paper, font, chart::ui::ScreenResolution / 72.0});
        const QFontMetricsF metrics(titleFont(font));
        for (const auto& [text, large] : {std::pair{subtitle, false}, {title, true}}) {
            const QFont own = large ? titleFont(font) : font;
            auto* line = new QCPTextElement(
                &chart,
                chart::ui::brokenAt(text, QFontMetricsF(own), page.width() - 4 * PaperPixels), own);
            line->setTextColor(Qt::black);
            chart.plotLayout()->insertRow(0);
            chart.plotLayout()->addElement(0, 0, line);
        }
        chart::ui::paintPlot(chart, painter, page);
    };
    return picture;
}

std::optional<std::size_t> StudyChart::current() const {
    if (!m_current) return std::nullopt;
    return m_drawing.spots[*m_current].id;
}

void StudyChart::point(std::size_t spot) {
    if (spot >= m_drawing.spots.size()) return;
    m_current = spot;
    mark();
    layer("overlay")->replot();
    Q_EMIT pointed(m_drawing.spots[spot].id);
}

QSize StudyChart::sizeHint() const {
    const int height = fontMetrics().height();
    return {60 * height, std::max(20 * height, m_drawing.linesOfText * height * 5 / 4)};
}

QSize StudyChart::minimumSizeHint() const {
    const int height = fontMetrics().height();
    return {20 * height, std::max(9 * height, m_drawing.linesOfText * height * 5 / 4)};
}

std::optional<std::size_t> StudyChart::spotNear(const QPointF& pixel) const {
    std::optional<std::size_t> nearest;
    double least = ReachPixels * ReachPixels;
    for (std::size_t i = 0; i < m_drawing.spots.size(); ++i) {
        const double dx = xAxis->coordToPixel(m_drawing.spots[i].x) - pixel.x();
        const double dy = yAxis->coordToPixel(m_drawing.spots[i].y) - pixel.y();
        if (const double way = dx * dx + dy * dy; way < least) {
            least = way;
            nearest = i;
        }
    }
    return nearest;
}

void StudyChart::changeEvent(QEvent* event) {
    QCustomPlot::changeEvent(event);
    const bool look = event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange;
    if (look && m_mark) draw();
}

void StudyChart::resizeEvent(QResizeEvent* event) {
    QCustomPlot::resizeEvent(event);
    if (m_mark) wrapKey(*this, width());
}

void StudyChart::paintEvent(QPaintEvent* event) {
    QCustomPlot::paintEvent(event);
    if (!hasFocus()) return;
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void StudyChart::mouseMoveEvent(QMouseEvent* event) {
    QCustomPlot::mouseMoveEvent(event);
    const auto near = spotNear(event->position());
    if (!near) {
        QToolTip::hideText();
        return;
    }
    if (near != m_current) point(*near);
    if (m_drawing.tip)
        QToolTip::showText(event->globalPosition().toPoint(),
                           "<span style='white-space:pre'>" +
                               m_drawing.tip(m_drawing.spots[*near].id).toHtmlEscaped() + "</span>",
                           this);
}

void StudyChart::mouseDoubleClickEvent(QMouseEvent* event) {
    if (const auto near = spotNear(event->position())) Q_EMIT openSpot(m_drawing.spots[*near].id);
}

void StudyChart::keyPressEvent(QKeyEvent* event) {
    const std::size_t count = m_drawing.spots.size();
    const bool forward = event->key() == Qt::Key_Right || event->key() == Qt::Key_Down;
    const bool back = event->key() == Qt::Key_Left || event->key() == Qt::Key_Up;
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && m_current) {
        Q_EMIT openSpot(m_drawing.spots[*m_current].id);
    } else if (count > 0 && (forward || back)) {
        if (!m_current)
            point(forward ? 0 : count - 1);
        else
            point(forward ? std::min(*m_current + 1, count - 1) : *m_current - (*m_current > 0));
        const Spot& spot = m_drawing.spots[*m_current];
        if (m_drawing.tip) {
            const QString tip = m_drawing.tip(spot.id);
            setAccessibleDescription(tip);
            QToolTip::showText(
                mapToGlobal(QPointF(xAxis->coordToPixel(spot.x), yAxis->coordToPixel(spot.y)))
                    .toPoint(),
                "<span style='white-space:pre'>" + tip.toHtmlEscaped() + "</span>", this);
        }
    } else {
        QCustomPlot::keyPressEvent(event);
    }
}

void StudyChart::contextMenuEvent(QContextMenuEvent* event) {
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const auto near = byKey ? m_current : spotNear(event->pos());
    Q_EMIT menuAsked(near ? std::optional(m_drawing.spots[*near].id) : std::nullopt,
                     byKey ? mapToGlobal(rect().center()) : event->globalPos());
}

void StudyChart::focusInEvent(QFocusEvent* event) {
    QCustomPlot::focusInEvent(event);
    update();
}

void StudyChart::focusOutEvent(QFocusEvent* event) {
    QCustomPlot::focusOutEvent(event);
    update();
}

} // namespace telvo::study::ui
