// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "report/ReportWriter.h"

#include <string>

namespace CLI {
class App;
}

/// Options that several commands have.
namespace telvo::cli {

/// --round-sf: the rounding of stability factors.
void addRounding(CLI::App& command, report::ReportOptions& options);

/// --force-units and --stress-units of English cases.
void addUnits(CLI::App& command, report::ReportOptions& options);

/// CASE, --output and --force of what makes one case of another.
void addSourceAndTarget(CLI::App& command, std::string& source, std::string& target, bool& force);

} // namespace telvo::cli
