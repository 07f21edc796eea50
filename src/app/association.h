// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Messages.h"
#include "base/Result.h"

#include <functional>
#include <string>
#include <string_view>

/// The association of the case-file extension with the program, so that a double click on a case
/// opens it: what is asked and told, and what the desktop's files hold.
namespace telvo::app {

inline constexpr std::string_view CaseMimeType = "application/x-telvo-case";
inline constexpr std::string_view DesktopEntryId = "telvo.desktop";

std::string associationQuestion(std::string_view extension);
std::string associationMade(std::string_view extension, std::string_view program);

/// The command: asks, has the system associate the extension and tells that it was done. A system
/// that refuses leaves a line in the history; the closing message is shown in any case.
/// An extension that is empty or has other characters than A to Z and 0 to 9 is refused.
/// Given: program    full path of the program file
///        associate  what the system needs to have done
void associateExtension(std::string_view extension, std::string_view program,
                        const std::function<Status()>& associate, Messages& messages);

/// Where a user's own files of the desktop go, from the environment: XDG_DATA_HOME when it is an
/// absolute path, else .local/share in the home folder. nullptr stands for a variable not set;
/// empty when there is no home folder either.
std::string userDataHome(const char* xdgDataHome, const char* home);

/// The two files that associate the extension for one user, below the data home.
struct AssociationFiles {
    std::string mimePackage;
    std::string desktopEntry;
};
AssociationFiles associationFiles(const std::string& dataHome);

/// The MIME package (XML) that gives files of the extension the type CaseMimeType.
std::string mimePackage(std::string_view extension);

/// The desktop entry that opens files of that type with the program.
std::string desktopEntry(std::string_view program);

/// The command line under which Windows opens a case.
std::string openCommand(std::string_view program);

} // namespace telvo::app
