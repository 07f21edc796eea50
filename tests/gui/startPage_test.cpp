// SPDX-License-Identifier: GPL-3.0-or-later
//
// How a user comes to a case: start page, drop, file dialogs, the command line on a terminal.
#include "app/ui/DesktopFileDialogs.h"
#include "app/ui/StartPage.h"
#include "programHome.h"

#include <QDropEvent>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QProcess>
#include <QPushButton>
#include <QUrl>

using namespace telvo;
using namespace telvo::test;
using app::ui::ChoiceList;

class StartPageTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void beginsCasesInBothUnits();
    void examplesAreSeenAndOpened();
    void recentFilesAndCopiesAreListed();
    void unitsOfNewProjectsReachTheUntouchedCase();
    void aDroppedFileIsOpened();
    void longRecentNamesAreShortenedInTheMiddle();
    void savedNamesKeepTheirPoints();
    void theSaveDialogAsksAboutTheNameThatIsWritten();
    void theTerminalIsAnsweredWithoutADisplay();
    void everyActionLeavesItsLine();
};

namespace {

QWidget& startPage(Home& home) {
    return control(home.program->window(), "startPage");
}

void drop(QWidget& window, const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(&window, &enter);
    if (!enter.isAccepted()) return;
    QDropEvent event({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &event);
    QTest::qWait(1);
}

} // namespace

void StartPageTest::beginsCasesInBothUnits() {
    Home home;
    home.start();
    QVERIFY(startPage(home).isVisible());
    QVERIFY(!control(home.program->window(), "caseOverview").isVisible());
    // With the keyboard alone.
    auto& metric = control<QPushButton>(startPage(home), "cmdNewMetric");
    metric.setFocus(Qt::TabFocusReason);
    QTest::keyClick(&metric, Qt::Key_Space);
    auto* form = home.window<QWidget>("frmTELVOParm");
    QVERIFY(form && form->isVisible());
    QCOMPARE(home.program->session().project().Units, project::Metric);
    home.answers = {Answer::Yes};
    click(*form, "cmdCancel");
    QTest::qWait(1);
    QVERIFY(startPage(home).isVisible()); // nothing was entered
    click(startPage(home), "cmdNewEnglish");
    QCOMPARE(home.program->session().project().Units, project::English);
    form = home.window<QWidget>("frmTELVOParm");
    type(*form, "txtEntryHeight", "6");
    home.answers = {Answer::Yes};
    click(*form, "cmdCancel");
    home.program->session().acceptDescription("A title", "");
    QVERIFY(!startPage(home).isVisible());
    QCOMPARE(control<QLabel>(home.program->window(), "lblTitle").text(), "A title");
}

void StartPageTest::examplesAreSeenAndOpened() {
    Home home;
    for (const char* name : {"two-side-gobs.TLV", "deep-cover.TLV", "tutorial-1-start.TLV"})
        QFile::copy(QString(TELVO_EXAMPLES_DIR "/") + name,
                    home.folder.filePath(QString("install/") + name));
    home.put(home.path("install/broken.TLV"), "TELVO_602\r\n0\r\n");
    home.start();
    auto& list = control<ChoiceList>(startPage(home), "lstExamples");
    QCOMPARE(list.count(), 3); // the tutorial has its own way
    QCOMPARE(list.accessibleName(), "Examples");
    // The pictures come one after the other; what cannot be drawn keeps its name.
    QTRY_VERIFY(!list.item(2)->toolTip().isEmpty());
    QCOMPARE(list.item(0)->text(), "broken");
    const QImage picture = list.item(1)->icon().pixmap(list.iconSize()).toImage();
    int ink = 0;
    for (int x = 0; x < picture.width(); ++x)
        for (int y = 0; y < picture.height(); ++y)
            ink += picture.pixelColor(x, y).lightness() < 200;
    QVERIFY2(ink > 500, std::to_string(ink).c_str());
    list.setFocus(Qt::TabFocusReason);
    QTest::keyClick(&list, Qt::Key_Right);
    QTest::keyClick(&list, Qt::Key_Return);
    QCOMPARE(home.program->window().windowTitle(), "deep-cover.TLV");
    QCOMPARE(home.program->session().project().FileName, home.data("deep-cover.TLV"));
    QVERIFY(!startPage(home).isVisible());
    QVERIFY(home.program->session().newCommand());
    QVERIFY(startPage(home).isVisible());
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      list.visualItemRect(list.item(2)).center());
    QCOMPARE(home.program->window().windowTitle(), "two-side-gobs.TLV");
}

