// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/association.h"
#include "app/folders.h"
#include "app/reminders.h"
#include "app/ui/dialogs/associate.h"
#include "app/ui/dialogs/frmAbout.h"
#include "app/ui/dialogs/frmDisclaimer.h"
#include "app/ui/dialogs/frmGraphOpts.h"
#include "app/ui/dialogs/frmSet.h"
#include "app/ui/dialogs/frmTELVOOpts.h"
#include "app/ui/dialogs/frmUpdate.h"
#include "base/files.h"
#include "GuiTest.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTabWidget>
#include <QTemporaryDir>

using namespace telvo;
using namespace telvo::app;
using namespace telvo::test;

namespace {

/// A store on a folder of its own, and the services of a form.
struct Desk {
    QTemporaryDir folder;
    RecordedMessages messages;
    RecordedDialogs dialogs;
    std::string data = folder.path().toStdString() + '/';
    SettingsStore store;
    telvo::ui::FormServices services{messages, {}};

    explicit Desk(const std::string& file = "TELVO.INI")
        : store(data + file, {data, "No Such Font", "editor", "TELVO"}, messages) {}

    bool saved(const std::string& line) const {
        const auto bytes = readFile(store.path());
        return bytes && bytes->find("\n" + line + "\r\n") != std::string::npos;
    }
    bool wroteNothing() const { return !QFile::exists(QString::fromStdString(store.path())); }
    app::ui::frmSet settings() { return {store, data, dialogs, services}; }
    app::ui::frmTELVOOpts options() { return {store, "/bin/telvo", data + "share", services}; }
};

int tabOf(const QWidget& form) {
    return control<QTabWidget>(form, "SSTab1").currentIndex();
}

} // namespace

class DialogsTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void unchangedSettingsAreNotSaved();
    void acceptedSettingsAreKeptAndAct();
    void refusedSettingsKeepTheDialogOpen();
    void aSaveThatFailsIsTold();
    void aDataPathIsChosen();
    void optionsAreKeptAndTheRangeIsChecked();
    void graphOptionsAreKept();
    void remindersAreSwitchedOff();
    void theUpdatePageIsALinkOnceItIsKnown();
    void aboutNamesVersionAndLicence();
    void theExtensionIsAssociated();
};

void DialogsTest::unchangedSettingsAreNotSaved() {
    Desk desk;
    const Settings before = desk.store.values(); // its history size is out of range
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        auto form = desk.settings();
        show(form);
        QCOMPARE(control<QLineEdit>(form, "txtMaxDisplaySize").text(), "4096");
        QCOMPARE(control<QComboBox>(form, "cboDisplayFontName").currentText(), "No Such Font");
        QCOMPARE(control<QLabel>(form, "lblCopyExampleFiles").text().toStdString(),
                 copyExamplesNote(desk.data));
        if (key == Qt::Key_Escape) click(form, "optDefaultUnits_1");
        QTest::keyClick(&form, key);
        QVERIFY(!form.isVisible());
        QCOMPARE(desk.messages.lines.back(), "Settings Not Modified");
        QCOMPARE(desk.messages.lastStatus(), "Settings Not Modified");
    }
    QVERIFY(desk.store.values() == before && desk.wroteNothing());
    QVERIFY(desk.messages.asked.empty());
}

void DialogsTest::acceptedSettingsAreKeptAndAct() {
    Desk desk;
    desk.store.values().DisplayFontItalic = -1;
    auto form = desk.settings();
    QSignalSpy changed(&form, &app::ui::SettingsForm::settingsChanged);
    show(form);
    click(form, "optDefaultUnits_1");
    click(form, "chkShowDisclaim");
    control<QTabWidget>(form, "SSTab1").setCurrentIndex(1);
    type(form, "txtDataPath", " " + desk.folder.path() + " ");
    type(form, "txtFileExtension", "");
    control<QTabWidget>(form, "SSTab1").setCurrentIndex(2);
    type(form, "txtMaxDisplaySize", "16384");
    control<QSpinBox>(form, "spnDisplayFontSize").setValue(24);
    click(form, "chkDisplayFontBold");
    click(form, "chkDisplayFontItalic");
    click(form, "cmdOK");
    const Settings& kept = desk.store.values();
    QCOMPARE(kept.DataPath, desk.data);
    QCOMPARE(kept.FileExtension, "");
    QCOMPARE(kept.DisplayFontSize, 24.F);
    QCOMPARE(kept.DisplayFontBold, -1);
    QCOMPARE(kept.DisplayFontItalic, 0);
    QCOMPARE(kept.ShowDisclaim, 0);
    QVERIFY(desk.saved("DefaultUnits=1") && desk.saved("MaxDisplaySize=16384"));
    QVERIFY(desk.saved("DisplayFontName=No Such Font") && !desk.saved("[TELVOOptions]"));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(desk.messages.lines.back(), "Settings Modified");
    QCOMPARE(desk.messages.lastStatus(), "Settings Modified");
}

