// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "report/ReportWriter.h"
#include "run/Run.h"

#include <string>
#include <string_view>
#include <vector>

namespace telvo::study {

/// Two reports laid over each other: lines that differ, marked "- " of the first and "+ " of the
/// second one, a few equal lines around them, and "..." where equal ones are left out. Two lines
/// with the names come first. No line ends with blanks or a line break.
std::vector<std::string> reportDiff(std::string_view beforeName, const run::Run& before,
                                    std::string_view afterName, const run::Run& after,
                                    const report::ReportOptions& options);

} // namespace telvo::study
