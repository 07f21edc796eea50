// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "project/ProjectInput.h"

#include <string>
#include <string_view>

/// The copy of an unsaved case that outlives a crash, or the answer No: the name of the case, what
/// is known of its values, then the case file.
namespace telvo::app {

/// A case that is in no file, or not as it is in its file.
struct UnsavedCase {
    project::ProjectCase current;
    project::KeptItems kept = {}; ///< what a damaged file did not give
};

/// Faults: a value that no case file can hold.
Result<std::string> recoveryText(const UnsavedCase& unsaved);

/// The case of such a copy, under its own name.
/// Faults: a text that is no such copy or is damaged; `where` is the file's name.
Result<UnsavedCase> readRecovery(std::string_view bytes, std::string_view name);

/// What is asked about a copy that waits at the start.
/// Given: time    when it was kept, as text
///        others  how many older ones wait beside it
std::string recoveryQuestion(std::string_view name, std::string_view time, int others);

/// Name of the case in such a copy, by its beginning; empty when it is none.
std::string recoveredName(std::string_view head);

} // namespace telvo::app
