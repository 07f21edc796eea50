// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/startUp.h"

#include "app/leftFiles.h"
#include "app/reminders.h"

namespace telvo::app {

void prepareStart(const Folders& folders, std::string_view windowsFile, SettingsStore& settings,
                  Messages& messages) {
    for (const std::string& fallback : folders.fallbacks)
        messages.history(fallback);
    removeLeftFiles(folders, windowsFile);
    settings.checkVersion();
    settings.LoadSettings();
    settings.values().RoundTELVOSF = 0;
    if (settings.values().CopyExampleFiles == 1) copyExampleFiles(folders, messages);
}

FirstBoxes firstBoxes(const Settings& settings, std::chrono::year_month_day today) {
    return {settings.ShowDisclaim == 1,
            settings.RemindAnnualUpdates == 1 && isUpdateReminderDue(today)};
}

std::optional<std::string> settingsTrouble(const SettingsStore& settings, const Folders& folders) {
    if (!settings.trouble()) return std::nullopt;
    std::string text =
        "The settings file cannot be used. " + faultText(*settings.trouble()) +
        "\nThe program runs with its initial settings; changes of them are not kept.";
    for (const std::string& fallback : folders.fallbacks)
        text += '\n' + fallback + '.';
    return text;
}

void openFirstFiles(ProjectSession& session, const Settings& settings,
                    const std::string& commandLine) {
    if (settings.LoadLastInputFile == 1) session.openRecent(1);
    if (!commandLine.empty()) session.LoadProjFile(commandLine);
}

} // namespace telvo::app
