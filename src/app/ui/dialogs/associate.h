// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Messages.h"
#include "base/Result.h"

#include <string>

namespace telvo::app::ui {

/// Asks, associates the case-file extension with the program for this user, and tells.
/// Given: program   full path of the program file
///        dataHome  folder of the user's desktop files: userDataHome(); without a meaning on
///        Windows
void associateExtension(const std::string& extension, const std::string& program,
                        const std::string& dataHome, Messages& messages);

/// The part that differs by system.
/// Faults: a file or a registry key that could not be written.
Status associateWithSystem(const std::string& extension, const std::string& program,
                           const std::string& dataHome);

} // namespace telvo::app::ui
