// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/drawings/Drawing.h"

#include "base/numbers.h"
#include "base/titles.h"
#include "base/ui/qtText.h"
#include "chart/ui/chartParts.h"
#include "chart/ui/paintPlot.h"
#include "run/Run.h"

#include <algorithm>
#include <array>
#include <QApplication>

namespace telvo::study::ui {

using chart::ui::frameChart;
using chart::ui::inkAxes;
using chart::ui::PlainTicker;
using chart::ui::titleFont;
using telvo::ui::toQt;

namespace {

constexpr int PaperPixels = 12; // of the font

void clearChart(QCustomPlot& chart) {
    chart.clearPlottables();
    chart.clearItems();
    for (auto* scale : chart.findChildren<QCPColorScale*>())
        chart.plotLayout()->remove(scale);
    chart.plotLayout()->simplify();
    chart.legend->setVisible(false);
    chart.axisRect()->setMarginGroup(QCP::msTop | QCP::msBottom, nullptr);
    for (QCPAxis* axis : {chart.xAxis, chart.yAxis}) {
        axis->setTicker(QSharedPointer<PlainTicker>::create());
        axis->setLabel({});
        axis->grid()->setVisible(false);
        axis->setSubTicks(true);
        axis->setTickLength(5);
    }
}

} // namespace

void setUpChart(QCustomPlot& chart) {
    chart.setLocale(QLocale::c());
    chart.setAutoAddPlottableToLegend(false);
    chart.axisRect()->setAutoMargins(QCP::msAll);
    chart.plotLayout()->insertRow(1); // the key has a row of its own, where it hides nothing
    chart.plotLayout()->addElement(1, 0, chart.legend);
    chart.plotLayout()->setRowStretchFactor(1, 0.001);
    chart.plotLayout()->setRowSpacing(0);
    chart.legend->setFillOrder(QCPLegend::foColumnsFirst);
    chart.legend->setWrap(4);
    frameChart(chart);
}

void wrapKey(QCustomPlot& chart, int width) {
    int widest = 1;
    std::vector<QCPLayoutElement*> items;
    for (int i = 0; i < chart.legend->itemCount(); ++i)
        if (QCPAbstractLegendItem* item =
                chart.legend->item(i)) { // a last row may have free places
            widest = std::max(widest, item->minimumOuterSizeHint().width());
            items.push_back(item);
        }
    const int room = width - chart.legend->margins().left() - chart.legend->margins().right() - 12;
    chart.legend->setWrap(std::max(1, room / (widest + chart.legend->columnSpacing())));
    for (QCPLayoutElement* item : items) // once more, in rows of that length
        chart.legend->take(item);
    chart.legend->simplify();
    for (QCPLayoutElement* item : items)
        chart.legend->addElement(item);
}

void composeDrawing(QCustomPlot& chart, const Drawing& drawing, const ChartInk& ink) {
    clearChart(chart);
    chart.setBackground(QBrush(ink.palette.color(QPalette::Base)));
    inkAxes(chart, ink.palette, ink.font);
    chart.legend->setFont(ink.font);
    chart.legend->setTextColor(ink.palette.color(QPalette::Text));
    chart.legend->setBorderPen(Qt::NoPen);
    chart.legend->setBrush(Qt::NoBrush);
    if (drawing.compose) drawing.compose(chart, ink);
    wrapKey(chart, chart.viewport().width());
}

chart::ui::Picture pictureOf(const Drawing& drawing, const std::string& name,
                             const std::string& source) {
    chart::ui::Picture picture;
    picture.name = name;
    if (const double needed = drawing.linesOfText * PaperPixels * 1.5; needed > 560)
        picture.size.setHeight(needed + 140);
    picture.paint = [drawing, source](QPainter& painter, const QRectF& page) {
        QCustomPlot chart;
        QFont font = QApplication::font();
        font.setPixelSize(PaperPixels);
        setUpChart(chart);
        chart.setViewport({QPoint(), page.size().toSize()});
        composeDrawing(chart, drawing,
                       {chart::ui::paperPalette(), font, chart::ui::ScreenResolution / 72.0});
        double room = page.width() - 4 * PaperPixels;
        if (chart.plotLayout()->columnCount() > 1) // the texts stand above the map, not its scale
            room -=
                chart.plotLayout()->element(0, 1)->minimumOuterSizeHint().width() + 6 * PaperPixels;
        for (const auto& [text, own] :
             {std::pair{source, font}, std::pair{drawing.headline, titleFont(font)}}) {
            auto* line = new QCPTextElement(
                &chart, chart::ui::brokenAt(toQt(text), QFontMetricsF(own), room), own);
            line->setTextColor(Qt::black);
            chart.plotLayout()->insertRow(0);
            chart.plotLayout()->addElement(0, 0, line);
        }
        chart::ui::paintPlot(chart, painter, page);
    };
    return picture;
}

std::string sourceLine(const std::string& caseName, const Tally& tally, bool stopped,
                       const std::string& duration) {
    std::string text = caseName + ", " + std::string(titles::Program) + " " +
                       std::string(run::ModuleBuild) + ", " + groupedCount(tally.runs) +
                       (tally.runs == 1 ? " run" : " runs");
    if (!duration.empty()) text += ", " + duration;
    if (stopped) text += ", stopped before its end";
    return text;
}

std::string pictureSource(const std::string& caseName, const Tally& tally, bool stopped) {
    const std::size_t left = tally.notComputed();
    return sourceLine(caseName, tally, stopped, {}) + ", " +
           (left == 0 ? "all" : groupedCount(left) + " not") + " computed";
}

QColor studyColor(std::size_t number, const QPalette& palette) {
    // Okabe and Ito's colors, the pale ones darker on white.
    static constexpr std::array<std::array<QRgb, 2>, 7> colors = {{{0xff0072b2, 0xff56b4e9},
                                                                   {0xffc85000, 0xffe69f00},
                                                                   {0xff00795a, 0xff2fc79b},
                                                                   {0xffb0478d, 0xffdf8fc0},
                                                                   {0xff7a6a00, 0xfff0e442},
                                                                   {0xff2f8fc4, 0xff9bd3f2},
                                                                   {0xff555555, 0xffbbbbbb}}};
    const bool dark = palette.color(QPalette::Base).lightness() < 128;
    return QColor(colors[number % colors.size()][dark ? 1 : 0]);
}

QColor holdsColor(const QPalette& palette) {
    const bool dark = palette.color(QPalette::Base).lightness() < 128;
    return dark ? QColor(0x1d, 0x5c, 0x3f) : QColor(0xc4, 0xe8, 0xcf);
}

} // namespace telvo::study::ui
