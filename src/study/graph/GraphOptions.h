// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

namespace telvo::study {

/// How a graph is drawn, under the names of the settings keys; the titles are those of its kind.
struct GraphOptions {
    std::int16_t GridStyle = 0;   // 0 none, 1 horizontal, 2 vertical, 3 both
    std::int16_t GraphStyle = 3;  // 1 symbols, 2 lines, 3 both
    std::int16_t CurveLegend = 1; // 1 drawn
    std::int16_t SymbolSize = 5;  // points
    std::int16_t GraphUnits = 0;  // of the axis: 0 English, 1 metric
    std::string GraphTitle;
    std::string XAxisTitle;
    std::string YAxisTitle;
    int RoundTELVOSF = 0; // of the factors that are written: see report::RoundSF
};

inline constexpr std::int16_t SymbolsOnly = 1;
inline constexpr std::int16_t LinesOnly = 2;

} // namespace telvo::study
