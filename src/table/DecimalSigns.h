// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"

#include <string>
#include <string_view>

namespace telvo::table {

/// Whether the number would be a whole one if its sign parted the thousands, as in "1,500" and
/// "1.500": 1 to 3 digits, no leading zero, the sign, exactly three digits.
bool maybeThousands(std::string_view text, char sign);

/// The decimal signs that the numbers of a table have. A table in text keeps one sign; which one
/// shows only from all of its numbers: "1,234" and "1.234" alone may be 1.234 or 1234.
class DecimalSigns {
  public:
    /// Given: commaPossible  false where the comma separates the cells
    explicit DecimalSigns(bool commaPossible = false) : m_commaPossible(commaPossible) {}

    /// Takes note of a cell of a column of numbers.
    void note(std::string_view text);
    /// The text with "." as its decimal sign, or why it cannot be read and how to write it.
    Result<std::string> read(std::string_view text) const;

  private:
    bool m_commaPossible;
    bool m_comma = false; // like 6,5
    bool m_point = false; // like 6.5
};

} // namespace telvo::table
