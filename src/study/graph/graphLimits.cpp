// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/graph/graphLimits.h"
#include "base/numbers.h"
#include "engine/AnalysisResults.h"
#include "engine/driver.h"
#include "project/units.h"
#include "report/warnings.h"

#include <algorithm>

namespace telvo::study {

namespace {

constexpr double SafeSF = 1.5;     // TELVO and barrier SF
constexpr double StrongSF = 2.0;   // barrier SF of the exception at depth; TELVO SF if slender
constexpr double SlenderBelow = 4; // mean pillar width over mining height

ReferenceLine level(std::string label, double low, double high, double SF) {
    return {std::move(label), {{low, SF}, {high, SF}}};
}

/// The suggested SF over depth: level, falling between the limits, level.
ReferenceLine suggestedOverDepth(std::string label, const SfGraph& graph, double feet) {
    constexpr int unrounded = 1;
    std::vector<double> depths = {graph.low, report::ShallowLimit / feet, report::DeepLimit / feet,
                                  graph.high};
    std::erase_if(depths, [&](double x) { return x < graph.low || x > graph.high; });
    depths.erase(std::unique(depths.begin(), depths.end()), depths.end());
    ReferenceLine line{std::move(label), {}};
    for (const double x : depths)
        line.points.push_back(
            {x, report::suggestedSF(static_cast<float>(std::clamp(x * feet, report::ShallowLimit,
                                                                  report::DeepLimit)),
                                    unrounded)});
    return line;
}

} // namespace

std::vector<ReferenceLine> graphLimits(const project::ProjectCase& current, const SfGraph& graph,
                                       const report::ReportOptions& options) {
    const project::ProjectInput& in = current.Input;
    const double feet = current.Units == project::English ? 1 : project::FeetPerMetre;
    if (rowOf(graph.kind).isOfBarrier())
        return {level("Barrier SF 1.5", graph.low, graph.high, SafeSF),
                level("Barrier SF 2.0", graph.low, graph.high, StrongSF)};

    std::vector<ReferenceLine> limits = {level("SF 1.5", graph.low, graph.high, SafeSF)};
    const bool overDepth = graph.kind == GraphKind::DepthCover;
    const double panelWidth =
        engine::workingInputs(in, current.Units, engine::DevelopmentLoad).PanelWidth;
    const double deepest = (overDepth ? graph.high : in.DepthCover) * feet;
    if (panelWidth * feet <= report::PanelWidthLimit && deepest > report::ShallowLimit) {
        const bool sideGob =
            engine::analysisCase(in.Anal, engine::DevelopmentLoad) >= engine::OneSideGob;
        const std::string condition = sideGob ? " where the barrier SF is at least 2.0" : "";
        const double suggested = report::suggestedSF(
            static_cast<float>(std::min(deepest, report::DeepLimit)), options.RoundTELVOSF);
        limits.push_back(overDepth
                             ? suggestedOverDepth("Suggested SF" + condition, graph, feet)
                             : level("Suggested SF " + formatPattern(suggested, "0.00") + condition,
                                     graph.low, graph.high, suggested));
    }

    const double n = project::distanceCount(in);
    const double slenderFrom = (panelWidth - n * in.EntryWidth) / n / SlenderBelow;
    const bool overHeight = graph.kind == GraphKind::EntryHeight;
    const double from = overHeight ? std::max(graph.low, slenderFrom) : graph.low;
    if ((overHeight ? graph.high : in.EntryHeight) > slenderFrom && from < graph.high)
        limits.push_back(level("SF 2.0 for slender pillars", from, graph.high, StrongSF));
    return limits;
}

} // namespace telvo::study
