// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace telvo {

/// Line break of case files and report pages.
inline constexpr std::string_view LineBreak = "\r\n";

/// The text without blanks and tabs at both ends.
std::string_view trimmed(std::string_view text);

/// Lines of a text that ends its lines with CR LF, LF or CR; a last line break opens no new line.
std::vector<std::string_view> splitLines(std::string_view text);

bool isValidUtf8(std::string_view bytes);

/// UTF-8 of a text in Windows-1252, the code page of older case files. Bytes without a character
/// in that code page become the control character of the same number.
std::string utf8FromWindows1252(std::string_view bytes);

/// The text where it is valid UTF-8, else what it is in Windows-1252.
std::string asUtf8(std::string_view bytes);

/// Number of characters (code points) of a valid UTF-8 text; columns are counted in these.
std::size_t characterCount(std::string_view utf8);

/// Byte offset at which character number `character` (from 0) starts; the size of the text when it
/// has no more characters than that.
std::size_t characterOffset(std::string_view utf8, std::size_t character);

/// At most `limit` characters of a text, control characters shown as "?", "..." where it was cut:
/// for quoting foreign input in a message.
std::string excerpt(std::string_view utf8, std::size_t limit = 40);

/// The text with its first letter small, as it goes within a sentence; an abbreviation stays.
std::string inSentence(std::string text);

/// The text with every control character turned into a blank, so that it cannot break a line.
std::string withoutControls(std::string_view text);

} // namespace telvo
