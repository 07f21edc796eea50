// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SettingsStore.h"

#include "app/platform/FileLock.h"
#include "base/files.h"
#include "base/numbers.h"
#include "base/text.h"
#include "project/checks.h"
#include "study/graph/sfGraph.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <system_error>
#include <utility>
#include <variant>

namespace telvo::app {

namespace {

using Field = std::variant<std::int16_t*, float*, std::string*>;

using Range = SettingRange;
constexpr Range AnyNumber = {};
constexpr Range Switch = {0, 1};
constexpr Range FontSwitch = {-1, 0};
constexpr Range HistorySize = {4096, 16384};
constexpr Range FontSize = {7, 24};
constexpr Range PlotRange = {static_cast<std::int16_t>(study::LowestPercent),
                             static_cast<std::int16_t>(study::HighestPercent)};

/// One key: where it stands, which value it holds, what an absent key reads as, and its range.
struct Key {
    std::string_view section;
    std::string_view name;
    Field (*field)(Settings&);
    std::string_view readDefault = {};
    Range range = AnyNumber;
};

#define FIELD(name) #name, [](Settings & s) -> Field { return &s.name; }
#define ELEMENT(name, i) #name #i, [](Settings & s) -> Field { return &s.name[i]; }

// In the order in which a section is written; it has no meaning to the file.
constexpr Key Keys[] = {
    {"Settings", FIELD(DefaultUnits), "", Switch},
    {"Settings", FIELD(DisplayHistoryWin), "", Switch},
    {"Settings", FIELD(MaxDisplaySize), "", HistorySize},
    {"Settings", FIELD(DisplayFontName)},
    {"Settings", FIELD(DisplayFontSize), "", FontSize},
    {"Settings", FIELD(DisplayFontBold), "", FontSwitch},
    {"Settings", FIELD(DisplayFontItalic), "", FontSwitch},
    {"Settings", FIELD(KeepFileNames), "", Switch},
    {"Settings", FIELD(ShowDisclaim), "", Switch},
    {"Settings", FIELD(MaxMainMenu), "", Switch},
    {"Settings", FIELD(EnableMainMenuToolbar), "", Switch},
    {"Settings", FIELD(ShortRecentFiles), "", Switch},
    {"Settings", FIELD(LoadLastInputFile), "", Switch},
    {"Settings", FIELD(RemindAnnualUpdates), "", Switch},
    {"Settings", FIELD(CopyExampleFiles), "1", Switch},
    {"Settings", FIELD(ExternalEditor)},
    {"Settings", FIELD(DataPath)},
    {"Settings", FIELD(FileExtension)},
    {"TextBrowse", FIELD(BrowseFontName)},
    {"TextBrowse", FIELD(BrowseFontSize), "", FontSize},
    {"TextBrowse", FIELD(BrowseFontBold), "", FontSwitch},
    {"TextBrowse", FIELD(BrowseFontItalic), "", FontSwitch},
    {"TextBrowse", FIELD(BrowseDefaultFilter)},
    {"TextBrowse", FIELD(BrowseUseNotepad), "", Switch},
    {"Graph", FIELD(GraphSetParams), "", Switch},
    {"Graph", FIELD(GridStyle), "", {0, 3}},
    {"Graph", FIELD(GraphStyle), "", {1, 3}},
    {"Graph", FIELD(CurveLegend), "", Switch},
    // Also read as "SymbolSize " with a trailing blank: names are compared trimmed.
    {"Graph", FIELD(SymbolSize), "", {3, 20}},
    {"Graph", FIELD(GraphUnits), "", Switch},
    {"Graph", FIELD(GraphTitle)},
    {"Graph", ELEMENT(XAxisTitle, 0)},
    {"Graph", ELEMENT(XAxisTitle, 1)},
    {"Graph", ELEMENT(XAxisTitle, 2)},
    {"Graph", ELEMENT(XAxisTitle, 3)},
    {"Graph", ELEMENT(XAxisTitle, 4)},
    {"Graph", ELEMENT(XAxisTitle, 5)},
    {"Graph", ELEMENT(YAxisTitle, 0)},
    {"Graph", ELEMENT(YAxisTitle, 1)},
    {"TELVOOptions", FIELD(OutputStrUnits), "", Switch},
    {"TELVOOptions", FIELD(OutputStrGradUnits), "", Switch},
    {"TELVOOptions", FIELD(ShowInputScreenOnLoad), "", Switch},
    {"TELVOOptions", FIELD(IssueWarningCancel), "1", Switch},
    {"TELVOOptions", FIELD(ViewChildWindow), "1", Switch},
    {"TELVOOptions", FIELD(PrintModuleHeader), "1", Switch},
    {"TELVOOptions", FIELD(PlotEntryDims), "1", Switch},
    {"TELVOOptions", FIELD(PlotXcutDims), "1", Switch},
    {"TELVOOptions", FIELD(PlotGobDims), "1", Switch}, // written before the next two
    {"TELVOOptions", FIELD(PlotSingleXcutDims), "1", Switch},
    {"TELVOOptions", FIELD(PlotGobExtLoose), "1", Switch},
    {"TELVOOptions", FIELD(PlotRangeMin), "100", PlotRange},
    {"TELVOOptions", FIELD(PlotRangeMax), "150", PlotRange},
    {"TELVOOptions", FIELD(PrintPlotReminder), "1", Switch},
    {"TELVOOptions", FIELD(AskOfficeInstall), "1", Switch},
    {"TELVOOptions", FIELD(RoundTELVOSF), "0", {0, 2}},
};

#undef FIELD
#undef ELEMENT

constexpr Range RecentFileCount = {0, 4};

/// The range in the row of a key.
template <typename Number>
Range rangeOfKey(Number Settings::*setting) {
    Settings probe;
    for (const Key& key : Keys)
        if (key.field(probe) == Field(&(probe.*setting))) return key.range;
    return AnyNumber;
}

/// Text of a key, its read default when it is absent or empty.
std::string readText(const IniFile& file, std::string_view section, std::string_view name,
                     std::string_view readDefault = {}) {
    std::string text = file.value(section, name).value_or("");
    return text.empty() ? std::string(readDefault) : text;
}

void readField(const Field& field, const std::string& text, Range range) {
    if (auto* const* whole = std::get_if<std::int16_t*>(&field))
        **whole = ClampSetting(leadingInteger(text), range.low, range.high);
    else if (auto* const* single = std::get_if<float*>(&field))
        **single = ClampSetting(leadingValue(text), range.low, range.high);
    else
        *std::get<std::string*>(field) = text;
}

std::string fieldText(const Field& field) {
    if (auto* const* whole = std::get_if<std::int16_t*>(&field)) return generalNumber(**whole);
    if (auto* const* single = std::get_if<float*>(&field)) return generalNumber(**single);
    return *std::get<std::string*>(field);
}

struct Section {
    SettingsSaveMode mode;
    std::string_view name;
};
// In the order in which a save of all sections writes them.
constexpr Section Sections[] = {{SettingsSaveMode::Settings, "Settings"},
                                {SettingsSaveMode::FileMenu, "FileMenu"},
                                {SettingsSaveMode::TextBrowse, "TextBrowse"},
                                {SettingsSaveMode::Graph, "Graph"},
                                {SettingsSaveMode::TELVOOptions, "TELVOOptions"}};

std::string slotKey(std::string_view name, std::size_t slot) {
    return std::string(name) + std::to_string(slot + 1);
}

RecentFiles recentFilesOf(const IniFile& file) {
    RecentFiles files(static_cast<std::size_t>(
        ClampSetting(leadingInteger(readText(file, "FileMenu", "MaxLastFiles")),
                     RecentFileCount.low, RecentFileCount.high)));
    for (std::size_t i = 0; i < files.size(); ++i)
        files[i] = {readText(file, "FileMenu", slotKey("LastFile", i)),
                    leadingInteger(readText(file, "FileMenu", slotKey("LastFileMode", i))),
                    readText(file, "FileMenu", slotKey("LastFileLong", i))};
    return files;
}

void writeRecentFiles(IniFile& file, Settings& settings) {
    // The count is written as it is and put into its range only then.
    file.set("FileMenu", "MaxLastFiles", generalNumber(settings.MaxLastFiles));
    settings.MaxLastFiles =
        ClampSetting(settings.MaxLastFiles, RecentFileCount.low, RecentFileCount.high);
    for (std::size_t i = 0; i < static_cast<std::size_t>(settings.MaxLastFiles); ++i) {
        const RecentFile& recent = settings.RecentFiles[i];
        file.set("FileMenu", slotKey("LastFile", i), recent.LastFile);
        file.set("FileMenu", slotKey("LastFileMode", i), generalNumber(recent.LastFileMode));
        file.set("FileMenu", slotKey("LastFileLong", i), recent.LastFileLong);
    }
}

RecentFiles usedSlots(const Settings& settings) {
    const auto first = settings.RecentFiles.begin();
    return {first, first + std::clamp<std::int16_t>(settings.MaxLastFiles, 0, 4)};
}

void setSlots(Settings& settings, const RecentFiles& files) {
    settings.RecentFiles = {};
    settings.MaxLastFiles = static_cast<std::int16_t>(std::min<std::size_t>(files.size(), 4));
    std::copy_n(files.begin(), settings.MaxLastFiles, settings.RecentFiles.begin());
}

/// The file as it is now; a missing one is empty.
Result<IniFile> contentOf(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::exists(pathFromUtf8(path), error)) return IniFile();
    const auto bytes = readFile(path, MaxSettingsBytes);
    if (!bytes) return bytes.fault();
    return IniFile(*bytes);
}

bool endsInSeparator(std::string_view path) {
    return path.ends_with('/') ||
           path.ends_with(static_cast<char>(std::filesystem::path::preferred_separator));
}

std::string asFolder(std::string_view path) {
    std::string folder(trimmed(path));
    if (!endsInSeparator(folder))
        folder += static_cast<char>(std::filesystem::path::preferred_separator);
    return folder;
}

bool isFolder(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_directory(pathFromUtf8(path), error);
}

} // namespace

