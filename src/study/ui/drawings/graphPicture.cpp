// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ui/paintPlot.h"
#include "study/ui/drawings/GraphChart.h"

#include <QApplication>

namespace telvo::study::ui {

namespace {

constexpr int PaperFontPixels = 12;

} // namespace

std::string graphCaption(const SfGraph& graph, const std::string& caseName) {
    return std::string(rowOf(graph.kind).caption) + " - " + caseName;
}

chart::ui::Picture graphPicture(const SfGraph& graph, const GraphOptions& options,
                                const std::string& caseName, const std::string& csv) {
    chart::ui::Picture picture;
    picture.name = graphCaption(graph, caseName);
    picture.csv = csv;
    picture.caseName = caseName;
    picture.paint = [=](QPainter& painter, const QRectF& page) {
        GraphChart chart(graph, graphCaption(graph, caseName));
        QFont font = QApplication::font();
        font.setPixelSize(PaperFontPixels); // pictures count in pixels, whatever they end up on
        constexpr double pixelsPerPoint = chart::ui::ScreenResolution / 72.0;
        chart.compose(options, {chart::ui::paperPalette(), font, pixelsPerPoint});
        chart.fitTexts(page.size().toSize());
        chart::ui::paintPlot(chart, painter, page);
    };
    return picture;
}

} // namespace telvo::study::ui
