// SPDX-License-Identifier: GPL-3.0-or-later
//
// An empty main window of the shape of TELVO's: menus, toolbar, text pane, status line. What it
// takes to show it is Qt's part of the start. Writes a line once it has been painted, and ends.
#include "report_shown.h"

#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QMainWindow window;
    for (const char* menu : {"&File", "&Input", "&Output", "&Utilities", "&Help"})
        window.menuBar()->addMenu(menu)->addAction("Entry");
    window.addToolBar("Toolbar")->addAction("Button");
    auto* splitter = new QSplitter(Qt::Vertical, &window);
    splitter->addWidget(new QWidget);
    splitter->addWidget(new QPlainTextEdit);
    window.setCentralWidget(splitter);
    window.statusBar()->showMessage("Ready");
    window.resize(window.fontMetrics().averageCharWidth() * 130,
                  window.fontMetrics().height() * 40);
    window.show();
    telvo::bench::reportShown();
}
