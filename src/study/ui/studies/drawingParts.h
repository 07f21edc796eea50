// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/alongAxis.h"
#include "study/ui/studies/StudyChart.h"

#include <string>
#include <vector>

/// What the pictures of several studies are made of.
namespace telvo::study::ui {

/// A line in pieces with gaps between them; its object name is `name`.
QCPCurve* addLine(QCustomPlot& chart, const QString& name, const std::vector<Stretch>& pieces,
                  const QPen& pen);
/// Both sides of jumps joined by dotted lines.
void addJumps(QCustomPlot& chart, const std::vector<Jump>& jumps, const QColor& color,
              const ChartInk& ink);
/// A stretch of the horizontal axis over the whole height, behind what is drawn.
QCPItemRect* addBand(QCustomPlot& chart, double from, double to, const QBrush& brush);
void addMark(QCustomPlot& chart, const QString& name, const GraphPoint& at,
             QCPScatterStyle::ScatterShape shape, const QColor& color, const ChartInk& ink);
/// An entry of the key that stands for no line.
void addKeyEntry(QCustomPlot& chart, const QString& text, const QPen& pen);

/// Sets the ranges of both axes about points, with a little room.
struct Extent {
    double x0 = HUGE_VAL, x1 = -HUGE_VAL, y0 = HUGE_VAL, y1 = -HUGE_VAL;
    void take(double x, double y);
    void take(const std::vector<Stretch>& pieces);
    void apply(QCustomPlot& chart) const;
};

/// "Retreat factor of the panel" with its unit in brackets, for an axis.
QString axisTitle(const std::string& label, std::string_view unit);

} // namespace telvo::study::ui
