// SPDX-License-Identifier: GPL-3.0-or-later
// Takes the pictures of the windows for the manuals, without a display:
//   telvo-screens windows EXAMPLE-CASE FOLDER     every window of the desktop program
//   telvo-screens help HELP-FOLDER/ FOLDER        the help window
//   telvo-screens case EXAMPLE-CASE FOLDER NAME WINDOW VALUE
// The last one pictures one window of a case, WINDOW and VALUE being
//   parameters TAB       a tab of the parameter form, from 0
//   graph KIND=FACTOR    a graph, from 0, and where its curves have the factor
//   working QUANTITY     the working of a quantity
//   study PAGE;FIELD=TEXT;...  a page of the studies, from 0, and what its fields are set to; in front of
//       them scenarios=NAME:INPUT=NUMBER,...|... of the case
#include "app/ui/frmMain.h"
#include "app/ui/Program.h"
#include "base/files.h"
#include "base/ui/PrintDialogs.h"
#include "base/ui/qtText.h"
#include "explain/ui/frmExplain.h"
#include "help/ui/frmHelp.h"
#include "study/ui/studies/frmStudies.h"

#include <cstdio>
#include <functional>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStandardPaths>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <utility>

namespace {

using namespace telvo;
using telvo::ui::fromQt;

// Pixels by which the parameter form is larger than it has to be, for the plan in it.
constexpr QSize RoomForPlan(185, 110);

struct NoFiles : FileDialogs {
    std::optional<std::string> openFile(std::string_view, std::string_view,
                                        const std::vector<std::string>&) override {
        return std::nullopt;
    }
    std::optional<std::string> saveFile(std::string_view, std::string_view,
                                        const std::vector<std::string>&,
                                        std::string_view) override {
        return std::nullopt;
    }
    std::vector<std::string> openFiles(std::string_view, std::string_view,
                                       const std::vector<std::string>&) override {
        return {};
    }
    std::optional<std::string> chooseFolder(std::string_view, std::string_view) override {
        return std::nullopt;
    }
};

struct NoPrinter : telvo::ui::PrintDialogs {
    bool choosePrinter(QPrinter&, QWidget*, const QString&) override { return false; }
    bool setUpPrinter(QPrinter&, QWidget*) override { return false; }
};

class Camera {
  public:
    // The program changes its current folder.
    explicit Camera(const QString& folder) : m_folder(QDir(folder).absolutePath()) {
        QDir().mkpath(m_folder);
    }

    /// Pictures a window; what does not work out is told at the end.
    void take(QWidget& window, const QString& name) {
        QApplication::processEvents();
        if (!window.grab().save(m_folder + '/' + name + ".png")) m_failed << name;
    }
    /// Runs a command that opens a modal window, pictures that and closes it. `prepare` sets it up.
    void takeModal(const QString& name, const std::function<void()>& command,
                   const std::function<void(QWidget&)>& prepare = {}) {
        QTimer timer;
        bool taken = false;
        QObject::connect(&timer, &QTimer::timeout, [&] {
            QWidget* window = QApplication::activeModalWidget();
            if (!window) return;
            if (window->objectName() == name && !taken) {
                if (prepare) prepare(*window);
                take(*window, name);
                taken = true;
            }
            window->close();
        });
        timer.start(20);
        command();
        if (!taken) m_failed << name;
    }
    void missed(const QString& name) { m_failed << name; }

    int result() const {
        for (const QString& name : m_failed)
            std::fprintf(stderr, "telvo-screens: no picture of %s\n", name.toUtf8().constData());
        return m_failed.isEmpty() ? 0 : 1;
    }

  private:
    QString m_folder;
    QStringList m_failed;
};

QWidget* topWindow(const char* name) {
    const auto windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows)
        if (window->objectName() == QLatin1String(name) && window->isVisible()) return window;
    return nullptr;
}

void chooseTab(QWidget& window, int index) {
    if (auto* tabs = window.findChild<QTabWidget*>("SSTab1")) tabs->setCurrentIndex(index);
}

/// Chooses a command of the main window's menus.
void choose(app::ui::frmMain& window, app::ui::MenuEntry entry) {
    window.action(entry).trigger();
}

