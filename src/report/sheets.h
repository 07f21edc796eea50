// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// Report pages as they stand on printed sheets.
namespace telvo::report {

/// What is printed above every sheet.
struct SheetHeading {
    std::string FileName;             // of the case, with its folder
    std::int16_t Units = 0;           // of the case: 0 English, 1 metric
    std::string moduleBuild;          // empty: no module header
    std::chrono::year_month_day date; // of printing; ReportPrinter sets it
};

/// Room of one sheet, in lines and columns of its fixed-pitch font.
struct SheetSize {
    std::size_t lines = 60;
    std::size_t columns = 87;
};

/// The lines of one sheet, its heading included.
using Sheet = std::vector<std::string>;

/// Columns of the widest line of a report; with as many, no table line is broken.
inline constexpr int ReportColumns = 87;

/// The sheets of some report pages. Every page begins a new sheet, and so does a line that no
/// longer fits; sheets are numbered through. No sheet begins with a blank line, no page ends with
/// one.
/// Notes: 1) a line wider than the sheet goes on in the next line;
///        2) a file name that is too long for the heading loses its middle there;
///        3) a page that begins with the module build has it not repeated in its heading.
std::vector<Sheet> layOutSheets(std::span<const std::string> pages, const SheetHeading& heading,
                                const SheetSize& size);

/// Lines of the longest sheet among those of at most `most` lines; 0 where all are longer.
std::size_t longestSheet(const std::vector<Sheet>& sheets, std::size_t most);

/// A date as "m/d/yyyy", without leading zeros.
std::string shortDate(const std::chrono::year_month_day& date);

} // namespace telvo::report
