// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ui/frmPopUp.h"
#include "base/ui/PrintDialogs.h"
#include "base/ui/qtText.h"
#include "GuiTest.h"
#include "project/CaseFile.h"
#include "report/sections.h"
#include "report/ui/frmPreview.h"
#include "report/ui/frmResTxtPlt.h"
#include "run/caseRun.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPrinter>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>

using namespace telvo;
using namespace telvo::test;
using namespace std::chrono_literals;
using report::ui::frmPreview;
using report::ui::frmResTxtPlt;

namespace {

/// Answers the print dialog and remembers what the status line said when it opened.
struct RecordedPrintDialogs : telvo::ui::PrintDialogs {
    explicit RecordedPrintDialogs(RecordedMessages& recorded) : messages(recorded) {}

    bool choosePrinter(QPrinter& printer, QWidget*, const QString&) override {
        statusAtOpening = messages.lastStatus();
        proposal = printer.outputFileName();
        if (target.isEmpty()) return false;
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(target);
        printer.setCopyCount(copies);
        return true;
    }
    bool setUpPrinter(QPrinter& printer, QWidget*) override {
        printer.setPageOrientation(QPageLayout::Landscape);
        return true;
    }

    RecordedMessages& messages;
    QString target; // file to print to; empty: Cancel
    QString proposal;
    int copies = 1;
    std::string statusAtOpening;
};

/// A PDF as text, one item for each sheet.
QStringList sheetsOf(const QString& pdf) {
    QProcess reader;
    reader.start("pdftotext", {"-layout", pdf, "-"});
    if (!reader.waitForFinished() || reader.exitCode() != 0) return {};
    QStringList sheets = QString::fromUtf8(reader.readAllStandardOutput()).split('\f');
    sheets.removeLast(); // behind the last form feed
    return sheets;
}

/// The lines that have characters, with single blanks between their words.
QStringList wordLines(const QString& text) {
    QStringList lines;
    for (const QString& line : text.split('\n'))
        if (!line.trimmed().isEmpty()) lines << line.simplified();
    return lines;
}

} // namespace

class ResultsTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void init();
    void warningsComeBeforeTheResults();
    void pagesEndAtTheFirstAndTheLast();
    void copiesHoldWholePages();
    void cancellingThePrintDialogReplacesTheStatus();
    void allPagesArePrinted();
    void aPagePrintsOnOneSheet_data();
    void aPagePrintsOnOneSheet();
    void thePrintDialogHasNoPageNumbers();
    void aPrintThatFailsIsTold();
    void thePreviewShowsSheets();
    void buttonsFollowWhatIsThere();
    void f1OpensWhatExplainsTheLine();

  private:
    QString shown(const frmResTxtPlt& form) {
        return control<QPlainTextEdit>(form, "RichTextBox1").toPlainText();
    }
    QString page(int number) {
        return ui::toQt(view.pages[static_cast<std::size_t>(number)]).remove('\r');
    }
    QString allPages() { return page(0) + page(1) + page(2) + page(3) + page(4) + page(5); }

    RecordedMessages messages;
    RecordedPrintDialogs dialogs{messages};
    QString topic;
    ui::FormServices services{messages, [this](const QString& shownTopic) { topic = shownTopic; }};
    QTemporaryDir folder;
    report::ui::ResultsView view;
    std::chrono::year_month_day today = 2026y / 3 / 7;
    std::unique_ptr<report::ui::ReportPrinter> printer;
};

void ResultsTest::init() {
    project::ProjectCase current;
    QVERIFY(!project::readCaseFile(TELVO_EXAMPLES_DIR "/deep-cover.TLV", current).fault);
    const auto run = run::runCase(current);
    view = {report::makeReport(std::get<run::Run>(run)).pages,
            {},
            {},
            {current.FileName, 0, "050817", {}},
            {}};
    messages.asked.clear();
    messages.statuses.clear();
    dialogs.target.clear();
    dialogs.copies = 1;
    printer =
        std::make_unique<report::ui::ReportPrinter>(messages, dialogs, [this] { return today; });
}

