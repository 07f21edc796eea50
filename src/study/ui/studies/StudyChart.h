// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/ui/customPlot.h"
#include "chart/ui/picture.h"
#include "study/ui/GraphChart.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace telvo::study::ui {

/// A place of a picture that stands for a case.
struct Spot {
    double x = 0, y = 0;
    std::size_t id = 0; ///< as the page numbers them
};

/// A picture of a study: how it is drawn, and its places.
struct Drawing {
    /// Draws on a chart that holds nothing but its axes.
    std::function<void(QCustomPlot& chart, const ChartInk& ink)> compose;
    std::vector<Spot> spots; ///< in the order of the keyboard
    std::function<QString(std::size_t id)> tip;
    QString summary;     ///< for those who cannot see it
    int linesOfText = 0; ///< height that it needs at least, in lines
};

/// Colors that everybody can tell apart, on light and dark ground; the first is for "low", the
/// second for "high".
QColor studyColor(std::size_t number, const QPalette& palette);
/// Green where something holds.
QColor holdsColor(const QPalette& palette);

/// The picture of a study on the screen. The mouse and the arrow keys point at its places; double
/// click and Enter open their case.
class StudyChart : public QCustomPlot {
    Q_OBJECT
  public:
    StudyChart(const QString& name, QWidget* parent);

    void setDrawing(Drawing drawing);
    const Drawing& drawing() const { return m_drawing; }
    /// The same as ink on paper, with texts above it.
    chart::ui::Picture picture(const std::string& name, const QString& title,
                               const QString& subtitle) const;
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
