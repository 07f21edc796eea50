// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/studies/StudyChart.h"

#include "base/ui/qtText.h"

#include <cmath>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QToolTip>

namespace telvo::study::ui {

using telvo::ui::toQt;

namespace {

constexpr double ReachPixels = 24; // between the mouse and a place that it points at

} // namespace

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
    setAccessibleDescription(toQt(m_drawing.headline));
    updateGeometry();
    draw();
}

void StudyChart::draw() {
    composeDrawing(*this, m_drawing, {palette(), font(), logicalDpiY() / 72.0});
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
