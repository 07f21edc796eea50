// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "report/ReportWriter.h"
#include "run/Run.h"

#include <memory>
#include <string>
#include <utility>

namespace telvo::report {

/// A run as a window shows it: as it was, whatever happens to the case afterwards.
struct ShownRun {
    std::shared_ptr<const run::Run> run;
    ReportOptions options;

    /// The same case has another name now.
    void rename(std::string fileName) {
        auto renamed = std::make_shared<run::Run>(*run);
        renamed->current.FileName = std::move(fileName);
        run = std::move(renamed);
    }
};

} // namespace telvo::report
