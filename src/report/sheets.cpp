// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/sheets.h"

#include "base/numbers.h"
#include "base/text.h"
#include "project/units.h"
#include "report/ReportWriter.h"

#include <algorithm>
#include <string_view>

namespace telvo::report {

namespace {

/// A line in pieces of at most `columns` characters, broken at a blank where that leaves no piece
/// half empty.
std::vector<std::string_view> pieces(std::string_view line, std::size_t columns) {
    std::vector<std::string_view> out;
    for (auto end = characterOffset(line, columns); end < line.size();
         end = characterOffset(line, columns)) {
        const auto blank = line.rfind(' ', end);
        if (blank != std::string_view::npos && blank > end / 2) {
            out.push_back(line.substr(0, blank));
            line.remove_prefix(blank + 1);
        } else {
            out.push_back(line.substr(0, end));
            line.remove_prefix(end);
        }
    }
    out.push_back(line);
    return out;
}

/// A path of at most `room` characters. More of its end is kept than of its beginning, because the
/// name stands there.
std::string shortened(const std::string& path, std::size_t room) {
    constexpr std::string_view gap = "...";
    const auto length = characterCount(path);
    if (length <= room || room <= gap.size()) return path;
    const auto head = (room - gap.size()) / 3;
    const auto tail = room - gap.size() - head;
    return path.substr(0, characterOffset(path, head))
        .append(gap)
        .append(path, characterOffset(path, length - tail));
}

std::string buildLine(const SheetHeading& heading) {
    return heading.moduleBuild.empty() ? std::string()
                                       : "TELVO module build: " + heading.moduleBuild;
}

/// Given: firstLine  of the page text on this sheet; a build that it names is not repeated
Sheet begunSheet(const SheetHeading& heading, std::size_t number, std::size_t columns,
                 std::string_view firstLine) {
    const std::string file = "File Name: ";
    const std::string left = "Date/Time: " + shortDate(heading.date) + "    Current Units: " +
                             std::string(project::unitSummary(heading.Units)) + "  ";
    const std::string page = "Page: " + generalNumber(static_cast<int>(number));
    const auto room = static_cast<int>(columns) - static_cast<int>(characterCount(left));

    Sheet sheet;
    const auto add = [&](std::string_view line) {
        for (const auto piece : pieces(line, columns))
            sheet.emplace_back(piece);
    };
    const std::string build = buildLine(heading);
    if (!build.empty() && build != firstLine) add(build);
    add(left + PadLeft(page, room));
    add(file +
        shortened(withoutControls(heading.FileName), columns - std::min(columns, file.size())));
    add(std::string(columns, '-'));
    add("");
    return sheet;
}

} // namespace

std::vector<Sheet> layOutSheets(std::span<const std::string> pages, const SheetHeading& heading,
                                const SheetSize& size) {
    const auto columns = std::max<std::size_t>(size.columns, 1);
    std::vector<Sheet> sheets;
    for (const std::string& page : pages) {
        std::size_t room = 0; // lines left on the sheet
        for (const auto line : splitLines(page))
            for (const auto piece : pieces(line, columns)) {
                if (room == 0) {
                    if (trimmed(piece).empty()) continue;
                    sheets.push_back(begunSheet(heading, sheets.size() + 1, columns, piece));
                    const auto used = sheets.back().size();
                    room = size.lines > used ? size.lines - used : 1;
                }
                sheets.back().emplace_back(piece);
                --room;
            }
        while (!sheets.empty() && trimmed(sheets.back().back()).empty())
            sheets.back().pop_back(); // blank lines at the end only take room
    }
    return sheets;
}

std::size_t longestSheet(const std::vector<Sheet>& sheets, std::size_t most) {
    std::size_t longest = 0;
    for (const Sheet& sheet : sheets)
        if (sheet.size() <= most) longest = std::max(longest, sheet.size());
    return longest;
}

std::string shortDate(const std::chrono::year_month_day& date) {
    return generalNumber(static_cast<int>(static_cast<unsigned>(date.month()))) + '/' +
           generalNumber(static_cast<int>(static_cast<unsigned>(date.day()))) + '/' +
           generalNumber(static_cast<int>(date.year()));
}

} // namespace telvo::report
