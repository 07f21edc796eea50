// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Rule.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace telvo::report {

/// The three settings that a report depends on, under the names of their settings keys.
struct ReportOptions {
    int RoundTELVOSF = 0;       // 0 two decimals half to even, 2 truncated, else unchanged
    int OutputStrGradUnits = 1; // forces of English cases: 1 tons, else pounds. The key's name
                                // speaks of stress gradients; it governs forces all the same.
    int OutputStrUnits = 0;     // stresses of English cases: 0 psi, else psf

    bool operator==(const ReportOptions&) const = default;
};

inline constexpr int LastReportPage = 5;
/// Six page texts, index 0 to 5, lines ended by CR LF.
using ReportPages = std::array<std::string, LastReportPage + 1>;

/// A figure of a page and the quantity that it shows.
struct Figure {
    std::string_view symbol; ///< as the formulas have it: "Lbt"
    Where at;                ///< pass, side and pillar that it is said of
    std::string text;        ///< without blanks around it
    int page = 0;            ///< 1 to 5
    int line = 0;            ///< counted from 1
};

/// What the pages hold.
inline constexpr std::array<std::string_view, LastReportPage + 1> ReportPageNames = {
    "Input",
    "Stability factors and warnings",
    "AMZ data and loadings",
    "Pillar parameters",
    "Barrier pillars",
    "Remnant and leave pillars"};

// Layout routines. A text longer than the width comes back unchanged and pushes its line to the
// right; widths count characters.

/// Blanks, then the text, to `width` characters.
std::string PadLeft(std::string_view text, int width);
/// The text, then blanks, to `width` characters.
std::string PadRight(std::string_view text, int width);
/// The label, then dots, to `width` characters.
std::string DotLeader(std::string_view label, int width);
/// The value's text right-aligned in `width` characters.
std::string AlignValue(std::string_view value, int width);
std::string AlignValue(double value, int width);

/// The text broken into lines of at most `width` characters, joined by CR LF; unbroken for a width
/// of 20 or less. A line breaks at the last blank within `width` columns; the rest is trimmed.
/// Notes: a word longer than the line cannot be broken and is cut: see cutLongWords().
std::string WrapText(std::string_view text, int width);

/// The text with a blank put into every word so long that WrapText would find no blank to break at.
/// User text passes through it before it is wrapped.
std::string cutLongWords(std::string_view text, int width);

/// A stability factor as the report shows and tests it: narrowed to single precision and rounded by
/// `RoundTELVOSF`.
float RoundSF(double factor, int RoundTELVOSF);

/// One page under construction.
class PageWriter {
  public:
    /// Given: page  its number, 0 to 5
    explicit PageWriter(int page = 0) : m_page(page) { m_text.reserve(4096); } // most pages fit

    /// A line and its line break.
    void line(std::string_view text = {});
    /// "[title]" and a blank line under it.
    void heading(std::string_view title);
    /// "[name]" alone on a line.
    void subHeading(std::string_view name);
    /// Text as it is, without a line break of its own.
    void text(std::string_view text);
    /// Notes that the line that is written next shows a quantity so.
    /// Returned: the text
    std::string figure(std::string_view symbol, const Where& at, std::string text);
    /// A paragraph wrapped at 70 columns.
    void paragraph(std::string_view text);

    std::string take() { return std::move(m_text); }
    std::vector<Figure> takeFigures() { return std::move(m_figures); }

  private:
    std::string m_text;
    std::vector<Figure> m_figures;
    int m_page;
    int m_line = 1;
};

/// Columns at which the report wraps its running text.
inline constexpr int TextWidth = 70;

} // namespace telvo::report