void ResultsTest::warningsComeBeforeTheResults() {
    for (const QString& summary :
         {QString(), QString(1024, 'w'), QString(1024, QChar(0xfc)), QString(1025, 'w')}) {
        init();
        view.WarningSummary = ui::fromQt(summary);
        frmResTxtPlt form(view, services, *printer);
        bool popUpSeen = false;
        QTimer closer;
        connect(&closer, &QTimer::timeout, this, [&] {
            auto* popUp = qobject_cast<ui::frmPopUp*>(QApplication::activeModalWidget());
            if (!popUp) return;
            popUpSeen = popUp->windowTitle() == "TELVO Warnings" && !form.isVisible();
            click(*popUp, "cmdCopy");
            click(*popUp, "cmdClose");
        });
        closer.start(10ms);
        form.load();
        QCOMPARE(popUpSeen, summary.size() == 1025);
        if (popUpSeen) QCOMPARE(QApplication::clipboard()->text(), summary);
        QCOMPARE(messages.asked.size(), summary.size() == 1024 ? 1U : 0U);
        if (summary.size() == 1024)
            QCOMPARE(messages.asked[0], "TELVO Warnings: " + view.WarningSummary);
        QVERIFY(form.isVisible() && !form.isModal());
        QCOMPARE(messages.lastStatus(), "Results displayed");
        QCOMPARE(shown(form), page(1));
    }
}

void ResultsTest::f1OpensWhatExplainsTheLine() {
    QString at;
    services.topicOfLine = [&](const QString& topicFile, const QString& line) {
        at = topicFile;
        return line.startsWith("Retreat..") ? "ReportPage1.htm#p1-retreat" : QString();
    };
    frmResTxtPlt form(view, services, *printer);
    form.load();
    show(form);
    auto& text = control<QPlainTextEdit>(form, "RichTextBox1");
    text.setFocus();
    QTextCursor cursor = text.document()->find("Retreat..");
    QVERIFY(!cursor.isNull());
    for (int line = 0; line < 2; ++line) { // the line itself, and the one below it
        text.setTextCursor(cursor);
        topic.clear();
        QTest::keyClick(&text, Qt::Key_F1);
        QCOMPARE(topic, "ReportPage1.htm#p1-retreat");
        cursor.movePosition(QTextCursor::NextBlock);
    }
    click(form, "cmdNextPage");
    text.setFocus();
    QTest::keyClick(&text, Qt::Key_F1);
    QCOMPARE(topic, "ReportPage2.htm");
    QCOMPARE(at, topic);
    control(form, "Command1").setFocus();
    QTest::keyClick(&control(form, "Command1"), Qt::Key_F1);
    QCOMPARE(topic, "InterpretationOfTELVOStabilityFactors.htm");
    services.topicOfLine = {};
}

void ResultsTest::pagesEndAtTheFirstAndTheLast() {
    frmResTxtPlt form(view, services, *printer);
    form.load();
    show(form);
    auto& next = control<QPushButton>(form, "cmdNextPage");
    auto& previous = control<QPushButton>(form, "Command5");
    for (int i = 2; i <= 5; ++i) {
        i % 2 ? QTest::keyClick(&form, Qt::Key_PageDown, Qt::ControlModifier) : next.click();
        QCOMPARE(shown(form), page(i));
    }
    QCOMPARE(control<QLabel>(form, "lblPage").text(), "Page 5 of 5");
    QVERIFY(!next.isEnabled());
    QTest::keyClick(&form, Qt::Key_PageDown, Qt::ControlModifier);
    QCOMPARE(shown(form), page(5));
    auto& list = control<QComboBox>(form, "cboPage");
    QCOMPARE(list.currentText(), "5  Remnant and leave pillars");
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Home);
    QCOMPARE(shown(form), page(0));
    QTest::keyClick(&list, Qt::Key_End);
    QCOMPARE(shown(form), page(5));
    control(form, "RichTextBox1").setFocus();
    for (int i = 4; i >= 0; --i) {
        i % 2 ? QTest::keyClick(&form, Qt::Key_PageUp, Qt::ControlModifier) : previous.click();
        QCOMPARE(shown(form), page(i));
    }
    QVERIFY(!previous.isEnabled() && next.isEnabled());
    QVERIFY(control(form, "RichTextBox1").hasFocus()); // not left on a button that is off
}

void ResultsTest::copiesHoldWholePages() {
    frmResTxtPlt form(view, services, *printer);
    form.load();
    click(form, "cmdNextPage");
    click(form, "cmdCopyPage");
    QCOMPARE(messages.lastStatus(), "Output page #2 copied to clipboard");
    QCOMPARE(QApplication::clipboard()->text(), page(2));
    click(form, "cmdCopyAll");
    QCOMPARE(messages.lastStatus(), "Output copied to clipboard");
    QCOMPARE(QApplication::clipboard()->text(), allPages());
}

