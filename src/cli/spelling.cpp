// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/spelling.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

namespace telvo::cli {

namespace {

/// Letters that one word has to be changed in to become the other.
std::size_t distance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t changed = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

} // namespace

std::optional<std::string> nearest(std::string_view word, const std::vector<std::string>& names) {
    std::optional<std::string> found;
    std::size_t least = 3; // a slip of two letters
    for (const std::string& name : names) {
        const std::size_t letters = distance(word, name);
        if (letters >= least) continue;
        least = letters;
        found = name;
    }
    return found;
}

} // namespace telvo::cli
