// SPDX-License-Identifier: GPL-3.0-or-later
//
// Nothing of the user's is lost or shown as what it is not: copies of unsaved and discarded cases,
// damaged files, settings that cannot be read.
#include "app/recovery.h"
#include "programHome.h"
#include "project/CaseFile.h"

#include <QLabel>
#include <QMenu>
#include <QProcess>

using namespace telvo;
using namespace telvo::test;

namespace {

std::string settingsWith(const std::string& lines) {
    return "[Version]\r\nINIFileVersion=050817\r\n" + lines;
}

} // namespace

class RecoveryTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void unreadableSettingsAreTold();
    void noRecoveryCopyIsTold();
    void aKilledProgramLosesNothing();
    void aRunningProgramKeepsItsCopy();
    void whatIsLetGoCanBeBroughtBack();
    void severalCopiesAreListed();
    void aDamagedFileShowsNoFactorsUntilItWasLookedAt();
};

void RecoveryTest::unreadableSettingsAreTold() {
    Home home;
    QDir().mkpath(home.folder.filePath("Documents/MyBODRA/TELVO.INI")); // a folder of that name
    home.start();
    QVERIFY(home.wasAsked("TELVO: The settings file cannot be used. "));
    QVERIFY(control(home.program->window(), "tlbMain").isVisible());
    QVERIFY(control(home.program->window(), "txtMain").isVisible());
    QCOMPARE(home.program->settings().values().FileExtension, "TLV");
    QCOMPARE(home.modalWindows.front(), "frmDisclaimer");
}

void RecoveryTest::noRecoveryCopyIsTold() {
    Home home;
    home.start();
    home.program->messages().lines().clear();
    QDir(home.folder.filePath("Documents/MyBODRA/Temp")).removeRecursively();
    home.program->session().acceptDescription("A title", "");
    QVERIFY(!home.program->recovery().keep());
    QVERIFY(home.wasAsked("No recovery copy of the unsaved case can be kept: "));
    const auto boxes = home.asked.size();
    QVERIFY(!home.program->recovery().keep());
    QCOMPARE(home.asked.size(), boxes); // once
}

void RecoveryTest::aKilledProgramLosesNothing() {
    Home home;
    home.put(home.data("TELVO.INI"), settingsWith("[Settings]\r\nShowDisclaim=0\r\n"));
    QProcess victim;
    victim.start(QApplication::applicationFilePath(), {"--victim", home.folder.path()});
    const QDir temp(home.folder.filePath("Documents/MyBODRA/Temp"));
    // The victim types into the open form; the copy has to be there within five seconds of it.
    QTRY_VERIFY_WITH_TIMEOUT(victim.canReadLine(), 30000);
    QTRY_VERIFY_WITH_TIMEOUT(!temp.entryList({"~recovery-*.tmp"}).isEmpty(), 5000);
    QTest::qWait(200);
    victim.kill();
    QVERIFY(victim.waitForFinished());

    home.answers = {Answer::Cancel}; // not now
    home.start();
    QVERIFY(home.wasAsked("TELVO ended without saving the case: Untitled\nA copy of 20"));
    QVERIFY(home.quit());
    home.start(); // Yes
    QCOMPARE(home.program->session().project().Input.DepthCover, 1234.0);
    QCOMPARE(home.program->window().windowTitle(), "Untitled*");
    // The copy is this program's own now; it goes when the case is saved.
    home.dialogs.answers = {home.path("kept.TLV")};
    home.trigger(MenuEntry::Save);
    QTRY_VERIFY_WITH_TIMEOUT(temp.entryList({"~recovery-*"}).isEmpty(), 5000);
    home.asked.clear();
    QVERIFY(home.quit());
    home.start();
    QVERIFY(home.asked.empty());
}

