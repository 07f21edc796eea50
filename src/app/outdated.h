// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/ProjectInput.h"
#include "report/ReportWriter.h"

#include <string>

namespace telvo::app {

/// What a window about a case was made from.
struct ShownCase {
    project::ProjectCase current;
    report::ReportOptions options;
};

/// Why a window no longer belongs to the case on screen, as a text for its user: the other case,
/// the inputs that changed (from what to what, with their units), the texts or the options.
/// Returned: "" where it still belongs. The name of the case, its level and values that it does not
/// use (distances beyond the last entry) make no difference.
std::string outdatedBecause(const ShownCase& shown, const ShownCase& onScreen);

} // namespace telvo::app
