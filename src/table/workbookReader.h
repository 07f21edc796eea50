// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "table/CaseTable.h"
#include "table/ReadWatch.h"
#include "table/Xml.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

/// Case tables as workbooks (XLSX).
namespace telvo::table {

/// Most bytes that a workbook may hold unpacked, and how many times its packed size a part may grow
/// to: sheets of equal rows reach some 60.
inline constexpr std::uint64_t MaxUnpackedBytes = std::uint64_t{1} << 30;
inline constexpr std::uint64_t MaxUnpackedRatio = 300;
/// A part up to this size may have any ratio.
inline constexpr std::uint64_t FreeRatioBytes = std::uint64_t{4} << 20;

/// The parts of a workbook by their names, such as "xl/workbook.xml"; nothing for one that is not
/// there.
using WorkbookParts = std::function<Result<std::optional<PartReader>>(const std::string& name)>;

/// Reads a table from the first sheet in sight whose first row names an input field and that has
/// cases; other sheets with cases are named. Of a formula its stored value counts. Cells that are
/// merged with another one are refused. The sheets are read row by row.
/// Faults: no workbook, no such sheet, headings that stand twice, damage, a workbook beyond the
/// limits of XmlBudget and readXml(), the watch that ends the reading.
/// Given: file  how messages name it
Result<CaseTable> readWorkbookParts(const WorkbookParts& parts, const std::string& file,
                                    const ReadWatch& watch = {});

/// Reads a table from the bytes of a workbook.
/// Faults: those above; what is no XLSX, an encrypted workbook, one that unpacks to too much.
Result<CaseTable> readWorkbook(std::string_view bytes, const std::string& file,
                               const ReadWatch& watch = {});

} // namespace telvo::table
