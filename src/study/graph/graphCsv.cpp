// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbers.h"
#include "study/graph/sfGraph.h"

#include <map>

namespace telvo::study {

std::string parameterLabel(GraphKind kind, std::int16_t units) {
    const GraphRow& row = rowOf(kind);
    std::string label(row.axisTitle);
    return label.append(" (").append(row.varied.unit(units)).append(")");
}

std::string graphCsv(const SfGraph& graph) {
    constexpr std::string_view lineEnd = "\r\n";
    std::string text = parameterLabel(graph.kind, graph.units);
    std::map<double, std::vector<std::optional<double>>> rows;
    const auto row = [&](double x) -> auto& {
        return rows.try_emplace(x, graph.curves.size()).first->second;
    };
    for (std::size_t c = 0; c < graph.curves.size(); ++c) {
        const Curve& curve = graph.curves[c];
        text.append(",").append(curve.name).append(" ").append(rowOf(graph.kind).factorName());
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
