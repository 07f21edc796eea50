// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Frame.h"
#include "explain/Explaining.h"
#include "project/ProjectInput.h"
#include "report/ReportWriter.h"

#include <vector>

namespace telvo::explain {

/// Every quantity of a run as the rules of the method computed it, in their order.
struct Trace {
    engine::Frame frame;
    std::vector<TracedStep> steps;
};

enum class Extent {
    OfThisCase,  ///< without what stays 0 under the loading condition of the case
    OfEveryInput ///< with all that another number in an input can bring
};

/// Runs the rules over a record.
/// Given: loadingCondition  1 to 4, as the run had it
Trace traceRun(const project::ProjectCase& current, int loadingCondition,
               const report::ReportOptions& options, Extent extent = Extent::OfThisCase);

} // namespace telvo::explain
