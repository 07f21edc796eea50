// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/alongAxis.h"
#include "study/Outcome.h"
#include "study/ui/drawings/Drawing.h"
#include "study/Variable.h"

#include <cmath>
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

/// The same as a box of one color.
void addKeyBox(QCustomPlot& chart, const QString& text, const QColor& color);

/// Sets the ranges of both axes about points, with a little room.
struct Extent {
    double x0 = HUGE_VAL, x1 = -HUGE_VAL, y0 = HUGE_VAL, y1 = -HUGE_VAL;
    void take(double x, double y);
    void take(const std::vector<Stretch>& pieces);
    void apply(QCustomPlot& chart) const;
};

/// An input or a result with its unit in brackets, for an axis.
QString inputTitle(const Variable& variable, std::int16_t units);
QString outcomeTitle(const Outcome& outcome, std::int16_t units);
/// The same for results of one kind, one or more.
QString outcomesTitle(const std::vector<Outcome>& outcomes, std::int16_t units);

/// A headline with a period at its end.
std::string asSentence(std::string text);

} // namespace telvo::study::ui