std::int16_t ClampSetting(double value, std::int16_t low, std::int16_t high) {
    if (value < low || value > high) value = low;
    return static_cast<std::int16_t>(std::nearbyint(value));
}

SettingsStore::SettingsStore(std::string path, SettingsSurroundings surroundings,
                             Messages& messages)
    : m_path(std::move(path)), m_surroundings(std::move(surroundings)), m_messages(messages) {
    m_values.DisplayFontName = m_surroundings.DefaultFont;
    m_values.BrowseFontName = m_surroundings.DefaultFont;
    m_values.ExternalEditor = m_surroundings.ExternalEditor;
    m_values.DataPath = m_surroundings.DataFolder;
    m_values.GraphTitle = m_surroundings.ProgramTitle;
    m_known = m_values;
}

std::string SettingsStore::lockFile() const {
    return m_surroundings.LockFile.empty() ? m_path + ".lock" : m_surroundings.LockFile;
}

bool SettingsStore::checkVersion() {
    const FileLock lock(lockFile()); // two programs at their first start
    std::error_code error;
    const auto file = pathFromUtf8(m_path);
    if (std::filesystem::exists(file, error)) {
        const auto content = contentOf(m_path);
        if (!content) { // what cannot be read may be worth keeping
            m_trouble = content.fault();
            return false;
        }
        if (content->value("Version", "INIFileVersion") == SettingsVersion) return false;
        // The settings of another build are not carried over.
        std::filesystem::remove(file, error);
    }
    IniFile fresh;
    fresh.set("Version", "INIFileVersion", SettingsVersion);
    if (const Status written = writeFile(m_path, fresh.text()); !written) {
        m_trouble = written.fault();
        return false;
    }
    m_messages.history("Saving default settings to file: " + m_path);
    if (const Status saved = save(SettingsSaveMode::All); !saved) m_trouble = saved.fault();
    return true;
}

