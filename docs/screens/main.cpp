// SPDX-License-Identifier: GPL-3.0-or-later
// Takes the pictures of the windows for the manuals, without a display:
//   telvo-screens windows EXAMPLE-CASE FOLDER     every window of the desktop program
//   telvo-screens help HELP-FOLDER/ FOLDER        the help window
#include "app/ui/frmMain.h"
#include "app/ui/Program.h"
#include "base/ui/qtText.h"
#include "help/ui/frmHelp.h"
#include "report/ui/PrintDialogs.h"

#include <cstdio>
#include <functional>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
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
    std::optional<std::string> chooseFolder(std::string_view, std::string_view) override {
        return std::nullopt;
    }
};

struct NoPrinter : report::ui::PrintDialogs {
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
void choose(app::ui::frmMain& window, const char* item) {
    window.findChild<QAction*>(item)->trigger();
}

void takeParameterForm(Camera& camera, app::ui::frmMain& window) {
    choose(window, "mnuEditItem_1");
    QApplication::processEvents();
    QWidget* form = topWindow("frmTELVOParm");
    if (!form) return camera.missed("frmTELVOParm");
    for (int tab = 0; tab < 3; ++tab) {
        chooseTab(*form, tab);
        camera.take(*form, QString("frmTELVOParm-%1").arg(tab + 1));
    }
    form->close();
    QApplication::processEvents();
}

void takeViews(Camera& camera, app::ui::frmMain& window) {
    choose(window, "mnuCalcItem_0");
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
    choose(window, "mnuCalcGrafItem_5");
    QApplication::processEvents();
    closer.stop();
    if (QWidget* graph = topWindow("frmGraph")) {
        graph->resize(860, 640);
        camera.take(*graph, "frmGraph");
    } else {
        camera.missed("frmGraph");
    }
}

int takeWindows(const QString& example, const QString& folder) {
    Camera camera(folder);
    QTemporaryDir home;
    QDir().mkpath(home.filePath("Documents/MyBODRA"));
    QDir().mkpath(home.filePath("install"));
    const QString file = home.filePath("Documents/MyBODRA/") + QFileInfo(example).fileName();
    QFile::copy(example, file);
    NoFiles files;
    NoPrinter printer;
    app::ui::Program program(
        {{fromQt(home.filePath("install")), fromQt(home.filePath("Documents")),
          fromQt(home.path())},
         {},
         std::chrono::year{2014} / 1 / 1,
         // Yes, a form may be left.
         [](std::string_view, Buttons buttons, Answer preset, std::string_view) {
             return buttons == Buttons::YesNo ? Answer::Yes : preset;
         },
         files,
         printer});
    camera.takeModal("frmDisclaimer", [&program] { program.start(); });
    app::Settings& settings = program.settings().values();
    settings.GraphSetParams = 1;
    settings.DisplayFontName = "DejaVu Sans";
    settings.DisplayFontSize = 9;
    settings.DataPath = "Documents/MyBODRA";
    program.window().applyHistoryFont();
    program.session().LoadProjFile(fromQt(file));
    app::ui::frmMain& window = program.window();
    choose(window, "mnuUtilItem_5"); // empties the history, which names folders
    program.messages().history("TELVO stability factors calculated: " +
                               fromQt(QFileInfo(file).fileName()));
    window.resize(1120, 680);
    camera.take(window, "frmMain");

    const auto tab = [](int index) { return [index](QWidget& shown) { chooseTab(shown, index); }; };
    camera.takeModal("frmTELVODesc", [&] { choose(window, "mnuEditItem_0"); });
    camera.takeModal("frmUnits", [&] { choose(window, "mnuUtilItem_2"); });
    camera.takeModal("frmConvert", [&] { choose(window, "mnuUtilItem_3"); });
    camera.takeModal(
        "frmSet", [&] { choose(window, "mnuUtilItem_0"); }, tab(0));
    camera.takeModal(
        "frmTELVOOpts", [&] { choose(window, "mnuUtilItem_1"); }, tab(1));
    camera.takeModal("frmPreview", [&] { choose(window, "mnuFileItem_9"); });
    camera.takeModal("frmUpdate", [&] { choose(window, "mnuHelpItem_8"); });
    camera.takeModal("frmAbout", [&] { choose(window, "mnuHelpItem_10"); });
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
    if (arguments.size() != 4 || (arguments[1] != "windows" && arguments[1] != "help")) {
        std::fputs("usage: telvo-screens windows CASE FOLDER | help HELP-FOLDER/ FOLDER\n", stderr);
        return 2;
    }
    return arguments[1] == "windows" ? takeWindows(arguments[2], arguments[3])
                                     : takeHelp(arguments[2], arguments[3]);
}
