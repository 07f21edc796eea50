// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "engine/driver.h"

#include <optional>

/// Why a case has no results, in words. Each message names the quantity and the input that causes
/// the stop; `where` is the name of that input.
namespace telvo::engine {

/// The inputs that pass the check before analysis and still leave a quantity without a value, in a
/// fixed order; the first one found is told.
std::optional<Fault> impossibleInput(const WorkingInputs& prepared);

/// Whether there is such an input.
bool isImpossible(const WorkingInputs& prepared);

/// The message of a stop. Its cause is the input that, set to a common value, lets the quantity be
/// computed; inputs farthest from common values are tried first.
Fault faultOf(const Stopped& stopped, const WorkingInputs& prepared);

} // namespace telvo::engine
