// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace telvo::app {

/// The program of the system that opens text files until the user names another one.
extern const std::string_view SystemEditor;

} // namespace telvo::app
