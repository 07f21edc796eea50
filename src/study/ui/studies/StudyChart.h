// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/ui/drawings/Drawing.h"

#include <optional>

namespace telvo::study::ui {

/// The picture of a study on the screen. The mouse and the arrow keys point at its places; double
/// click and Enter open their case.
class StudyChart : public QCustomPlot {
    Q_OBJECT
  public:
    StudyChart(const QString& name, QWidget* parent);

    void setDrawing(Drawing drawing);
    const Drawing& drawing() const { return m_drawing; }
    std::optional<std::size_t> current() const;
    /// Points at a place, as the arrow keys do.
    void point(std::size_t spot);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  Q_SIGNALS:
    void openSpot(std::size_t id);
    void menuAsked(std::optional<std::size_t> id, const QPoint& globalPos);
    void pointed(std::size_t id);

  protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    void draw();
    void mark();
    std::optional<std::size_t> spotNear(const QPointF& pixel) const;

    Drawing m_drawing;
    std::optional<std::size_t> m_current; ///< place in the spots
    QCPItemTracer* m_mark = nullptr;
};

} // namespace telvo::study::ui
