// SPDX-License-Identifier: GPL-3.0-or-later
#include "plot/pictures.h"

namespace telvo::plot {

Distribution distributionOf(PictureKind kind, const run::Run& run,
                            const report::ReportOptions& options, int pass) {
    const bool capacity = kind == PictureKind::Capacity || kind == PictureKind::CapacityPlan;
    return capacity ? capacityDistribution(run, options) : stressDistribution(run, options, pass);
}

std::variant<Drawing, Refusal> planOf(PictureKind kind, const run::Run& run,
                                      const report::ReportOptions& options, int pass,
                                      const PlanOptions& plan) {
    if (kind == PictureKind::PanelLayout) return panelPlan(run, pass, plan);
    const auto what =
        kind == PictureKind::StrengthToStressPlan ? Coloured::StrengthToStress : Coloured::Total;
    const auto overlay =
        planOverlay(distributionOf(kind, run, options, pass), what, options.RoundTELVOSF);
    return panelPlan(run, pass, plan, &overlay);
}

} // namespace telvo::plot
