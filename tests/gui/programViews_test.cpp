// SPDX-License-Identifier: GPL-3.0-or-later
#include "programHome.h"

#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>

using namespace telvo;
using namespace telvo::test;

/// The windows around the case: graphs, plots, working, text browser, documents, tables.
class ProgramViewsTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void graphsAreOfferedWhereTheCaseHasThem();
    void graphsFollowTheOpenCaseUnlessPinned();
    void plotsStayThoseOfTheirRun();
    void aRunThatNoLongerBelongsToTheCaseSaysSo();
    void aTrialRunBelongsToTheForm();
    void filesAreBrowsedAndImported();
    void aCaseIsLoadedFromATable();
};

void ProgramViewsTest::graphsAreOfferedWhereTheCaseHasThem() {
    Home home;
    Program& program = home.start();
    const auto offered = [&] {
        std::string states;
        for (int kind = 0; kind < study::GraphKinds; ++kind)
            states +=
                program.window().graphAction(static_cast<GraphKind>(kind)).isEnabled() ? '1' : '0';
        return states;
    };
    QCOMPARE(offered(), "000000"); // an empty case
    QVERIFY(program.session().LoadProjFile(TELVO_EXAMPLES_DIR "/two-side-gobs.TLV"));
    QCOMPARE(offered(), "111111");
    project::ProjectInput in = program.session().project().Input;
    in.Anal = 2;
    program.session().acceptParameters(in);
    QCOMPARE(offered(), "111110");
    home.trigger(GraphKind::DepthCover);
    auto* graph = home.window<QWidget>("frmGraph");
    QVERIFY(graph && graph->isVisible());
    QVERIFY(graph->windowTitle().startsWith("Graph: SF vs Depth of Cover"));
    home.dialogs.answers = {home.path("graph.csv")};
    click(*graph, "cmdExport");
    QVERIFY(QFile::exists(home.folder.filePath("graph.csv")));
    program.settings().values().PlotRangeMin = 150;
    home.trigger(GraphKind::EntryHeight);
    QVERIFY(home.wasAsked("Invalid Range settings. Check Options-> Output Options"));
    home.answers = {Answer::No};
    QVERIFY(home.quit());
    QVERIFY(!home.window<QWidget>("frmGraph"));
}

void ProgramViewsTest::graphsFollowTheOpenCaseUnlessPinned() {
    Home home;
    Program& program = home.start();
    QVERIFY(program.session().LoadProjFile(TELVO_EXAMPLES_DIR "/two-side-gobs.TLV"));
    program.settings().values().GraphTitle = "Left study";
    home.trigger(GraphKind::DepthCover);
    auto* graph = home.window<QWidget>("frmGraph");
    const auto atCrossHair = [&] { return control<QLabel>(*graph, "lblReading").text(); };
    const QString before = atCrossHair();
    QVERIFY2(before.startsWith("Depth of cover 900 ft"), qPrintable(before));
    project::ProjectInput in = program.session().project().Input;
    in.DepthCover = 1000;
    program.session().acceptParameters(in);
    QVERIFY2(atCrossHair().startsWith("Depth of cover 1000 ft"), qPrintable(atCrossHair()));
    click(*graph, "chkPin");
    QVERIFY(program.session().LoadProjFile(TELVO_EXAMPLES_DIR "/metric-two-side-gobs.TLV"));
    QVERIFY(atCrossHair().startsWith("Depth of cover 1000 ft"));
    QVERIFY(
        graph->windowTitle().endsWith("two-side-gobs.TLV (pinned, not the open case any more)"));
    QVERIFY(control(*graph, "lblOutdated").isVisible());
    click(*graph, "chkPin");
    QVERIFY(graph->windowTitle().endsWith("metric-two-side-gobs.TLV"));
    // The title was that of the other case.
    home.trigger(GraphKind::EntryHeight);
    QCOMPARE(program.settings().values().GraphTitle, "TELVO");
    home.answers = {Answer::No};
    QVERIFY(home.quit());
}

