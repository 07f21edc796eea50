// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "explain/trace.h"
#include "explain/Working.h"

#include <map>
#include <string>

namespace telvo::explain {

/// Chapters with the expressions behind their steps.
struct TracedChapters {
    Chapters chapters;
    engine::Frame frame;
    std::map<std::string, TracedStep> expressions; ///< by key
};

/// The steps of a run, without the figures of the report beside them.
TracedChapters tracedChapters(const run::Run& run, const report::ReportOptions& options, int digits,
                              Extent extent);

} // namespace telvo::explain
