// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/documentPaper.h"
#include "programHome.h"
#include "project/CaseFile.h"

#include <algorithm>
#include <fstream>
#include <memory>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QTableView>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolBar>
#include <tuple>

using namespace telvo;
using namespace telvo::test;

namespace {

std::string settingsWith(const std::string& lines) {
    return "[Version]\r\nINIFileVersion=050817\r\n" + lines;
}

/// Types a whole panel into the open parameter form.
void typePanel(QWidget& form) {
    type(form, "txtEntryHeight", "6");
    type(form, "txtDepthCover", "1000");
    type(form, "txtEntryWidth", "20");
    type(form, "txtXcutSpacing", "90");
    type(form, "txtXcutCenters_1", "80");
    auto& tabs = control<QTabWidget>(form, "SSTab1");
    tabs.setCurrentIndex(2);
    click(form, "optAnal_1");
    type(form, "txtExtentActiveGob", "500");
}

} // namespace

class ProgramTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void theFirstStartLeavesSettingsAndExamples();
    void theRoadOfACase();
    void theCommandLineFileComesAfterTheLastOne();
    void menusHaveTheirCaptionsAndTellWhatIsMissing();
    void unsavedChangesKeepTheWindowOpen();
    void everyDialogOpensFromItsMenu();
    void sizesComeBack();
    void viewRefusesPillarsWithoutSize();
    void f1OnAFieldOpensTheTopicOfThatInput();
    void f1InAMessageBoxOpensItsEntry();
    void documentsOpenOnThePaperOfTheCountry();
    void recentFilesFollowTheirSettings();
    void hostileSettingsBecomeTheirDefaults();
    void theParameterFormBlocksTheMainWindow();
    void historyIsShownHiddenClearedAndCut();
    void aHomeThatCannotBeWrittenIsNoObstacle();
};

void ProgramTest::theFirstStartLeavesSettingsAndExamples() {
    Home home;
    QFile::copy(TELVO_EXAMPLES_DIR "/two-side-gobs.TLV",
                home.folder.filePath("install/example.TLV"));
    home.start({}, std::chrono::year{2014} / 8 / 16); // 361 days after the release
    QCOMPARE(home.modalWindows, (std::vector<QString>{"frmDisclaimer", "frmUpdate"}));
    QVERIFY(home.program->window().isVisible());
    QCOMPARE(home.program->window().windowTitle(), "Untitled");
    QVERIFY(QFile::exists(home.folder.filePath("Documents/MyBODRA/TELVO.INI")));
    QVERIFY(QFile::exists(home.folder.filePath("Documents/MyBODRA/example.TLV")));
    QVERIFY(home.history().starts_with("Saving default settings to file: "));
    QVERIFY(home.quit());
    home.modalWindows.clear();
    home.start({}, std::chrono::year{2014} / 8 / 15);
    QCOMPARE(home.modalWindows, std::vector<QString>{"frmDisclaimer"});
    QCOMPARE(home.program->settings().values().MaxDisplaySize, std::int16_t{4096});
    QCOMPARE(home.program->settings().values().RoundTELVOSF, std::int16_t{0});
}

void ProgramTest::theRoadOfACase() {
    Home home;
    home.start();
    home.trigger(MenuEntry::StabilityFactors);
    QCOMPARE(home.asked.back(), "TELVO: Current file is empty");
    home.trigger(MenuEntry::New);
    auto* form = home.window<QWidget>("frmTELVOParm");
    QVERIFY(form && form->isVisible());
    typePanel(*form);
    click(*form, "cmdResults");
    auto* results = home.window<QWidget>("frmResTxtPlt");
    QVERIFY(results && results->isVisible());
    QCOMPARE(home.status(), "Results displayed");
    QVERIFY(home.history().find("TELVO stability factors calculated") != std::string::npos);
    const std::string fromForm =
        control<QPlainTextEdit>(*results, "RichTextBox1").toPlainText().toStdString();
    QVERIFY(fromForm.find("[TELVO STABILITY FACTORS]") != std::string::npos);
    QVERIFY(home.program->session().isEmpty()); // Results changed nothing of the project
    click(*form, "cmdOK");
    QCOMPARE(home.program->window().windowTitle(), "Untitled*");
    QCOMPARE(home.status(), "Project Parameters Modified");

    home.trigger(MenuEntry::StabilityFactors);
    results = home.window<QWidget>("frmResTxtPlt");
    QCOMPARE(control<QPlainTextEdit>(*results, "RichTextBox1").toPlainText().toStdString(),
             fromForm);
    home.dialogs.answers = {home.path("Documents/panel.TLV")};
    home.trigger(MenuEntry::Save);
    QCOMPARE(home.program->window().windowTitle(), "panel.TLV");
    const project::ProjectCase saved = home.program->session().project();
    QVERIFY(home.quit());
    QVERIFY(!home.window<QWidget>("frmResTxtPlt"));

    home.start();
    home.openRecent(1);
    QCOMPARE(home.program->window().windowTitle(), "panel.TLV");
    QVERIFY(home.program->session().project() == saved);
    QCOMPARE(control<QLabel>(home.program->window(), "lblDepth").text(), "1000 (ft)");
}

