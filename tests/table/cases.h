// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "table/CaseTable.h"

#include <string>
#include <vector>

namespace telvo::test {

/// Cases whose numbers and texts are hard to carry through a table: 17 digits, the smallest and the
/// largest, Singles, texts that look like formulas, numbers or escapes, lines, quotes, separators.
inline std::vector<project::ProjectCase> awkwardCases() {
    std::vector<project::ProjectCase> cases(4, project::newCase(project::Metric));
    auto& in = cases[0].Input;
    in.EntryHeight = 0.1 + 0.2;
    in.DepthCover = 1.0 / 3 * 1e-7;
    in.EntryWidth = 1.7976931348623157e308;
    in.XcutSpacing = -0.0;
    in.BreadthAMZ = 5e-324;
    in.NumberEntries = 10;
    for (int i = 1; i <= 9; ++i)
        in.XcutCenters[i] = 20 + i / 7.0;
    in.Anal = 3;
    in.Reserved = -32768;
    in.AMZ = 0;
    in.ArchFactor = 0.94F;
    in.WidthC = 3.4e38F;
    in.WidthD = 1.0F / 3;
    cases[0].Title = "=1+2; \"two\", 'x' _x0041_ #4.5 \xC3\xA9\xE2\x82\xAC <&>";
    cases[0].Description = "first\r\n  -2, \"x\"\r\n\tthird; _x000D_";
    cases[0].DescriptionLines = 3;
    cases[1] = project::newCase(project::English);
    cases[1].Title = "0012";
    cases[1].Input.NumberEntries = 3;
    cases[1].Input.XcutCenters[1] = 60;
    cases[1].Input.XcutCenters[5] = 7; // behind the last entry, but there
    cases[2].Title = " TRUE \xEF\xBF\xBE";
    cases[3].Title = "@x\x01y";
    return cases;
}

/// What a table keeps of a case, one line for each that differs.
inline std::string difference(const std::vector<project::ProjectCase>& cases,
                              const table::CaseTable& read) {
    if (cases.size() != read.rows.size()) return std::to_string(read.rows.size()) + " rows";
    std::string out;
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const table::CaseRow& row = read.rows[i];
        for (const Fault& fault : row.faults)
            out += faultText(fault) + "\n";
        project::ProjectCase want = cases[i];
        want.FileName = row.current.FileName;
        if (!(want == row.current)) out += "case " + std::to_string(i) + " differs\n";
    }
    return out;
}

/// The faults of a table, one per line.
inline std::string faults(const table::CaseTable& read) {
    std::string out;
    for (const table::CaseRow& row : read.rows)
        for (const Fault& fault : row.faults)
            out += faultText(fault) + "\n";
    return out;
}

} // namespace telvo::test
