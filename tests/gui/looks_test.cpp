// SPDX-License-Identifier: GPL-3.0-or-later
//
// Opens every window that the menus lead to, on a small screen, in three sizes and two palettes,
// takes its picture and looks for texts that do not fit or cannot be read. Runs at two scales.
#include "app/ui/DesktopMessages.h"
#include "base/ui/frmPopUp.h"
#include "base/ui/screenRoom.h"
#include "programHome.h"
#include "windowFaults.h"

#include <algorithm>
#include <fstream>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QSet>
#include <QTabWidget>

using namespace telvo;
using namespace telvo::test;

namespace {

QPalette darkPalette() {
    QPalette dark;
    const auto set = [&dark](std::initializer_list<QPalette::ColorRole> roles, QColor color) {
        for (const auto role : roles)
            dark.setColor(role, color);
    };
    set({QPalette::Window, QPalette::Button, QPalette::AlternateBase}, QColor(45, 45, 48));
    set({QPalette::Base, QPalette::ToolTipBase}, QColor(30, 30, 30));
    set({QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText},
        QColor(230, 230, 230));
    set({QPalette::Link}, QColor(110, 170, 255));
    dark.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 128)); // as desktops leave it
    return dark;
}

/// Buttons of a window that open further windows, and the file that a dialog then chooses.
const std::pair<const char*, std::vector<std::pair<const char*, const char*>>> Doors[] = {
    {"frmResTxtPlt", {{"cmdViewPlots", ""}, {"cmdWorking", ""}}},
    {"frmPlots", {{"cmdPrint", ""}, {"cmdExport", "plan.png"}}},
    {"frmGraph", {{"cmdOptions", ""}}},
    {"frmStudies", {{"cmdUncertaintyInputs", ""}}},
    {"frmResource", {{"cmdImport", "cases.csv"}}}};

} // namespace

class LooksTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void everyWindowIsReadable_data();
    void everyWindowIsReadable();
    void theMainWindowShowsWholeFacts();
    void boxesHaveRoomForTheirTitles();

  private:
    void look(QWidget& window);
    void lookAtPages(QWidget& window, const QString& size);
    void openDoors(QWidget& window);
    void lookAtNewWindows();

    // The program changes its current folder.
    const QString m_folder = QDir::current().absoluteFilePath("pictures");
    Home* m_home = nullptr;
    QString m_palette;
    QStringList m_faults;
    QSet<QString> m_seen;
    QSet<QString> m_controls; ///< "frmSet/cmdOK"
};

/// Made for a case whose automatic values are not its own; the test of the form has them.
const QSet<QString> OnDemand = {"frmTELVOParm/cmdUseAutomatic", "frmTELVOParm/cmdKeepStored"};

/// Controls that the manual names and no window has. Those of a window that is not among `controls`
/// are not looked for.
QStringList unknownControls(const QSet<QString>& controls) {
    QStringList unknown;
    for (const QFileInfo& page : QDir(TELVO_MANUAL_DIR).entryInfoList({"*.md"})) {
        QFile file(page.absoluteFilePath());
        if (!file.open(QIODevice::ReadOnly)) return {"cannot read " + page.fileName()};
        static const QRegularExpression list("controls=\"([^\"]*)\"");
        for (auto at = list.globalMatch(file.readAll()); at.hasNext();)
            for (QString name : at.next().captured(1).split(' ', Qt::SkipEmptyParts)) {
                const QString form = name.section('/', 0, 0) + '/';
                if (OnDemand.contains(name)) continue;
                const bool several = name.endsWith("_*") || name.endsWith('_');
                if (name.endsWith('*')) name.chop(1);
                const auto begins = [](const QString& with) {
                    return [with](const QString& one) { return one.startsWith(with); };
                };
                if (std::any_of(controls.begin(), controls.end(), begins(form)) &&
                    !(several ? std::any_of(controls.begin(), controls.end(), begins(name))
                              : controls.contains(name)))
                    unknown << page.fileName() + ": no window has " + name;
            }
    }
    return unknown;
}

/// Looks at every page of a window, be they tabs or the rows of a list beside them.
void LooksTest::lookAtPages(QWidget& window, const QString& size) {
    auto* list = window.findChild<QListWidget*>("lstStudies");
    auto* tabs = list ? nullptr : window.findChild<QTabWidget*>();
    const int pages = list ? list->count() : tabs ? tabs->count() : 1;
    const auto show = [&](int page) {
        if (list) list->setCurrentRow(page);
        if (tabs) tabs->setCurrentIndex(page);
    };
    const int shown = list ? list->currentRow() : tabs ? tabs->currentIndex() : 0;
    for (int page = 0; page < pages; ++page) {
        show(page);
        if (auto* studies = qobject_cast<study::ui::frmStudies*>(&window)) {
            // A page with nothing to show says so.
            const study::ui::StudyPage& current = studies->currentPage();
            const auto settled = [&] {
                if (current.isCurrent()) return true;
                const auto problems = current.findChildren<QLabel*>(QRegularExpression("Problem$"));
                return std::any_of(problems.begin(), problems.end(),
                                   [](const QLabel* one) { return one->isVisible(); });
            };
            if (!QTest::qWaitFor(settled, 60000))
                m_faults << QString("page %1 shows nothing").arg(page);
        }
        for (int i = 0; i < 5; ++i) // layouts within layouts
            QApplication::processEvents();
        m_faults += textFaults(window) + letterFaults(window);
        constexpr int lightlyPacked = 80; // packing hundreds of pictures well takes minutes
        window.grab().save(m_folder + QString("/%1-%2-%3-%4x%5.png")
                                          .arg(window.objectName())
                                          .arg(page)
                                          .arg(m_palette, size)
                                          .arg(window.devicePixelRatio()),
                           "PNG", lightlyPacked);
    }
    show(shown);
}

