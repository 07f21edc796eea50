// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ui/paintPlot.h"

#include "chart/ui/customPlot.h"

#include <QPicture>

namespace telvo::chart::ui {

void paintPlot(QCustomPlot& plot, QPainter& painter, const QRectF& page) {
    const QSize size = page.size().toSize();
    // The chart paints with a painter of its own, so it is recorded and played back.
    QPicture record;
    QCPPainter recorder(&record);
    plot.toPainter(&recorder, size.width(), size.height());
    recorder.end();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(page.topLeft());
    // A record is played at the resolution it was made at; the painter is scaled already.
    const QPaintDevice& device = *painter.device();
    painter.scale(static_cast<double>(record.logicalDpiX()) / device.logicalDpiX(),
                  static_cast<double>(record.logicalDpiY()) / device.logicalDpiY());
    painter.drawPicture(QPointF(), record);
    painter.restore();
}

} // namespace telvo::chart::ui
