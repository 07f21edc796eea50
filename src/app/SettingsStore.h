// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/IniFile.h"
#include "base/Messages.h"
#include "base/Result.h"
#include "study/graph/sfGraph.h"

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace telvo::app {

/// Build stamp of the settings file; a file of any other build is replaced.
inline constexpr std::string_view SettingsVersion = "050817";
inline constexpr std::string_view BuiltInExtension = "TLV";

/// One slot of the recent-files list.
struct RecentFile {
    std::string LastFile;          // name shown when short names are chosen
    std::int16_t LastFileMode = 0; // 0 project file, 1 imported file
    std::string LastFileLong;      // full path

    bool operator==(const RecentFile&) const = default;
};

using RecentFiles = std::vector<RecentFile>; // the most recent first

/// The preferences of one user, by the names of their keys. Flags are 0/1, font flags -1/0.
struct Settings {
    // [Settings]
    std::int16_t DefaultUnits = 0;
    std::int16_t DisplayHistoryWin = 1;
    std::int16_t MaxDisplaySize = 2048; // below its own range: the first start raises it to 4096
    std::string DisplayFontName;
    float DisplayFontSize = 10;
    std::int16_t DisplayFontBold = 0;
    std::int16_t DisplayFontItalic = 0;
    std::int16_t KeepFileNames = 1;
    std::int16_t ShowDisclaim = 1;
    std::int16_t MaxMainMenu = 0;
    std::int16_t EnableMainMenuToolbar = 1;
    std::int16_t ShortRecentFiles = 0;
    std::int16_t LoadLastInputFile = 0;
    std::int16_t RemindAnnualUpdates = 1;
    std::int16_t CopyExampleFiles = 1;
    std::string ExternalEditor;
    std::string DataPath;
    std::string FileExtension{BuiltInExtension};
    // [FileMenu]
    std::int16_t MaxLastFiles = 0;
    std::array<RecentFile, 4> RecentFiles; // the most recent first
    // [TextBrowse]
    std::string BrowseFontName;
    float BrowseFontSize = 10;
    std::int16_t BrowseFontBold = 0;
    std::int16_t BrowseFontItalic = 0;
    std::string BrowseDefaultFilter;
    std::int16_t BrowseUseNotepad = 0;
    // [Graph]
    std::int16_t GraphSetParams = 0;
    std::int16_t GridStyle = 0;
    std::int16_t GraphStyle = 3;
    std::int16_t CurveLegend = 1;
    std::int16_t SymbolSize = 5;
    std::int16_t GraphUnits = 0;
    std::string GraphTitle;
    std::array<std::string, study::GraphKinds> XAxisTitle = study::axisTitles();
    std::array<std::string, 2> YAxisTitle = {std::string(study::FactorTitles[0]),
                                             std::string(study::FactorTitles[1])};
    // [TELVOOptions]
    std::int16_t OutputStrUnits = 0;
    std::int16_t OutputStrGradUnits = 1;
    std::int16_t ShowInputScreenOnLoad = 1;
    std::int16_t IssueWarningCancel = 1;
    std::int16_t ViewChildWindow = 1;
    std::int16_t PrintModuleHeader = 1;
    std::int16_t PlotEntryDims = 1;
    std::int16_t PlotXcutDims = 1;
    std::int16_t PlotSingleXcutDims = 1;
    std::int16_t PlotGobExtLoose = 1;
    std::int16_t PlotGobDims = 1;
    float PlotRangeMin = 50; // its read default is 100 on purpose
    float PlotRangeMax = 150;
    std::int16_t PrintPlotReminder = 1;
    std::int16_t AskOfficeInstall = 1;
    std::int16_t RoundTELVOSF = 0;

    bool operator==(const Settings&) const = default;
};

/// Lowest and highest value of a setting that is a number; what lies outside reads as the lowest.
struct SettingRange {
    std::int16_t low = std::numeric_limits<std::int16_t>::min();
    std::int16_t high = std::numeric_limits<std::int16_t>::max();

    bool operator==(const SettingRange&) const = default;
};
SettingRange rangeOf(std::int16_t Settings::*setting);
SettingRange rangeOf(float Settings::*setting);

/// What the initial values depend on.
struct SettingsSurroundings {
    std::string DataFolder;
    std::string DefaultFont;
    std::string ExternalEditor;
    std::string ProgramTitle;
    std::string LockFile = {}; ///< held while the file is written; empty: one beside it
};

/// Which sections a save writes.
enum class SettingsSaveMode { All = 1, Settings, FileMenu, TextBrowse, Graph, TELVOOptions };

/// The value held within its range: low when it lies outside, rounded half to even.
std::int16_t ClampSetting(double value, std::int16_t low, std::int16_t high);

/// The settings and their file "TELVO.INI". The file is never held open. A save locks it against
/// other programs, reads it again and writes the keys of its sections; a key that another program
/// has changed meanwhile and this one has not stays as that program left it. The recent files of
/// both are merged.
class SettingsStore {
  public:
    /// Settings at their initial values; no file is touched yet.
    SettingsStore(std::string path, SettingsSurroundings surroundings, Messages& messages);

    Settings& values() { return m_values; }
    const Settings& values() const { return m_values; }
    const std::string& path() const { return m_path; }

    /// Version check at start-up: a missing file is created with initial values, a file of another
    /// build is deleted first, one that cannot be read is left alone.
    /// Returned: whether the file is new.
    bool checkVersion();
    /// Why the file cannot be read or made, as that check and LoadSettings() found.
    const std::optional<Fault>& trouble() const { return m_trouble; }

    /// Reads all sections. Missing keys and texts that are no number become the read default or 0;
    /// what lies outside its range becomes the lower bound. Without a readable file the values are
    /// those of a fresh one.
    void LoadSettings();
    /// The same from a file's content.
    void readSettings(const IniFile& file);

    /// Leaves a history line and writes the sections of a mode in one atomic step. The program goes
    /// on after a failed write; the outcome is for callers that want to tell.
    Status SaveSettings(SettingsSaveMode mode);

  private:
    void loadSection(const IniFile& file, std::string_view section);
    void loadRecentFiles(const IniFile& file);
    void settleDataPath();
    std::string lockFile() const;
    Status save(SettingsSaveMode mode);
    void mergeRecentFiles(const IniFile& file);

    std::string m_path;
    SettingsSurroundings m_surroundings;
    Messages& m_messages;
    Settings m_values;
    // What this program knows of the file, to tell what others have changed in it since.
    IniFile m_seen;   ///< the file as it was last read or written here
    Settings m_known; ///< the values at that time
    std::optional<Fault> m_trouble;
};

/// The update of the recent-files list after a successful open or save: the file comes first, its
/// older entry goes, the fifth drops out. With KeepFileNames 0 nothing changes.
/// Returned: whether the list changed and is to be saved.
bool updateRecentFiles(Settings& settings, const RecentFile& file);

/// The recent files of a user who runs two programs: those of the other program, as the file has
/// them now, below the ones that this program has used since it last knew the file.
/// Given: known  this program's list at that time      own  its list now
RecentFiles mergedRecentFiles(const RecentFiles& known, const RecentFiles& own,
                              const RecentFiles& others);

/// Caption of slot 1 to 4 in the File menu; empty for a slot that is not shown.
std::string recentFileCaption(const Settings& settings, int slot);

/// What the settings dialog's boxes hold before they are accepted.
struct SettingsTexts {
    std::string DataPath, MaxDisplaySize, FileExtension;
};
/// What the boxes show. A history size out of its range, as the initial one is, shows as the size
/// that the next start would make of it.
SettingsTexts textsFromSettings(const Settings& settings);
/// The dialog's checks in their order; `control` names the setting that failed.
std::optional<Refusal> checkSettings(const SettingsTexts& texts);
/// Takes over texts that passed the checks: the data path ends in a separator, the size is a whole
/// number, the extension is trimmed.
void acceptSettings(Settings& settings, const SettingsTexts& texts);

/// Capital letters and digits only; nothing at all is valid too.
std::optional<Refusal> checkFileExtension(std::string_view extension);

/// What the options dialog's boxes hold: the ends of the graph range in percent.
struct OptionsTexts {
    std::string PlotRangeMin, PlotRangeMax;
};
OptionsTexts textsFromOptions(const Settings& settings);
/// Both ends lie in 0..150 and, rounded as they are kept, the lower one below the upper one.
std::optional<Refusal> checkOptions(const OptionsTexts& texts);
void acceptOptions(Settings& settings, const OptionsTexts& texts);

} // namespace telvo::app