void ProgramTest::theCommandLineFileComesAfterTheLastOne() {
    Home home;
    const std::string last = home.path("last.TLV"), given = home.path("with blank.TLV");
    QFile::copy(TELVO_EXAMPLES_DIR "/two-side-gobs.TLV", QString::fromStdString(last));
    QFile::copy(TELVO_EXAMPLES_DIR "/two-side-gobs.TLV", QString::fromStdString(given));
    home.put(home.data("TELVO.INI"),
             settingsWith("[Settings]\r\nLoadLastInputFile=1\r\nKeepFileNames=1\r\n[FileMenu]\r\n"
                          "MaxLastFiles=1\r\nLastFile1=last.TLV\r\nLastFileLong1=" +
                          last + "\r\n"));
    home.start(given);
    QCOMPARE(home.program->window().windowTitle(), "with blank.TLV");
    const auto& settings = home.program->settings().values();
    QCOMPARE(settings.RecentFiles[0].LastFileLong, given);
    QCOMPARE(settings.RecentFiles[1].LastFileLong, last);
    QCOMPARE(home.program->window().recentFileAction(2).text(),
             "&2 " + QString::fromStdString(last));
    home.start(given + " " + last); // two names are one that does not exist
    QCOMPARE(home.program->window().windowTitle(), "with blank.TLV"); // the last one used
    QVERIFY(home.wasAsked("Requested File not found: "));
}

void ProgramTest::menusHaveTheirCaptionsAndTellWhatIsMissing() {
    Home home;
    home.start();
    const std::tuple<MenuEntry, const char*, const char*> captions[] = {
        {MenuEntry::New, "mnuFileItem_0", "&New"},
        {MenuEntry::Save, "mnuFileItem_2", "&Save "},
        {MenuEntry::PrintPreview, "mnuFileItem_9", "Print Pre&view..."},
        {MenuEntry::Exit, "mnuFileItem_13", "E&xit"},
        {MenuEntry::Parameters, "mnuEditItem_1", "Project &Parameters..."},
        {MenuEntry::StabilityFactors, "mnuCalcItem_0", "Stability Factors..."},
        {MenuEntry::Graph, "mnuCalcItem_2", "Graph"},
        {MenuEntry::CopyHistory, "mnuUtilItem_7", "Co&py History Window"},
        {MenuEntry::About, "mnuHelpItem_10", "&About the Program..."}};
    for (const auto& [entry, name, caption] : captions) {
        QCOMPARE(home.program->window().action(entry).text(), caption);
        QCOMPARE(home.program->window().action(entry).objectName(), name);
    }
    QStringList names; // every entry is there, under a name of its own
    for (std::size_t entry = 0; entry < app::ui::MenuEntries; ++entry)
        names << home.program->window().action(static_cast<MenuEntry>(entry)).objectName();
    QVERIFY(!names.contains(QString()));
    QCOMPARE(names.removeDuplicates(), 0);
    home.trigger(MenuEntry::HelpPdf);
    QCOMPARE(home.asked.back(),
             "TELVO: Requested File not found: " + home.path("install/TELVO.PDF"));
    home.trigger(MenuEntry::Print);
    QCOMPARE(home.asked.back(), "TELVO: Current file is empty. Continue?");
    home.answers = {Answer::Yes};
    home.trigger(MenuEntry::Print); // and then cancelled in the print dialog
    QCOMPARE(home.status(), "Printing aborted");
    home.trigger(MenuEntry::FileConversion);
    QCOMPARE(home.asked.back(), "TELVO: Current file is empty");
    project::ProjectInput in = home.program->session().project().Input;
    in.EntryHeight = 5;
    home.program->session().acceptParameters(in);
    home.trigger(MenuEntry::FileConversion);
    QCOMPARE(home.asked.back(), "TELVO: Save Current File before accessing this option");
    home.trigger(MenuEntry::StabilityFactors); // half a case: the check before the analysis
    QCOMPARE(home.asked.back(), "Project Parameters: Range Error: Invalid depth of cover");
}

