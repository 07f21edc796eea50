// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "engine/AnalysisResults.h"
#include "engine/WorkingInputs.h"

#include <optional>

/// What stops a computation that cannot finish. Each message names the quantity and the input that
/// causes the stop; `where` is the name of that input.
namespace telvo::engine {

/// The inputs that pass the check before analysis and still leave a quantity without a value, in a
/// fixed order; the first one found is told.
std::optional<Fault> impossibleInput(const WorkingInputs& prepared);

/// The load on the active mining zone came out as 0 and there is no stability factor.
Fault zeroAMZLoad(const WorkingInputs& in);

/// The load on barrier k came out as 0 and there is no stability factor.
Fault zeroBarrierLoad(const WorkingInputs& in, int k);

/// The first quantity that left the range of its type, with the input farthest from common values.
std::optional<Fault> unboundedQuantity(const WorkingInputs& in, const AnalysisResults& r);

} // namespace telvo::engine
