// SPDX-License-Identifier: GPL-3.0-or-later
#include "GuiTest.h"
#include "project/ui/frmConvert.h"
#include "project/ui/frmTELVODesc.h"
#include "project/ui/frmUnits.h"

#include <QClipboard>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>

using namespace telvo;
using namespace telvo::test;
using namespace telvo::project;
using namespace telvo::project::ui;

namespace {

ProjectCase sampleCase() {
    ProjectCase current = newCase(English);
    current.Title = "Panel\t4"; // a title of an older file
    current.Description = "First line\r\nSecond\xC2\xA0line";
    current.Input.NumberEntries = 3;
    current.Input.XcutCenters[1] = current.Input.XcutCenters[2] = 200;
    current.Input.DepthCover = 600;
    return current;
}

} // namespace

class ProjectFormsTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void anUntouchedDescriptionStaysAsItIs();
    void okTakesTheTextsAsTheCaseHoldsThem();
    void everyWayOutAsksBeforeChangesAreLost();
    void hugePastesAreCut();
    void theDescriptionBoxIsSixtyColumnsWide();
    void theCalculatorFollowsTheTyping();
    void conversionTellsAndConverts();
    void aCaseThatCannotBeConvertedStays();
};

void ProjectFormsTest::anUntouchedDescriptionStaysAsItIs() {
    RecordedMessages messages;
    const ProjectCase current = sampleCase();
    frmTELVODesc form(current, {messages, {}});
    QCOMPARE(messages.lastStatus(), "Editing Project Description");
    show(form);
    type(form, "txtTitle", "other");
    typeInto(control(form, "txtTitle"), "Panel 4");
    click(form, "cmdOK");
    QVERIFY(form.accepted() && !form.modified());
    QCOMPARE(form.title(), current.Title);
    QCOMPARE(form.description(), current.Description);
    QCOMPARE(messages.lastStatus(), "Project Description Not Modified");
}

void ProjectFormsTest::okTakesTheTextsAsTheCaseHoldsThem() {
    RecordedMessages messages;
    frmTELVODesc form(sampleCase(), {messages, {}});
    show(form);
    QSignalSpy edited(&form, &frmTELVODesc::edited);
    QApplication::clipboard()->setText("Two\r\nlines\tof a title");
    auto& title = control<QLineEdit>(form, "txtTitle");
    title.selectAll();
    title.paste();
    QCOMPARE(title.text(), "Two lines of a title");
    QVERIFY(edited.count() > 0);
    edited.clear();
    type(form, "txtDescription", QString(50, 'a') + ' ' + QString(20, 'b') + "\r\rend");
    QVERIFY(edited.count() > 0);
    QTest::keyClick(&control(form, "txtDescription"), Qt::Key_Tab); // leaves the box
    QVERIFY(!control(form, "txtDescription").hasFocus());
    QTest::keyClick(&title, Qt::Key_Return);
    QVERIFY(!form.isVisible() && form.accepted() && form.modified());
    QCOMPARE(form.title(), "Two lines of a title");
    QCOMPARE(form.description(), std::string(50, 'a') + " \r\n" + std::string(20, 'b') + "\r\nend");
    QCOMPARE(messages.lastStatus(), "Project Description Modified");
    QVERIFY(messages.asked.empty());
}

void ProjectFormsTest::everyWayOutAsksBeforeChangesAreLost() {
    const std::function<void(QWidget&)> ways[] = {
        [](QWidget& form) { click(form, "cmdCancel"); },
        [](QWidget& form) { QTest::keyClick(&form, Qt::Key_Escape); },
        [](QWidget& form) { form.close(); }};
    for (const auto& leave : ways) {
        RecordedMessages messages;
        frmTELVODesc form(sampleCase(), {messages, {}});
        show(form);
        type(form, "txtTitle", "other");
        leave(form); // a hasty answer is No
        QVERIFY(form.isVisible());
        QCOMPARE(messages.asked.size(), 1u);
        QCOMPARE(messages.asked[0], "Project Description: Message: "
                                    "Changes in Input Data will be discarded. Proceed?");
        messages.answers = {Answer::Yes};
        leave(form);
        QVERIFY(!form.isVisible() && !form.accepted() && !form.modified());
        QCOMPARE(messages.lastStatus(), "Project Description Not Modified");
    }
}

void ProjectFormsTest::hugePastesAreCut() {
    RecordedMessages messages;
    frmTELVODesc form(sampleCase(), {messages, {}});
    show(form);
    QApplication::clipboard()->setText(QString(10 << 20, 'x'));
    QElapsedTimer timer;
    timer.start();
    auto& box = control<QPlainTextEdit>(form, "txtDescription");
    box.paste();
    box.paste(); // nothing more goes in
    QCOMPARE(box.toPlainText().size(), 20000);
    control<QLineEdit>(form, "txtTitle").selectAll();
    control<QLineEdit>(form, "txtTitle").paste();
    QCOMPARE(form.title().size(), 250u);
    QTRY_COMPARE(messages.asked.size(), 3u);
    QVERIFY(timer.elapsed() < 5000);
    click(form, "cmdOK");
    QVERIFY(form.modified());
}

