// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/ui/drawings/GraphChart.h"

namespace telvo::study::ui {

/// A graph on the screen, in the colours of the palette, with a cross-hair that the mouse and the
/// arrow keys move.
class GraphView : public GraphChart {
    Q_OBJECT
  public:
    GraphView(const QString& name, SfGraph graph, std::string caption, const GraphOptions& options,
              QWidget* parent = nullptr);

    void setOptions(const GraphOptions& options);
    /// Shows another graph of the same kind; the cross-hair goes to its case.
    void setGraph(SfGraph graph, const std::string& caption);

    /// Where the cross-hair stands, in the units of the case.
    double reading() const { return m_reading; }
    void setReading(double x);
    /// What the cross-hair reads, and below it the rules of the jumps close by.
    QString readingLines() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  Q_SIGNALS:
    void readingChanged();

  protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    void draw();
    void moveCrossHair();
    double closeBy() const;

    double m_reading = 0;
    QCPItemStraightLine* m_line = nullptr;
    std::vector<QCPItemTracer*> m_marks; ///< one per curve
};

} // namespace telvo::study::ui
