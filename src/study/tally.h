// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace telvo::study {

/// How many runs a study made, and how many of them could not be computed, by the message that each
/// would have had.
struct Tally {
    struct Left {
        std::string message;
        std::size_t runs = 0;
        bool operator==(const Left&) const = default;
    };

    std::size_t runs = 0;
    std::vector<Left> left; ///< in the order in which the messages were met first

    void leaveOut(const std::string& message, std::size_t count = 1) {
        const auto same = [&](const Left& one) { return one.message == message; };
        const auto known = std::find_if(left.begin(), left.end(), same);
        if (known != left.end())
            known->runs += count;
        else
            left.push_back({message, count});
    }
    std::size_t notComputed() const {
        std::size_t count = 0;
        for (const Left& one : left)
            count += one.runs;
        return count;
    }
};

} // namespace telvo::study
