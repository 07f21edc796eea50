// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/output/reportDiff.h"

#include "base/text.h"
#include "report/sections.h"
#include "study/questions/compare.h"

#include <algorithm>

namespace telvo::study {

namespace {

/// Equal lines that are shown about those that differ.
constexpr std::size_t ContextLines = 2;

std::string reportText(const run::Run& run, const report::ReportOptions& options) {
    std::string text;
    for (const std::string& page : report::makeReport(run, options).pages)
        text += page;
    std::erase(text, '\r');
    return text;
}

} // namespace

std::vector<std::string> reportDiff(std::string_view beforeName, const run::Run& before,
                                    std::string_view afterName, const run::Run& after,
                                    const report::ReportOptions& options) {
    const std::string texts[] = {reportText(before, options), reportText(after, options)};
    const auto first = splitLines(texts[0]), second = splitLines(texts[1]);
    const auto lines = lineDiff(first, second);
    std::vector<std::string> out = {"--- " + std::string(beforeName),
                                    "+++ " + std::string(afterName)};
    std::size_t shownTo = 0; // lines up to here are written or left out for good
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].side == DiffLine::Side::Both) continue;
        const std::size_t from = std::max(shownTo, i - std::min(i, ContextLines));
        if (from > shownTo) out.emplace_back("...");
        std::size_t to = i; // up to where the next ones come near
        for (std::size_t k = i; k < lines.size() && k <= to + 2 * ContextLines; ++k)
            if (lines[k].side != DiffLine::Side::Both) to = k;
        const std::size_t end = std::min(lines.size(), to + ContextLines + 1);
        for (std::size_t k = from; k < end; ++k) {
            const auto side = lines[k].side;
            std::string line = side == DiffLine::Side::Both         ? "  "
                               : side == DiffLine::Side::OnlyBefore ? "- "
                                                                    : "+ ";
            line += lines[k].text;
            line.erase(line.find_last_not_of(' ') + 1);
            out.push_back(std::move(line));
        }
        shownTo = end;
        i = end - 1;
    }
    return out;
}

} // namespace telvo::study