void LooksTest::look(QWidget& window) {
    for (const QObject* control : window.findChildren<QObject*>())
        m_controls << window.objectName() + '/' + control->objectName();
    const QSize room = telvo::ui::roomOnScreen(window);
    const QSize opened = window.size();
    const QSize least = window.minimumSizeHint().expandedTo(window.minimumSize());
    const auto fits = [&](const QSize& size, const char* what) {
        if (size.width() > room.width() || size.height() > room.height())
            m_faults << QString("%1: %2 %3x%4 is more than %5x%6")
                            .arg(window.objectName(), what)
                            .arg(size.width())
                            .arg(size.height())
                            .arg(room.width())
                            .arg(room.height());
    };
    fits(opened, "opened at");
    fits(least, "shrinks to");
    lookAtPages(window, "opened");
    window.resize(least);
    lookAtPages(window, "least");
    window.resize(room);
    lookAtPages(window, "screen");
    window.resize(opened);
}

void LooksTest::openDoors(QWidget& window) {
    for (const auto& [name, buttons] : Doors) {
        if (window.objectName() != QLatin1String(name)) continue;
        for (const auto& [button, file] : buttons) {
            m_home->dialogs.answers.clear();
            if (*file != '\0') m_home->dialogs.answers = {m_home->path(file)};
            if (auto* door = window.findChild<QPushButton*>(button)) door->click();
            QApplication::processEvents();
        }
    }
}

/// Looks at the windows that have come up, opens what they lead to, and closes them.
void LooksTest::lookAtNewWindows() {
    for (bool found = true; found;) {
        found = false;
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (!window->isVisible() || !window->objectName().startsWith("frm") ||
                window->objectName() == "frmMain" || m_seen.contains(window->objectName()))
                continue;
            m_seen << window->objectName();
            look(*window);
            openDoors(*window);
            found = true;
            break; // the list has changed
        }
    }
}

void LooksTest::everyWindowIsReadable_data() {
    QTest::addColumn<QPalette>("palette");
    QTest::newRow("light") << QApplication::palette();
    QTest::newRow("dark") << darkPalette();
}

void LooksTest::everyWindowIsReadable() {
    QFETCH(QPalette, palette);
    const QPalette before = QApplication::palette();
    QApplication::setPalette(palette);
    m_palette = QTest::currentDataTag();
    m_faults.clear();
    m_seen.clear();
    QDir().mkpath(m_folder);
    Home home;
    m_home = &home;
    QVERIFY(writeFile(home.path("install/Resources.lst"), "TELVO.PDF; Program manual\n"));
    QVERIFY(writeFile(home.path("cases.csv"), "Title,DepthCover\nfirst,500\nsecond,700\n"));
    Program& program = home.start();
    home.closer.stop();
    program.settings().values().GraphSetParams = 1;
    look(program.window()); // empty
    QVERIFY(program.session().LoadProjFile(TELVO_EXAMPLES_DIR "/two-side-gobs.TLV"));
    look(program.window());

    home.answers.assign(1000, Answer::Yes); // a form may be left
    // Plays the user before windows that wait for an answer.
    QTimer user;
    connect(&user, &QTimer::timeout, this, [&] {
        QWidget* waiting = QApplication::activeModalWidget();
        if (!waiting || waiting->property("atItsDoors").toBool()) return;
        if (!m_seen.contains(waiting->objectName())) {
            m_seen << waiting->objectName();
            look(*waiting);
            // What it leads to may wait for an answer too, so this timer has to be free for it.
            waiting->setProperty("atItsDoors", true);
            QTimer::singleShot(0, waiting, [this, waiting] {
                openDoors(*waiting);
                waiting->setProperty("atItsDoors", false);
            });
            return;
        }
        auto* ok = waiting->findChild<QPushButton*>("cmdOK");
        const QStringList accepted{"frmGraphOpts", "frmPrintPlotReminder"};
        if (ok && accepted.contains(waiting->objectName()))
            ok->click();
        else
            waiting->close();
    });
    user.start(10);

    const auto& menu = program.window();
    const QList<const QAction*> skipped{&menu.action(MenuEntry::New), &menu.action(MenuEntry::Save),
                                        &menu.action(MenuEntry::SaveAs),
                                        &menu.action(MenuEntry::Exit)};
    for (QAction* action : program.window().findChildren<QAction*>()) {
        const bool isCommand = action->objectName().startsWith("mnu") && !action->menu() &&
                               !action->objectName().startsWith("mnuFileArray");
        if (!isCommand || !action->isEnabled() || skipped.contains(action)) continue;
        action->trigger();
        QApplication::processEvents();
        lookAtNewWindows();
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->isVisible() && window->objectName() != "frmMain") window->close();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    telvo::ui::frmPopUp popUp("TELVO Warnings", std::string(2000, 'w'), "x.htm",
                              program.formServices());
    popUp.show();
    lookAtNewWindows();
    popUp.close();

    // A run that no longer belongs to the case.
    QVERIFY(program.session().LoadProjFile(TELVO_EXAMPLES_DIR "/two-side-gobs.TLV"));
    home.trigger(MenuEntry::StabilityFactors);
    project::ProjectInput changed = program.session().project().Input;
    changed.DepthCover += 100;
    changed.ExtentSecondGob += 50;
    changed.CoalStrength += 1;
    changed.RowA = 1;
    program.session().acceptParameters(changed);
    auto* results = home.window<QWidget>("frmResTxtPlt");
    QVERIFY2(results, qPrintable(m_faults.join('\n')));
    look(*results);

    for (const char* name :
         {"frmTELVODesc", "frmTELVOParm",  "frmResTxtPlt", "frmPlots",    "frmExplain",
          "frmStudies",   "frmGraph",      "frmGraphOpts", "frmSet",      "frmTELVOOpts",
          "frmUnits",     "frmConvert",    "frmPreview",   "frmTextBrow", "frmResource",
          "frmCaseTable", "frmDisclaimer", "frmUpdate",    "frmAbout",    "frmPrintPlotReminder",
          "frmPopUp"})
        if (!m_seen.contains(name)) m_faults << QString("%1 was not seen").arg(name);
    user.stop();
    home.closer.start(1);
    home.answers = {Answer::No};
    QVERIFY(home.quit());
    QApplication::setPalette(before);
    m_faults += unknownControls(m_controls);
    m_faults.removeDuplicates();
    QVERIFY2(m_faults.isEmpty(), qPrintable('\n' + m_faults.join('\n')));
}

