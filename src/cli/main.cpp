// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "base/temporaryFiles.h"
#include "cli/CommandLine.h"
#include "cli/plotCommand.h"
#ifdef TELVO_DRAWS
#include "cli/ui/drawCase.h"
#endif
#ifdef TELVO_WORKBOOKS
#include "table/workbookReader.h"
#include "table/workbookWriter.h"
#endif

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>
#ifdef __linux__
#include <unistd.h>
#endif
#ifdef _WIN32
#include <windows.h>

#include <shellapi.h>
#endif

namespace {

using namespace telvo::cli;

Plotter plotterOfThisBuild() {
#ifdef TELVO_DRAWS
    return desktopPlotter();
#else
    return {};
#endif
}

Workbooks workbooksOfThisBuild() {
#ifdef TELVO_WORKBOOKS
    return {[](std::string_view bytes, const std::string& file) {
                return telvo::table::readWorkbook(bytes, file);
            },
            telvo::table::writeWorkbook, telvo::table::writeTemplate, telvo::table::writeSheets};
#else
    return {};
#endif
}

/// Hands a command over to the program that draws, or that knows workbooks, where there is one: the
/// libraries for it cost more time than most commands take. They lie in a folder of their own,
/// which is no folder of commands, or beside this program as they are built.
void callOtherProgram([[maybe_unused]] int argc, [[maybe_unused]] char** argv) {
#if !defined(TELVO_DRAWS) && !defined(TELVO_WORKBOOKS) && defined(__linux__)
    // What draws also tells in its help what can be drawn.
    const std::string_view command = argc > 1 ? argv[1] : "";
    const bool draws = command == "plot" || command == "--help" || command == "-h";
    // A list of files may name workbooks, too.
    const bool workbooks =
        argc > 1 && std::any_of(argv + 1, argv + argc, [](std::string_view argument) {
            return mayBeWorkbook(argument) || argument.starts_with("--files-from");
        });
    if (!draws && !workbooks) return;
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error) return;
    const char* other = draws ? "telvo-cli-draw" : "telvo-cli-table";
    for (const auto& folder : {program.parent_path() / TELVO_HELPERS, program.parent_path()})
        execv((folder / other).c_str(), argv); // returns when there is none
#endif
}

/// The arguments in UTF-8. Windows hands them to main() in its code page, which has no room for
/// every file name.
std::vector<std::string> argumentsInUtf8([[maybe_unused]] int argc, [[maybe_unused]] char** argv) {
#ifdef _WIN32
    std::vector<std::string> arguments;
    int count = 0;
    wchar_t** const wide = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    for (int i = 0; wide && i < count; ++i)
        arguments.push_back(telvo::utf8FromPath(wide[i]));
    ::LocalFree(wide);
    return arguments;
#else
    return {argv, argv + argc};
#endif
}

} // namespace

int main(int argc, char** argv) {
    try {
        callOtherProgram(argc, argv);
        telvo::removeTemporaryFilesOnSignals();
        std::vector<std::string> arguments = argumentsInUtf8(argc, argv);
        std::vector<char*> pointers;
        for (std::string& argument : arguments)
            pointers.push_back(argument.data());
        return CommandLine(workbooksOfThisBuild(), plotterOfThisBuild())
            .run(static_cast<int>(pointers.size()), pointers.data());
    } catch (const std::exception& error) {
        complain(error.what());
        return FileTrouble;
    }
}
