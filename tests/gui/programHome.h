// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/frmMain.h"
#include "app/ui/Program.h"
#include "base/files.h"
#include "base/ui/PrintDialogs.h"
#include "GuiTest.h"

#include <algorithm>
#include <fstream>
#include <memory>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QPlainTextEdit>
#include <QPrinter>
#include <QTemporaryDir>
#include <QTimer>

/// The running program in a home of its own.
namespace telvo::test {

using app::ui::MenuEntry;
using app::ui::Program;
using study::GraphKind;

/// No printer, or a file that takes what is printed.
struct NoPrinter : telvo::ui::PrintDialogs {
    QString file;
    bool choosePrinter(QPrinter& printer, QWidget*, const QString&) override {
        if (file.isEmpty()) return false;
        printer.setOutputFileName(file);
        return true;
    }
    bool setUpPrinter(QPrinter&, QWidget*) override { return false; }
};

/// A home of its own, and the running program in it. Boxes are answered from a list; windows that
/// wait for an answer are closed.
struct Home {
    QTemporaryDir folder;
    RecordedDialogs dialogs;
    NoPrinter printer;
    std::vector<std::string> asked;
    std::deque<Answer> answers;
    std::vector<QString> modalWindows;
    std::unique_ptr<Program> program;
    QTimer closer; ///< plays the user whom modal windows wait for

    std::string path(const char* name) const { return folder.filePath(name).toStdString(); }
    std::string data(const char* name) const { return path("Documents/MyBODRA/") + name; }
    void put(const std::string& name, const std::string& bytes) const {
        QDir().mkpath(folder.filePath("Documents/MyBODRA/Temp"));
        std::ofstream(name, std::ios::binary) << bytes;
    }

    Home() {
        QDir().mkpath(folder.filePath("Documents"));
        QDir().mkpath(folder.filePath("install"));
        QObject::connect(&closer, &QTimer::timeout, [this] {
            auto* waiting = QApplication::activeModalWidget();
            if (waiting && !awaitedModals().contains(waiting->objectName())) {
                modalWindows.push_back(waiting->objectName());
                waiting->close();
            }
        });
        closer.start(1);
    }

    Program& start(const std::string& commandLine = {},
                   std::chrono::year_month_day today = std::chrono::year{2014} / 1 / 1) {
        program.reset();
        const app::SystemFolders system = {path("install"), path("Documents"), path("")};
        app::ui::Surroundings around{
            system,
            commandLine,
            [today] { return today; },
            [this](std::string_view text, Buttons, Answer preset, std::string_view title) {
                asked.push_back(std::string(title) + ": " + std::string(text));
                if (answers.empty()) return preset;
                const Answer answer = answers.front();
                answers.pop_front();
                return answer;
            },
            dialogs,
            printer};
        program = std::make_unique<Program>(std::move(around));
        program->start();
        return *program;
    }
    /// Quits as the user does.
    bool quit() { return program->window().close(); }

    void trigger(MenuEntry entry) { program->window().action(entry).trigger(); }
    void trigger(GraphKind kind) { program->window().graphAction(kind).trigger(); }
    void openRecent(int slot) { program->window().recentFileAction(slot).trigger(); }
    template <typename Window>
    Window* window(const char* name) {
        for (QWidget* top : QApplication::topLevelWidgets())
            if (top->objectName() == QLatin1String(name)) return static_cast<Window*>(top);
        return nullptr;
    }
    std::string history() {
        return control<QPlainTextEdit>(program->window(), "txtMain").toPlainText().toStdString();
    }
    std::string status() const { return program->messages().lastStatus(); }
    bool wasAsked(const std::string& text) const {
        return std::any_of(asked.begin(), asked.end(), [&](const std::string& one) {
            return one.find(text) != std::string::npos;
        });
    }
};

} // namespace telvo::test
