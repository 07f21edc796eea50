// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRectF>

class QCustomPlot;
class QPainter;

namespace telvo::chart::ui {

/// Paints a chart into a page in the painter's own units, whatever the resolution of its device.
void paintPlot(QCustomPlot& plot, QPainter& painter, const QRectF& page);

} // namespace telvo::chart::ui
