// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "report/ReportWriter.h"
#include "run/Run.h"
#include "table/sheets.h"

#include <string>
#include <vector>

namespace telvo::explain {

/// The working as a workbook that computes: a guide, and a sheet with a row for every quantity,
/// whose value is a formula on the cells of its inputs, with all branches.
struct WorkingSheets {
    static constexpr std::size_t Numbers = 1; ///< the sheet with the numbers
    std::vector<table::Sheet> sheets;
};

/// Given: options  of the report whose figures are among the quantities
///        program  name and version, for the guide
WorkingSheets workingSheets(const run::Run& run, const report::ReportOptions& options,
                            const std::string& program);

} // namespace telvo::explain
