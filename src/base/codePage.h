// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace telvo {

/// The text in the code page that older programs of this system read; nothing where the system has
/// none but UTF-8, or the code page cannot hold the text.
std::optional<std::string> inCodePage(std::string_view utf8);

} // namespace telvo
