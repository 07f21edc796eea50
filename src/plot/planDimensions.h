// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "plot/panelPlan.h"
#include "plot/planGeometry.h"

namespace telvo::plot {

/// A length as figures and names of a drawing show it: at most seven digits, so that neither what
/// is computed from typed lengths nor what is kept in single precision shows its rounding.
std::string lengthText(double length);

/// Adds the dimension lines that the options ask for, and the room that they take.
void addDimensions(const PlanGeometry& plan, const PlanOptions& options, Drawing& drawing);

} // namespace telvo::plot
