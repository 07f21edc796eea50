// SPDX-License-Identifier: GPL-3.0-or-later
//
// Feeds arbitrary bytes to the readers of case tables: as text, as a packed workbook, and, cut at
// "%%", as the sheet, the shared texts and the styles of one, which packing would hide from the
// fuzzer. What is read is written and read again. Aborts where a promise is broken.

#include "base/text.h"
#include "require.h"
#include "table/csvTable.h"
#include "table/workbookReader.h"

#include <cmath>
#include <cstdint>
#include <map>

using namespace telvo;

namespace {

void check(const Result<table::CaseTable>& read) {
    if (!read) return require(!read.fault().message.empty(), "a fault says what is wrong");
    std::vector<project::ProjectCase> cases;
    std::uint32_t before = 0;
    for (const table::CaseRow& row : read->rows) {
        require(row.number > before, "rows are in order");
        before = row.number;
        require(row.faults.size() <= table::MaxFaultsOfRow, "faults are limited");
        if (!row.good()) continue;
        const project::ProjectInput& in = row.current.Input;
        require(in.NumberEntries >= 1 && in.NumberEntries <= project::MaxEntries, "entries");
        require(in.Anal >= 0 && in.Anal <= 3 && std::isfinite(in.DepthCover), "ranges");
        require(isValidUtf8(row.current.Title + row.current.Description), "texts are UTF-8");
        // A control character that no table in text can hold may come from a workbook.
        if ((row.current.Title + row.current.Description).find('\0') == std::string::npos)
            cases.push_back(row.current);
    }
    if (cases.empty()) return;
    for (const char separator : {',', ';', '\t'}) {
        const auto written = table::writeCsv(cases, separator);
        require(static_cast<bool>(written), "what is read can be written");
        const auto again = table::readCsv(written->bytes, "again");
        require(again && again->rows.size() == cases.size(), "what is written can be read");
        for (std::size_t i = 0; i < cases.size(); ++i) {
            cases[i].FileName = again->rows[i].current.FileName;
            require(again->rows[i].good() && again->rows[i].current == cases[i],
                    "a case is read back as it was written");
        }
    }
}

Result<table::CaseTable> readParts(std::string_view bytes) {
    std::map<std::string, std::string_view> parts = {
        {"xl/workbook.xml", "<w><sheet name='S' id='1'/></w>"},
        {"xl/_rels/workbook.xml.rels",
         "<r><Relationship Id='1' Type='/worksheet' Target='1'/><Relationship Id='2' "
         "Type='/sharedStrings' Target='2'/><Relationship Id='3' Type='/styles' Target='3'/></r>"}};
    for (const char* name : {"xl/1", "xl/2", "xl/3"}) {
        const auto cut = bytes.find("%%");
        parts[name] = bytes.substr(0, cut);
        bytes = cut == std::string_view::npos ? std::string_view() : bytes.substr(cut + 2);
    }
    return table::readWorkbookParts(
        [&](const std::string& name) -> Result<std::optional<table::PartReader>> {
            const auto found = parts.find(name);
            if (found == parts.end() || found->second.empty())
                return std::optional<table::PartReader>();
            return std::optional<table::PartReader>(
                [rest = found->second](char* into, std::size_t size) mutable {
                    const auto got = rest.copy(into, size);
                    rest.remove_prefix(got);
                    return Result<std::size_t>(got);
                });
        },
        "fuzz");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    check(table::readCsv(bytes, "fuzz"));
    check(table::readWorkbook(bytes, "fuzz"));
    check(readParts(bytes));
    return 0;
}