void ResultsTest::cancellingThePrintDialogReplacesTheStatus() {
    frmResTxtPlt form(view, services, *printer);
    form.load();
    click(form, "Command3");
    QCOMPARE(dialogs.statusAtOpening, "Current page printed");
    QCOMPARE(messages.lastStatus(), "Printing aborted");
    click(form, "Command6");
    QCOMPARE(dialogs.statusAtOpening, "All pages printed");
    QCOMPARE(messages.lastStatus(), "Printing aborted");
    QVERIFY(messages.asked.empty());
    QCOMPARE(shown(form), page(1));
}

void ResultsTest::allPagesArePrinted() {
    if (QStandardPaths::findExecutable("pdftotext").isEmpty()) QSKIP("no reader of PDF files");
    dialogs.target = folder.filePath("all.pdf");
    frmResTxtPlt form(view, services, *printer);
    form.load();
    for (const bool landscape : {false, true}) {
        if (landscape) click(form, "cmdPrinterSetup");
        click(form, "Command6");
        QCOMPARE(messages.lastStatus(), "All pages printed");
        QStringList printed; // without the headings
        QStringList firstLines;
        int number = 0;
        for (const QString& sheet : sheetsOf(dialogs.target)) {
            QStringList lines = wordLines(sheet);
            if (number > 0) // page 0 names it itself
                QCOMPARE(lines.takeFirst(), "TELVO module build: 050817");
            QCOMPARE(lines.takeFirst(),
                     QString("Date/Time: 3/7/2026 Current Units: ft, in, lbs, psi, pcf Page: %1")
                         .arg(++number));
            QVERIFY(lines.takeFirst().startsWith("File Name: "));
            QVERIFY(lines.takeFirst().startsWith("-----"));
            firstLines << lines.first();
            printed += lines;
        }
        QCOMPARE(printed, wordLines(allPages()));
        for (int i = 0; i <= 5; ++i)
            QVERIFY(firstLines.contains(wordLines(page(i)).first()));
        QCOMPARE(printer->printer().pageLayout().orientation(),
                 landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
    }
    dialogs.copies = 2;
    click(form, "cmdNextPage");
    click(form, "Command3");
    QCOMPARE(dialogs.proposal, folder.filePath("deep-cover.pdf")); // where the last one went
    const QStringList twice = sheetsOf(dialogs.target);
    QCOMPARE(twice.size(), 2);
    QCOMPARE(twice.first(), twice.last());
    QCOMPARE(wordLines(twice.first()).mid(4), wordLines(page(2)));
}

// Whatever the paper; the fonts, the locale and the default paper are those of the machine.
void ResultsTest::aPagePrintsOnOneSheet_data() {
    QTest::addColumn<QPageSize>("paper");
    QTest::addColumn<QPageLayout::Orientation>("orientation");
    for (const auto paper : {QPageSize::A4, QPageSize::Letter})
        for (const auto orientation : {QPageLayout::Portrait, QPageLayout::Landscape})
            QTest::addRow("%s, %d", qPrintable(QPageSize::name(paper)), int(orientation))
                << QPageSize(paper) << orientation;
}

void ResultsTest::aPagePrintsOnOneSheet() {
    if (QStandardPaths::findExecutable("pdftotext").isEmpty()) QSKIP("no reader of PDF files");
    QFETCH(QPageSize, paper);
    QFETCH(QPageLayout::Orientation, orientation);
    dialogs.target = folder.filePath("one.pdf");
    today = 2026y / 3 / 8; // later than the window was opened
    const auto sheetsPrinted = [&](const report::ReportPages& pages) {
        printer->printer().setPageSize(paper);
        printer->printer().setPageOrientation(orientation);
        if (!printer->print({{pages.begin(), pages.end()}, view.heading}, nullptr, "Print"))
            return QStringList();
        return sheetsOf(dialogs.target);
    };
    for (const char* example : {"deep-cover", "two-side-gobs", "metric-two-side-gobs"}) {
        // Its page of warnings would need letters of 5 points across the paper.
        const bool warnings = std::string_view(example) == "deep-cover";
        if (warnings && orientation == QPageLayout::Landscape) continue;
        project::ProjectCase current;
        (void)project::readCaseFile(std::string(TELVO_EXAMPLES_DIR "/") + example + ".TLV",
                                    current);
        const auto run = run::runCase(current);
        const auto pages = report::makeReport(std::get<run::Run>(run)).pages;
        const QStringList sheets = sheetsPrinted(pages);
        QCOMPARE(sheets.size(), 6);
        for (int i = 0; i < 6; ++i) {
            const QStringList lines = wordLines(sheets[i]);
            QVERIFY(lines.contains(
                wordLines(ui::toQt(pages[static_cast<std::size_t>(i)]).remove('\r')).last()));
            QVERIFY(sheets[i].contains("3/8/2026"));
            QCOMPARE(sheets[i].count("TELVO module build"), 1);
        }
    }
    // A page that no readable letters bring on one sheet goes on; nothing of it is lost.
    report::ReportPages pages;
    for (int i = 1; i <= 200; ++i)
        pages[0] += "line " + std::to_string(i) + "\r\n";
    const QStringList sheets = sheetsPrinted(pages);
    QVERIFY(sheets.size() >= 2);
    QCOMPARE(wordLines(sheets.join('\n')).filter(QRegularExpression("^line ")).size(), 200);
}

void ResultsTest::thePrintDialogHasNoPageNumbers() {
    telvo::ui::QtPrintDialogs desktop;
    QStringList shownControls;
    QTimer looker;
    connect(&looker, &QTimer::timeout, this, [&] {
        QWidget* dialog = QApplication::activeModalWidget();
        if (!dialog) return;
        for (auto* button : dialog->findChildren<QAbstractButton*>())
            if (button->text().contains("Options >>")) button->click(); // unfold it
        for (const QWidget* part : dialog->findChildren<QWidget*>())
            if (part->isVisible() || part->isVisibleTo(dialog)) shownControls << part->objectName();
        static_cast<QDialog*>(dialog)->reject();
    });
    looker.start(20ms);
    QVERIFY(!desktop.choosePrinter(printer->printer(), nullptr, "Print"));
    QVERIFY(shownControls.contains("copies"));
    for (const char* name : {"gbPrintRange", "printRange", "printAll", "from", "to", "pagesLabel",
                             "printSelection", "printCurrentPage", "pagesRadioButton"})
        QVERIFY2(!shownControls.contains(name), name);
}

void ResultsTest::aPrintThatFailsIsTold() {
    for (const QString& target : {folder.filePath("missing/out.pdf"), QString("/dev/full")}) {
        init();
        frmResTxtPlt form(view, services, *printer);
        dialogs.target = target;
        click(form, "Command6");
        QCOMPARE(messages.asked.size(), 1U);
        QVERIFY(ui::toQt(messages.asked[0])
                    .startsWith("Print: Error: Nothing was printed: the file " + target));
        QCOMPARE(messages.lastStatus(), "Printing aborted");
    }
}

void ResultsTest::thePreviewShowsSheets() {
    std::string text;
    for (int i = 0; i < 150; ++i)
        text += "line\r\n";
    frmPreview form({{text}, view.heading}, services, *printer);
    show(form);
    QCOMPARE(messages.lastStatus(), "Preview displayed");
    QCOMPARE(control<QLabel>(form, "lblSheet").text(), "Sheet 1 of 3");
    QVERIFY(!control(form, "cmdPreviousSheet").isEnabled());
    click(form, "cmdNextSheet");
    click(form, "cmdNextSheet");
    QCOMPARE(control<QLabel>(form, "lblSheet").text(), "Sheet 3 of 3");
    QVERIFY(!control(form, "cmdNextSheet").isEnabled());
    click(form, "cmdCopy");
    QCOMPARE(messages.lastStatus(), "Output copied to clipboard");
    QCOMPARE(QApplication::clipboard()->text(), ui::toQt(text).remove('\r'));
    click(form, "cmdPrint");
    QCOMPARE(messages.lastStatus(), "Printing aborted");
    click(form, "cmdPrinterSetup"); // now landscape
    QCOMPARE(control<QLabel>(form, "lblSheet").text(), "Sheet 3 of 4");
    dialogs.target = folder.filePath("preview.pdf");
    click(form, "cmdPrint");
    QCOMPARE(messages.lastStatus(), "Current page printed");
    QVERIFY(QFile::exists(dialogs.target));
}

void ResultsTest::buttonsFollowWhatIsThere() {
    for (const char* name : {"cmdViewPlots", "cmdWorking"})
        QVERIFY(!frmResTxtPlt(view, services, *printer).findChild<QPushButton*>(name));
    bool viewed = false, worked = false;
    view.viewPlots = [&] { viewed = true; };
    view.showWorking = [&] { worked = true; };
    frmResTxtPlt form(view, services, *printer);
    show(form);
    click(form, "cmdViewPlots");
    click(form, "cmdWorking");
    QVERIFY(viewed && worked);
    click(form, "Command10");
    QCOMPARE(topic, "InterpretationOfTELVOStabilityFactors.htm");
    QTest::keyClick(&form, Qt::Key_Escape);
    QVERIFY(!form.isVisible());
}

QTEST_MAIN(ResultsTest)
#include "results_test.moc"