void ProgramViewsTest::plotsStayThoseOfTheirRun() {
    Home home;
    Program& program = home.start();
    QVERIFY(program.session().LoadProjFile(TELVO_EXAMPLES_DIR "/two-side-gobs.TLV"));
    home.trigger(MenuEntry::StabilityFactors);
    click(*home.window<QWidget>("frmResTxtPlt"), "cmdViewPlots");
    auto* plots = home.window<QWidget>("frmPlots");
    QVERIFY(plots && plots->isVisible());
    const auto shownStresses = [&] {
        plots->findChild<QAction*>("mnuStresses")->trigger();
        home.dialogs.answers = {home.path("stress.csv")};
        click(*plots, "cmdExport");
        QFile file(home.folder.filePath("stress.csv"));
        const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        file.remove();
        return bytes;
    };
    const QByteArray first = shownStresses();
    QVERIFY(first.startsWith("Pillar,"));
    project::ProjectInput deeper = program.session().project().Input;
    deeper.DepthCover *= 1.5;
    program.session().acceptParameters(deeper);
    home.trigger(MenuEntry::StabilityFactors);
    QCOMPARE(shownStresses(), first);

    click(*home.window<QWidget>("frmResTxtPlt"), "cmdWorking");
    auto* working = home.window<QWidget>("frmExplain");
    QVERIFY(working && working->isVisible());
    plots->close();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    click(*home.window<QWidget>("frmResTxtPlt"), "cmdViewPlots");
    plots = home.window<QWidget>("frmPlots");
    QVERIFY(shownStresses() != first);
    home.answers = {Answer::No};
    QVERIFY(home.quit());
    QVERIFY(!home.window<QWidget>("frmPlots") && !home.window<QWidget>("frmExplain"));
}

namespace {

/// What stands across the top of a window of a run; "" when nothing does.
QString outdatedText(Home& home, const char* window) {
    auto* shown = home.window<QWidget>(window);
    auto* banner = shown ? shown->findChild<QWidget*>("banOutdated") : nullptr;
    return banner && banner->isVisible() ? control<QLabel>(*shown, "lblOutdated").text()
                                         : QString();
}

} // namespace

void ProgramViewsTest::aRunThatNoLongerBelongsToTheCaseSaysSo() {
    Home home;
    Program& program = home.start();
    QVERIFY(program.session().LoadProjFile(TELVO_EXAMPLES_DIR "/two-side-gobs.TLV"));
    home.trigger(MenuEntry::StabilityFactors);
    click(*home.window<QWidget>("frmResTxtPlt"), "cmdViewPlots");
    click(*home.window<QWidget>("frmResTxtPlt"), "cmdWorking");
    const char* windows[] = {"frmResTxtPlt", "frmPlots", "frmExplain"};
    for (const char* name : windows)
        QCOMPARE(outdatedText(home, name), "");

    const project::ProjectInput before = program.session().project().Input;
    project::ProjectInput deeper = before;
    deeper.DepthCover = 1200;
    program.session().acceptParameters(deeper);
    for (const char* name : windows)
        QCOMPARE(outdatedText(home, name),
                 "The case was changed since: Depth of Cover 900 ft, now 1200 ft.");
    program.session().acceptParameters(before);
    for (const char* name : windows)
        QCOMPARE(outdatedText(home, name), "");

    // Another case; then each window runs it again by itself.
    QVERIFY(program.session().LoadProjFile(TELVO_EXAMPLES_DIR "/deep-cover.TLV"));
    for (const char* name : windows)
        QCOMPARE(outdatedText(home, name),
                 "This belongs to two-side-gobs.TLV, not to deep-cover.TLV, the case on screen.");
    click(*home.window<QWidget>("frmPlots"), "cmdRunAgain");
    QTRY_COMPARE(outdatedText(home, "frmPlots"), "");
    QCOMPARE(home.window<QWidget>("frmPlots")->windowTitle(), "Plots: deep-cover.TLV");
    QVERIFY(outdatedText(home, "frmExplain") != "");
    QTest::keyClick(home.window<QWidget>("frmExplain"), Qt::Key_F5);
    QTRY_COMPARE(outdatedText(home, "frmExplain"), "");
    click(*home.window<QWidget>("frmResTxtPlt"), "cmdRunAgain");
    QTRY_COMPARE(outdatedText(home, "frmResTxtPlt"), "");
    QCOMPARE(home.window<QWidget>("frmResTxtPlt")->windowTitle(), "Results: deep-cover.TLV");

    // Under another name the run stays one of this case, and page 0 says the name.
    home.dialogs.answers = {home.path("renamed.TLV")};
    QVERIFY(program.session().FileMenuSave(true));
    auto* results = home.window<QWidget>("frmResTxtPlt");
    QCOMPARE(outdatedText(home, "frmResTxtPlt"), "");
    QCOMPARE(results->windowTitle(), "Results: renamed.TLV");
    click(*results, "Command5");
    QVERIFY(control<QPlainTextEdit>(*results, "RichTextBox1")
                .toPlainText()
                .contains("Project File: " + home.folder.filePath("renamed.TLV")));
    program.settings().values().RoundTELVOSF = 2;
    inModal(
        "frmTELVOOpts", [&] { home.trigger(MenuEntry::Options); },
        [](QWidget& options) { click(options, "cmdOK"); });
    QVERIFY(outdatedText(home, "frmResTxtPlt").startsWith("The options of the output"));
    QVERIFY(home.quit());
}