void takeParameterForm(Camera& camera, app::ui::frmMain& window) {
    choose(window, app::ui::MenuEntry::Parameters);
    QApplication::processEvents();
    QWidget* form = topWindow("frmTELVOParm");
    if (!form) return camera.missed("frmTELVOParm");
    form->resize(form->size() + RoomForPlan);
    for (int tab = 0; tab < 3; ++tab) {
        chooseTab(*form, tab);
        camera.take(*form, QString("frmTELVOParm-%1").arg(tab + 1));
    }
    form->close();
    QApplication::processEvents();
}

void takeViews(Camera& camera, app::ui::frmMain& window) {
    choose(window, app::ui::MenuEntry::StabilityFactors);
    QApplication::processEvents();
    QWidget* results = topWindow("frmResTxtPlt");
    if (!results) return camera.missed("frmResTxtPlt");
    camera.take(*results, "frmResTxtPlt");
    if (auto* plots = results->findChild<QPushButton*>("cmdViewPlots")) plots->click();
    QApplication::processEvents();
    if (QWidget* plots = topWindow("frmPlots")) {
        if (auto* stresses = plots->findChild<QAction*>("mnuStresses")) stresses->trigger();
        plots->resize(860, 600);
        camera.take(*plots, "frmPlots");
    } else {
        camera.missed("frmPlots");
    }
    // The options come first, when they are shown before a graph.
    QTimer closer;
    QObject::connect(&closer, &QTimer::timeout, [&camera] {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal) return;
        camera.take(*modal, modal->objectName());
        if (auto* ok = modal->findChild<QPushButton*>("cmdOK")) ok->click();
    });
    closer.start(20);
    window.graphAction(study::GraphKind::SecondBarrier).trigger();
    QApplication::processEvents();
    closer.stop();
    if (QWidget* graph = topWindow("frmGraph")) {
        graph->resize(860, 640);
        camera.take(*graph, "frmGraph");
    } else {
        camera.missed("frmGraph");
    }
}

/// The program with an example opened, in a home of its own.
class Desk {
  public:
    Desk(Camera& camera, const QString& example)
        : m_file(placed(m_home, example)),
          m_program({{fromQt(m_home.filePath("install")), fromQt(m_home.filePath("Documents")),
                      fromQt(m_home.path())},
                     {},
                     [] { return std::chrono::year{2014} / 1 / 1; },
                     // Yes, a form may be left.
                     [](std::string_view, Buttons buttons, Answer preset, std::string_view) {
                         return buttons == Buttons::YesNo ? Answer::Yes : preset;
                     },
                     m_files,
                     m_printer}) {
        camera.takeModal("frmDisclaimer", [this] { m_program.start(); });
        app::Settings& settings = m_program.settings().values();
        settings.GraphSetParams = 1;
        settings.DisplayFontName = "DejaVu Sans";
        settings.DisplayFontSize = 9;
        settings.DataPath = "Documents/MyBODRA";
        m_program.window().applyHistoryFont();
        // Without the folder of this run, which differs every time.
        QDir::setCurrent(m_home.filePath("Documents"));
        m_program.session().LoadProjFile("MyBODRA/" + fromQt(QFileInfo(m_file).fileName()));
    }
    app::ui::Program& program() { return m_program; }
    const QString& file() const { return m_file; }

  private:
    static QString placed(const QTemporaryDir& home, const QString& example) {
        QDir().mkpath(home.filePath("Documents/MyBODRA"));
        QDir().mkpath(home.filePath("install"));
        const QString file = home.filePath("Documents/MyBODRA/") + QFileInfo(example).fileName();
        QFile::copy(example, file);
        return file;
    }

    QTemporaryDir m_home;
    QString m_file;
    NoFiles m_files;
    NoPrinter m_printer;
    app::ui::Program m_program;
};

