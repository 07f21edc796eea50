// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/folders.h"
#include "app/ProjectSession.h"
#include "app/SettingsStore.h"
#include "base/Messages.h"

#include <chrono>
#include <optional>
#include <string>

/// What the desktop program does when it starts, apart from its windows, in this order.
namespace telvo::app {

/// Tells where folders could not be had, removes what ended programs left, reads the settings and
/// copies the example cases. Rounding is chosen anew in every session.
/// Given: windowsFile  name of the file of window places
void prepareStart(const Folders& folders, std::string_view windowsFile, SettingsStore& settings,
                  Messages& messages);

/// What is shown before the user may work.
struct FirstBoxes {
    bool disclaimer = false;
    bool updateReminder = false;
};
FirstBoxes firstBoxes(const Settings& settings, std::chrono::year_month_day today);

/// Without readable settings nothing on screen would say why they are gone.
std::optional<std::string> settingsTrouble(const SettingsStore& settings, const Folders& folders);

/// Opens the last case where the settings want it, then that of the command line, which is the one
/// left open.
void openFirstFiles(ProjectSession& session, const Settings& settings,
                    const std::string& commandLine);

} // namespace telvo::app