void ProgramViewsTest::aTrialRunBelongsToTheForm() {
    Home home;
    Program& program = home.start();
    QVERIFY(program.session().LoadProjFile(TELVO_EXAMPLES_DIR "/two-side-gobs.TLV"));
    home.trigger(MenuEntry::Parameters);
    auto* form = home.window<QWidget>("frmTELVOParm");
    QVERIFY(form);
    const auto setDepth = [&](const char* depth) {
        control<QLineEdit>(*form, "txtDepthCover").setText(depth);
    };
    setDepth("1000");
    click(*form, "cmdResults");
    QCOMPARE(outdatedText(home, "frmResTxtPlt"), "");
    setDepth("1100");
    QTRY_VERIFY(
        outdatedText(home, "frmResTxtPlt")
            .startsWith("The case was changed since: Depth of Cover 1000 ft, now 1100 ft; "));
    click(*home.window<QWidget>("frmResTxtPlt"), "cmdRunAgain");
    QTRY_COMPARE(outdatedText(home, "frmResTxtPlt"), "");
    // Given up: what it computed is not the case.
    home.answers = {Answer::Yes};
    click(*form, "cmdCancel");
    QTRY_VERIFY(
        outdatedText(home, "frmResTxtPlt")
            .startsWith("The case was changed since: Depth of Cover 1100 ft, now 900 ft; "));
    home.answers = {Answer::No};
    QVERIFY(home.quit());
}

void ProgramViewsTest::filesAreBrowsedAndImported() {
    Home home;
    Program& program = home.start();
    const std::string data = program.settings().values().DataPath;
    inModal(
        "frmTextBrow", [&] { home.trigger(MenuEntry::ViewSourceFiles); },
        [&](QWidget& browser) {
            QCOMPARE(QDir(control<QLineEdit>(browser, "txtFolder").text()),
                     QDir(QString::fromStdString(data)));
            click(browser, "chkUseNotepad");
            click(browser, "cmdClose");
        });
    QCOMPARE(program.settings().values().BrowseUseNotepad, 1);
    const auto ini = readFile(program.folders().DataFolder + "TELVO.INI");
    QVERIFY(ini && ini->find("BrowseUseNotepad=1") != std::string::npos);

    auto bytes = readFile(TELVO_EXAMPLES_DIR "/two-side-gobs.TLV");
    QVERIFY(bytes && writeFile(home.path("mine.KRV"), "KORV\n" + *bytes));
    home.dialogs.answers = {home.path("mine.KRV")};
    home.trigger(MenuEntry::ImportSibling);
    QCOMPARE(program.window().windowTitle(), "Untitled*");
    QCOMPARE(program.session().project().Input.DepthCover, 900);

    // No list is installed here.
    inModal(
        "frmResource", [&] { home.trigger(MenuEntry::ResourceFiles); },
        [](QWidget& resources) { click(resources, "cmdClose"); });
    QVERIFY(home.wasAsked("Requested File not found: " + home.path("install/Resources.lst")));
    home.answers = {Answer::No};
    QVERIFY(home.quit());
}

void ProgramViewsTest::aCaseIsLoadedFromATable() {
    Home home;
    Program& program = home.start();
    QVERIFY(writeFile(home.path("install/Resources.lst"), "TELVO.PDF; Program manual\n"));
    QVERIFY(writeFile(home.path("cases.csv"), "Title,DepthCover\nfirst,500\nsecond,700\n"));
    home.dialogs.answers = {home.path("cases.csv")};
    const auto chooseSecondRow = [](QWidget& table) {
        control<QTableView>(table, "tblCases").selectRow(1);
        click(table, "cmdOK");
    };
    inModal(
        "frmResource", [&] { home.trigger(MenuEntry::ResourceFiles); },
        [&](QWidget& resources) {
            inModal(
                "frmCaseTable", [&] { click(resources, "cmdImport"); }, chooseSecondRow);
        });
    QCOMPARE(program.window().windowTitle(), "Untitled*");
    QCOMPARE(program.session().project().Title, "second");
    QCOMPARE(program.session().project().Input.DepthCover, 700);
    home.answers = {Answer::No};
    QVERIFY(home.quit());
}

QTEST_MAIN(ProgramViewsTest)
#include "programViews_test.moc"