void takeGraph(Camera& camera, app::ui::frmMain& window, const QString& name,
               const QString& value) {
    window.graphAction(static_cast<study::GraphKind>(value.section('=', 0, 0).toInt())).trigger();
    QApplication::processEvents();
    QWidget* graph = topWindow("frmGraph");
    if (!graph) return camera.missed(name);
    graph->resize(860, 640);
    if (auto* target = graph->findChild<QLineEdit*>("txtTargetSF"))
        target->setText(value.section('=', 1));
    if (auto* find = graph->findChild<QPushButton*>("cmdFindTarget")) find->click();
    camera.take(*graph, name);
}

void takeWorking(Camera& camera, app::ui::frmMain& window, const QString& name,
                 const QString& quantity) {
    choose(window, app::ui::MenuEntry::StabilityFactors);
    QApplication::processEvents();
    QWidget* results = topWindow("frmResTxtPlt");
    auto* button = results ? results->findChild<QPushButton*>("cmdWorking") : nullptr;
    if (!button) return camera.missed(name);
    button->click();
    QApplication::processEvents();
    auto* working = qobject_cast<explain::ui::frmExplain*>(topWindow("frmExplain"));
    if (!working) return camera.missed(name);
    working->resize(900, 420);
    working->showQuantity(fromQt(quantity));
    camera.take(*working, name);
}

/// Sets a field of a page: the entry of a list by the name behind it, a check mark by 0 or 1.
bool setField(QWidget& page, const QString& name, const QString& text) {
    if (auto* box = page.findChild<QComboBox*>(name)) {
        box->setCurrentIndex(box->findData(text));
        Q_EMIT box->activated(box->currentIndex());
        return box->currentIndex() >= 0;
    }
    if (auto* check = page.findChild<QCheckBox*>(name)) {
        if (check->isChecked() != (text == "1")) check->click();
        return true;
    }
    auto* line = page.findChild<QLineEdit*>(name);
    if (!line) return false;
    line->setText(text);
    Q_EMIT line->textEdited(text);
    Q_EMIT line->editingFinished();
    return true;
}

/// Writes a study file beside a case.
/// Given: scenarios  such as "shallow:DepthCover=800,EntryHeight=7|deep:DepthCover=1100"
bool writeScenarios(const QFileInfo& file, const QString& scenarios) {
    QString text = "# TELVO study 1\nkind = \"scenarios\"\ncase = \"" + file.fileName() +
                   "\"\nunits = \"english\"\n[scenarios]\n";
    for (const QString& one : scenarios.split('|'))
        text += "[[scenario]]\nname = \"" + one.section(':', 0, 0) + "\"\nset = { " +
                one.section(':', 1) + " }\n";
    const QString path = file.path() + '/' + file.completeBaseName() + ".study";
    return bool(writeFile(fromQt(path), fromQt(text)));
}

