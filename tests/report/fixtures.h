// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/text.h"
#include "engine/AnalysisResults.h"
#include "project/ProjectInput.h"

#include <string>
#include <string_view>
#include <vector>

namespace telvo::report::testing {

/// A six-entry panel whose inputs depart from no default: 80 ft centers, entries 20 ft wide and 6
/// ft high, 500 ft deep; in metric 24 m, 6 m, 2 m and 150 m.
inline project::ProjectCase plainCase(std::int16_t units = project::English) {
    const bool english = units == project::English;
    project::ProjectCase made = project::newCase(units);
    project::ProjectInput& in = made.Input;
    in.EntryHeight = english ? 6 : 2;
    in.DepthCover = english ? 500 : 150;
    in.EntryWidth = english ? 20 : 6;
    in.XcutSpacing = english ? 90 : 27;
    in.NumberEntries = 6;
    for (int i = 1; i <= 5; ++i)
        in.XcutCenters[i] = english ? 80 : 24;
    in.CoalStrength = english ? 900 : 6.21;
    in.UnitWeight = english ? 162 : 25.45;
    return made;
}

/// Results of that panel under a loading condition, strong enough for every limit.
inline engine::AnalysisResults plainResults(int analysisCase, std::int16_t units = 0) {
    engine::AnalysisResults r;
    r.AnalysisCase = analysisCase;
    r.NumberPillars = 5;
    r.PanelWidth = units == project::English ? 400 : 120;
    r.TELVOSF = {{2.5, 2.25}};
    return r;
}

/// A text written with line feeds, as the report has it.
inline std::string withCrLf(std::string_view text) {
    std::string out;
    for (const char c : text)
        out += c == '\n' ? std::string(LineBreak) : std::string(1, c);
    return out;
}

inline std::string withLineFeeds(std::string text) {
    std::erase(text, '\r');
    return text;
}

} // namespace telvo::report::testing
