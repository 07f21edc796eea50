// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/sourceDate.h"

#include <charconv>
#include <cstdlib>
#include <string_view>
#include <system_error>

namespace telvo {

std::optional<std::int64_t> sourceDate() {
    const char* const text = std::getenv("SOURCE_DATE_EPOCH");
    if (!text) return std::nullopt;
    constexpr std::int64_t latest = 253402300799; // the last second of the year 9999
    const std::string_view digits = text;
    std::int64_t seconds = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), seconds);
    const bool whole = error == std::errc() && end == digits.data() + digits.size();
    return whole && seconds >= 0 && seconds <= latest ? std::optional(seconds) : std::nullopt;
}

} // namespace telvo