void ProgramTest::unsavedChangesKeepTheWindowOpen() {
    Home home;
    home.start();
    home.program->session().acceptDescription("A title", "");
    home.answers = {Answer::Cancel};
    QVERIFY(!home.quit());
    QCOMPARE(home.asked.back(), "TELVO: Save changes to: Untitled?");
    QVERIFY(home.program->window().isVisible());
    home.answers = {Answer::Yes}; // and the dialog is cancelled
    QVERIFY(!home.quit());
    home.answers = {Answer::No};
    QVERIFY(home.quit());
}

void ProgramTest::everyDialogOpensFromItsMenu() {
    Home home;
    home.put(home.data("TELVO.INI"), settingsWith("[Settings]\r\nShowDisclaim=0\r\n"));
    home.start(TELVO_EXAMPLES_DIR "/deep-cover.TLV");
    const std::pair<MenuEntry, QString> dialogs[] = {{MenuEntry::PrintPreview, "frmPreview"},
                                                     {MenuEntry::Description, "frmTELVODesc"},
                                                     {MenuEntry::Settings, "frmSet"},
                                                     {MenuEntry::Options, "frmTELVOOpts"},
                                                     {MenuEntry::UnitConversion, "frmUnits"},
                                                     {MenuEntry::FileConversion, "frmConvert"},
                                                     {MenuEntry::Disclaimer, "frmDisclaimer"},
                                                     {MenuEntry::Updates, "frmUpdate"},
                                                     {MenuEntry::About, "frmAbout"}};
    for (const auto& [action, name] : dialogs) {
        home.modalWindows.clear();
        const auto lines = home.program->messages().lines().lines().size();
        home.trigger(action);
        QCOMPARE(home.modalWindows, std::vector<QString>{name});
        QVERIFY2(home.program->messages().lines().lines().size() > lines, qPrintable(name));
    }
    QVERIFY(home.program->session().isSaved());

    // The conversion asks for a new name with the first save.
    QTimer convert;
    QObject::connect(&convert, &QTimer::timeout, [] {
        if (auto* form = QApplication::activeModalWidget()) click(*form, "cmdOK");
    });
    home.closer.stop();
    convert.start(1);
    home.trigger(MenuEntry::FileConversion);
    convert.stop();
    QCOMPARE(home.program->window().windowTitle(), "Metric_deep-cover.TLV*");
    home.trigger(MenuEntry::Save);
    QVERIFY(home.dialogs.asked.back().starts_with("Save Project As|" TELVO_EXAMPLES_DIR
                                                  "/Metric_deep-cover.TLV|"));
}

void ProgramTest::sizesComeBack() {
    Home home;
    auto& first = home.start().window();
    first.resize(777, 555);
    auto& splitter = control<QSplitter>(first, "splMain");
    splitter.setSizes({300, 100});
    const QList<int> sizes = splitter.sizes();
    QVERIFY(home.quit());
    auto& second = home.start().window();
    QCOMPARE(second.size(), QSize(777, 555));
    QCOMPARE(control<QSplitter>(second, "splMain").sizes(), sizes);
}

void ProgramTest::viewRefusesPillarsWithoutSize() {
    Home home;
    home.start();
    home.trigger(MenuEntry::Parameters);
    auto* form = home.window<QWidget>("frmTELVOParm");
    typePanel(*form);
    click(*form, "cmdView");
    QCOMPARE(home.status(), "Panel layout drawn");
    click(*form, "cmdCopyClip");
    QVERIFY(!QApplication::clipboard()->image().isNull());
    type(*form, "txtXcutSpacing", "20"); // as wide as the entry: no pillar is left
    click(*form, "cmdView");
    QVERIFY(home.wasAsked("Invalid Pillar Dimensions"));
}

