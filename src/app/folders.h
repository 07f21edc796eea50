// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Messages.h"

#include <optional>
#include <string>
#include <vector>

namespace telvo::app {

/// The folders of a run, full paths that end in the separator of the system.
struct Folders {
    std::string InstallFolder;
    std::string DataFolder;             // <documents>/MyBODRA/
    std::string TempDataFolder;         // <documents>/MyBODRA/Temp/
    std::vector<std::string> fallbacks; ///< history lines about folders that could not be had
};

/// The install folder, where examples, help and manuals are: the folder of the program when they
/// lie there, else share/telvo of the prefix that the program is installed in, else the documents
/// of the build tree that the program lies in. Without all of these it is the folder of the
/// program.
std::string installFolder(const std::string& programFolder);

/// What the system says of itself.
struct SystemFolders {
    std::string program;                  ///< the install folder
    std::optional<std::string> documents; ///< the user's documents folder
    std::optional<std::string> desktop;   ///< taken when there is no documents folder
};

/// Resolves the folders and creates what is missing. A folder that cannot be created falls back to
/// the install folder, as both do when the system names neither documents nor desktop.
Folders resolveFolders(const SystemFolders& system);

/// Copies a text file line by line, every line ended by CR LF.
/// Returned: whether the copy stands; a missing source is told.
bool copyTextFile(const std::string& from, const std::string& to, Messages& messages);

/// Copies the example cases that are missing from the data folder. A file that is there is never
/// touched; names that begin with "." are passed over, and an error goes on with the next name.
void copyExampleFiles(const Folders& folders, Messages& messages);

/// Paths of the example cases, the user's copies where there are such, in the order of their names.
/// Those of the tutorial are left out: they belong to its text.
std::vector<std::string> exampleFiles(const Folders& folders);

/// What the settings dialog says about that copy.
std::string copyExamplesNote(const std::string& DataFolder);

} // namespace telvo::app
