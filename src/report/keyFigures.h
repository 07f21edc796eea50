// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/KeyFigures.h"
#include "report/ReportWriter.h"
#include "run/Run.h"

namespace telvo::report {

/// The key figures of a run, rounded as its report prints them.
project::KeyFigures keyFigures(const run::Run& run, const ReportOptions& options);

} // namespace telvo::report