void ProgramTest::f1OnAFieldOpensTheTopicOfThatInput() {
    Home home;
    QDir().mkpath(home.folder.filePath("install/help"));
    home.put(home.path("install/help/contents.txt"),
             "T\t1\tProjectInputParameters.htm\tParameters\nT\t2\tDepthCover.htm\tDepth of Cover\n"
             "C\tfrmTELVOParm/txtDepthCover\tDepthCover.htm\n");
    for (const char* page : {"ProjectInputParameters.htm", "DepthCover.htm"})
        home.put(home.path("install/help/") + page, "<p>page</p>");
    home.start();
    QVERIFY(!home.window<QWidget>("frmHelp")); // it is not made before it is asked for
    home.trigger(MenuEntry::Parameters);
    auto* form = home.window<QWidget>("frmTELVOParm");
    control(*form, "txtDepthCover").setFocus();
    QTest::keyClick(&control(*form, "txtDepthCover"), Qt::Key_F1);
    auto* help = home.window<QWidget>("frmHelp");
    QVERIFY(help && help->isVisible() && help->windowTitle().startsWith("Depth of Cover"));
    QCOMPARE(home.status(), "Editing Project Parameters"); // help is no command of the case
    click(*form, "cmdHelp");
    QVERIFY(help->windowTitle().startsWith("Parameters"));
    QVERIFY(home.history().ends_with("Help: ProjectInputParameters.htm"));
    home.answers = {Answer::Yes}; // the form may be left
    form->close();
    QVERIFY(home.quit());
    QVERIFY(!help->isVisible()); // it does not keep the program running
}

void ProgramTest::f1InAMessageBoxOpensItsEntry() {
    app::ui::DesktopMessages messages{{}};
    int opened = 0, shown = 0;
    messages.helpOf = [&](std::string_view text) -> std::function<void()> {
        if (text != "Invalid entry height") return {};
        return [&] { ++opened; };
    };
    QTimer user;
    bool hasHelp = false;
    connect(&user, &QTimer::timeout, this, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box) return;
        ++shown;
        hasHelp = box->button(QMessageBox::Help) != nullptr;
        QTest::keyClick(box, hasHelp && opened == 0 ? Qt::Key_F1 : Qt::Key_Escape);
    });
    user.start(10);
    QCOMPARE(messages.ask("Invalid entry height", Buttons::Ok, Answer::Ok, "Error"), Answer::Ok);
    QVERIFY(hasHelp && opened == 1 && shown >= 2); // the box stays after the help
    messages.tell("All is well");
    QVERIFY(!hasHelp);
}

void ProgramTest::documentsOpenOnThePaperOfTheCountry() {
    const Home home;
    home.put(home.path("Manual.PDF"), "%PDF");
    const std::string manual = home.path("Manual.PDF");
    const auto opened = [&](QLocale::Territory territory) {
        return app::ui::documentForPaper(manual, territory);
    };
    QCOMPARE(opened(QLocale::UnitedStates), manual); // there is only the one
    home.put(home.path("Manual-Letter.PDF"), "%PDF");
    QCOMPARE(opened(QLocale::UnitedStates), home.path("Manual-Letter.PDF"));
    QCOMPARE(opened(QLocale::Germany), manual);
    QCOMPARE(app::ui::documentForPaper("CaseTable.xlsx", QLocale::UnitedStates), "CaseTable.xlsx");
}

void ProgramTest::recentFilesFollowTheirSettings() {
    Home home;
    Program& program = home.start();
    auto& settings = program.settings().values();
    const auto caption = [&](int slot) {
        const QAction& action = program.window().recentFileAction(slot);
        return action.isVisible() ? action.text() : QString();
    };
    for (const char* name : {"1.TLV", "2.TLV", "3.TLV", "4.TLV", "5 & more.TLV"}) {
        QFile::copy(TELVO_EXAMPLES_DIR "/two-side-gobs.TLV", home.folder.filePath(name));
        QVERIFY(program.session().LoadProjFile(home.path(name)));
    }
    settings.ShortRecentFiles = 1;
    program.window().applySettings();
    QCOMPARE(caption(1), "&1 5 && more.TLV");
    QCOMPARE(caption(4), "&4 2.TLV"); // the first one dropped out
    home.openRecent(3);
    QCOMPARE(caption(1), "&1 3.TLV");
    QFile::remove(home.folder.filePath("2.TLV"));
    home.openRecent(4);
    QVERIFY(home.wasAsked("Requested File not found: " + home.path("2.TLV")));
    QCOMPARE(program.window().windowTitle(), "3.TLV"); // the case stays, and so does the entry
    QCOMPARE(caption(4), "&4 2.TLV");
    settings.KeepFileNames = 0;
    program.window().applySettings();
    QCOMPARE(caption(1), QString());
}

