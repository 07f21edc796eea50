// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SettingsStore.h"

#include "app/platform/FileLock.h"
#include "base/TemporaryFolder.h"
#include "RecordedMessages.h"

#include <gtest/gtest.h>

namespace telvo::app {
namespace {

const std::string Stamp = "[Version]\r\nINIFileVersion=050817\r\n";

struct Store {
    test::TemporaryFolder folder;
    test::RecordedMessages messages;
    std::string data = folder.root;
    std::string path = folder.root + "TELVO.INI";

    SettingsStore open() { return {path, {data, "Arial", "xdg-open", "TELVO"}, messages}; }
    /// The values after a start on a file with these lines.
    Settings loaded(const std::string& lines) {
        folder.put("TELVO.INI", Stamp + lines);
        SettingsStore store = open();
        EXPECT_FALSE(store.checkVersion());
        store.LoadSettings();
        return store.values();
    }
    std::string file() { return folder.content("TELVO.INI"); }
};

TEST(SettingsStore, FreshFileHoldsTheInitialValuesAndTheNextStartPutsThemInRange) {
    Store s;
    SettingsStore store = s.open();
    const Settings initial = store.values();
    EXPECT_TRUE(store.checkVersion());
    EXPECT_NE(s.file().find("[Settings]\r\nDefaultUnits=0\r\n"), std::string::npos);
    EXPECT_NE(s.file().find("MaxDisplaySize=2048\r\n"), std::string::npos);
    EXPECT_NE(s.file().find("PlotRangeMin=50\r\n"), std::string::npos);
    EXPECT_EQ(s.messages.lines.back(), "Saving default settings to file: " + s.path);
    store.LoadSettings();
    Settings expected = initial;
    expected.MaxDisplaySize = 4096;
    EXPECT_EQ(store.values(), expected);
}

TEST(SettingsStore, FileOfAnotherBuildIsReplacedWhole) {
    Store s;
    s.folder.put("TELVO.INI", "[Version]\r\nINIFileVersion=050816\r\n[Own]\r\nmine=1\r\n");
    EXPECT_TRUE(s.open().checkVersion());
    EXPECT_EQ(s.file().find("mine"), std::string::npos);
    EXPECT_TRUE(s.file().starts_with(Stamp));
}

TEST(SettingsStore, WhatCannotBeReadIsLeftAlone) {
    Store s;
    std::filesystem::create_directory(s.path);
    SettingsStore store = s.open();
    EXPECT_FALSE(store.checkVersion());
    EXPECT_FALSE(store.SaveSettings(SettingsSaveMode::All));
    EXPECT_TRUE(std::filesystem::is_directory(s.path));
}

TEST(SettingsStore, WithoutAFileTheValuesAreThoseOfAFreshOne) {
    Store s;
    SettingsStore fresh = s.open();
    fresh.checkVersion();
    fresh.LoadSettings();
    EXPECT_FALSE(fresh.trouble());
    std::filesystem::remove(s.path);
    std::filesystem::create_directory(s.path);
    SettingsStore unreadable = s.open();
    unreadable.checkVersion();
    unreadable.LoadSettings();
    EXPECT_EQ(unreadable.values(), fresh.values());
    EXPECT_EQ(unreadable.trouble()->where, s.path);
    s.path = s.folder.root + "no/TELVO.INI"; // and where none can be made
    SettingsStore unwritable = s.open();
    EXPECT_FALSE(unwritable.checkVersion());
    unwritable.LoadSettings();
    EXPECT_EQ(unwritable.values(), fresh.values());
    EXPECT_TRUE(unwritable.trouble());
}

TEST(SettingsStore, TwoProgramsKeepEachOthersChanges) {
    Store s;
    SettingsStore first = s.open();
    first.checkVersion();
    first.LoadSettings();
    SettingsStore second = s.open();
    second.LoadSettings();
    second.values().DisplayFontSize = 14;
    second.values().ShowDisclaim = 0;
    ASSERT_TRUE(second.SaveSettings(SettingsSaveMode::Settings));
    first.values().DefaultUnits = 1;
    first.values().ShowDisclaim = 0;
    ASSERT_TRUE(first.SaveSettings(SettingsSaveMode::Settings));
    first.values().DisplayHistoryWin = 0; // a second save still does not know the other's font
    ASSERT_TRUE(first.SaveSettings(SettingsSaveMode::All));
    second.values().DefaultUnits = 0; // as it was in this program all the time
    second.values().DisplayFontSize = 12;
    ASSERT_TRUE(second.SaveSettings(SettingsSaveMode::Settings));
    SettingsStore third = s.open();
    third.LoadSettings();
    EXPECT_EQ(third.values().DisplayFontSize, 12);
    EXPECT_EQ(third.values().ShowDisclaim, 0);
    EXPECT_EQ(third.values().DefaultUnits, 1);
    EXPECT_EQ(third.values().DisplayHistoryWin, 0);

    // The older program closes idle, then uses a file of its own.
    const auto use = [](SettingsStore& store, const std::string& name) {
        updateRecentFiles(store.values(), {name, 0, "/" + name});
        ASSERT_TRUE(store.SaveSettings(SettingsSaveMode::FileMenu));
    };
    use(second, "a");
    use(second, "b");
    ASSERT_TRUE(first.SaveSettings(SettingsSaveMode::FileMenu));
    EXPECT_EQ(first.values().RecentFiles[0].LastFile, "b");
    use(first, "c");
    use(second, "a");
    third.LoadSettings();
    EXPECT_EQ(third.values().MaxLastFiles, 3);
    EXPECT_EQ(third.values().RecentFiles[0].LastFile, "a");
    EXPECT_EQ(third.values().RecentFiles[1].LastFile, "c");
    EXPECT_EQ(third.values().RecentFiles[2].LastFile, "b");
}

TEST(SettingsStore, ValuesAreReadWithTheirDefaultsAndRanges) {
    Store s;
    const struct {
        const char *label, *lines;
        double (*value)(const Settings&);
        double expected;
    } rows[] = {
#define VALUE(name) [](const Settings& v) -> double { return v.name; }
        {"absent switch", "", VALUE(DisplayHistoryWin), 0},
        {"absent with a read default", "", VALUE(CopyExampleFiles), 1},
        {"font flag out of range", "[Settings]\nDisplayFontBold=1\n", VALUE(DisplayFontBold), -1},
        {"above", "[Graph]\nSymbolSize=25\n", VALUE(SymbolSize), 3},
        {"below", "[Graph]\nGraphStyle=0\n", VALUE(GraphStyle), 1},
        {"recent count", "[FileMenu]\nMaxLastFiles=9\n", VALUE(MaxLastFiles), 0},
        {"half to even", "[TELVOOptions]\nPlotRangeMin=12.5\n", VALUE(PlotRangeMin), 12},
        {"half to even, up", "[TELVOOptions]\nPlotRangeMin=13.5\n", VALUE(PlotRangeMin), 14},
        {"range absent", "", VALUE(PlotRangeMin), 100},
        {"range degenerate", "[TELVOOptions]\nPlotRangeMin=80\nPlotRangeMax=80\n",
         VALUE(PlotRangeMin), 50},
        {"beyond 16 bits", "[Settings]\nMaxDisplaySize=99999\n", VALUE(MaxDisplaySize), 4096},
        {"no number", "[Graph]\nGridStyle=many\n", VALUE(GridStyle), 0},
        {"names without case and blanks", " [graph] \n symbolsize =7\nSymbolSize=9\n",
         VALUE(SymbolSize), 7},
        {"trailing blank in the key", "[Graph]\nSymbolSize =8\n", VALUE(SymbolSize), 8},
        {"a comment is no key", "[Graph]\n;SymbolSize=8\n", VALUE(SymbolSize), 3},
#undef VALUE
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.value(s.loaded(row.lines)), row.expected) << row.label;
}

TEST(SettingsStore, TextsAndFoldersAreSettled) {
    Store s;
    const std::string below = s.folder.root + "cases";
    std::filesystem::create_directory(below);
    const struct {
        const char* label;
        std::string lines;
        std::string Settings::*value;
        std::string expected;
    } rows[] = {
        {"no font", "", &Settings::DisplayFontName, "Arial"},
        {"no extension stays", "[Settings]\nFileExtension=\n", &Settings::FileExtension, ""},
        {"0 is the built-in one", "[Settings]\nFileExtension=0\n", &Settings::FileExtension, "TLV"},
        {"data path 0", "[Settings]\nDataPath=0\n", &Settings::DataPath, s.data},
        {"missing folder", "[Settings]\nDataPath=" + below + "/no\n", &Settings::DataPath, s.data},
        {"separator added", "[Settings]\nDataPath= " + below + "\n", &Settings::DataPath,
         below + static_cast<char>(std::filesystem::path::preferred_separator)},
        {"255 characters", "[Graph]\nGraphTitle=" + std::string(300, 'x') + "\n",
         &Settings::GraphTitle, std::string(255, 'x')},
    };
    for (const auto& row : rows)
        EXPECT_EQ(s.loaded(row.lines).*row.value, row.expected) << row.label;
}

TEST(SettingsStore, SaveTouchesItsSectionAloneAndKeepsForeignLines) {
    Store s;
    const std::string before = Stamp + "; mine\r\n[Graph]\r\nSymbolSize=9\r\nOther=1\r\nno key\r\n"
                                       "[FileMenu]\r\nLastFile4=old\r\n";
    s.folder.put("TELVO.INI", before);
    SettingsStore store = s.open();
    store.values().MaxLastFiles = 1;
    store.values().RecentFiles[0] = {"a.TLV", 1, "/cases/a.TLV"};
    ASSERT_TRUE(store.SaveSettings(SettingsSaveMode::FileMenu));
    EXPECT_EQ(s.file(), before + "MaxLastFiles=1\r\nLastFile1=a.TLV\r\nLastFileMode1=1\r\n"
                                 "LastFileLong1=/cases/a.TLV\r\n");
    store.values().MaxLastFiles = 9; // written once as it is, then put in range
    ASSERT_TRUE(store.SaveSettings(SettingsSaveMode::FileMenu));
    EXPECT_NE(s.file().find("MaxLastFiles=9\r\n"), std::string::npos);
    EXPECT_EQ(store.values().MaxLastFiles, 0);
}

TEST(SettingsStore, SavedAndLoadedValuesAreTheSame) {
    Store s;
    SettingsStore store = s.open();
    store.checkVersion();
    Settings& v = store.values();
    v.MaxDisplaySize = 8192, v.DisplayFontSize = 12, v.DisplayFontBold = -1;
    v.PlotRangeMin = 20, v.XAxisTitle[5] = "Breite = 2", v.YAxisTitle[1] = "\xC3\x9C";
    v.ExternalEditor = "my editor", v.RoundTELVOSF = 2;
    for (int i = 1; i <= 3; ++i)
        updateRecentFiles(v, {"n" + std::to_string(i), 0, "/n" + std::to_string(i)});
    const Settings saved = v;
    ASSERT_TRUE(store.SaveSettings(SettingsSaveMode::All));
    SettingsStore again = s.open();
    EXPECT_FALSE(again.checkVersion());
    again.LoadSettings();
    EXPECT_EQ(again.values(), saved);
}

TEST(RecentFiles, TheLatestComesFirstAndTheFifthDropsOut) {
    Settings v;
    const auto names = [&] {
        std::string out;
        for (int slot = 1; slot <= 4; ++slot)
            out += recentFileCaption(v, slot);
        return out;
    };
    const auto open = [&](std::string name) { return updateRecentFiles(v, {name, 0, "/" + name}); };
    for (const char* name : {"a", "b", "c", "d"})
        EXPECT_TRUE(open(name));
    EXPECT_EQ(names(), "/d/c/b/a");
    open("b"); // stood in slot 3
    EXPECT_EQ(names(), "/b/d/c/a");
    open("e");
    EXPECT_EQ(names(), "/e/b/d/c");
    EXPECT_EQ(v.MaxLastFiles, 4);
    v.ShortRecentFiles = 1;
    EXPECT_EQ(names(), "ebdc");
    v.KeepFileNames = 0;
    EXPECT_FALSE(open("f"));
    EXPECT_EQ(names(), "ebdc");
}

TEST(RecentFiles, OfTwoProgramsAreMerged) {
    const auto list = [](std::string_view names) {
        RecentFiles files;
        for (const char c : names)
            files.push_back({std::string(1, c), 0, '/' + std::string(1, c)});
        return files;
    };
    const struct {
        const char *known, *own, *others, *merged;
    } rows[] = {{"abc", "abc", "dabc", "dabc"}, // idle
                {"abc", "xabc", "dabc", "xdab"},
                {"abcd", "yxab", "eabc", "yxea"},
                {"abc", "bac", "dabc", "bdac"}, // one used again
                {"abc", "cba", "d", "cbd"},     // the last one never moved
                {"", "a", "b", "ab"},
                {"a", "a", "", ""}};
    for (const auto& row : rows)
        EXPECT_EQ(mergedRecentFiles(list(row.known), list(row.own), list(row.others)),
                  list(row.merged))
            << row.own;
}

TEST(FileLock, IsHeldByOneAlone) {
    const test::TemporaryFolder folder;
    const std::string path = folder.root + "lock";
    {
        const FileLock first(path);
        EXPECT_TRUE(first.held());
        EXPECT_FALSE(FileLock(path, std::chrono::milliseconds{20}).held());
    }
    EXPECT_TRUE(FileLock(path).held());
    EXPECT_FALSE(FileLock(folder.root + "no/lock").held());
}

TEST(CheckSettings, RefusesInTheOrderOfTheDialog) {
    const test::TemporaryFolder folder;
    const struct {
        SettingsTexts texts;
        std::string message;
    } rows[] = {
        {{folder.root, "4096", "TLV"}, ""},
        {{folder.root, "16384", " "}, ""},
        {{folder.root + "no", "", "tlv"}, "Invalid Path for Data Files"},
        {{" ", "4096", "TLV"}, "Invalid Path for Data Files"},
        {{folder.root, " ", "tlv"}, "Blank field not allowed"},
        {{folder.root, "2048", "tlv"},
         "Value '2048' is outside input range\nValid range is: 4096-16384"},
        {{folder.root, "5000", "tlv"}, "Invalid character in file extension"},
        {{folder.root, "5000", "T.L"}, "Invalid character in file extension"},
    };
    for (const auto& row : rows) {
        const auto refused = checkSettings(row.texts);
        EXPECT_EQ(refused ? refused->message : "", row.message);
    }
}

TEST(CheckOptions, RangeIsOrderedAsItIsKept) {
    const std::string order = "Invalid Range settings. Check Options-> Output Options";
    const std::string range = "' is outside input range\nValid range is: 0-150";
    const struct {
        OptionsTexts texts;
        std::string message, control;
    } rows[] = {
        {{"0", "150"}, "", ""},
        {{"12.4", "12.6"}, "", ""}, // kept as 12 and 13
        {{"12.6", "13.4"}, order, "PlotRangeMin"},
        {{"80", "80"}, order, "PlotRangeMin"},
        {{"90", "80"}, order, "PlotRangeMin"},
        {{"-1", ""}, "Minimum of the graph range: Value '-1" + range, "PlotRangeMin"},
        {{"50", " "}, "Maximum of the graph range: Blank field not allowed", "PlotRangeMax"},
        {{"50", "151"}, "Maximum of the graph range: Value '151" + range, "PlotRangeMax"},
    };
    for (const auto& row : rows) {
        const auto refused = checkOptions(row.texts);
        EXPECT_EQ(refused ? refused->message : "", row.message);
        EXPECT_EQ(refused ? refused->control : "", row.control);
    }
}

} // namespace
} // namespace telvo::app
