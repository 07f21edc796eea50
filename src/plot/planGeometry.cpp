// SPDX-License-Identifier: GPL-3.0-or-later
#include "plot/planGeometry.h"

#include "engine/rules/geometry.h"
#include "plot/panelPlan.h"

#include <algorithm>
#include <cmath>

namespace telvo::plot {

namespace {

/// Longest gob to scale, in sizes of the panel.
constexpr double OutOfProportion = 20;
/// Longest active gob, in crosscut spacings: the rows that are left in it are drawn one by one.
constexpr double MostRowsOfGob = 100;

Shown shown(double length, double limit) {
    constexpr double notWorthCutting = 1.2;
    if (!(length > 0)) return {};
    const bool cut = length > notWorthCutting * limit;
    return {cut ? limit : length, length, cut};
}

PlanSide planSide(const PlanGeometry& plan, int k, bool loose) {
    const engine::WorkingInputs& in = plan.in;
    const bool first = k == engine::FirstSide;
    const double most = OutOfProportion * (plan.panel.width() - plan.panel.bottom);
    PlanSide s;
    s.k = k;
    s.sign = first ? -1 : 1;
    s.rib = first ? plan.panel.left : plan.panel.right;
    s.inUse = in.AnalysisCase >= k;
    if (s.inUse) {
        s.barrier = shown(in.BarrierWidth[k], most);
        if (plan.activeGob) {
            s.slab = shown(std::min(in.Slabcut[k], s.barrier.length), most);
            s.slab.figure = in.Slabcut[k];
        }
        if (in.rowLeft(k)) s.rowWidth = shown(in.BleederWidth[k], most);
        s.gob = shown(in.GobExtent[engine::gobOfSide(k)],
                      loose ? std::max(0.4 * plan.panel.width(), -0.25 * plan.panel.bottom) : most);
    }
    const double coal = 0.12 * plan.panel.width() + in.PanelWidth / in.NumberPillars / 3;
    s.gobStart = s.barrier.length + (s.rowWidth ? in.We + s.rowWidth.length : 0);
    s.end = s.gobStart + (s.gob ? s.gob.length : coal);
    return s;
}

bool drawable(const engine::WorkingInputs& in, double pillarLength) {
    // Far beyond any mine, and small enough for every sum and product of the drawing.
    constexpr double longest = 1e12;
    bool positive = in.NumberPillars > 0 && in.We >= 0 && in.SinTheta > 0 && pillarLength > 0 &&
                    in.Sc < longest && in.PanelWidth < longest;
    for (int i = 1; i <= in.NumberPillars; ++i)
        positive = positive && in.PillarGrossWidth[i] > 0;
    return positive;
}

} // namespace

Rect PlanSide::rect(double from, double to, double bottom, double top) const {
    return {std::min(x(from), x(to)), bottom, std::max(x(from), x(to)), top};
}

std::vector<Point> PlanGeometry::pillar(int i, double highest) const {
    const double left = entry[i] + in.We / 2;
    const double right = left + in.PillarGrossWidth[i];
    const double leftTop = highest - std::max(rise(i), 0.0);
    const double rightTop = leftTop + rise(i);
    return {{left, leftTop - ribLength},
            {right, rightTop - ribLength},
            {right, rightTop},
            {left, leftTop}};
}

std::optional<PlanGeometry> planGeometry(const engine::WorkingInputs& panel, bool loose) {
    PlanGeometry plan;
    plan.in = panel;
    // An angle beyond a right one is drawn while it is typed, though no analysis takes it.
    plan.in.SinTheta = std::sin(radians(plan.in.Source.XcutAngle));
    const engine::WorkingInputs& in = plan.in;
    Scalar calc;
    const double length = engine::rules::pillarLength(calc, in.Sc, in.We, in.SinTheta);
    if (!drawable(in, length)) return std::nullopt;

    plan.ribLength = length / in.SinTheta;
    plan.cotangent = std::cos(radians(in.Source.XcutAngle)) / in.SinTheta;
    if (std::abs(plan.cotangent) < 1e-12) plan.cotangent = 0; // a right angle
    double highestRise = 0;
    for (int i = 1; i <= in.NumberPillars; ++i) {
        plan.entry[i + 1] = plan.entry[i] + in.EntryCenter[i];
        highestRise = std::max(highestRise, std::abs(plan.rise(i)));
    }
    const double wanted = in.B > 0 ? std::ceil(in.B / in.Sc + 2) : 0;
    plan.rows = static_cast<int>(std::clamp(wanted, 4.0, static_cast<double>(MostPlanRows)));
    // Room for the low ends of the last row, unless crosscuts are far steeper than any mine's.
    const double ends = std::min(highestRise, MostPlanRows * in.Sc / 4);
    plan.panel = {-in.We / 2, -plan.rows * in.Sc - ends, in.PanelWidth + in.We / 2, 0};
    plan.cutBelow = in.B > -plan.panel.bottom;

    if (in.AnalysisCase >= engine::ActiveGob) {
        const double size = plan.panel.width() - plan.panel.bottom;
        plan.activeGob =
            shown(in.GobExtent[1],
                  loose ? 2.5 * in.Sc : std::min(OutOfProportion * size, MostRowsOfGob * in.Sc));
        plan.panel.top = plan.activeGob.length;
    }
    plan.first = planSide(plan, engine::FirstSide, loose);
    plan.second = planSide(plan, engine::SecondSide, loose);
    return plan;
}

} // namespace telvo::plot
