// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "explain/Working.h"
#include "report/sections.h"

namespace telvo::explain {

/// Tells every figure of pages 1 to 5 beside its step.
void addPrintedFigures(const run::Run& run, const report::ReportOptions& options, int digits,
                       Chapters& chapters);

} // namespace telvo::explain
