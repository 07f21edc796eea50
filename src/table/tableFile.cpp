// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/tableFile.h"

#include "base/files.h"
#include "table/csvTable.h"
#include "table/workbookReader.h"

#include <new>

namespace telvo::table {

Result<CaseTable> readTableFile(const std::string& path, const ReadWatch& watch) {
    try {
        const auto bytes = readFile(path);
        if (!bytes) return bytes.fault();
        const bool packed = bytes->starts_with("PK") || bytes->starts_with("\xD0\xCF\x11\xE0");
        return packed ? readWorkbook(*bytes, path, watch) : readCsv(*bytes, path, watch);
    } catch (const std::bad_alloc&) {
        return Fault{"there is not enough memory to read it", path};
    }
}

} // namespace telvo::table
