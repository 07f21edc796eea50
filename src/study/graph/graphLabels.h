// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/alongAxis.h"

#include <span>
#include <vector>

/// Where the labels of a graph stand. All in pixels, y downward.
namespace telvo::study {

using Pixel = GraphPoint;

struct PixelBox {
    double left = 0, top = 0, width = 0, height = 0;

    double right() const { return left + width; }
    double bottom() const { return top + height; }
    bool contains(const Pixel& point) const;
    bool contains(const PixelBox& other) const;
    /// Whether they share more than an edge.
    bool intersects(const PixelBox& other) const;
    /// To the nearest point of the box; 0 inside.
    double distanceTo(const Pixel& point) const;
};

/// A label at the right end of a line.
struct EndLabel {
    double y = 0; ///< of the line's end
    double height = 0;
};

/// Tops of labels in a column, each in the middle of its line's end or as near as the others leave
/// room.
/// Given: labels       uppermost end first
///        top, bottom  of the column; above the top they stand only where there is no room otherwise
///        gap          between two of them
std::vector<double> columnTops(std::span<const EndLabel> labels, double top, double bottom,
                               double gap);

/// Adds points along a line, no farther apart than `step`: what a label covers can be counted then.
void addInk(std::vector<Pixel>& ink, std::span<const Pixel> line, double step);

/// A point of a graph with a label of a size.
struct MarkLabel {
    Pixel mark;
    double width = 0, height = 0;
};

/// Boxes of one or two labels beside their marks, where they cover least of the ink and not each
/// other, inside the plot if they can. A label never stands nearer to the mark of the other curve
/// than to its own, or it would be read as the other's; marks in one place are both right.
/// Given: away  from a mark to its label
std::vector<PixelBox> labelBoxes(std::span<const MarkLabel> labels, std::span<const Pixel> ink,
                                 const PixelBox& plot, double away);

} // namespace telvo::study
