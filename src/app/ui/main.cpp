// SPDX-License-Identifier: GPL-3.0-or-later
//
// The desktop program.
#include "app/ui/DesktopFileDialogs.h"
#include "app/ui/Program.h"
#include "base/temporaryFiles.h"
#include "base/ui/PrintDialogs.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <QApplication>
#include <string_view>

namespace {

constexpr char Usage[] = "Usage: telvo [CASE]\n"
                         "Opens the desktop program, on a case file when one is named.\n"
                         "\n"
                         "  --help     shows this and ends\n"
                         "  --version  shows the version and ends\n"
                         "\n"
                         "Reports without a display: telvo-cli report CASE\n";

/// What is answered on the terminal alone, without a display.
bool answersOnTerminal(int argc, char** argv) {
    const std::string_view option = argc == 2 ? argv[1] : "";
    if (option == "--help" || option == "-h")
        std::fputs(Usage, stdout);
    else if (option == "--version")
        std::puts("telvo " TELVO_VERSION);
    else
        return false;
    return true;
}

/// The toolkit ends the program itself when it finds no display, with several lines and a core.
void endWithoutDisplay(QtMsgType type, const QMessageLogContext&, const QString&) {
    if (type != QtFatalMsg) return;
    std::fputs("telvo: no display to open a window on; telvo-cli works without one\n", stderr);
    std::fflush(stderr);
    std::_Exit(1);
}

int runDesktop(int argc, char** argv) {
    using namespace telvo;
    const QtMessageHandler usual = qInstallMessageHandler(endWithoutDisplay);
    removeTemporaryFilesOnSignals();
    QApplication application(argc, argv); // takes the options that are Qt's own
    qInstallMessageHandler(usual);
    QApplication::setApplicationName("telvo");
    QApplication::setApplicationVersion(TELVO_VERSION);
    QApplication::setDesktopFileName("telvo");

    app::ui::DesktopFileDialogs fileDialogs;
    telvo::ui::QtPrintDialogs printDialogs;
    app::ui::Program program(app::ui::Surroundings::ofDesktop(fileDialogs, printDialogs));
    fileDialogs.rememberIn(program.places());
    program.start();
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    if (answersOnTerminal(argc, argv)) return 0;
    try {
        return runDesktop(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "telvo: %s\n", error.what());
        return 1;
    }
}
