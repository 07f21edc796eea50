// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"

#include <string>
#include <string_view>

/// The library that writes workbooks prints numbers with 16 digits, which is one too few for about
/// half of all numbers that come from a computation. Those are written as marked texts, and what is
/// marked becomes a number with all of its digits before the workbook is handed out.
namespace telvo::table {

/// What a marked text begins with: U+FFFE, which XML does not have and escapedText() keeps away from
/// all other texts.
inline constexpr std::string_view ExactNumberMark = "\xEF\xBF\xBE";

/// Whether 16 digits do not read back to the same value.
/// Given: shortest  the number in its shortest form
bool needsExactNumber(std::string_view shortest);

/// A text as a workbook holds it: _x0041_ would be read as the character of that number.
std::string escapedText(std::string_view text);

/// The workbook with numbers in the place of the marked texts of its first sheets.
Result<std::string> withExactNumbers(std::string_view workbook, std::size_t sheets = 1);

} // namespace telvo::table