void StartPageTest::recentFilesAndCopiesAreListed() {
    Home home;
    home.start();
    QVERIFY(!control(startPage(home), "lstRecent").isVisible());
    QVERIFY(!control(startPage(home), "lstKept").isVisible());
    auto& session = home.program->session();
    QFile::copy(TELVO_EXAMPLES_DIR "/deep-cover.TLV", home.folder.filePath("a & <b>.TLV"));
    QVERIFY(session.LoadProjFile(home.path("a & <b>.TLV")));
    session.acceptDescription("Let go", "");
    home.answers = {Answer::No};
    QVERIFY(session.newCommand());
    auto& recent = control<ChoiceList>(startPage(home), "lstRecent");
    auto& kept = control<ChoiceList>(startPage(home), "lstKept");
    QVERIFY(recent.isVisible() && kept.isVisible());
    QVERIFY(recent.item(0)->text().endsWith("a & <b>.TLV"));
    QVERIFY(kept.item(0)->text().startsWith("a & <b>.TLV, discarded "));
    QTest::mouseClick(kept.viewport(), Qt::LeftButton, {},
                      kept.visualItemRect(kept.item(0)).center());
    QCOMPARE(session.project().Title, "Let go");
    home.answers = {Answer::No};
    QVERIFY(session.newCommand());
    recent.setFocus(Qt::TabFocusReason);
    QTest::keyClick(&recent, Qt::Key_Enter);
    QCOMPARE(home.program->window().windowTitle(), "a & <b>.TLV");
}

void StartPageTest::unitsOfNewProjectsReachTheUntouchedCase() {
    Home home;
    home.start();
    const auto chooseUnits = [&](const char* option) {
        inModal(
            "frmSet", [&] { home.trigger(MenuEntry::Settings); },
            [option](QWidget& form) {
                click(form, option);
                click(form, "cmdOK");
            });
    };
    home.trigger(MenuEntry::ShowHistory); // closes the history
    chooseUnits("optDefaultUnits_1");
    QCOMPARE(home.program->session().project().Units, project::Metric);
    QVERIFY(!control(home.program->window(), "txtMain").isVisible()); // and it stays so
    home.program->session().acceptDescription("Mine", "");
    chooseUnits("optDefaultUnits_0");
    QCOMPARE(home.program->session().project().Units, project::Metric);
}

void StartPageTest::aDroppedFileIsOpened() {
    Home home;
    home.start();
    auto& window = home.program->window();
    const QUrl file = QUrl::fromLocalFile(TELVO_EXAMPLES_DIR "/deep-cover.TLV");
    drop(window, {QUrl("https://example.org/a.TLV")});
    drop(window, {file, file});
    QCOMPARE(window.windowTitle(), "Untitled");
    drop(window, {file});
    QCOMPARE(window.windowTitle(), "deep-cover.TLV");
    home.program->session().acceptDescription("Edited", "");
    home.answers = {Answer::Cancel};
    drop(window, {QUrl::fromLocalFile(TELVO_EXAMPLES_DIR "/two-side-gobs.TLV")});
    QVERIFY(home.wasAsked("Save changes to: "));
    QCOMPARE(window.windowTitle(), "deep-cover.TLV*");
    home.trigger(MenuEntry::Parameters); // nothing is opened below an open form
    home.answers = {Answer::No};
    drop(window, {QUrl::fromLocalFile(TELVO_EXAMPLES_DIR "/two-side-gobs.TLV")});
    QCOMPARE(window.windowTitle(), "deep-cover.TLV*");
    home.answers = {Answer::Yes};
    home.window<QWidget>("frmTELVOParm")->close();
}

void StartPageTest::longRecentNamesAreShortenedInTheMiddle() {
    Home home;
    home.start();
    const QString folder = home.folder.filePath(QString(100, 'x') + '/' + QString(100, 'y'));
    QDir().mkpath(folder);
    QFile::copy(TELVO_EXAMPLES_DIR "/deep-cover.TLV", folder + "/last.TLV");
    QVERIFY(home.program->session().LoadProjFile((folder + "/last.TLV").toStdString()));
    const auto* action = &home.program->window().recentFileAction(1);
    QVERIFY(action->text().size() < 100);
    QVERIFY(action->text().startsWith("&1 /") && action->text().endsWith("last.TLV"));
    QVERIFY(action->toolTip().contains(folder));
}

void StartPageTest::savedNamesKeepTheirPoints() {
    const QStringList cases = {"TLV Files (*.TLV *.tlv)", "All Files (*)"};
    const QStringList pictures = {"PNG Picture (*.png)", "SVG Drawing (*.svg)"};
    const struct {
        QString name;
        QStringList filters;
        int chosen;
        QString extension, saved;
    } rows[] = {{"Panel 2.5m rev1", cases, 0, "TLV", "Panel 2.5m rev1.TLV"},
                {"Panel", cases, 0, "TLV", "Panel.TLV"},
                {"panel.tlv", cases, 0, "TLV", "panel.tlv"},
                {"a.b/panel", cases, 1, "TLV", "a.b/panel.TLV"},
                {"panel.txt", cases, 1, "TLV", "panel.txt"}, // the user wants it so
                {"panel.txt", cases, 0, "TLV", "panel.txt.TLV"},
                {".TLV", cases, 0, "TLV", ".TLV.TLV"}, // it would be hidden and without a name
                {"Panel 2.5", {"All Files (*)"}, 0, "", "Panel 2.5"},
                {"plan 1.2", pictures, 1, "png", "plan 1.2.svg"},
                {"plan.svg", pictures, 0, "png", "plan.svg"}};
    for (const auto& row : rows)
        QCOMPARE(app::ui::savedName(row.name, row.filters, row.filters[row.chosen], row.extension),
                 row.saved);
}

