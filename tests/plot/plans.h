// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "plot/panelPlan.h"
#include "project/CaseFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

/// Plans of the example cases, and what a drawing has of one role.
namespace telvo::plot {

inline project::ProjectCase example(const std::string& name) {
    project::ProjectCase read;
    project::readCaseFile(std::string(TELVO_EXAMPLES_DIR) + "/" + name + ".TLV", read);
    EXPECT_GT(read.Input.XcutSpacing, 0) << name;
    return read;
}

inline Drawing planOf(const project::ProjectCase& current, const PlanOptions& options) {
    auto plan = panelPlan(current, options);
    EXPECT_TRUE(std::holds_alternative<Drawing>(plan));
    return std::get<Drawing>(std::move(plan));
}

inline std::vector<std::vector<Point>> shapes(const Drawing& drawing, Role role) {
    std::vector<std::vector<Point>> found;
    for (const Polygon& polygon : drawing.polygons)
        if (polygon.role == role) found.push_back(polygon.points);
    return found;
}

/// Left, bottom, right and top of a shape.
inline Rect around(const std::vector<Point>& points) {
    const auto [left, right] = std::minmax_element(points.begin(), points.end(),
                                                   [](Point a, Point b) { return a.x < b.x; });
    const auto [bottom, top] = std::minmax_element(points.begin(), points.end(),
                                                   [](Point a, Point b) { return a.y < b.y; });
    return {left->x, bottom->y, right->x, top->y};
}

inline std::vector<std::string> figures(const Drawing& drawing) {
    std::vector<std::string> all;
    for (const DimensionChain& chain : drawing.chains)
        for (const Figure& figure : chain.figures)
            all.push_back(figure.text + (figure.toScale ? "" : "_"));
    return all;
}

inline PlanOptions toScale() {
    PlanOptions options;
    options.PlotGobExtLoose = 0;
    return options;
}

} // namespace telvo::plot
