// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/graph/sfGraph.h"

#include <vector>

namespace telvo::study {

/// The limits of the warnings along the axis of a graph.
/// Given: mode  in which stability factors are shown, as criteria::shownFactor() has it
std::vector<ReferenceLine> graphLimits(const project::ProjectCase& current, const SfGraph& graph,
                                       int mode);

} // namespace telvo::study
