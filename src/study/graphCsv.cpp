// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbers.h"
#include "project/units.h"
#include "study/sfGraph.h"

#include <map>

namespace telvo::study {

namespace {

constexpr std::array<std::string_view, GraphKinds> Parameters = {
    "Entry Height",     "Depth of Cover",         "Crosscut Angle",
    "Crosscut Spacing", "Width of First Barrier", "Width of Second Barrier"};

} // namespace

std::string parameterLabel(GraphKind kind, std::int16_t units) {
    std::string label(Parameters[static_cast<std::size_t>(kind)]);
    return label += kind == GraphKind::XcutAngle
                        ? " (degrees)"
                        : project::unitLabel(units, project::Quantity::Length);
}

std::string graphCsv(const SfGraph& graph) {
    constexpr std::string_view lineEnd = "\r\n";
    const bool barrier =
        graph.kind == GraphKind::FirstBarrier || graph.kind == GraphKind::SecondBarrier;
    std::string text = parameterLabel(graph.kind, graph.units);
    std::map<double, std::vector<std::optional<double>>> rows;
    const auto row = [&](double x) -> auto& {
        return rows.try_emplace(x, graph.curves.size()).first->second;
    };
    for (std::size_t c = 0; c < graph.curves.size(); ++c) {
        const Curve& curve = graph.curves[c];
        text.append(",").append(curve.name).append(barrier ? " SFBAR" : " SF");
        for (const auto& piece : curve.pieces)
            for (const GraphPoint& point : piece)
                row(point.x)[c] = point.y;
        for (const Jump& jump : curve.jumps)
            if (!jump.before || !jump.after) row(jump.x);
    }
    text += lineEnd;
    for (const auto& [x, factors] : rows) {
        appendGeneralNumber(text, x);
        for (const auto& factor : factors) {
            text += ',';
            if (factor) appendGeneralNumber(text, *factor);
        }
        text += lineEnd;
    }
    return text;
}

} // namespace telvo::study
