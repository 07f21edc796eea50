// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/ui/picture.h"
#include "plot/pictures.h"

namespace telvo::plot::ui {

/// A picture of a run that leaves the program, with its numbers where it has some.
/// Given: pass  engine::Development or engine::Retreat
std::variant<chart::ui::Picture, Refusal> plotPicture(plot::PictureKind kind, const run::Run& run,
                                                      const report::ReportOptions& options,
                                                      int pass, const plot::PlanOptions& plan);

/// A plan that leaves the program.
chart::ui::Picture planPicture(plot::Drawing drawing);

} // namespace telvo::plot::ui
