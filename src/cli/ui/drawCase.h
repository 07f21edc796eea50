// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/plotCommand.h"

namespace telvo::cli {

/// Draws as the desktop program does, but on no screen and with the same font sizes everywhere.
Plotter desktopPlotter();

} // namespace telvo::cli
