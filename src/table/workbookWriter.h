// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "project/ProjectInput.h"

#include <span>
#include <string>

namespace telvo::table {

/// Writes cases as a workbook (XLSX): the sheet "Cases" with a row per case, headings bold and in
/// sight, and the sheet "Columns" that says what each column means, its unit and what it may hold.
/// Numbers keep every digit, texts are texts whatever they begin with.
/// Faults: a value that no reader would accept, a text that is too long for a cell; `where` names
/// case and column.
Result<std::string> writeWorkbook(std::span<const project::ProjectCase> cases);

/// The workbook to begin a table with: one row that runs as it is, whose automatic values are left
/// to be computed when it is read.
Result<std::string> writeTemplate();

} // namespace telvo::table
