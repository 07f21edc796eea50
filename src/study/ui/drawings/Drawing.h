// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/ui/customPlot.h"
#include "chart/ui/picture.h"
#include "study/tally.h"

#include <cstddef>
#include <functional>
#include <QPalette>
#include <string>
#include <vector>

namespace telvo::study::ui {

/// What texts and lines of a chart are made with.
struct ChartInk {
    QPalette palette;
    QFont font;
    double pointsToPixels = 1; ///< pixels of a point, for symbols
};

/// A place of a picture that stands for a case.
struct Spot {
    double x = 0, y = 0;
    std::size_t id = 0; ///< as the drawing numbers them
};

/// A picture of a study: how it is drawn, and its places.
struct Drawing {
    std::string headline; ///< the answer in a sentence
    /// Draws on a chart that holds nothing but its axes; empty where there is nothing to draw.
    std::function<void(QCustomPlot& chart, const ChartInk& ink)> compose;
    std::vector<Spot> spots; ///< in the order of the keyboard
    std::function<QString(std::size_t id)> tip;
    int linesOfText = 0; ///< height that it needs at least, in lines
};

/// Makes an empty chart ready for composeDrawing().
void setUpChart(QCustomPlot& chart);
/// Draws anew on a chart.
void composeDrawing(QCustomPlot& chart, const Drawing& drawing, const ChartInk& ink);
/// As many entries of the key in a line as there is room for.
void wrapKey(QCustomPlot& chart, int width);

/// A drawing as ink on paper, with its headline above it.
/// Given: source  what it was made from, see pictureSource()
chart::ui::Picture pictureOf(const Drawing& drawing, const std::string& name,
                             const std::string& source);

/// "panel.TLV, TELVO 4.1, 402 runs, 3 ms".
/// Given: stopped   it broke off
///        duration  may be empty
std::string sourceLine(const std::string& caseName, const Tally& tally, bool stopped,
                       const std::string& duration);
/// The same for a picture, which does not depend on the time that it took: "panel.TLV, TELVO 4.1,
/// 402 runs, 2 not computed".
std::string pictureSource(const std::string& caseName, const Tally& tally, bool stopped);

/// Colors that everybody can tell apart, on light and dark ground; the first is for "low", the
/// second for "high".
QColor studyColor(std::size_t number, const QPalette& palette);
/// Green where something holds.
QColor holdsColor(const QPalette& palette);

} // namespace telvo::study::ui
