// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Every conversion between numbers and text, and every rounding, of cases, settings and reports.
/// None of them knows a locale: the decimal sign is always ".".
namespace telvo {

/// A number found at the start of a text.
struct LeadingNumber {
    double value = 0;
    std::size_t length = 0; ///< characters taken, leading blanks included
};

/// Leading-number rule: skip blanks; an optional sign; digits with at most one "."; an optional
/// exponent (E, e, D or d); stop at the first other character.
/// Returned: nothing when the text does not begin with a number or the number overflows;
///           a number too small for a double is 0.
std::optional<LeadingNumber> leadingNumber(std::string_view text);

/// The number that a text is from end to end but for blanks; nothing for any other text and beyond
/// the range of numbers.
std::optional<double> numberOf(std::string_view text);

/// The leading number of a text, 0 where there is none.
double leadingValue(std::string_view text);

/// The leading number rounded half to even to a 16-bit integer and held within its range.
std::int16_t leadingInteger(std::string_view text);

/// General number format: the shortest decimal text that reads back to the same value, plain for
/// 1E-5 <= |x| < 1E15, else like 1E-06. The float overload is the shortest text of the float.
std::string generalNumber(double value);
std::string generalNumber(float value);
std::string generalNumber(int value);

/// The general number format cut to `digits` significant digits (1..17), trailing zeros dropped.
std::string generalNumber(double value, int digits);

/// Appends the general number to `out`; for writers that make many numbers.
void appendGeneralNumber(std::string& out, double value);

/// A count as it is read: "1,000,000".
std::string groupedCount(std::size_t count);

/// Number after a pattern of "#" (optional digit), "0" (required digit), "." and "E+00".
/// Rounds half away from zero on the value's 15 significant decimal digits, so that 0.125 with
/// "0.00" is 0.13. A value that rounds to zero carries no minus sign.
std::string formatPattern(double value, std::string_view pattern);

/// nearbyint(x * 100) / 100: two decimals, ties to even, as cases and factors are rounded.
double roundHalfEven2(double value);

} // namespace telvo
