// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "engine/AnalysisResults.h"
#include "engine/WorkingInputs.h"

#include <optional>
#include <string>

/// What stops a computation that cannot finish. Each message names the quantity and the input that
/// causes the stop; `where` is the name of that input.
namespace telvo::engine {

/// The inputs that pass the check before analysis and still leave a quantity without a value, in a
/// fixed order; the first one found is told.
std::optional<Fault> impossibleInput(const WorkingInputs& prepared);

/// A quantity that came out without a usable value.
struct Stop {
    std::string quantity;
    int pass = 0; ///< 0 where the quantity has no pass
    int side = 0; ///< 0 where it has no side
    std::string what;
    std::string cause = {}; ///< the input that causes it, where that is known
};

/// The first quantity that left the range of its type. Stability factors have to fit single
/// precision, in which they are shown.
std::optional<Stop> unboundedQuantity(const AnalysisResults& r);

/// The message of a stop. Its cause is the input that, set to a common value, lets the quantity be
/// computed; inputs farthest from common values are tried first.
Fault faultOf(const Stop& stop, const WorkingInputs& in);

} // namespace telvo::engine
