// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/folders.h"

#include <string_view>

namespace telvo::app {

/// Removes what programs that ended in the middle of a write left in the data folder and below.
/// Given: windowsFile  name of the file of window places, which the toolkit writes in a way of its
/// own
void removeLeftFiles(const Folders& folders, std::string_view windowsFile);

} // namespace telvo::app