void RecoveryTest::aRunningProgramKeepsItsCopy() {
    Home first;
    first.start();
    first.program->session().acceptDescription("Mine", "");
    QVERIFY(first.program->recovery().keep());
    // A second program in the same home does not offer what belongs to a running one.
    std::vector<app::UnsavedCase> offered;
    app::ui::RecoveryKeeper second(first.program->folders().TempDataFolder,
                                   first.program->messages(), [] { return std::nullopt; });
    second.offer([&](app::UnsavedCase kept) { offered.push_back(std::move(kept)); });
    QVERIFY(offered.empty() && first.asked.empty());
    // A damaged copy is told and put out of the way.
    first.put(first.data("Temp/~recovery-1-1.tmp"), "TELVO recovery copy of: x\r\nTELVO_602\r\n");
    second.offer([&](app::UnsavedCase kept) { offered.push_back(std::move(kept)); });
    QVERIFY(first.wasAsked("~recovery-1-1.tmp"));
    QVERIFY(QFile::exists(QString::fromStdString(first.data("Temp/~recovery-1-1.tmp.damaged"))));
    QVERIFY(offered.empty());
}

void RecoveryTest::whatIsLetGoCanBeBroughtBack() {
    Home home;
    home.start(TELVO_EXAMPLES_DIR "/deep-cover.TLV");
    const auto menu = [&home] {
        return home.program->window().action(MenuEntry::RecoverDiscarded).menu();
    };
    QVERIFY(!menu()->isEnabled());
    for (int depth = 1001; depth <= 1007; ++depth) {
        project::ProjectInput in = home.program->session().project().Input;
        in.DepthCover = depth;
        home.program->session().acceptParameters(in);
        home.answers = {Answer::No};
        QVERIFY(home.program->session().newCommand());
        QTest::qWait(5); // a file time each
    }
    QVERIFY(menu()->isEnabled());
    QCOMPARE(menu()->actions().size(), 5); // the last five
    QVERIFY(menu()->actions()[0]->text().startsWith("&1 Untitled, discarded "));
    const QDir temp(home.folder.filePath("Documents/MyBODRA/Temp"));
    QCOMPARE(temp.entryList({"~discarded-*"}).size(), 5);
    menu()->actions()[1]->trigger();
    QCOMPARE(home.program->session().project().Input.DepthCover, 1006.0);
    QCOMPARE(home.program->window().windowTitle(), "Untitled*");
    QCOMPARE(home.status(), "Discarded case brought back");
    QCOMPARE(menu()->actions().size(), 4); // it is an unsaved case again, with its own copy
    QCOMPARE(temp.entryList({"~recovery-*.tmp"}).size(), 1);
    // Another one asks first; Cancel changes nothing.
    home.answers = {Answer::Cancel};
    menu()->actions()[0]->trigger();
    QCOMPARE(home.program->session().project().Input.DepthCover, 1006.0);
    // They outlive the program, and what is let go at its end is among them.
    home.answers = {Answer::No};
    QVERIFY(home.quit());
    home.start();
    QCOMPARE(menu()->actions().size(), 5);
    QVERIFY(temp.entryList({"~recovery-*"}).isEmpty());
}

void RecoveryTest::severalCopiesAreListed() {
    Home home;
    for (int depth : {1, 2, 3}) {
        project::ProjectCase unsaved = project::newCase(project::English);
        unsaved.Input.DepthCover = depth;
        unsaved.FileName = "/cases/" + std::to_string(depth) + ".TLV";
        home.put(home.data("Temp/~recovery-") + std::to_string(depth) + ".tmp",
                 *app::recoveryText({unsaved}));
        QTest::qWait(50); // file times may have steps of 10 ms
    }
    home.answers = {Answer::No, Answer::Yes};
    home.start();
    const auto& keptCopies = *home.program->window().action(MenuEntry::RecoverDiscarded).menu();
    QVERIFY(home.wasAsked("the case: /cases/3.TLV"));
    QVERIFY(home.wasAsked("Older copies that wait beside it: 2."));
    QCOMPARE(home.program->window().windowTitle(), "2.TLV*");
    QVERIFY(keptCopies.actions()[0]->text().startsWith("&1 3.TLV, discarded "));
    const auto copies = home.program->recovery().copies();
    QCOMPARE(copies.size(), std::size_t{2});
    QVERIFY(copies[0].discarded && copies[0].name == "/cases/3.TLV"); // No threw nothing away
    QVERIFY(!copies[1].discarded && copies[1].name == "/cases/1.TLV");
    home.answers = {Answer::No};
    keptCopies.actions()[1]->trigger();
    QCOMPARE(home.program->window().windowTitle(), "1.TLV*");
    // Its own name is only a proposal.
    home.trigger(MenuEntry::Save);
    QVERIFY(home.dialogs.asked.back().starts_with("Save Project As|/cases/1.TLV|"));
}

