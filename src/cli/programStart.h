// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

/// What a program does with the system when it starts.
namespace telvo::cli {

/// The arguments in UTF-8.
std::vector<std::string> argumentsInUtf8(int argc, char** argv);

/// Runs another program with the same arguments in the place of this one. Returns where there is
/// none, or the system has no such step.
/// Given: folders  where it may lie, relative to the folder of this program
void becomeProgram(const std::vector<std::string>& folders, const std::string& name, char** argv);

} // namespace telvo::cli
