// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/WorkingInputs.h"
#include "plot/Drawing.h"
#include "project/ProjectInput.h"

#include <optional>

/// Where everything of a panel plan lies; see panelPlan() for the rules.
namespace telvo::plot {

/// A length and how much of it is drawn; ft | m.
struct Shown {
    double length = 0; ///< drawn; 0 is nothing
    double figure = 0; ///< the true one
    bool cut = false;

    explicit operator bool() const { return length > 0; }
};

/// One side of the panel. Distances run outwards from the outer rib of its outermost entry.
struct PlanSide {
    int k = engine::FirstSide;
    double sign = -1; ///< of outwards
    double rib = 0;   ///< x
    bool inUse = false;
    Shown barrier;
    Shown slab;
    Shown rowWidth; ///< row C or D
    Shown gob;
    double gobStart = 0; ///< distance; of solid coal where there is no gob
    double end = 0;      ///< distance

    double x(double distance) const { return rib + sign * distance; }
    Rect rect(double from, double to, double bottom, double top) const;
};

struct PlanGeometry {
    engine::WorkingInputs in;
    double ribLength = 0;                               ///< of a pillar, along its ribs; ft | m
    double cotangent = 0;                               ///< of the crosscut angle
    IndexedArray<double, 1, project::MaxEntries> entry; ///< x of the centers
    int rows = 0;                                       ///< whole standing rows
    bool cutBelow = false;                              ///< the AMZ reaches deeper than is drawn
    Rect panel; ///< from outer rib to outer rib, the drawn active gob included
    Shown activeGob;
    PlanSide first;
    PlanSide second;

    int entries() const { return in.NumberPillars + 1; }
    /// The entry in which the extent of the active gob is dimensioned: neither row A nor row B
    /// stands in it.
    int dimensionedEntry() const { return entries() > 2 ? entries() - 1 : entries(); }
    /// How much higher the right end of a pillar's crosscut edge lies than its left end.
    double rise(int pillar) const { return in.PillarGrossWidth[pillar] * cotangent; }
    /// Corners of a pillar whose highest corner lies at a height: lower left, lower right, upper
    /// right, upper left.
    std::vector<Point> pillar(int i, double highest) const;
};

/// Lays out the plan of a panel; with `loose` gobs are cut short. Nothing where a pillar has no
/// positive width or length.
std::optional<PlanGeometry> planGeometry(const engine::WorkingInputs& panel, bool loose);

} // namespace telvo::plot