void SettingsStore::loadSection(const IniFile& file, std::string_view section) {
    for (const Key& key : Keys)
        if (key.section == section)
            readField(key.field(m_values), readText(file, section, key.name, key.readDefault),
                      key.range);
}

void SettingsStore::loadRecentFiles(const IniFile& file) {
    setSlots(m_values, recentFilesOf(file));
}

void SettingsStore::settleDataPath() {
    std::string& path = m_values.DataPath;
    if (path.empty() || path == "0") {
        path = m_surroundings.DataFolder;
        return;
    }
    path = asFolder(path);
    if (!isFolder(path)) path = m_surroundings.DataFolder;
}

void SettingsStore::LoadSettings() {
    std::error_code error;
    const bool exists = std::filesystem::exists(pathFromUtf8(m_path), error);
    const auto content = contentOf(m_path);
    if (!content && !m_trouble) m_trouble = content.fault();
    if (content && exists) {
        readSettings(*content);
        return;
    }
    IniFile fresh; // what would have been written
    for (const Key& key : Keys)
        fresh.set(key.section, key.name, fieldText(key.field(m_values)));
    readSettings(fresh);
    m_seen = IniFile(); // but nothing of it is in a file
}

void SettingsStore::readSettings(const IniFile& file) {
    loadSection(file, "Settings");
    if (m_values.DisplayFontName.empty()) m_values.DisplayFontName = m_surroundings.DefaultFont;
    settleDataPath();
    // An empty extension is kept; "0" is what older files hold for none.
    if (m_values.FileExtension == "0") m_values.FileExtension = BuiltInExtension;
    loadRecentFiles(file);
    loadSection(file, "TextBrowse");
    if (m_values.BrowseFontName.empty()) m_values.BrowseFontName = m_surroundings.DefaultFont;
    loadSection(file, "Graph");
    loadSection(file, "TELVOOptions");
    m_seen = file;
    m_known = m_values;
    if (m_values.PlotRangeMin == m_values.PlotRangeMax) {
        m_values.PlotRangeMin = 50;
        m_values.PlotRangeMax = 150;
        (void)SaveSettings(SettingsSaveMode::TELVOOptions);
    }
}

