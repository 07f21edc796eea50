// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/questions/compare.h"

#include <algorithm>
#include <cstdint>

namespace telvo::study {

namespace {

/// Beyond that many pairs of lines what lies between the equal ends counts as different.
constexpr std::size_t MostPairs = 16'000'000;

} // namespace

std::vector<DiffLine> lineDiff(std::span<const std::string_view> before,
                               std::span<const std::string_view> after) {
    std::vector<DiffLine> lines;
    const auto [b, a] = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    const auto head = static_cast<std::size_t>(b - before.begin());
    for (const std::string_view line : before.first(head))
        lines.push_back({DiffLine::Side::Both, line});
    before = before.subspan(head);
    after = after.subspan(head);
    std::size_t tail = 0;
    while (tail < before.size() && tail < after.size() &&
           before[before.size() - 1 - tail] == after[after.size() - 1 - tail])
        ++tail;
    const auto ends = before.last(tail);
    before = before.first(before.size() - tail);
    after = after.first(after.size() - tail);

    // Longest common subsequence of what is left: lengths from each pair of places on.
    const std::size_t width = after.size() + 1;
    std::vector<std::uint32_t> common;
    if (before.size() * after.size() <= MostPairs) common.resize((before.size() + 1) * width);
    if (!common.empty())
        for (std::size_t i = before.size(); i-- > 0;)
            for (std::size_t j = after.size(); j-- > 0;)
                common[i * width + j] =
                    before[i] == after[j]
                        ? common[(i + 1) * width + j + 1] + 1
                        : std::max(common[(i + 1) * width + j], common[i * width + j + 1]);
    std::size_t i = 0, j = 0;
    while (i < before.size() || j < after.size()) {
        const bool both = i < before.size() && j < after.size() && !common.empty();
        if (both && before[i] == after[j]) {
            lines.push_back({DiffLine::Side::Both, before[i]});
            ++i, ++j;
        } else if (j == after.size() ||
                   (i < before.size() &&
                    (!both || common[(i + 1) * width + j] >= common[i * width + j + 1]))) {
            lines.push_back({DiffLine::Side::OnlyBefore, before[i++]});
        } else {
            lines.push_back({DiffLine::Side::OnlyAfter, after[j++]});
        }
    }
    for (const std::string_view line : ends)
        lines.push_back({DiffLine::Side::Both, line});
    return lines;
}

} // namespace telvo::study
