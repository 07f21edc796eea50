// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Numbers as people and other programs write them, for what is pasted into a box. What can be read
/// in one way only is read, everything else is refused; nothing is read in part.
namespace telvo {

struct WrittenNumber {
    std::string number =
        {}; ///< plain, with "." as its decimal sign: a leading number from end to end
    std::string unit = {}; ///< what stands behind it, without blanks around it; may be empty
    std::string why = {};  ///< why it is refused; empty when it is not. The text is not repeated
    bool operator==(const WrittenNumber&) const = default;
};

/// Reads one number with thousands signs (comma, point, blank, apostrophe), a decimal comma or
/// point, an exponent, blanks and line ends around it, and a unit behind it.
/// Refusals: no number, more than one, groups that are not of three digits, and "1,234", which is
///           1.234 to one half of the world and 1234 to the other.
WrittenNumber readWrittenNumber(std::string_view utf8);

/// What the leading-number rule leaves unread of a text: nothing, or a sentence such as
/// "'1 200' is read as 1".
std::optional<std::string> partlyRead(std::string_view text);

} // namespace telvo