void DialogsTest::refusedSettingsKeepTheDialogOpen() {
    const QString tooFar = "' is outside input range\nValid range is: 4096-16384";
    const struct {
        const char* box;
        QString text, message;
        int tab;
    } rows[] = {
        {"txtDataPath", "/no such folder", "Error: Invalid Path for Data Files", 1},
        {"txtMaxDisplaySize", "", "Range Error: Blank field not allowed", 2},
        {"txtMaxDisplaySize", "4095", "Range Error: Value '4095" + tooFar, 2},
        {"txtMaxDisplaySize", "16385", "Range Error: Value '16385" + tooFar, 2},
        {"txtFileExtension", "tlv", "Invalid Character: Invalid character in file extension", 1},
    };
    Desk desk;
    for (const auto& row : rows) {
        auto form = desk.settings();
        show(form);
        control<QLineEdit>(form, row.box).setText(row.text);
        click(form, "chkKeepFileNames");
        click(form, "cmdOK");
        QVERIFY(form.isVisible() && control(form, row.box).hasFocus());
        QCOMPARE(tabOf(form), row.tab);
        QCOMPARE(QString::fromStdString(desk.messages.asked.back()), "Settings: " + row.message);
        form.reject();
    }
    QCOMPARE(desk.store.values().KeepFileNames, 1);
    QVERIFY(desk.wroteNothing());
}

void DialogsTest::aSaveThatFailsIsTold() {
    Desk desk("missing/TELVO.INI");
    auto form = desk.settings();
    show(form);
    click(form, "chkLoadLastInputFile");
    click(form, "cmdOK");
    QVERIFY(!form.isVisible());
    QCOMPARE(desk.store.values().LoadLastInputFile, 1); // for this run
    QCOMPARE(desk.messages.asked.size(), std::size_t{1});
    const auto& told = desk.messages.asked[0];
    QVERIFY(told.starts_with("Settings: Error: ") && told.find("TELVO.INI") != std::string::npos);
    QCOMPARE(desk.messages.lines.back(), "Settings Modified");
}

void DialogsTest::aDataPathIsChosen() {
    Desk desk;
    auto form = desk.settings();
    show(form);
    control<QTabWidget>(form, "SSTab1").setCurrentIndex(1);
    desk.dialogs.answers = {std::nullopt, "/chosen"};
    click(form, "cmdBrowse");
    QCOMPARE(control<QLineEdit>(form, "txtDataPath").text().toStdString(), desk.data);
    click(form, "cmdBrowse");
    QCOMPARE(control<QLineEdit>(form, "txtDataPath").text(), "/chosen");
    QCOMPARE(desk.dialogs.asked.back(), "Path for Data Files|" + desk.data + "|");
}

void DialogsTest::optionsAreKeptAndTheRangeIsChecked() {
    Desk desk;
    {
        auto form = desk.options();
        show(form);
        QTest::keyClick(&form, Qt::Key_Return);
        QCOMPARE(desk.messages.lines.back(), "Program Options Not Modified");
        QVERIFY(desk.wroteNothing());
    }
    auto form = desk.options();
    QSignalSpy changed(&form, &app::ui::SettingsForm::settingsChanged);
    show(form);
    click(form, "chkIssueWarningCancel");
    control<QLineEdit>(form, "txtPlotRangeMin").setText("150");
    click(form, "cmdOK");
    QCOMPARE(desk.messages.asked.back(), "Program Options: Range Error: Invalid Range settings. "
                                         "Check Options-> Output Options");
    QVERIFY(form.isVisible() && control(form, "txtPlotRangeMin").hasFocus() && tabOf(form) == 1);
    type(form, "txtPlotRangeMin", "12.5");
    click(form, "optOutputStrGradUnits_0");
    click(form, "optOutputStrUnits_1");
    click(form, "optRoundTELVOSF_2");
    control<QTabWidget>(form, "SSTab1").setCurrentIndex(2);
    click(form, "chkPlotXcutDims");
    QVERIFY(!control(form, "chkPlotSingleXcutDims").isEnabled());
    click(form, "cmdOK");
    QCOMPARE(desk.store.values().PlotRangeMin, 12.F);
    for (const char* line :
         {"PlotRangeMin=12", "IssueWarningCancel=0", "OutputStrGradUnits=0", "OutputStrUnits=1",
          "RoundTELVOSF=2", "PlotXcutDims=0", "PlotSingleXcutDims=1", "ViewChildWindow=1"})
        QVERIFY2(desk.saved(line), line);
    QVERIFY(!desk.saved("DefaultUnits=0"));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(desk.messages.lastStatus(), "Program Options Modified");
}

