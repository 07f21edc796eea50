// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ui/chartParts.h"

#include "base/numbers.h"
#include "base/ui/qtText.h"

#include <cmath>
#include <QStringList>

namespace telvo::chart::ui {

using telvo::ui::toQt;

QString PlainTicker::getTickLabel(double tick, const QLocale&, QChar, int) {
    constexpr int digits = 10; // hides what a sum of steps leaves behind
    if (std::abs(tick) < 1e-12) return QStringLiteral("0");
    return toQt(scientific ? formatPattern(tick, "0.00E+00") : generalNumber(tick, digits));
}

QColor mixed(const QColor& a, const QColor& b, double shareOfB) {
    const auto channel = [&](int from, int to) {
        return static_cast<int>(std::lround(from + (to - from) * shareOfB));
    };
    return {channel(a.red(), b.red()), channel(a.green(), b.green()), channel(a.blue(), b.blue())};
}

QString brokenAt(const QString& text, const QFontMetricsF& metrics, double width) {
    QStringList lines;
    for (const QString& word : text.split(' ')) {
        const bool fits =
            !lines.isEmpty() && metrics.horizontalAdvance(lines.back() + ' ' + word) <= width;
        if (fits)
            lines.back() += ' ' + word;
        else
            lines.append(word);
    }
    return lines.join('\n');
}

QFont titleFont(QFont font) {
    constexpr double larger = 1.2;
    if (font.pixelSize() > 0)
        font.setPixelSize(static_cast<int>(std::lround(larger * font.pixelSize())));
    else
        font.setPointSizeF(larger * font.pointSizeF());
    font.setBold(true);
    return font;
}

ChartHeading addHeading(QCustomPlot& chart) {
    const ChartHeading heading{new QCPTextElement(&chart), new QCPTextElement(&chart)};
    auto* keyRow = new QCPLayoutGrid;
    keyRow->addElement(0, 0, new QCPLayoutElement(&chart));
    keyRow->addElement(0, 1, chart.legend);
    keyRow->addElement(0, 2, new QCPLayoutElement(&chart));
    keyRow->setColumnStretchFactor(1, 0.001);
    QCPLayoutGrid& rows = *chart.plotLayout();
    for (int row = 0; row < 3; ++row)
        rows.insertRow(0);
    rows.addElement(0, 0, heading.title);
    rows.addElement(1, 0, heading.subtitle);
    rows.addElement(2, 0, keyRow);
    rows.setRowStretchFactor(2, 0.001);
    rows.setRowSpacing(2);
    chart.legend->setBorderPen(Qt::NoPen);
    chart.legend->setBrush(Qt::NoBrush);
    return heading;
}

void frameChart(QCustomPlot& chart) {
    for (QCPAxis* axis : {chart.xAxis2, chart.yAxis2}) {
        axis->setVisible(true);
        axis->setTicks(false);
        axis->setTickLabels(false);
    }
}

void inkAxes(QCustomPlot& chart, const QPalette& palette, const QFont& font) {
    const QColor text = palette.color(QPalette::Text);
    const QColor base = palette.color(QPalette::Base);
    const QPen frame(mixed(base, text, 0.7));
    for (QCPAxis* axis : {chart.xAxis, chart.yAxis, chart.xAxis2, chart.yAxis2}) {
        axis->setBasePen(frame);
        axis->setTickPen(frame);
        axis->setSubTickPen(frame);
        axis->setTickLabelColor(text);
        axis->setLabelColor(text);
        axis->setTickLabelFont(font);
        axis->setLabelFont(font);
        axis->grid()->setPen(QPen(mixed(base, text, 0.18), 1));
        axis->grid()->setZeroLinePen(Qt::NoPen);
    }
}

} // namespace telvo::chart::ui
