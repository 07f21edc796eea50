// SPDX-License-Identifier: GPL-3.0-or-later
//
// The start of the desktop program up to its painted main window, in the home at hand, without the
// windows that wait for their user. Writes a line then, and ends.
#include "app/ui/DesktopFileDialogs.h"
#include "app/ui/Program.h"
#include "base/ui/PrintDialogs.h"
#include "report_shown.h"

int main(int argc, char** argv) {
    using namespace telvo;
    QApplication application(argc, argv);
    app::ui::DesktopFileDialogs files;
    telvo::ui::QtPrintDialogs print;
    app::ui::Program program(app::ui::Surroundings::ofDesktop(files, print));
    program.start();
    bench::reportShown();
}