void DialogsTest::graphOptionsAreKept() {
    Desk desk;
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        app::ui::frmGraphOpts form(desk.store, desk.services);
        show(form);
        if (key == Qt::Key_Escape) click(form, "optGridStyle_3");
        QTest::keyClick(&form, key);
        QCOMPARE(desk.messages.lastStatus(), "Graph Options Not Modified");
        QVERIFY(desk.wroteNothing());
    }
    app::ui::frmGraphOpts form(desk.store, desk.services);
    show(form);
    QVERIFY(control<QRadioButton>(form, "optGraphStyle_3").isChecked());
    for (const char* name : {"optGridStyle_1", "optGraphStyle_2", "optGraphUnits_1",
                             "chkCurveLegend", "chkGraphSetParams"})
        click(form, name);
    auto& size = control<QSpinBox>(form, "spnSymbolSize");
    QCOMPARE(size.minimum(), 3);
    size.setValue(99);
    control<QTabWidget>(form, "SSTab1").setCurrentIndex(1);
    type(form, "txtXAxisTitle_5", " Second Barrier ");
    type(form, "txtYAxisTitle_1", "SFBAR");
    click(form, "cmdOK");
    for (const char* line :
         {"GridStyle=1", "GraphStyle=2", "GraphUnits=1", "CurveLegend=0", "GraphSetParams=1",
          "SymbolSize=20", "GraphTitle=TELVO", "XAxisTitle0=Entry Height",
          "XAxisTitle5=Second Barrier", "YAxisTitle0=Stability Factor", "YAxisTitle1=SFBAR"})
        QVERIFY2(desk.saved(line), line);
    QVERIFY(!desk.saved("[TELVOOptions]"));
    QCOMPARE(desk.messages.lines.back(), "Graph Options Modified");
}

void DialogsTest::remindersAreSwitchedOff() {
    Desk desk;
    const auto close = [&](auto&& form, const char* box) {
        show(form);
        if (box) click(form, box);
        QTest::keyClick(&form, Qt::Key_Escape);
    };
    close(app::ui::frmDisclaimer(desk.store, desk.services), nullptr);
    close(app::ui::frmUpdate(desk.store, desk.services), nullptr);
    QVERIFY(desk.wroteNothing());
    close(app::ui::frmDisclaimer(desk.store, desk.services), "chkNoShow");
    QVERIFY(desk.store.values().ShowDisclaim == 0 && desk.saved("ShowDisclaim=0"));
    close(app::ui::frmUpdate(desk.store, desk.services), "chkNoRemind");
    QVERIFY(desk.store.values().RemindAnnualUpdates == 0 && desk.saved("RemindAnnualUpdates=0"));
}

void DialogsTest::theUpdatePageIsALinkOnceItIsKnown() {
    Desk desk;
    const app::ui::frmUpdate unknown(desk.store, desk.services);
    QCOMPARE(control<QLabel>(unknown, "lblMessage").text(),
             "This version was released over a year ago. Although major updates may not be "
             "scheduled, interim updates may be released with bug fixes. Check for updates by "
             "clicking on the URL below.");
    QCOMPARE(control<QLabel>(unknown, "lblURL").text(), "(address not set)");
    const app::ui::frmUpdate known(desk.store, desk.services, nullptr, "https://example.org/?a&b");
    const auto& link = control<QLabel>(known, "lblURL");
    QVERIFY(link.text().contains("href=\"https://example.org/?a&amp;b\""));
    QVERIFY(link.openExternalLinks() && link.focusPolicy() != Qt::NoFocus);
}

void DialogsTest::aboutNamesVersionAndLicence() {
    Desk desk;
    const app::ui::frmAbout form(desk.services);
    QCOMPARE(control<QLabel>(form, "lblBuild").text(), "050817");
    QCOMPARE(control<QLabel>(form, "lblLicence").text(), "GPL-3.0-or-later");
    QVERIFY(control<QLabel>(form, "lblVersion").text().contains('.'));
}

void DialogsTest::theExtensionIsAssociated() {
#ifdef Q_OS_LINUX
    Desk desk;
    // Tools of the desktop that only write down how they were called.
    const QByteArray path = qgetenv("PATH");
    const std::string log = desk.data + "log";
    for (const char* tool : {"update-mime-database", "xdg-mime"}) { // the third is not there
        const std::string script = desk.data + tool;
        QVERIFY(writeFile(script, "#!/bin/sh\necho \"$0 $*\" >> '" + log + "'\n"));
        QFile::setPermissions(QString::fromStdString(script), QFile::ReadOwner | QFile::ExeOwner);
    }
    qputenv("PATH", desk.folder.path().toUtf8());
    auto form = desk.options();
    show(form);
    desk.messages.answers = {Answer::Yes};
    click(form, "cmdAssociate");
    qputenv("PATH", path);
    const AssociationFiles files = associationFiles(desk.data + "share");
    QCOMPARE(*readFile(files.mimePackage), mimePackage("TLV"));
    QCOMPARE(*readFile(files.desktopEntry), desktopEntry("/bin/telvo"));
    QCOMPARE(*readFile(log), desk.data + "update-mime-database " + desk.data + "share/mime\n" +
                                 desk.data +
                                 "xdg-mime default telvo.desktop application/x-telvo-case\n");
    QCOMPARE(desk.messages.asked.back(), "Program Options: Message: The file association for TLV "
                                         "has been made to /bin/telvo");
    desk.store.values().FileExtension = "";
    click(form, "cmdAssociate");
    QVERIFY(desk.messages.asked.back().starts_with("Program Options: Error: No file extension"));
    QVERIFY(!app::ui::associateWithSystem("TLV", "/bin/telvo", log + "/share")); // below a file
#endif
}

QTEST_MAIN(DialogsTest)
#include "dialogs_test.moc"