void StartPageTest::theSaveDialogAsksAboutTheNameThatIsWritten() {
    QTemporaryDir folder;
    std::ofstream(folder.filePath("Rev 1.2.TLV").toStdString()) << "old";
    app::ui::DesktopFileDialogs dialogs;
    const auto save = [&](QString name, bool replace) {
        bool asked = false;
        QTimer user;
        QObject::connect(&user, &QTimer::timeout, [&] {
            auto* top = QApplication::activeModalWidget();
            if (auto* dialog = qobject_cast<QFileDialog*>(top)) {
                if (std::exchange(asked, asked)) {
                    dialog->reject(); // the answer was No: it is still there
                    return;
                }
                auto* edit = dialog->findChild<QLineEdit*>("fileNameEdit");
                edit->setText(name);
                QMetaObject::invokeMethod(dialog, "accept", Qt::QueuedConnection);
            } else if (top) {
                asked = true;
                top->findChildren<QPushButton*>()[replace ? 0 : 1]->click();
            }
        });
        user.start(5);
        const auto chosen =
            dialogs.saveFile("Save Project As", folder.filePath("Untitled").toStdString(),
                             {"TLV Files (*.TLV)"}, "TLV");
        return std::pair(chosen, asked);
    };
    const std::string old = folder.filePath("Rev 1.2.TLV").toStdString();
    QVERIFY(save("Rev 1.2", true) == std::pair(std::optional(old), true));
    QVERIFY(save("Rev 1.2", false) == std::pair(std::optional<std::string>(), true));
    QVERIFY(save("Rev 1.3", true) ==
            std::pair(std::optional(folder.filePath("Rev 1.3.TLV").toStdString()), false));
}

void StartPageTest::theTerminalIsAnsweredWithoutADisplay() {
    const auto run = [](const QStringList& arguments) {
        QProcess program;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DISPLAY", ":4711"); // there is none
        environment.remove("WAYLAND_DISPLAY");
        environment.insert("QT_QPA_PLATFORM", "xcb");
        program.setProcessEnvironment(environment);
        program.start(TELVO_PROGRAM, arguments);
        program.waitForFinished(20000);
        return std::tuple(program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1,
                          program.readAllStandardOutput(), program.readAllStandardError());
    };
    const auto [help, usage, noError] = run({"--help"});
    QCOMPARE(help, 0);
    QVERIFY(usage.startsWith("Usage: telvo [CASE]\n") && noError.isEmpty());
    const auto [version, number, none] = run({"--version"});
    QCOMPARE(version, 0);
    QVERIFY(number.startsWith("telvo ") && number.count('\n') == 1 && none.isEmpty());
    const auto [failed, nothing, line] = run({});
    QCOMPARE(failed, 1);
    QVERIFY2(nothing.isEmpty() && line.startsWith("telvo: no display") && line.count('\n') == 1,
             line);
}

void StartPageTest::everyActionLeavesItsLine() {
    Home home;
    home.start(TELVO_EXAMPLES_DIR "/deep-cover.TLV");
    home.trigger(MenuEntry::StabilityFactors);
    QVERIFY(home.history().find("\nResults displayed") != std::string::npos);
    auto* results = home.window<QWidget>("frmResTxtPlt");
    for (const auto& [button, line] :
         {std::pair{"cmdCopyPage", "Output page #1 copied to clipboard"},
          {"cmdCopyAll", "Output copied to clipboard"},
          {"Command6", "Printing aborted"},
          {"cmdScreenshot", "Screenshot of dialog copied to clipboard"}}) {
        click(*results, button);
        QVERIFY2(home.history().ends_with(std::string("\n") + line), button);
        QCOMPARE(home.status(), line);
    }
    QVERIFY(home.program->session().newCommand());
    home.trigger(MenuEntry::StabilityFactors); // each refusal has a status of its own
    QCOMPARE(home.status(), "No stability factors: the current file is empty");
    home.trigger(MenuEntry::Print);
    QCOMPARE(home.status(), "Printing aborted");
    home.trigger(MenuEntry::PrintPreview);
    QCOMPARE(home.status(), "Print preview cancelled");
}

QTEST_MAIN(StartPageTest)
#include "startPage_test.moc"
