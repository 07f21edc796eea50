// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "plot/distribution.h"
#include "plot/panelPlan.h"

#include <array>
#include <string_view>
#include <variant>

/// The pictures of a run, as the window of plots lists them and the console names them.
namespace telvo::plot {

enum class PictureKind {
    PanelLayout,
    Capacity,
    Stresses,
    CapacityPlan,
    StressPlan,
    StrengthToStressPlan
};

struct PictureRow {
    PictureKind kind;
    std::string_view name;    ///< on the console
    std::string_view shows;   ///< in its help
    std::string_view control; ///< of the entry in the window's menu
    std::string_view caption; ///< there, with its access key
    bool isPlan = false;      ///< else bars
    bool hasNumbers = true;   ///< of a distribution
    bool ofPass = true;       ///< development and retreat differ
};
inline constexpr std::array<PictureRow, 6> PictureRows = {{
    {PictureKind::PanelLayout, "plan", "plan of the panel, to scale and dimensioned",
     "mnuPanelLayout", "Panel &Layout", true, false, true},
    {PictureKind::Capacity, "capacity", "load-bearing capacity of the pillars, as bars to scale",
     "mnuCapacity", "Pillar Load Bearing &Capacity", false, true, false},
    {PictureKind::Stresses, "stress", "stresses of pillars and barriers, with their strengths",
     "mnuStresses", "Individual Pillar &Stresses", false, true, true},
    {PictureKind::CapacityPlan, "capacity-plan", "plan with pillars colored by capacity",
     "mnuCapacityPlan", "Colored Plan: C&apacity", true, true, true},
    {PictureKind::StressPlan, "stress-plan", "plan colored by stress", "mnuStressPlan",
     "Colored Plan: Str&esses", true, true, true},
    {PictureKind::StrengthToStressPlan, "strength-plan", "plan colored by strength over stress",
     "mnuStrengthToStressPlan", "Colored Plan: Strength &to Stress", true, true, true},
}};

constexpr const PictureRow& rowOf(PictureKind kind) {
    return PictureRows[static_cast<std::size_t>(kind)];
}

/// What the bars show, or what a plan is colored by.
/// Given: pass  engine::Development or engine::Retreat
Distribution distributionOf(PictureKind kind, const run::Run& run,
                            const report::ReportOptions& options, int pass);

/// A plan, colored where the kind is.
/// Faults: those of panelPlan()
std::variant<Drawing, Refusal> planOf(PictureKind kind, const run::Run& run,
                                      const report::ReportOptions& options, int pass,
                                      const PlanOptions& plan);

} // namespace telvo::plot
