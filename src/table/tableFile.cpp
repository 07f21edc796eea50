// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/tableFile.h"

#include "base/files.h"
#include "table/csvTable.h"
#include "table/workbookReader.h"

namespace telvo::table {

Result<CaseTable> readTableFile(const std::string& path) {
    const auto bytes = readFile(path);
    if (!bytes) return bytes.fault();
    const bool packed = bytes->starts_with("PK") || bytes->starts_with("\xD0\xCF\x11\xE0");
    return packed ? readWorkbook(*bytes, path) : readCsv(*bytes, path);
}

} // namespace telvo::table