Status SettingsStore::SaveSettings(SettingsSaveMode mode) {
    m_messages.history("Saving default settings to file: " + m_path);
    const FileLock lock(lockFile()); // without one the last writer wins, as ever
    return save(mode);
}

Status SettingsStore::save(SettingsSaveMode mode) {
    auto file = contentOf(m_path);
    if (!file) return file.fault(); // what cannot be read now would be lost by a write
    IniFile seen = m_seen;
    for (const Section& section : Sections) {
        if (mode != SettingsSaveMode::All && mode != section.mode) continue;
        if (section.mode == SettingsSaveMode::FileMenu) {
            mergeRecentFiles(*file);
            Settings written = m_values; // the count is put into its range behind the first writing
            writeRecentFiles(*file, written);
            writeRecentFiles(seen, m_values);
        }
        for (const Key& key : Keys) {
            if (key.section != section.name) continue;
            const std::string text = fieldText(key.field(m_values));
            const bool changedByOthers =
                file->value(key.section, key.name) != m_seen.value(key.section, key.name);
            if (changedByOthers && text == fieldText(key.field(m_known))) continue;
            file->set(key.section, key.name, text);
            seen.set(key.section, key.name, text);
        }
    }
    Status written = writeFile(m_path, file->text());
    if (!written) return written;
    m_seen = std::move(seen);
    m_known = m_values;
    return written;
}

void SettingsStore::mergeRecentFiles(const IniFile& file) {
    const RecentFiles others = recentFilesOf(file);
    if (others != recentFilesOf(m_seen))
        setSlots(m_values, mergedRecentFiles(usedSlots(m_known), usedSlots(m_values), others));
}

RecentFiles mergedRecentFiles(const RecentFiles& known, const RecentFiles& own,
                              const RecentFiles& others) {
    // What was not used since stands in the old order at the end of the list.
    auto old = known.rbegin();
    auto used = own.rbegin();
    for (; used != own.rend(); ++used) {
        old = std::find(old, known.rend(), *used);
        if (old == known.rend()) break;
        ++old;
    }
    RecentFiles merged(own.begin(), used.base());
    for (const RecentFile& other : others)
        if (std::none_of(merged.begin(), merged.end(), [&](const RecentFile& file) {
                return file.LastFileLong == other.LastFileLong;
            }))
            merged.push_back(other);
    if (merged.size() > 4) merged.resize(4);
    return merged;
}

