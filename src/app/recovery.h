// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "project/ProjectInput.h"

#include <string>
#include <string_view>

/// The copy of an unsaved case that outlives a crash: the name of the case, then the case file.
namespace telvo::app {

/// Faults: a value that no case file can hold.
Result<std::string> recoveryText(const project::ProjectCase& unsaved);

/// The case of such a copy, under its own name.
/// Faults: a text that is no such copy or is damaged; `where` is the file's name.
Result<project::ProjectCase> readRecovery(std::string_view bytes, std::string_view name);

} // namespace telvo::app
