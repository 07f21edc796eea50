// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "project/ProjectInput.h"

#include <string>
#include <vector>

namespace telvo::project {

/// What a user has to know before a conversion, in paragraphs.
/// Given: converted    convertedCase() of the case
///        nameIsTaken  whether a file of the new name is already there
std::vector<std::string> conversionNotes(const ProjectCase& current,
                                         const Result<ProjectCase>& converted, bool nameIsTaken);

} // namespace telvo::project
