// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/inputFields.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace telvo::project {

/// What a text that was pasted into an input field means there.
struct FieldText {
    std::string number = {};  ///< for the field; empty when the text is refused
    std::string remark = {};  ///< of a converted value: "275 m is 902.231 ft"
    std::string refusal = {}; ///< a sentence; empty unless refused
};

/// Reads one number with or without a unit. The field's own unit is dropped; another unit of the
/// same quantity is converted, to seven significant digits, with the factors of units.h; any other
/// unit is refused.
FieldText readFieldText(std::string_view text, FieldKind kind, std::int16_t units);

} // namespace telvo::project
