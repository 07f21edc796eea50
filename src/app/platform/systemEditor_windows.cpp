// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/systemEditor.h"

namespace telvo::app {

const std::string_view SystemEditor = "Notepad.exe";

} // namespace telvo::app
