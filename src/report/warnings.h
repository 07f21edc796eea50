// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "report/ReportWriter.h"
#include "run/Run.h"

#include <array>
#include <string>

namespace telvo::report {

/// How a case compares with the limits of the case-history data base.
struct Warnings {
    std::array<bool, 16> WarningFlags{}; // 4 and 8 exist but are never set
    bool AnyWarning = false;
    std::string WarningSummary; // the texts of flags 0 to 7, each followed by two line breaks
    bool WarningIssued = false; // flag 0 was emitted
    /// The [WARNINGS] section of page 1, or nothing; without the page's closing line break.
    std::string section;
};

/// Assesses a run. The texts are design recommendations of the data-base analysis and stand as they
/// are, odd spacing included.
/// Notes: all depth and width limits are in feet; the metric figures in the texts are labels only,
///        so that 199 m (652.9 ft) already counts as deeper than "200 m".
Warnings assessWarnings(const run::Run& run, const ReportOptions& options);

} // namespace telvo::report
