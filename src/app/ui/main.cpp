// SPDX-License-Identifier: GPL-3.0-or-later
//
// The desktop program.
#include "app/ui/DesktopFileDialogs.h"
#include "app/ui/Program.h"
#include "base/titles.h"
#include "base/ui/qtText.h"
#include "report/ui/PrintDialogs.h"

#include <cstdio>
#include <exception>
#include <QApplication>

int main(int argc, char** argv) {
    using namespace telvo;
    try {
        QApplication application(argc, argv); // takes the options that are Qt's own
        QApplication::setApplicationName("telvo");
        QApplication::setApplicationDisplayName(telvo::ui::toQt(titles::Program));
        QApplication::setApplicationVersion(TELVO_VERSION);
        QApplication::setDesktopFileName("telvo");

        app::ui::DesktopFileDialogs fileDialogs;
        report::ui::QtPrintDialogs printDialogs;
        app::ui::Program program(app::ui::Surroundings::ofDesktop(fileDialogs, printDialogs));
        program.start();
        return QApplication::exec();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "telvo: %s\n", error.what());
        return 1;
    }
}
