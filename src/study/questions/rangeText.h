// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "study/questions/ranges.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace telvo::study {

/// A range as people write it: "+-10 %" and "-5 .. 10 %" in percent of the case's value, "+-2",
/// "-0.5 .. +2 ft" in units about it, "800 .. 1000" or "800 to 1000" the values themselves; a
/// number with its own or another unit of the quantity, "+-30 cm". Nothing for a blank text, which
/// is the usual range.
/// Given: units  of the case
/// Faults: a text that is no range, one that does not rise
Result<std::optional<Range>> parseRange(std::string_view text, const Variable& variable,
                                        std::int16_t units);

} // namespace telvo::study
