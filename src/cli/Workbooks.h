// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "project/ProjectInput.h"
#include "table/CaseTable.h"
#include "table/sheets.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace telvo::cli {

/// Tables as workbooks (XLSX), handed in: their libraries would double the time that every start
/// takes, so that only a program that is called for a workbook has them.
struct Workbooks {
    Result<table::CaseTable> (*read)(std::string_view bytes, const std::string& file) = nullptr;
    Result<std::string> (*write)(std::span<const project::ProjectCase> cases) = nullptr;
    Result<std::string> (*makeTemplate)() = nullptr;
    Result<std::string> (*writeSheets)(std::span<const table::Sheet> sheets) = nullptr;
};

inline constexpr std::string_view WorkbookEnding = ".xlsx"; ///< of a file name

/// What a program without them says behind the name of a file.
inline constexpr const char* NoWorkbooks = ": this build does not write workbooks";

} // namespace telvo::cli
