// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/graph/sfGraph.h"

#include <vector>

namespace telvo::study {

/// The limits of the warnings along the axis of a graph.
std::vector<ReferenceLine> graphLimits(const project::ProjectCase& current, const SfGraph& graph,
                                       const report::ReportOptions& options);

} // namespace telvo::study
