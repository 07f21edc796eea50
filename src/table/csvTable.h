// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "table/CaseTable.h"
#include "table/ReadWatch.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Case tables as text: RFC 4180 with comma, semicolon or tab.
namespace telvo::table {

/// Reads a table in text. The separator is the one that makes the most headings known; a first line
/// "sep=;" names it. Valid UTF-8, with or without byte order mark, is read as such, anything else
/// as Windows-1252. Semicolon and tab leave room for a decimal comma. A row has a cell for each
/// heading; a shorter one is refused, because it may have been cut off.
/// Given:  file  how messages name it
/// Faults: what is no such text, headings that are missing or stand twice, a quote without its end,
///         the watch that ends the reading.
Result<CaseTable> readCsv(std::string_view bytes, const std::string& file,
                          const ReadWatch& watch = {});

/// Whether bytes are a table in text, whatever the file is called: the first row names an input
/// field.
bool looksLikeCsv(std::string_view bytes);

struct CsvText {
    std::string bytes;              ///< UTF-8, lines ended by CR LF
    std::vector<std::string> notes; ///< texts that a spreadsheet may take for a formula
};

/// Writes a table in text. Texts stand as they are, so that they read back unchanged: one that
/// begins like a formula is not altered but noted, because a spreadsheet that opens the file
/// computes it. Where the comma may be a decimal sign, 1.234 stands as 1.2340, which nobody takes
/// for a whole number.
/// Given:  separator  ',' ';' or a tab
/// Faults: a value that no reader would accept; `where` names case and column.
Result<CsvText> writeCsv(std::span<const project::ProjectCase> cases, char separator);

} // namespace telvo::table
