// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/output/sweepLines.h"

#include "base/numbers.h"

#include <algorithm>
#include <cmath>

namespace telvo::study {

std::string SweepLine::text() const {
    return level ? generalNumber(*level, 4) : "suggested";
}

std::vector<SweepLine> sweepLines(const Sweep& table,
                                  const std::vector<std::optional<double>>& levels) {
    const auto lineOf = [&](const Sweep& judged, double at) {
        SweepLine line;
        line.contour = joined(contour(judged, 0, at));
        const std::vector<double>& values = judged.outcomes[0];
        line.reached = static_cast<std::size_t>(
            std::count_if(values.begin(), values.end(), [at](double x) { return x >= at; }));
        return line;
    };
    std::vector<SweepLine> lines;
    for (const auto& level : levels) {
        if (level) {
            lines.push_back(lineOf(table, *level));
            lines.back().level = level;
            continue;
        }
        const auto margin = table.request.outcomes[0].marginToSuggested();
        if (!margin || table.stopped) continue;
        const auto margins =
            sweep(table.base(), {table.request.axes, table.request.linked, {*margin}},
                  table.evaluator->RoundTELVOSF());
        if (!margins) continue; // the table itself could not have been made
        lines.push_back(lineOf(*margins, 0));
        for (std::size_t row = 0; row < table.rows();
             ++row) // 1.5 less a rounding of the difference
            lines.back().suggested.push_back(
                roundHalfEven2(table.outcomes[0][row] - margins->outcomes[0][row]));
    }
    return lines;
}

std::string sweepHeadline(const Sweep& table, const std::vector<SweepLine>& lines) {
    const Outcome& outcome = table.request.outcomes[0];
    const std::vector<double>& values = table.outcomes[0];
    const std::int16_t units = table.base().Units;
    double low = HUGE_VAL, high = -HUGE_VAL;
    std::size_t known = 0;
    for (const double value : values) {
        if (std::isnan(value)) continue;
        ++known;
        low = std::min(low, value);
        high = std::max(high, value);
    }
    if (known == 0)
        return "None of " + groupedCount(values.size()) +
               " rows has this result: " + outcome.label();
    std::string text = outcome.label() + " " + outcome.text(low, units) + " to " +
                       outcome.text(high, units) + " in " + groupedCount(known) +
                       (known == 1 ? " row" : " rows");
    for (const SweepLine& line : lines)
        text += (&line == lines.data() ? "; " + groupedCount(line.reached) + " of them reach "
                                       : ", " + groupedCount(line.reached) + " reach ") +
                (line.level ? line.text() : "the suggested factor");
    return text + ".";
}

} // namespace telvo::study
