// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/graph/graphLimits.h"

#include "base/numbers.h"
#include "criteria/assess.h"
#include "engine/driver.h"

#include <algorithm>
#include <string>

namespace telvo::study {

using namespace criteria;

namespace {

ReferenceLine level(std::string label, double low, double high, double SF) {
    return {std::move(label), {{low, SF}, {high, SF}}};
}

std::string limitText(double SF) {
    return "SF " + formatPattern(SF, "0.0");
}

/// The suggested SF over depth: level, falling between the limits, level.
ReferenceLine suggestedOverDepth(std::string label, const SfGraph& graph, double feet) {
    constexpr int unrounded = 1;
    std::vector<double> depths = {graph.low, ShallowLimit / feet, DeepLimit / feet, graph.high};
    std::erase_if(depths, [&](double x) { return x < graph.low || x > graph.high; });
    depths.erase(std::unique(depths.begin(), depths.end()), depths.end());
    ReferenceLine line{std::move(label), {}};
    for (const double x : depths)
        line.points.push_back(
            {x, suggestedFactor(std::clamp(x * feet, ShallowLimit, DeepLimit), unrounded)});
    return line;
}

} // namespace

std::vector<ReferenceLine> graphLimits(const project::ProjectCase& current, const SfGraph& graph,
                                       int mode) {
    if (rowOf(graph.kind).isOfBarrier())
        return {level("Barrier " + limitText(SuggestedSF), graph.low, graph.high, SuggestedSF),
                level("Barrier " + limitText(StrongSF), graph.low, graph.high, StrongSF)};

    const engine::WorkingInputs in =
        engine::workingInputs(current.Input, current.Units, engine::DevelopmentLoad);
    Scalar calc;
    const FiguresOf<double> of = figures(calc, in, in, {}, mode);
    const double feet = in.english() ? 1 : project::FeetPerMetre;

    std::vector<ReferenceLine> limits = {
        level(limitText(SuggestedSF), graph.low, graph.high, SuggestedSF)};
    const bool overDepth = graph.kind == GraphKind::DepthCover;
    const double deepest = overDepth ? graph.high * feet : of.H;
    if (of.panelWidth <= PanelWidthLimit && deepest > ShallowLimit) {
        const std::string condition =
            in.AnalysisCase >= engine::OneSideGob
                ? " where the barrier SF is at least " + formatPattern(StrongSF, "0.0")
                : "";
        const double suggested = suggestedFactor(std::min(deepest, DeepLimit), mode);
        limits.push_back(overDepth
                             ? suggestedOverDepth("Suggested SF" + condition, graph, feet)
                             : level("Suggested SF " + formatPattern(suggested, "0.00") + condition,
                                     graph.low, graph.high, suggested));
    }

    // The ratio of width to height goes as one over the height.
    const double slenderFrom = of.widthToHeight * in.h / SlenderRatio;
    const bool overHeight = graph.kind == GraphKind::EntryHeight;
    const double from = overHeight ? std::max(graph.low, slenderFrom) : graph.low;
    if ((overHeight ? graph.high : in.h) > slenderFrom && from < graph.high)
        limits.push_back(
            level(limitText(StrongSF) + " for slender pillars", from, graph.high, StrongSF));
    return limits;
}

} // namespace telvo::study
