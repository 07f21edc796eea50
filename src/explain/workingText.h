// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "explain/Working.h"

#include <string>

namespace telvo::explain {

/// Columns of the console.
inline constexpr std::size_t ConsoleWidth = 79;

/// A working as plain text, lines ended by line feeds and wrapped at `width`.
std::string workingText(const Chapters& chapters, std::size_t width = ConsoleWidth);

/// "page 4, line 14: 3.18E+05 tons = 635040000 lb / 2000"
std::string printedText(const Printed& printed);

/// Keys and titles, one line for each quantity.
std::string quantityList(const Chapters& chapters);

} // namespace telvo::explain
