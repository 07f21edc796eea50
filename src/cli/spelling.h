// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace telvo::cli {

/// The first of the names that a word is nearest to, if a slip of two letters makes it of one.
std::optional<std::string> nearest(std::string_view word, const std::vector<std::string>& names);

} // namespace telvo::cli
