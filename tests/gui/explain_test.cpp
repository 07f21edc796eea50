// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/RecordedDialogs.h"
#include "base/files.h"
#include "base/ui/PrintDialogs.h"
#include "base/ui/qtText.h"
#include "base/ui/WindowPlaces.h"
#include "explain/ui/frmExplain.h"
#include "explain/workingText.h"
#include "GuiTest.h"
#include "project/CaseFile.h"
#include "report/ui/ReportPrinter.h"
#include "run/caseRun.h"

#include <QCheckBox>
#include <QClipboard>
#include <QLineEdit>
#include <QPrinter>
#include <QProcess>
#include <QPushButton>
#include <QSpinBox>
#include <QSplitter>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QTreeWidget>

using namespace telvo;
using namespace telvo::test;
using explain::ui::frmExplain;

namespace {

/// Prints to a file, or is cancelled where there is none.
struct ToFile : telvo::ui::PrintDialogs {
    bool choosePrinter(QPrinter& printer, QWidget*, const QString&) override {
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(target);
        return !target.isEmpty();
    }
    bool setUpPrinter(QPrinter&, QWidget*) override { return false; }
    QString target;
};

} // namespace

class ExplainTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void init();
    void linksLeadToWhatASymbolStandsForAndBack();
    void aQuantityIsFoundByPartOfItsTitle();
    void moreDigitsAreShownOfTheSameQuantity();
    void copyAndPrintTakeWhatIsShown();
    void aWorkbookIsSavedBesideTheCase();
    void sizeOfTheListIsRemembered();

  private:
    QString shown() { return control<QTextBrowser>(*form, "txtWorking").toPlainText(); }
    bool enabled(const char* name) { return control(*form, name).isEnabled(); }

    RecordedMessages messages;
    ToFile dialogs;
    QTemporaryDir folder;
    ui::WindowPlaces places{folder.filePath("places.ini").toStdString()};
    ui::FormServices services{messages, [](const QString&) {}, &places};
    report::ui::ReportPrinter printer{messages, dialogs, [] {
                                          using namespace std::chrono;
                                          return year_month_day{2026y / March / 7};
                                      }};
    RecordedDialogs files;
    report::ShownRun view;
    std::unique_ptr<frmExplain> form;
};

void ExplainTest::init() {
    project::ProjectCase current;
    QVERIFY(!project::readCaseFile(TELVO_EXAMPLES_DIR "/two-side-gobs.TLV", current).fault);
    view.run = std::make_shared<const run::Run>(std::get<run::Run>(run::runCase(current)));
    form = std::make_unique<frmExplain>(view, services, printer, files);
    show(*form);
}

void ExplainTest::linksLeadToWhatASymbolStandsForAndBack() {
    QVERIFY(shown().contains("SF =") && shown().contains("page 1, line 5: 1.61"));
    QVERIFY(!enabled("cmdBack") && !enabled("cmdForward"));
    auto& text = control<QTextBrowser>(*form, "txtWorking");
    text.setFocus();
    QTest::keyClick(&text, Qt::Key_Tab); // to the first link
    QTest::keyClick(&text, Qt::Key_Return);
    QVERIFY(shown().contains("TotalCapacityAMZ"));
    QCOMPARE(control<QTreeWidget>(*form, "lstQuantities").currentItem()->text(1), "18879560000 lb");
    QVERIFY(form->isVisible());
    QTest::keyClick(form.get(), Qt::Key_Left, Qt::AltModifier);
    QVERIFY(shown().contains("TELVOSF.retreat"));
    QVERIFY(!enabled("cmdBack") && enabled("cmdForward"));
    click(*form, "cmdForward");
    QVERIFY(shown().contains("TotalCapacityAMZ"));
    click(*form, "cmdBack");
    form->showQuantity("LFBAR.retreat.first"); // another way: no forward on the old one
    QVERIFY(enabled("cmdBack") && !enabled("cmdForward"));
    form->showQuantity("none");
    QVERIFY(shown().contains("LFBAR.retreat.first"));
}

