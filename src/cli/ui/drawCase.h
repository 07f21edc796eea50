// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/plotCommand.h"

namespace telvo::cli {

/// Draws as the desktop program does, with its fonts, but on no screen: Qt's "offscreen" platform,
/// unless QT_QPA_PLATFORM names another one.
Plotter desktopPlotter();

} // namespace telvo::cli
