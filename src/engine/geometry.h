// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/AnalysisResults.h"
#include "engine/WorkingInputs.h"

namespace telvo::engine {

/// Distance between the crosscut ribs of a pillar, square to the crosscuts:
/// (Sc - We / sin Theta) sin Theta; ft | m.
/// Notes: what is 0 may come out a rounding error below it and is returned as 0; a length that is
///        really negative stays so.
double pillarLength(const WorkingInputs& in);

/// Panel geometry: area of the active mining zone, pillar length, widths, areas, extraction ratio
/// and the minimum and maximum dimension of every pillar.
/// Notes: 1) a pillar no longer than its gross width (tie included) takes its length as minimum.
///        2) needs at least one pillar and a crosscut angle above 0.
void panelGeometry(const WorkingInputs& in, AnalysisResults& r);

/// Pillars that carry the active section: all but the outer rows A and B where these are left.
struct ActiveRows {
    int first = 1;
    int last = 0;     ///< below `first` when the rows leave no pillar
    double width = 0; ///< panel width without the left rows; ft | m
};
ActiveRows activeRows(const WorkingInputs& in);

} // namespace telvo::engine
