// SPDX-License-Identifier: GPL-3.0-or-later
//
// Feeds arbitrary bytes to the reader of settings files and to the settings that are read from it.
// Aborts where a promise is broken.

#include "app/SettingsStore.h"
#include "base/IniFile.h"
#include "base/text.h"
#include "library/resourceList.h"
#include "require.h"

#include <cstdint>

using namespace telvo;

namespace {

struct Silent : Messages {
    Answer ask(std::string_view, Buttons, Answer preset, std::string_view) override {
        return preset;
    }
    void history(std::string_view) override {}
    void status(std::string_view) override {}
};

/// Whatever a file holds, every value lies in its range afterwards.
void requireUsable(const app::Settings& s) {
    require(s.MaxDisplaySize >= 4096 && s.MaxDisplaySize <= 16384, "history size");
    require(s.DisplayFontSize >= 7 && s.DisplayFontSize <= 24, "font size");
    require(!s.DisplayFontName.empty() && !s.BrowseFontName.empty(), "fonts");
    require(s.DisplayFontBold == 0 || s.DisplayFontBold == -1, "bold");
    require(s.MaxLastFiles >= 0 && s.MaxLastFiles <= 4, "recent files");
    require(s.SymbolSize >= 3 && s.SymbolSize <= 20, "symbols");
    require(s.PlotRangeMin >= 0 && s.PlotRangeMax <= 150 && s.PlotRangeMin != s.PlotRangeMax,
            "graph range");
    require(s.RoundTELVOSF >= 0 && s.RoundTELVOSF <= 2, "rounding");
    require(!s.DataPath.empty(), "data path");
    require(characterCount(s.GraphTitle) <= IniFile::longestValue, "long texts are cut");
    for (int slot = 0; slot <= 5; ++slot)
        require(isValidUtf8(app::recentFileCaption(s, slot)), "captions are UTF-8");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (const auto list =
            library::readResourceText({reinterpret_cast<const char*>(data), size}, "fuzz")) {
        for (const library::Resource& one : *list)
            require(!one.title.empty() && !one.file.empty() &&
                        one.file.find_first_of("/\\") == std::string::npos,
                    "a document has a title and lies in its folder");
    }
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

    Silent messages;
    app::SettingsStore store("/nonexistent/TELVO.INI", {"/", "Font", "editor", "TELVO"}, messages);
    store.readSettings(IniFile(bytes));
    requireUsable(store.values());
    return 0;
}
