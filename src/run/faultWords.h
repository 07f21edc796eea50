// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "project/ProjectInput.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace telvo::run {

/// The name of a quantity of the results in plain words: "front abutment load".
/// Given: name  without pass, side and pillar
std::string quantityWords(std::string_view name);

/// A fault of the engine in the words of the screen: inputs by their labels and units, quantities
/// in plain words. The engine itself names both by their keys.
/// Given: withNames  the console adds the names of the inputs in brackets, by which they are set
Fault inWords(const Fault& fault, std::int16_t units, bool withNames = false);

/// The same as the refusal of its first input: with the control that holds it.
Refusal asRefusal(const Fault& fault, std::int16_t units);

} // namespace telvo::run
