// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"

#include <string>

namespace telvo::chart::ui {

struct Picture;

/// The whole file that exportPicture() would write under this name, for those who decide themselves
/// how it is written.
/// Faults: those of exportPicture() but for writing.
Result<std::string> pictureFile(const Picture& picture, const std::string& path, int dpi);

} // namespace telvo::chart::ui
