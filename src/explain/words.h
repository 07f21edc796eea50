// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Frame.h"
#include "explain/Explaining.h"

#include <string>
#include <string_view>

/// The sentences of the working that say why: all that is written by hand.
namespace telvo::explain {

/// Why a rule goes the way it went.
struct Reason {
    std::string_view sentence; ///< empty: goes without saying
    bool withCondition = true; ///< the comparison behind the decision is shown, too
};
/// Given: symbol  of the quantity that the rule decides on
Reason reasonOf(Rule rule, bool yes, std::string_view symbol);

/// What else a reader of a step should know; may be empty.
/// Given: mode  in which stability factors are compared
std::string noteOn(const TracedStep& step, const engine::Frame& frame, int mode);

} // namespace telvo::explain
