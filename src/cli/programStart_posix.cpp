// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/programStart.h"

#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace telvo::cli {

std::vector<std::string> argumentsInUtf8(int argc, char** argv) {
    return {argv, argv + argc};
}

void becomeProgram(const std::vector<std::string>& folders, const std::string& name, char** argv) {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error); // of Linux
    if (error) return;
    for (const std::string& folder : folders)
        ::execv((program.parent_path() / folder / name).c_str(), argv);
}

} // namespace telvo::cli
