// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/temporaryFiles.h"
#include "cli/cases.h"
#include "cli/CommandLine.h"
#include "cli/programStart.h"
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
#include <string>
#include <string_view>
#include <vector>

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
#if !defined(TELVO_DRAWS) && !defined(TELVO_WORKBOOKS)
    const std::string_view command = argc > 1 ? argv[1] : "";
    const auto any = [&](auto&& is) { return argc > 1 && std::any_of(argv + 1, argv + argc, is); };
    // What draws also tells in its help what can be drawn.
    const bool draws = command == "plot" || command == "--help" || command == "-h" ||
                       any([](std::string_view argument) { return asksForPicture(argument); });
    // A list of files or a study may name workbooks, too.
    const bool workbooks =
        command == "study" || any([](std::string_view argument) {
            return mayBeWorkbook(argument) || argument.starts_with("--files-from");
        });
    if (!draws && !workbooks) return;
    becomeProgram({TELVO_HELPERS, "."}, draws ? "telvo-cli-draw" : "telvo-cli-table", argv);
#endif
}

} // namespace

int main(int argc, char** argv) {
    Console console(stdin, stdout, stderr, workbooksOfThisBuild(), plotterOfThisBuild());
    try {
        callOtherProgram(argc, argv);
        telvo::removeTemporaryFilesOnSignals();
        std::vector<std::string> arguments = argumentsInUtf8(argc, argv);
        std::vector<char*> pointers;
        for (std::string& argument : arguments)
            pointers.push_back(argument.data());
        return CommandLine(console).run(static_cast<int>(pointers.size()), pointers.data());
    } catch (const std::exception& error) {
        console.complain(error.what());
        return FileTrouble;
    }
}
