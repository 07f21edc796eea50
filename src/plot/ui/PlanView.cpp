// SPDX-License-Identifier: GPL-3.0-or-later
#include "plot/ui/PlanView.h"

#include "base/ui/qtText.h"
#include "chart/ui/picture.h"
#include "plot/ui/paintDrawing.h"

#include <algorithm>
#include <cmath>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QToolTip>
#include <QWheelEvent>

namespace telvo::plot::ui {

using chart::ui::paperPalette;
using telvo::ui::toQt;

namespace {

constexpr double LargestZoom = 64;
constexpr double ZoomStep = 1.25;

} // namespace

PlanView::PlanView(const QString& name, QWidget* parent) : QWidget(parent) {
    setObjectName(name);
    setAccessibleName(tr("Panel plan"));
    setFocusPolicy(Qt::StrongFocus);
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
    setWhatsThis(tr("Plan of the panel to scale. Turn the wheel or press + and - to zoom, drag or "
                    "use the arrow keys to move; a double click or Home shows all of it."));
}

void PlanView::setDrawing(plot::Drawing drawing) {
    QStringList words;
    for (const std::string& line : drawing.caption)
        words.append(toQt(line));
    setAccessibleDescription(words.join(", "));
    m_drawing = std::move(drawing);
    m_message.clear();
    setZoom(m_zoom);
    update();
}

void PlanView::setMessage(const QString& message) {
    m_drawing.reset();
    m_dragged.reset();
    m_message = message;
    m_zoom = {};
    setAccessibleDescription(message);
    unsetCursor();
    update();
}

QImage PlanView::image(double scale) const {
    const double largest = 16000.0 / std::max({width(), height(), 1});
    scale = std::clamp(scale, 0.1, largest);
    QImage picture((QSizeF(size()) * scale).toSize().expandedTo({1, 1}), QImage::Format_RGB32);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setFont(font());
    paint(painter, paperPalette());
    return picture;
}

QSize PlanView::sizeHint() const {
    return QSize(50, 36) * fontMetrics().height();
}

QSize PlanView::minimumSizeHint() const {
    return QSize(16, 12) * fontMetrics().height();
}

void PlanView::fit() {
    setZoom({});
}

plot::Box PlanView::planArea() const {
    return pageLayout(*m_drawing, font(), this, rect()).plan;
}

plot::View PlanView::view() const {
    const PageLayout layout = pageLayout(*m_drawing, font(), this, rect());
    return plot::viewOf(*m_drawing, layout.plan, layout.em, m_zoom);
}

void PlanView::setZoom(plot::Zoom zoom) {
    zoom.factor = std::clamp(zoom.factor, 1.0, LargestZoom);
    if (zoom.factor < 1.001 || !m_drawing) {
        zoom = {};
    } else {
        const plot::Rect& all = m_drawing->bounds;
        zoom.centre.x = std::clamp(zoom.centre.x, all.left, all.right);
        zoom.centre.y = std::clamp(zoom.centre.y, all.bottom, all.top);
    }
    if (zoom.factor == 1)
        unsetCursor();
    else if (!m_dragged)
        setCursor(Qt::OpenHandCursor);
    if (zoom == m_zoom) return;
    m_zoom = zoom;
    update();
}

void PlanView::zoomBy(double factor, QPointF fixedPoint) {
    if (!m_drawing) return;
    const plot::View before = view();
    const plot::Point kept = before.toDrawing({fixedPoint.x(), fixedPoint.y()});
    const double wanted = std::clamp(m_zoom.factor * factor, 1.0, LargestZoom);
    const double scale = before.scale / m_zoom.factor * wanted;
    const plot::Point middle = planArea().centre();
    setZoom({wanted,
             {kept.x - (fixedPoint.x() - middle.x) / scale,
              kept.y + (fixedPoint.y() - middle.y) / scale}});
}

void PlanView::moveBy(QPointF pixels) {
    if (!m_drawing || m_zoom.factor == 1) return;
    const double scale = view().scale;
    setZoom({m_zoom.factor,
             {m_zoom.centre.x - pixels.x() / scale, m_zoom.centre.y + pixels.y() / scale}});
}

void PlanView::paint(QPainter& painter, const QPalette& palette) const {
    if (m_drawing) {
        paintDrawing(*m_drawing, painter, rect(), palette, m_zoom);
        return;
    }
    painter.fillRect(rect(), palette.color(QPalette::Base));
    painter.setPen(palette.color(QPalette::Text));
    const int margin = fontMetrics().height();
    painter.drawText(rect().adjusted(margin, margin, -margin, -margin),
                     Qt::AlignCenter | Qt::TextWordWrap, m_message);
}

void PlanView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paint(painter, palette());
    if (!hasFocus()) return;
    // A line around it; the focus frame of some styles tints what it surrounds.
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

bool PlanView::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const plot::Point at{static_cast<double>(help->x()), static_cast<double>(help->y())};
    QString hint;
    if (m_drawing && planArea().contains({at.x, at.y, at.x, at.y}))
        hint = toQt(plot::hintAt(*m_drawing, view().toDrawing(at)));
    if (hint.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(help->globalPos(), hint, this);
    return true;
}

void PlanView::wheelEvent(QWheelEvent* event) {
    // A touch pad sends parts of a notch.
    constexpr double notch = 120;
    zoomBy(std::pow(ZoomStep, event->angleDelta().y() / notch), event->position());
    event->accept();
}

void PlanView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || m_zoom.factor == 1) return;
    m_dragged = event->position();
    setCursor(Qt::ClosedHandCursor);
}

void PlanView::mouseMoveEvent(QMouseEvent* event) {
    if (!m_dragged) return;
    moveBy(event->position() - *m_dragged);
    m_dragged = event->position();
}

void PlanView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !m_dragged) return;
    m_dragged.reset();
    setCursor(Qt::OpenHandCursor);
}

void PlanView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) fit();
}

void PlanView::keyPressEvent(QKeyEvent* event) {
    const double step = 0.1 * std::min(width(), height());
    const QPointF middle = QRectF(rect()).center();
    switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal: // the same key without Shift
        zoomBy(ZoomStep, middle);
        break;
    case Qt::Key_Minus:
        zoomBy(1 / ZoomStep, middle);
        break;
    case Qt::Key_Left:
        moveBy({step, 0});
        break;
    case Qt::Key_Right:
        moveBy({-step, 0});
        break;
    case Qt::Key_Up:
        moveBy({0, step});
        break;
    case Qt::Key_Down:
        moveBy({0, -step});
        break;
    case Qt::Key_Home:
    case Qt::Key_0:
        fit();
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

void PlanView::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    update();
}

void PlanView::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
}

} // namespace telvo::plot::ui
