// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/programStart.h"

#include "base/files.h"

#include <windows.h>

#include <shellapi.h>

namespace telvo::cli {

std::vector<std::string> argumentsInUtf8(int, char**) {
    // main() gets them in the code page, which has no room for every file name.
    std::vector<std::string> arguments;
    int count = 0;
    wchar_t** const wide = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    for (int i = 0; wide && i < count; ++i)
        arguments.push_back(utf8FromPath(wide[i]));
    ::LocalFree(wide);
    return arguments;
}

void becomeProgram(const std::vector<std::string>&, const std::string&, char**) {}

} // namespace telvo::cli
