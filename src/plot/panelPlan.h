// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "plot/Drawing.h"
#include "project/ProjectInput.h"

#include <cstdint>
#include <variant>

namespace telvo::plot {

/// Options of the plan, as the settings hold them; flags are 0 or 1.
struct PlanOptions {
    std::int16_t PlotEntryDims = 1;      // entry centers, panel width, entry width
    std::int16_t PlotXcutDims = 1;       // crosscut spacing and angle
    std::int16_t PlotSingleXcutDims = 1; // 1: the spacing of one crosscut only
    std::int16_t PlotGobDims = 1;        // gobs, barriers, slab cuts, rows C and D
    std::int16_t PlotGobExtLoose = 1;    // 1: gobs cut short with a break line; 0: to scale
};

/// Most rows of standing pillars that a plan draws.
inline constexpr int MostPlanRows = 40;

/// Plan of the panel: entry 1 at x = 0, retreat line at y = 0, active gob above it, standing
/// pillars below it, the first side on the left.
/// Notes: 1) ribs run parallel to the entries, crosscut edges rise to the right by the crosscut
///           angle. Crosscuts start anew at every entry, so that rows stay level and the highest
///           corner of every pillar of the first row touches the retreat line.
///        2) rows reach down over the breadth of the active mining zone and two spacings more, at
///           least four; a zone deeper than MostPlanRows rows is cut short with a break line.
///        3) bleeder pillars are as the analysis takes them: rectangles of the spacing less the
///           entry width.
///        4) lengths out of all proportion to the panel are cut short with a break line in any
///           case; what is not above 0 is not drawn.
/// Returned: the drawing, or "Invalid Pillar Dimensions" where a pillar has no positive width or
///           length.
std::variant<Drawing, Refusal> panelPlan(const project::ProjectCase& current,
                                         const PlanOptions& options);

} // namespace telvo::plot
