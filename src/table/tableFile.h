// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "table/CaseTable.h"
#include "table/ReadWatch.h"

#include <string>
#include <string_view>

namespace telvo::table {

/// Ending of workbooks; tables in text have any other one.
inline constexpr std::string_view WorkbookEnding = ".xlsx";

/// Reads a table from a file, as text or as a workbook, whichever it is.
/// Faults: those of readFile(), readCsv() and readWorkbook(), too little memory.
Result<CaseTable> readTableFile(const std::string& path, const ReadWatch& watch = {});

} // namespace telvo::table
