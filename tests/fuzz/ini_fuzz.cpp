// SPDX-License-Identifier: GPL-3.0-or-later
//
// Feeds arbitrary bytes to the reader of settings files. Aborts where a promise is broken.

#include "base/IniFile.h"
#include "base/text.h"
#include "require.h"

#include <cstdint>

using namespace telvo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    IniFile file(bytes);
    const auto before = file.value("Settings", "DataPath");
    require(!before || characterCount(*before) <= IniFile::longestValue, "long values are cut");
    require(IniFile(file.text()).value("Settings", "DataPath") == before,
            "a written file holds what was read");
    require(isValidUtf8(file.text()), "the text is UTF-8");

    const auto other = file.value("Graph", "SymbolSize");
    file.set("Settings", "DataPath", "/cases/");
    require(file.value("settings", " datapath ") == "/cases/", "what is set can be read");
    require(IniFile(file.text()).value("Settings", "DataPath") == "/cases/", "also from the text");
    require(file.value("Graph", "SymbolSize") == other, "other keys stay");
    return 0;
}
