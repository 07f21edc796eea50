// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "plot/panelPlan.h"
#include "project/ui/frmTELVOParm.h"

namespace telvo::plot::ui {
class PlanView;
}
namespace telvo::app {
class SettingsStore;
}

namespace telvo::app::ui {

/// Draws the plan of a case by the layout options of the settings. A refusal is returned and shown
/// in place of the plan.
std::optional<Refusal> drawPlan(plot::ui::PlanView& view, const project::ProjectCase& current,
                                const SettingsStore& settings);

/// The parameter form's picture.
project::ui::LayoutPicture layoutPicture(const SettingsStore& settings, QWidget* parent);

} // namespace telvo::app::ui