bool updateRecentFiles(Settings& settings, const RecentFile& file) {
    if (settings.KeepFileNames == 0) return false;
    const auto first = settings.RecentFiles.begin();
    const auto used = first + std::clamp<std::int16_t>(settings.MaxLastFiles, 0, 4);
    auto slot = std::find_if(first, used, [&](const RecentFile& recent) {
        return recent.LastFileLong == file.LastFileLong;
    });
    if (slot == used) {
        if (settings.MaxLastFiles < 4) ++settings.MaxLastFiles;
        slot = first + settings.MaxLastFiles - 1; // a free slot, or the oldest one
    }
    std::rotate(first, slot, slot + 1);
    *first = file;
    return true;
}

std::string recentFileCaption(const Settings& settings, int slot) {
    if (slot < 1 || slot > std::min<int>(settings.MaxLastFiles, 4)) return {};
    const RecentFile& recent = settings.RecentFiles[static_cast<std::size_t>(slot - 1)];
    if (recent.LastFile.empty()) return {};
    return settings.ShortRecentFiles == 1 ? recent.LastFile : recent.LastFileLong;
}

SettingRange rangeOf(std::int16_t Settings::*setting) {
    return rangeOfKey(setting);
}

SettingRange rangeOf(float Settings::*setting) {
    return rangeOfKey(setting);
}

SettingsTexts textsFromSettings(const Settings& settings) {
    return {settings.DataPath,
            generalNumber(ClampSetting(settings.MaxDisplaySize, HistorySize.low, HistorySize.high)),
            settings.FileExtension};
}

std::optional<Refusal> checkSettings(const SettingsTexts& texts) {
    if (trimmed(texts.DataPath).empty() || !isFolder(asFolder(texts.DataPath)))
        return Refusal{"Invalid Path for Data Files", "Error", "DataPath"};
    if (auto refused = project::checkRange(texts.MaxDisplaySize, HistorySize.low, HistorySize.high,
                                           {}, "MaxDisplaySize"))
        return refused;
    return checkFileExtension(texts.FileExtension);
}

void acceptSettings(Settings& settings, const SettingsTexts& texts) {
    settings.DataPath = asFolder(texts.DataPath);
    settings.MaxDisplaySize = leadingInteger(texts.MaxDisplaySize);
    settings.FileExtension = trimmed(texts.FileExtension);
}

std::optional<Refusal> checkFileExtension(std::string_view extension) {
    const auto valid = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); };
    const auto name = trimmed(extension);
    if (!std::all_of(name.begin(), name.end(), valid))
        return Refusal{"Invalid character in file extension", "Invalid Character", "FileExtension"};
    return std::nullopt;
}

OptionsTexts textsFromOptions(const Settings& settings) {
    return {generalNumber(settings.PlotRangeMin), generalNumber(settings.PlotRangeMax)};
}

std::optional<Refusal> checkOptions(const OptionsTexts& texts) {
    if (auto refused = project::checkRange(texts.PlotRangeMin, PlotRange.low, PlotRange.high,
                                           "Minimum of the graph range", "PlotRangeMin"))
        return refused;
    if (auto refused = project::checkRange(texts.PlotRangeMax, PlotRange.low, PlotRange.high,
                                           "Maximum of the graph range", "PlotRangeMax"))
        return refused;
    if (leadingInteger(texts.PlotRangeMin) >= leadingInteger(texts.PlotRangeMax))
        return Refusal{"Invalid Range settings. Check Options-> Output Options", "Range Error",
                       "PlotRangeMin"};
    return std::nullopt;
}

void acceptOptions(Settings& settings, const OptionsTexts& texts) {
    settings.PlotRangeMin = leadingInteger(texts.PlotRangeMin);
    settings.PlotRangeMax = leadingInteger(texts.PlotRangeMax);
}

} // namespace telvo::app
