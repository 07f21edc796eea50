// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace telvo {

/// The text with what would steer a terminal or forge a line written out: control characters as
/// \n, \t or \x1B, those of Unicode that turn the direction of writing as \u202E, bytes that are no
/// UTF-8 as \xE4.
std::string forTerminal(std::string_view text);

/// The text with bytes that are no UTF-8 written out as \xE4: for names of files, whose bytes may
/// be any, where a text has to be UTF-8.
std::string withEscapedBytes(std::string_view text);

} // namespace telvo