void takeStudy(Camera& camera, Desk& desk, const QString& name, const QString& value) {
    app::ui::frmMain& window = desk.program().window();
    QStringList parts = value.split(';');
    if (parts.size() > 1 && parts[1].startsWith("scenarios=") &&
        !writeScenarios(QFileInfo(desk.file()), parts.takeAt(1).section('=', 1)))
        return camera.missed(name);
    const int first = static_cast<int>(app::ui::MenuEntry::WhatMatters);
    choose(window, static_cast<app::ui::MenuEntry>(first + parts.front().toInt()));
    auto* studies = qobject_cast<study::ui::frmStudies*>(topWindow("frmStudies"));
    if (!studies) return camera.missed(name);
    studies->resize(1000, 700);
    const auto settled = [&] {
        for (QDeadlineTimer patience(60'000); !patience.hasExpired();) {
            QApplication::processEvents(QEventLoop::AllEvents, 20);
            if (studies->currentPage().isCurrent()) return true;
        }
        return false;
    };
    bool good = settled();
    for (qsizetype i = 1; i < parts.size(); ++i)
        good = setField(studies->currentPage(), parts[i].section('=', 0, 0),
                        parts[i].section('=', 1)) &&
               good;
    // What is typed is computed after a short rest of the keyboard.
    for (QDeadlineTimer rest(1'000); !rest.hasExpired();)
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    if (!good || !settled()) return camera.missed(name);
    camera.take(*studies, name);
}

int takeCase(const QString& example, const QString& folder, const QString& name,
             const QString& what, const QString& value) {
    Camera camera(folder);
    Desk desk(camera, example);
    app::ui::frmMain& window = desk.program().window();
    desk.program().settings().values().GraphSetParams = 0;
    if (what == "parameters") {
        choose(window, app::ui::MenuEntry::Parameters);
        QApplication::processEvents();
        if (QWidget* form = topWindow("frmTELVOParm")) {
            form->resize(form->size() + RoomForPlan);
            chooseTab(*form, value.toInt());
            if (auto* ok = form->findChild<QPushButton*>("cmdOK")) ok->setFocus();
            camera.take(*form, name);
            form->close();
        } else {
            camera.missed(name);
        }
    } else if (what == "graph") {
        takeGraph(camera, window, name, value);
    } else if (what == "working") {
        takeWorking(camera, window, name, value);
    } else if (what == "study") {
        takeStudy(camera, desk, name, value);
    } else {
        camera.missed(name);
    }
    window.close();
    return camera.result();
}

int takeWindows(const QString& example, const QString& folder) {
    Camera camera(folder);
    Desk desk(camera, example);
    app::ui::Program& program = desk.program();
    app::ui::frmMain& window = program.window();
    choose(window, app::ui::MenuEntry::ClearHistory); // empties the history, which names folders
    program.messages().history("TELVO stability factors calculated: " +
                               fromQt(QFileInfo(desk.file()).fileName()));
    window.resize(1120, 680);
    camera.take(window, "frmMain");

    const auto tab = [](int index) { return [index](QWidget& shown) { chooseTab(shown, index); }; };
    camera.takeModal("frmTELVODesc", [&] { choose(window, app::ui::MenuEntry::Description); });
    camera.takeModal("frmUnits", [&] { choose(window, app::ui::MenuEntry::UnitConversion); });
    camera.takeModal("frmConvert", [&] { choose(window, app::ui::MenuEntry::FileConversion); });
    camera.takeModal(
        "frmSet", [&] { choose(window, app::ui::MenuEntry::Settings); }, tab(0));
    camera.takeModal(
        "frmTELVOOpts", [&] { choose(window, app::ui::MenuEntry::Options); }, tab(1));
    camera.takeModal("frmPreview", [&] { choose(window, app::ui::MenuEntry::PrintPreview); });
    camera.takeModal("frmUpdate", [&] { choose(window, app::ui::MenuEntry::Updates); });
    camera.takeModal("frmAbout", [&] { choose(window, app::ui::MenuEntry::About); });
    takeParameterForm(camera, window);
    takeViews(camera, window);
    window.close();
    return camera.result();
}

struct NoMessages : Messages {
    Answer ask(std::string_view, Buttons, Answer preset, std::string_view) override {
        return preset;
    }
    void history(std::string_view) override {}
    void status(std::string_view) override {}
};

int takeHelp(const QString& helpFolder, const QString& folder) {
    Camera camera(folder);
    NoMessages messages;
    auto book = help::HelpBook::open(fromQt(helpFolder));
    if (!book) {
        std::fprintf(stderr, "telvo-screens: %s\n", faultText(book.fault()).c_str());
        return 1;
    }
    help::ui::frmHelp window(std::move(*book), messages, {});
    window.resize(1000, 620);
    window.showTopic("PressureArchFactor.htm");
    camera.take(window, "frmHelp");
    return camera.result();
}

} // namespace

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", "2");
    // Qt's remarks on a platform without a screen do not matter to pictures.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    const QApplication application(argc, argv);
    QStandardPaths::setTestModeEnabled(true);
    const QStringList arguments = QApplication::arguments();
    const QString what = arguments.value(1);
    if (what == "windows" && arguments.size() == 4) return takeWindows(arguments[2], arguments[3]);
    if (what == "help" && arguments.size() == 4) return takeHelp(arguments[2], arguments[3]);
    if (what == "case" && arguments.size() == 7)
        return takeCase(arguments[2], arguments[3], arguments[4], arguments[5], arguments[6]);
    std::fputs("usage: telvo-screens windows CASE FOLDER | help HELP-FOLDER/ FOLDER |\n"
               "       case CASE FOLDER NAME WINDOW VALUE\n",
               stderr);
    return 2;
}