void ProjectFormsTest::theDescriptionBoxIsSixtyColumnsWide() {
    RecordedMessages messages;
    frmTELVODesc form(sampleCase(), {messages, {}});
    show(form);
    auto& box = control<QPlainTextEdit>(form, "txtDescription");
    for (const auto& [columns, lines] : {std::pair{60, 1}, std::pair{61, 2}}) {
        box.setPlainText(QString(columns, 'm'));
        box.moveCursor(QTextCursor::End);
        QTRY_COMPARE(box.cursorRect().top() > box.fontMetrics().height(), lines > 1);
    }
}

void ProjectFormsTest::theCalculatorFollowsTheTyping() {
    RecordedMessages messages;
    frmUnits form({messages, {}});
    show(form);
    const auto result = [&](const char* name) { return control<QLineEdit>(form, name).text(); };
    QVERIFY(control(form, "txtLength").hasFocus());
    QTest::keyClicks(&control(form, "txtLength"), "1,5");
    QCOMPARE(result("txtLengthResult_2"), "18");
    control<QComboBox>(form, "cboLength").setCurrentIndex(3); // metres
    QCOMPARE(result("txtLengthResult_3"), "150");
    QTest::keyClicks(&control(form, "txtLength"), "-");
    QCOMPARE(result("txtLengthResult_3"), "");
    QVERIFY(!control<QLabel>(form, "lblLengthNote").text().isEmpty());
    QTest::keyClicks(&control(form, "txtLength"), "x");
    QVERIFY(control(form, "txtLength").toolTip().startsWith("'x' is not a character of a number"));
    QVERIFY(messages.asked.empty()); // a mark is enough here

    auto& tabs = control<QTabWidget>(form, "SSTab1");
    QTest::mouseClick(tabs.tabBar(), Qt::LeftButton, {}, tabs.tabBar()->tabRect(3).center());
    QTRY_VERIFY(control(form, "txtStress").hasFocus());
    QTest::keyClicks(&control(form, "txtStress"), "1000");
    QCOMPARE(result("txtStressResult_6"), "6.894757293");
    for (const char* name : {"txtLoad", "txtLoadGrad", "txtStressGrad"}) {
        control<QLineEdit>(form, name).setText("1");
        QCOMPARE(result((std::string(name) + "Result_1").c_str()), "1");
    }
    QTest::keyClick(&control(form, "txtStress"), Qt::Key_Return);
    QVERIFY(form.isVisible());
    click(form, "cmdClose");
    QVERIFY(!form.isVisible());
}

void ProjectFormsTest::conversionTellsAndConverts() {
    const QTemporaryDir folder;
    RecordedMessages messages;
    ProjectCase current = sampleCase();
    current.FileName = folder.filePath("deep.TLV").toStdString();
    {
        frmConvert form(current, {messages, {}});
        show(form);
        QCOMPARE(control<QLineEdit>(form, "txtFromUnits").text(), "English: ft, in, lbs, psi, pcf");
        QCOMPARE(control<QLineEdit>(form, "txtToUnits").text(), "Metric: m, cm, kN, MPa, kN/m3");
        QCOMPARE(control<QLineEdit>(form, "txtNewFileName").text(), "Metric_deep.TLV");
        const QString notes = control<QLabel>(form, "lblNotes").text();
        QVERIFY(notes.contains("from 0.89 to 1") && !notes.contains("already there"));
        QTest::keyClick(&form, Qt::Key_Escape);
        QCOMPARE(form.converted(), current);
    }
    QFile there(folder.filePath("Metric_deep.TLV"));
    QVERIFY(there.open(QIODevice::WriteOnly));
    frmConvert form(current, {messages, {}});
    show(form);
    QVERIFY(control<QLabel>(form, "lblNotes").text().contains("already there"));
    click(form, "cmdOK");
    QCOMPARE(form.result(), int(QDialog::Accepted));
    QCOMPARE(form.converted().Units, Metric);
    QCOMPARE(form.converted().Input.DepthCover, 182.88);
    QCOMPARE(form.converted().FileName, there.fileName().toStdString());
}

void ProjectFormsTest::aCaseThatCannotBeConvertedStays() {
    RecordedMessages messages;
    ProjectCase current = newCase(Metric);
    current.Input.WidthD = 3e38F;
    frmConvert form(current, {messages, {}});
    show(form);
    click(form, "cmdOK");
    QVERIFY(form.isVisible());
    QCOMPARE(messages.asked.back(),
             "File Conversion: Error: WidthD: the value is too large to be converted");
    QCOMPARE(form.converted(), current);
}

QTEST_MAIN(ProjectFormsTest)
#include "projectForms_test.moc"