void RecoveryTest::aDamagedFileShowsNoFactorsUntilItWasLookedAt() {
    Home home;
    home.put(home.path("half.TLV"), "TELVO_602\r\n 0\r\nHalf\r\n##StartDesc##\r\n##EndDesc##\r\n"
                                    "6\r\n2150\r\n90\r\n");
    home.start(TELVO_EXAMPLES_DIR "/two-side-gobs.TLV");
    auto& factor = control<QLabel>(home.program->window(), "lblRetreatSF");
    QCOMPARE(factor.text(), "1.61");
    QVERIFY(!control(home.program->window(), "lblKept").isVisible());
    QVERIFY(!home.program->session().openNamed(home.path("half.TLV")));
    QCOMPARE(factor.text(), "\u2013");
    auto& kept = control<QLabel>(home.program->window(), "lblKept");
    QVERIFY(kept.isVisible());
    QVERIFY(kept.text().startsWith("The file was damaged. Not in it, but from the case before, "
                                   "two-side-gobs.TLV, in English units: Entry Width 20 (ft)"));
    home.trigger(MenuEntry::StabilityFactors);
    QVERIFY(home.wasAsked("until then no stability factors are shown"));
    QVERIFY(!home.window<QWidget>("frmResTxtPlt"));
    QVERIFY(!home.program->window().graphAction(GraphKind::EntryHeight).isEnabled());

    home.trigger(MenuEntry::Parameters);
    auto* form = home.window<QWidget>("frmTELVOParm");
    const QString mark = "Not in the file; from the case before, two-side-gobs.TLV";
    QVERIFY(control(*form, "txtEntryWidth").toolTip().startsWith(mark));
    QVERIFY(control(*form, "txtXcutCenters_1").toolTip().startsWith(mark));
    QVERIFY(control(*form, "chkRowA").toolTip().startsWith(mark));
    QVERIFY(!control(*form, "txtDepthCover").toolTip().startsWith(mark));
    QVERIFY(control<QLabel>(*form, "lblKept").text().contains("Entry Width 20 (ft)"));
    QTest::qWait(100);
    QCOMPARE(control<QLabel>(*form, "lblRetreatSF").text(), "\u2013");
    type(*form, "txtEntryWidth", "19");
    QVERIFY(!control(*form, "txtEntryWidth").toolTip().startsWith(mark));
    click(*form, "cmdResults");
    QVERIFY(!home.window<QWidget>("frmResTxtPlt"));
    click(*form, "cmdOK");
    QVERIFY(!kept.isVisible());
    QVERIFY(factor.text() != "\u2013");
}

/// The program that is going to be killed: types a depth into the open form and waits.
static int victim(const QString& home) {
    RecordedDialogs dialogs;
    NoPrinter printer;
    const std::string root = home.toStdString();
    const app::SystemFolders system = {root + "/install", root + "/Documents", root};
    Program program({system,
                     {},
                     [] { return std::chrono::year{2014} / 1 / 1; },
                     [](auto, auto, Answer preset, auto) { return preset; },
                     dialogs,
                     printer});
    program.start();
    program.window().action(MenuEntry::Parameters).trigger();
    for (QWidget* top : QApplication::topLevelWidgets())
        if (top->objectName() == "frmTELVOParm") type(*top, "txtDepthCover", "1234");
    std::puts("typed");
    std::fflush(stdout);
    return QApplication::exec();
}

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName("telvo");
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() == 3 && arguments[1] == "--victim") return victim(arguments[2]);
    RecoveryTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "recovery_test.moc"
