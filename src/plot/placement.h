// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "plot/Drawing.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Where the labels of a drawing go on a page of a certain size. Page positions are those of the
/// paint device: px or points, y downwards.
namespace telvo::plot {

struct Box {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;

    double width() const { return right - left; }
    double height() const { return bottom - top; }
    Point centre() const { return {(left + right) / 2, (top + bottom) / 2}; }
    bool overlaps(const Box& other) const;
    bool contains(const Box& other) const;
};

/// How a drawing lies on the page: equal scale in x and y.
struct View {
    double scale = 1; ///< page lengths per drawing unit
    Point origin;     ///< of the drawing, on the page

    Point toPage(Point p) const { return {origin.x + scale * p.x, origin.y - scale * p.y}; }
    Point toDrawing(Point p) const { return {(p.x - origin.x) / scale, (origin.y - p.y) / scale}; }
    Box toPage(const Rect& r) const;
};

/// What is looked at: the whole drawing at factor 1, else a part that many times larger.
struct Zoom {
    double factor = 1;
    Point centre; ///< in drawing units; has no meaning at factor 1
    bool operator==(const Zoom&) const = default;
};

/// The view that shows a drawing with its margins in an area. `em` is the height of a line of text.
View viewOf(const Drawing& drawing, const Box& area, double em, const Zoom& zoom = {});

/// How large the page's texts come out.
struct TextMeasure {
    double em = 12; ///< height of a line
    std::function<double(std::string_view text, Role role)> width;
};

struct PlacedText {
    Role role = Role::Name;
    std::string wording;
    Box box;
    bool upright = false;                       ///< turned, read from the right
    bool underlined = false;                    ///< a figure that is not to scale
    std::optional<Point> target = std::nullopt; ///< where a leader goes to
};

/// The part of a dimension line between two stops.
struct PlacedDimension {
    Point from;
    Point to;
    enum class Ends { Ticks, Arrows, ArrowsFromOutside } ends = Ends::Arrows;
};

struct Placement {
    std::vector<PlacedText> texts;
    std::vector<PlacedDimension> dimensions;
    std::vector<std::pair<Point, Point>> extensions;
};

/// Places labels and dimension lines within an area. No two texts overlap; one without room is
/// shortened, else it is left out.
Placement placeLabels(const Drawing& drawing, const View& view, const Box& area,
                      const TextMeasure& measure);

/// The lines that hatch a polygon on the page within an area, at 45 degrees and `step` apart.
/// Polygons of one view share their lines: `origin` is that of the view, so that a pattern moves
/// with the drawing.
std::vector<std::pair<Point, Point>> hatchLines(const std::vector<Point>& polygon, Hatch hatch,
                                                double step, Point origin, const Box& area);

/// A round length (1, 2 or 5 with zeros) for a scale bar.
struct ScaleBar {
    double length = 0; ///< drawing units
    double size = 0;   ///< on the page
};
ScaleBar scaleBar(double scale, double widest);

} // namespace telvo::plot
