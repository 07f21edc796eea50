// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace telvo::study {

/// A TOML text without characters beyond ASCII.
struct AsciiToml {
    std::string text;
    /// Line, from 1, of a character that can only stand in double quotes or in a comment; 0: none.
    std::size_t brokenLine = 0;
};

/// Writes every character beyond ASCII as the escape that means the same. The parser has a fault with
/// such characters where it looks for white space; so it meets none.
/// Given: utf8  valid UTF-8
AsciiToml asciiToml(std::string_view utf8);

} // namespace telvo::study
