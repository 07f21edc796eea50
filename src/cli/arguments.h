// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "report/ReportWriter.h"

namespace CLI {
class App;
}

/// Options that several commands have.
namespace telvo::cli {

/// --round-sf: the rounding of stability factors.
void addRounding(CLI::App& command, report::ReportOptions& options);

/// --force-units and --stress-units of English cases.
void addUnits(CLI::App& command, report::ReportOptions& options);

} // namespace telvo::cli
