// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "explain/Working.h"
#include "report/sections.h"

namespace telvo::explain {

/// Tells every figure of pages 1 to 5 beside its step.
void addPrintedFigures(const report::ReportSource& source, int digits, Chapters& chapters);

} // namespace telvo::explain
