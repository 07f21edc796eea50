// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "plot/Drawing.h"
#include "plot/placement.h"

#include <QPalette>
#include <QRectF>
#include <QStringList>

class QColor;
class QPaintDevice;
class QPainter;

namespace telvo::plot::ui {

/// Where the parts of a drawing lie within its page: the caption above, the scale bar below.
struct PageLayout {
    plot::Box plan;
    double em = 0; ///< height of a line of text
    double captionTop = 0;
    double keyBottom = 0;
    QStringList notes; ///< their lines, the first one with its top at notesTop
    double notesTop = 0;
    double barBottom = 0;
};
/// Colour of a step of the scale of a drawing, 0 to plot::ColourSteps - 1; the steps differ in
/// lightness for every colour vision and in grey print.
QColor scaleColour(int step);

/// The layout for the painter's font and resolution.
PageLayout pageLayout(const plot::Drawing& drawing, const QFont& font, const QPaintDevice* device,
                      const QRectF& page);

/// Paints a drawing into a page, fitted to scale or zoomed, with caption and scale bar. Texts keep
/// the point size of the painter's font; colours follow the palette.
void paintDrawing(const plot::Drawing& drawing, QPainter& painter, const QRectF& page,
                  const QPalette& palette, const plot::Zoom& zoom = {});

} // namespace telvo::plot::ui
