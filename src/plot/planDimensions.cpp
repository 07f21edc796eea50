// SPDX-License-Identifier: GPL-3.0-or-later
#include "plot/planDimensions.h"

#include "base/calc.h"
#include "base/numbers.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace telvo::plot {

namespace {

// Distances of the dimension lines from the shapes; ems.
constexpr double FirstLineBelow = -1.3; // runs through the circles of the entry numbers
constexpr double SecondLineBelow = -2.9;
constexpr double LineAbove = 1.1;
constexpr double LineBeside = 1.3;

Figure figure(const Shown& length) {
    return {lengthText(length.figure), !length.cut};
}

void entryDimensions(const PlanGeometry& plan, Drawing& drawing) {
    const engine::WorkingInputs& in = plan.in;
    DimensionChain centers{
        .line = plan.panel.bottom, .offset = FirstLineBelow, .extensions = false, .complete = true};
    bool equal = in.NumberPillars > 1;
    centers.stops.push_back(plan.entry[1]);
    for (int i = 1; i <= in.NumberPillars; ++i) {
        centers.stops.push_back(plan.entry[i + 1]);
        centers.figures.push_back({lengthText(in.EntryCenter[i])});
        equal = equal && in.EntryCenter[i] == in.EntryCenter[1];
    }
    drawing.chains.push_back(std::move(centers));

    if (in.NumberPillars > 1) {
        std::string width = lengthText(in.PanelWidth);
        std::string sum; // of unequal distances
        for (int i = 1; i <= in.NumberPillars; ++i)
            sum += (sum.empty() ? "" : " + ") + lengthText(in.EntryCenter[i]);
        sum += " = " + width;
        if (equal) {
            width = generalNumber(in.NumberPillars) + " \u00D7 " + lengthText(in.EntryCenter[1]) +
                    " = " + width;
            sum.clear();
        }
        drawing.chains.push_back({.stops = {0, in.PanelWidth},
                                  .figures = {{width, true, sum}},
                                  .line = plan.panel.bottom,
                                  .offset = SecondLineBelow,
                                  .outside = true});
        drawing.margins.bottom = 3.8;
    }
    const double x = plan.entry[(plan.entries() + 1) / 2];
    if (in.We > 0)
        drawing.chains.push_back({.stops = {x - in.We / 2, x + in.We / 2},
                                  .figures = {{lengthText(in.We)}},
                                  .line = -2.5 * in.Sc,
                                  .extensions = false,
                                  .outside = true});
}

void crosscutAngle(const PlanGeometry& plan, Drawing& drawing) {
    // Between rib and crosscut, in the lower left corner of a pillar of the second row.
    const Point corner = plan.pillar(1, -plan.in.Sc).front();
    const double roomWidth = plan.in.PillarGrossWidth[1];
    const double radius = 0.45 * std::min(roomWidth, plan.ribLength);
    const double upright = std::acos(0.0);
    const double crosscut = radians(plan.in.Source.XcutAngle);
    const auto onArc = [&](double angle) {
        return Point{corner.x + radius * std::cos(angle), corner.y + radius * std::sin(angle)};
    };
    constexpr int steps = 24;
    Polyline arc{Role::Angle, {}};
    for (int step = 0; step <= steps; ++step)
        arc.points.push_back(onArc(upright - crosscut * step / steps));
    drawing.polylines.push_back(std::move(arc));

    const double middle = upright - crosscut / 2;
    drawing.texts.push_back({.role = Role::Angle,
                             .wordings = {lengthText(plan.in.Source.XcutAngle) + "\u00B0"},
                             .at = onArc(middle),
                             .offset = {0.9 * std::cos(middle), 0.7 * std::sin(middle)},
                             .roomWidth = roomWidth,
                             .roomHeight = plan.ribLength});
}

void crosscutDimensions(const PlanGeometry& plan, bool single, Drawing& drawing) {
    DimensionChain spacing{.vertical = true, .line = plan.panel.right, .offset = LineBeside};
    for (int row = single ? 2 : plan.rows; row >= (single ? 1 : 0); --row)
        spacing.stops.push_back(-row * plan.in.Sc);
    spacing.figures.assign(spacing.stops.size() - 1, {lengthText(plan.in.Sc)});
    drawing.chains.push_back(std::move(spacing));
    drawing.margins.right = 2;
    if (plan.cotangent != 0) crosscutAngle(plan, drawing);
}

/// Beside the active gob, outwards; the width of the barrier there is that of its remnant.
void sideDimensions(const PlanGeometry& plan, const PlanSide& side, Drawing& drawing) {
    std::vector<std::pair<double, Figure>> spaces;
    const Shown& barrier = side.barrier;
    const Shown& slab = side.slab;
    if (slab) spaces.push_back({slab.length, figure(slab)});
    if (barrier.length > slab.length)
        spaces.push_back({barrier.length - slab.length,
                          {lengthText(barrier.figure - slab.figure), !barrier.cut}});
    if (side.rowWidth) {
        if (plan.in.We > 0) spaces.push_back({plan.in.We, {lengthText(plan.in.We)}});
        spaces.push_back({side.rowWidth.length, figure(side.rowWidth)});
    }
    if (side.gob) spaces.push_back({side.gob.length, figure(side.gob)});
    if (spaces.empty()) return;

    DimensionChain chain{.stops = {side.x(0)}, .line = plan.panel.top, .offset = LineAbove};
    double distance = 0;
    for (auto& [length, figure] : spaces) {
        distance += length;
        chain.stops.push_back(side.x(distance));
        chain.figures.push_back(std::move(figure));
    }
    if (side.sign < 0) {
        std::reverse(chain.stops.begin(), chain.stops.end());
        std::reverse(chain.figures.begin(), chain.figures.end());
    }
    drawing.chains.push_back(std::move(chain));
    drawing.margins.top = 2.8;
    if (slab) {
        const Rect whole = side.rect(0, barrier.length, plan.panel.bottom, 0);
        // Below the circles of the entry numbers.
        drawing.chains.push_back({.stops = {whole.left, whole.right},
                                  .figures = {figure(barrier)},
                                  .line = plan.panel.bottom,
                                  .offset = SecondLineBelow});
        drawing.margins.bottom = std::max(drawing.margins.bottom, 4.6);
    }
}

} // namespace

std::string lengthText(double length) {
    return generalNumber(length, 7);
}

void addDimensions(const PlanGeometry& plan, const PlanOptions& options, Drawing& drawing) {
    drawing.margins.bottom = 2.3; // the entry numbers
    if (options.PlotEntryDims == 1) entryDimensions(plan, drawing);
    if (options.PlotXcutDims == 1)
        crosscutDimensions(plan, options.PlotSingleXcutDims == 1, drawing);
    if (options.PlotGobDims != 1) return;
    for (const PlanSide* side : {&plan.first, &plan.second})
        if (side->inUse) sideDimensions(plan, *side, drawing);
    if (plan.activeGob) {
        const int entry = plan.dimensionedEntry();
        drawing.chains.push_back({.vertical = true,
                                  .stops = {0, plan.activeGob.length},
                                  .figures = {figure(plan.activeGob)},
                                  .line = plan.entry[entry],
                                  .extensions = false});
    }
}

} // namespace telvo::plot