void ProgramTest::hostileSettingsBecomeTheirDefaults() {
    Home home;
    home.put(home.data("TELVO.INI"),
             settingsWith("[Settings]\r\nMaxDisplaySize=99999999999\r\nDisplayFontSize=nan\r\n"
                          "DisplayFontName=No Such Font\r\nDataPath=/no/such/folder\r\n"
                          "ShowDisclaim=1e400\r\n[FileMenu]\r\nMaxLastFiles=9\r\n"
                          "[TELVOOptions]\r\nPlotRangeMin=80\r\nPlotRangeMax=80\r\n" +
                          std::string(3000, 'x') + "=\r\n[" + std::string(100, '\0')));
    home.put(home.data("TELVO-windows.ini"), "[frmMain]\ngeometry=@Variant(\\0\\0\\0)\n\xff\xfe");
    home.start();
    QVERIFY(home.program->window().isVisible());
    QVERIFY(home.wasAsked("Invalid font selection:No Such Font"));
    const auto& settings = home.program->settings().values();
    QCOMPARE(settings.MaxDisplaySize, std::int16_t{4096});
    QCOMPARE(settings.DataPath, home.data(""));
    QCOMPARE(settings.PlotRangeMin, 50.0F);
    home.put(home.data("TELVO.INI"),
             std::string(100000, '\xff')); // another build's, or no settings
    home.start();
    QCOMPARE(home.program->settings().values().ShowDisclaim, std::int16_t{1});
}

void ProgramTest::theParameterFormBlocksTheMainWindow() {
    Home home;
    home.start();
    home.trigger(MenuEntry::Parameters);
    auto* form = home.window<QWidget>("frmTELVOParm");
    QVERIFY(!control<QToolBar>(home.program->window(), "tlbMain").isEnabled());
    home.trigger(MenuEntry::New); // a shortcut comes through
    QVERIFY(!home.quit());
    QCOMPARE(home.asked, std::vector<std::string>{});
    home.answers = {Answer::Yes};
    click(*form, "cmdCancel");
    QVERIFY(control<QToolBar>(home.program->window(), "tlbMain").isEnabled());
    QVERIFY(home.quit());
}

void ProgramTest::historyIsShownHiddenClearedAndCut() {
    Home home;
    home.put(home.data("TELVO.INI"),
             settingsWith("[Settings]\r\nDisplayHistoryWin=0\r\nMaxDisplaySize=4096\r\n"));
    home.start();
    auto& pane = control<QPlainTextEdit>(home.program->window(), "txtMain");
    const QAction* action = &home.program->window().action(MenuEntry::ShowHistory);
    QVERIFY(!pane.isVisible());
    QCOMPARE(action->text(), "Restore History &Window");
    home.trigger(MenuEntry::ShowHistory);
    QVERIFY(pane.isVisible());
    QCOMPARE(action->text(), "Close History &Window");
    for (int i = 0; i < 100; ++i)
        home.program->messages().history(std::string(99, 'a'));
    home.trigger(MenuEntry::CopyHistory);
    const QString copied = QApplication::clipboard()->text();
    QCOMPARE(copied.count('\n'), 40); // 40 lines of 100 characters
    QCOMPARE(pane.toPlainText() + '\n', copied);
    home.trigger(MenuEntry::ClearHistory);
    QVERIFY(pane.toPlainText().isEmpty());
}

void ProgramTest::aHomeThatCannotBeWrittenIsNoObstacle() {
    Home home;
    QDir(home.folder.filePath("Documents")).removeRecursively();
    std::ofstream(home.path("Documents")) << "a file"; // nothing can be made below it
    home.start();
    QVERIFY(home.program->window().isVisible());
    QVERIFY(home.history().find("cannot be created") != std::string::npos);
    QCOMPARE(home.program->folders().DataFolder, home.path("install/"));
}

QTEST_MAIN(ProgramTest)
#include "program_test.moc"
