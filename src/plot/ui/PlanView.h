// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "plot/Drawing.h"
#include "plot/placement.h"

#include <optional>
#include <QImage>
#include <QWidget>

namespace telvo::plot::ui {

/// Shows a drawing, or a message in its place. The wheel and + and - zoom, dragging and the arrow
/// keys move, a double click, Home and 0 show the whole drawing again.
class PlanView : public QWidget {
    Q_OBJECT
  public:
    explicit PlanView(const QString& name, QWidget* parent = nullptr);

    /// A part that is looked at stays in view, so that the picture can follow the typing.
    void setDrawing(plot::Drawing drawing);
    void setMessage(const QString& message);
    /// nullptr while a message is shown.
    const plot::Drawing* drawing() const { return m_drawing ? &*m_drawing : nullptr; }
    const QString& message() const { return m_message; }
    const plot::Zoom& zoom() const { return m_zoom; }

    /// What is shown, on white paper, `scale` times as many pixels as on the screen.
    QImage image(double scale) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  public Q_SLOTS:
    void fit();

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    plot::Box planArea() const;
    plot::View view() const;
    void zoomBy(double factor, QPointF fixedPoint);
    void moveBy(QPointF pixels);
    void setZoom(plot::Zoom zoom);
    void paint(QPainter& painter, const QPalette& palette) const;

    std::optional<plot::Drawing> m_drawing;
    QString m_message;
    plot::Zoom m_zoom;
    std::optional<QPointF> m_dragged; ///< last position of a drag
};

} // namespace telvo::plot::ui