void LooksTest::theMainWindowShowsWholeFacts() {
    Home home;
    Program& program = home.start();
    m_faults.clear();
    for (const char* example : {"two-side-gobs", "development-mains", "metric-one-side-gob"}) {
        QVERIFY(
            program.session().LoadProjFile(std::string(TELVO_EXAMPLES_DIR "/") + example + ".TLV"));
        program.window().show();
        // Down to the smallest and up again, as by the mouse.
        for (int width = 1300; width > 300; width -= 97) {
            program.window().resize(width, width / 2);
            QApplication::processEvents();
            m_faults += textFaults(program.window());
        }
    }
    QVERIFY2(m_faults.isEmpty(), qPrintable('\n' + m_faults.join('\n')));
    QVERIFY(home.quit());
}

void LooksTest::boxesHaveRoomForTheirTitles() {
    Home home;
    Program& program = home.start();
    home.closer.stop();
    app::ui::DesktopMessages desktop({}); // with the box of the desktop
    using enum QMessageBox::Icon;
    const struct {
        const char *text, *title;
        QMessageBox::Icon icon;
    } boxes[] = {
        {"0 to 90", "Project Parameters: Range Error", Warning},
        {"870?", "Project Parameters: Range Warning", Warning},
        {"'y' is not a character of a number", "Project Parameters: Invalid Character", Warning},
        {"The file was not saved.", "TELVO", Warning},
        {"Stability factor 0.9", "TELVO Warnings", Warning},
        {"A note", "Results: Message", Information}};
    for (const auto& box : boxes) {
        bool seen = false;
        QTimer::singleShot(20, qApp, [&] {
            auto* shown = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!shown) return;
            QCOMPARE(shown->windowTitle(), box.title);
            QCOMPARE(shown->icon(), box.icon);
            QCOMPARE(shown->parentWidget(), &program.window());
            QVERIFY(!shown->windowIcon().isNull());
            QVERIFY(shown->width() > shown->fontMetrics().horizontalAdvance(box.title) + 50);
            QVERIFY(textFaults(*shown).isEmpty());
            seen = true;
            shown->accept();
        });
        desktop.ask(box.text, Buttons::Ok, Answer::Ok, box.title);
        QVERIFY(seen);
    }
    home.closer.start(1);
    QVERIFY(home.quit());
}

int main(int argc, char** argv) {
    // A laptop at 100 %, and a larger screen whose user sees everything twice as large.
    const bool twice = qgetenv("QT_SCALE_FACTOR") == "2";
    QTemporaryDir folder;
    const QString screen = folder.filePath("screen.json");
    std::ofstream(screen.toStdString())
        << R"({"windowFrameMargins": false, "screens": [{"name": "s", "x": 0, "y": 0, "width": )"
        << (twice ? 1920 : 1280) << R"(, "height": )" << (twice ? 1080 : 720)
        << R"(, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})";
    qputenv("QT_QPA_PLATFORM", ("offscreen:configfile=" + screen).toUtf8());
    QApplication application(argc, argv);
    LooksTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "looks_test.moc"
