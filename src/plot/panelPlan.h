// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/IndexedArray.h"
#include "base/Result.h"
#include "engine/AnalysisResults.h"
#include "plot/Drawing.h"
#include "project/ProjectInput.h"
#include "run/Run.h"

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace telvo::plot {

/// Options of the plan, as the settings hold them; flags are 0 or 1.
struct PlanOptions {
    std::int16_t PlotEntryDims = 1;      // entry centers, panel width, entry width
    std::int16_t PlotXcutDims = 1;       // crosscut spacing and angle
    std::int16_t PlotSingleXcutDims = 1; // 1: the spacing of one crosscut only
    std::int16_t PlotGobDims = 1;        // gobs, barriers, slab cuts, rows C and D
    std::int16_t PlotGobExtLoose = 1;    // 1: gobs cut short with a break line; 0: to scale
};

/// Values that colour the pillars of the active mining zone and the barriers of a plan.
struct PlanOverlay {
    struct Cell {
        std::vector<std::string> wordings; ///< shown on the pillar, the fullest first
        std::string hint;
        int colour = NoColour;
    };
    std::string caption; ///< what the colours show
    ColourKey key;
    std::vector<std::string> notes; ///< what the values hold and what they leave out
    IndexedArray<Cell, 1, engine::MaxPillars> pillars;
    IndexedArray<Cell, engine::FirstSide, engine::SecondSide> barriers;
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
/// Given: overlay  colours for its pillars; nullptr for none
/// Returned: the drawing, or "Invalid Pillar Dimensions" where a pillar has no positive width or
///           length.
std::variant<Drawing, Refusal> panelPlan(const project::ProjectCase& current,
                                         const PlanOptions& options,
                                         const PlanOverlay* overlay = nullptr);
/// The plan of a run as a pass sees it: development knows no active gob and no slab cuts.
std::variant<Drawing, Refusal> panelPlan(const run::Run& run, int pass, const PlanOptions& options,
                                         const PlanOverlay* overlay = nullptr);

/// What a drawing or a plot of a case is called: its title, else the name of its file.
std::string caseTitle(const project::ProjectCase& current);

} // namespace telvo::plot
