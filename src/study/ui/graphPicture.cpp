// SPDX-License-Identifier: GPL-3.0-or-later
#include "plot/ui/paintDrawing.h"
#include "study/ui/GraphChart.h"

#include <QApplication>
#include <QPicture>

namespace telvo::study::ui {

namespace {

constexpr int PaperFontPixels = 12;

} // namespace

std::string graphCaption(const SfGraph& graph, const std::string& caseName) {
    return std::string(rowOf(graph.kind).caption) + " - " + caseName;
}

telvo::ui::Picture graphPicture(const SfGraph& graph, const GraphOptions& options,
                                const std::string& caseName, const std::string& csv) {
    telvo::ui::Picture picture;
    picture.name = graphCaption(graph, caseName);
    picture.csv = csv;
    picture.caseName = caseName;
    picture.paint = [=](QPainter& painter, const QRectF& page) {
        GraphChart chart(graph, graphCaption(graph, caseName));
        QFont font = QApplication::font();
        font.setPixelSize(PaperFontPixels); // pictures count in pixels, whatever they end up on
        constexpr double pixelsPerPoint = telvo::ui::ScreenResolution / 72.0;
        chart.compose(options, {telvo::ui::paperPalette(), font, pixelsPerPoint});
        const QSize size = page.size().toSize();
        chart.fitTexts(size);
        // The chart paints with a painter of its own, so it is recorded and played back.
        QPicture record;
        QCPPainter recorder(&record);
        chart.toPainter(&recorder, size.width(), size.height());
        recorder.end();
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(page.topLeft());
        // Playing back enlarges by the ratio of the resolutions; the caller's pixels are meant.
        painter.scale(static_cast<double>(record.logicalDpiX()) / painter.device()->logicalDpiX(),
                      static_cast<double>(record.logicalDpiY()) / painter.device()->logicalDpiY());
        painter.drawPicture(0, 0, record);
        painter.restore();
    };
    return picture;
}

} // namespace telvo::study::ui