void ExplainTest::aQuantityIsFoundByPartOfItsTitle() {
    auto& find = control<QLineEdit>(*form, "txtFind");
    auto& list = control<QTreeWidget>(*form, "lstQuantities");
    typeInto(find, "ARCHFACTOR"); // the input of that name stands before
    QTest::keyClick(&find, Qt::Key_Return);
    QVERIFY(shown().contains("inputs.ArchFactor"));
    QVERIFY(list.hasFocus());
    QTest::keyClick(&list, Qt::Key_Down); // over the heading
    QTest::keyClick(&list, Qt::Key_Down);
    QVERIFY(shown().contains("round(max(0.28, 1 - 0.28 * ln(900 ft"));
    typeInto(find, "no such thing");
    QTest::keyClick(&find, Qt::Key_Return);
    QCOMPARE(messages.lastStatus(), "No quantity found");
    QVERIFY(shown().contains("Fpa ="));
}

void ExplainTest::moreDigitsAreShownOfTheSameQuantity() {
    form->showQuantity("RFactorSide.second");
    const auto precise = explain::explain(*view.run, {}, explain::MostDigits);
    const QString result = ui::toQt(explain::findStep(precise, "RFactorSide.second")->result);
    QVERIFY(!shown().contains(result));
    control<QSpinBox>(*form, "spnDigits").setValue(explain::MostDigits);
    QVERIFY(shown().contains(result));
    QVERIFY(control<QTreeWidget>(*form, "lstQuantities").currentItem());
}

void ExplainTest::copyAndPrintTakeWhatIsShown() {
    click(*form, "cmdCopy");
    const QString one = QApplication::clipboard()->text();
    QVERIFY(one.contains("TELVOSF.retreat") && !one.contains("inputs.DepthCover: Depth"));
    click(*form, "chkWithAll");
    click(*form, "cmdCopy");
    QVERIFY(QApplication::clipboard()->text().contains("inputs.DepthCover: Depth of cover"));

    click(*form, "cmdPrint");
    QCOMPARE(messages.lastStatus(), "Printing aborted");
    dialogs.target = folder.filePath("working.pdf");
    click(*form, "cmdPrint");
    QCOMPARE(messages.lastStatus(), "Working printed");
    QProcess reader;
    reader.start("pdftotext", {"-layout", dialogs.target, "-"});
    QVERIFY(reader.waitForFinished());
    const QString paper = QString::fromUtf8(reader.readAllStandardOutput());
    QVERIFY(paper.contains("two-side-gobs.TLV") && paper.contains("Depth of cover"));
    QVERIFY(paper.contains("page 1, line 5: 1.61"));
}

void ExplainTest::aWorkbookIsSavedBesideTheCase() {
    click(*form, "cmdSave");
    QCOMPARE(messages.lastStatus(), "Saving cancelled");
    const std::string proposal =
        "Save as Workbook|" TELVO_EXAMPLES_DIR "/two-side-gobs working.xlsx|Workbooks (*.xlsx)";
    QCOMPARE(files.asked.back(), proposal);

    const std::string target = folder.filePath("working.xlsx").toStdString();
    files.answers = {target};
    click(*form, "cmdSave");
    QCOMPARE(messages.lastStatus(), "Working saved as workbook");
    QVERIFY(readFile(target)->starts_with("PK"));

    files.answers = {folder.filePath("none/working.xlsx").toStdString()};
    click(*form, "cmdSave");
    QCOMPARE(messages.lastStatus(), "Saving failed");
    QVERIFY(messages.asked.back().starts_with("Show Working"));
}

void ExplainTest::sizeOfTheListIsRemembered() {
    auto& splitter = control<QSplitter>(*form, "splWorking");
    splitter.setSizes({300, splitter.width() - 300});
    const auto sizes = splitter.sizes();
    QTest::keyClick(form.get(), Qt::Key_Escape);
    QVERIFY(!form->isVisible());
    frmExplain again(view, services, printer, files);
    show(again);
    QCOMPARE(control<QSplitter>(again, "splWorking").sizes(), sizes);
}

QTEST_MAIN(ExplainTest)
#include "explain_test.moc"
