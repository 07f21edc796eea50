// SPDX-License-Identifier: GPL-3.0-or-later
#include "plot/Drawing.h"

#include <algorithm>

namespace telvo::plot {

namespace {

bool contains(const std::vector<Point>& polygon, Point p) {
    bool inside = false;
    for (std::size_t i = 0, j = polygon.size() - 1; i < polygon.size(); j = i++) {
        const Point a = polygon[i];
        const Point b = polygon[j];
        if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x)
            inside = !inside;
    }
    return inside;
}

/// The part of a polygon on one side of a height: above it for `sign` 1, below it for -1.
std::vector<Point> clipped(const std::vector<Point>& polygon, double height, int sign) {
    std::vector<Point> kept;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const Point a = polygon[i];
        const Point b = polygon[(i + 1) % polygon.size()];
        const bool aIn = sign * (a.y - height) >= 0;
        const bool bIn = sign * (b.y - height) >= 0;
        if (aIn) kept.push_back(a);
        if (aIn != bIn) kept.push_back({a.x + (b.x - a.x) * (height - a.y) / (b.y - a.y), height});
    }
    return kept;
}

} // namespace

Rect common(const Rect& a, const Rect& b) {
    return {std::max(a.left, b.left), std::max(a.bottom, b.bottom), std::min(a.right, b.right),
            std::min(a.top, b.top)};
}

std::string hintAt(const Drawing& drawing, Point at) {
    for (auto polygon = drawing.polygons.rbegin(); polygon != drawing.polygons.rend(); ++polygon)
        if (!polygon->hint.empty() && contains(polygon->points, at)) return polygon->hint;
    return {};
}

std::vector<Point> clippedToHeights(const std::vector<Point>& polygon, double bottom, double top) {
    auto kept = clipped(clipped(polygon, bottom, 1), top, -1);
    if (kept.size() < 3) kept.clear();
    return kept;
}

} // namespace telvo::plot
