// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// From what a user types or pastes to the title and the description of a case.
namespace telvo::project {

/// Most characters that the description form takes. Longer texts of a file are kept; what is
/// beyond comes from a slip, such as a whole document pasted.
inline constexpr std::size_t MaxTitleCharacters = 250;
inline constexpr std::size_t MaxDescriptionCharacters = 20000;

extern const std::string_view TitleCutMessage;
extern const std::string_view DescriptionCutMessage;
/// Asked before changes are given up.
extern const std::string_view DiscardQuestion;

/// The text with its lines ended by LF and every other control character as a blank. The line and
/// paragraph separators of Unicode end lines too.
std::string plainLines(std::string_view utf8);

/// A title that fits its one line: every line break, and what else would end it, is a blank.
std::string onOneLine(std::string_view title);

/// A title: one line, line breaks and control characters as blanks.
std::string titleFromText(std::string_view utf8);

/// A description as a case holds it: without control characters, as normalisedDescription() leaves
/// it.
std::string descriptionFromText(std::string_view utf8);

} // namespace telvo::project
