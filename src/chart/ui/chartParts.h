// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/ui/customPlot.h"

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QPalette>
#include <QString>

/// What all charts of the program have in common.
namespace telvo::chart::ui {

/// Numbers of the axes without a locale.
class PlainTicker : public QCPAxisTicker {
  public:
    bool scientific = false; ///< written as the report writes forces: "1.50E+06"

  protected:
    QString getTickLabel(double tick, const QLocale& locale, QChar format, int precision) override;
};

QColor mixed(const QColor& a, const QColor& b, double shareOfB);

/// Words onto lines no wider than `width`, as far as words allow.
QString brokenAt(const QString& text, const QFontMetricsF& metrics, double width);

/// Larger and bold.
QFont titleFont(QFont font);

/// The texts above a chart.
struct ChartHeading {
    QCPTextElement* title;
    QCPTextElement* subtitle;
};

/// Puts title, subtitle and, in the middle of a row of its own, the key above the chart, where
/// nothing drawn is in the way of them. The chart itself is in row 3 of the layout then.
ChartHeading addHeading(QCustomPlot& chart);

/// A box around the chart: the upper and the right axis have neither ticks nor numbers.
void frameChart(QCustomPlot& chart);

/// Colours and fonts of the four axes.
void inkAxes(QCustomPlot& chart, const QPalette& palette, const QFont& font);

} // namespace telvo::chart::ui
