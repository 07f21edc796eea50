// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/ui/frmResTxtPlt.h"

#include "base/files.h"
#include "base/note.h"
#include "base/numbers.h"
#include "base/text.h"
#include "base/titles.h"
#include "base/ui/frmPopUp.h"
#include "base/ui/qtText.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QStyle>
#include <QTextBlock>
#include <QVBoxLayout>
#include <utility>

namespace telvo::report::ui {

using telvo::ui::fromQt;
using telvo::ui::toQt;
using telvo::ui::toQtLines;

namespace {

constexpr char HelpTopic[] = "InterpretationOfTELVOStabilityFactors.htm";
constexpr std::size_t MessageBoxCharacters = 1024; // a longer text needs a window of its own
constexpr int VisibleLines = 36;

} // namespace

frmResTxtPlt::frmResTxtPlt(ResultsView view, const telvo::ui::FormServices& services,
                           ReportPrinter& printer, QWidget* parent)
    : Form("frmResTxtPlt", titles::Results, HelpTopic, services, parent), m_view(std::move(view)),
      m_printer(printer) {
    // With all the buttons of a window; only a dialog stays above its parent.
    setWindowFlags((parent ? Qt::Dialog : Qt::Window) | Qt::WindowTitleHint |
                   Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint |
                   Qt::WindowCloseButtonHint);
    setWindowTitle(toQt(titles::Results) + toQt(withoutFolder(m_view.heading.FileName)));

    m_text = new QPlainTextEdit(this);
    m_text->setObjectName("RichTextBox1");
    m_text->setAccessibleName(tr("Report page"));
    m_text->setToolTip(tr("Select text and press Ctrl+C to copy a part of the page"));
    m_text->setReadOnly(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_text->setTabChangesFocus(true);
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setFont(reportFont());

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(makePageRow());
    layout->addLayout(makeCommandRow());
    if (!m_view.notes.empty()) layout->addWidget(makeNotes());
    layout->addWidget(m_text, 1);

    auto* buttons = makeButtons();
    // The help button that every form has carries this window's own name for it.
    findChild<QPushButton*>("cmdHelp")->setObjectName("Command10");
    if (m_view.viewPlots)
        buttons->addButton(makeButton("cmdViewPlots", tr("&View Plots"),
                                      tr("Shows the plots of this run"), &frmResTxtPlt::viewPlots),
                           QDialogButtonBox::ActionRole);
    if (m_view.showWorking)
        buttons->addButton(makeButton("cmdWorking", tr("Show &Working"),
                                      tr("Shows formula, numbers and result of every quantity"),
                                      &frmResTxtPlt::showWorking),
                           QDialogButtonBox::ActionRole);
    auto* close = addButton(*buttons, "Command1", tr("Cl&ose"), QDialogButtonBox::RejectRole);
    close->setToolTip(tr("Closes this window (Esc)"));
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    layout->addWidget(buttons);

    // The widest line of a report is seen as a whole.
    const QFontMetrics metrics(m_text->font());
    const int frame = 2 * m_text->frameWidth() + m_text->verticalScrollBar()->sizeHint().width();
    const int width = metrics.horizontalAdvance(QString(ReportColumns + 2, '0')) + frame +
                      2 * static_cast<int>(m_text->document()->documentMargin());
    m_text->setFocus();
    m_text->setMinimumWidth(width / 2);
    const QMargins margins = layout->contentsMargins();
    resize(std::max(width + margins.left() + margins.right(), sizeHint().width()),
           metrics.lineSpacing() * VisibleLines + sizeHint().height() / 2);
    showPage();
}

QHBoxLayout* frmResTxtPlt::makePageRow() {
    m_previous =
        makeButton("Command5", tr("Pr&evious Page"), tr("Shows the page before (Ctrl+Page Up)"),
                   &frmResTxtPlt::previousPage);
    m_next = makeButton("cmdNextPage", tr("&Next Page"),
                        tr("Shows the page after (Ctrl+Page Down)"), &frmResTxtPlt::nextPage);
    // The keys without Ctrl scroll the page that is shown.
    makeShortcut(Qt::CTRL | Qt::Key_PageUp, m_previous);
    makeShortcut(Qt::CTRL | Qt::Key_PageDown, m_next);
    m_pageLabel = new QLabel(this);
    m_pageLabel->setObjectName("lblPage");
    m_pageLabel->setAccessibleName(tr("Page of the report"));
    m_pageLabel->setToolTip(tr("Page 0 repeats the input, pages 1 to 5 are the results"));

    m_pageList = new QComboBox(this);
    telvo::ui::describe(*m_pageList, "cboPage", tr("Page"), tr("What the pages hold (Ctrl+G)"));
    for (int page = 0; page <= LastReportPage; ++page)
        m_pageList->addItem(QStringLiteral("%1  ").arg(page) +
                            tr(ReportPageNames[static_cast<std::size_t>(page)].data()));
    connect(m_pageList, &QComboBox::activated, this, &frmResTxtPlt::goToPage);
    connect(new QShortcut(Qt::CTRL | Qt::Key_G, this), &QShortcut::activated, m_pageList,
            [this] { m_pageList->setFocus(Qt::ShortcutFocusReason); });

    auto* row = new QHBoxLayout;
    row->addWidget(m_previous);
    row->addWidget(m_pageLabel);
    row->addWidget(m_next);
    row->addSpacing(style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing));
    row->addWidget(m_pageList);
    row->addStretch(1);
    return row;
}

// A row of its own: both in one would be wider than a small screen.
QHBoxLayout* frmResTxtPlt::makeCommandRow() {
    auto* row = new QHBoxLayout;
    row->addWidget(makeButton("cmdCopyPage", tr("&Copy Page"),
                              tr("Copies the page that is shown to the clipboard"),
                              &frmResTxtPlt::copyPage));
    row->addWidget(makeButton("cmdCopyAll", tr("Copy &All"),
                              tr("Copies all six pages to the clipboard"), &frmResTxtPlt::copyAll));
    row->addWidget(makeButton("Command3", tr("P&rint Page"), tr("Prints the page that is shown"),
                              &frmResTxtPlt::printPage));
    row->addWidget(makeButton("Command6", tr("Pr&int All"), tr("Prints all six pages"),
                              &frmResTxtPlt::printAll));
    row->addWidget(makeButton("cmdPrinterSetup", tr("Printer Set&up"),
                              tr("Chooses the printer and the orientation of the paper"),
                              &frmResTxtPlt::setUpPrinter));
    row->addStretch(1);
    return row;
}

QLabel* frmResTxtPlt::makeNotes() {
    QStringList lines;
    for (const std::string& note : m_view.notes)
        lines.append(tr("Note: %1.").arg(toQt(note)));
    auto* notes = new QLabel(lines.join('\n'), this);
    notes->setObjectName("lblNotes");
    notes->setAccessibleName(tr("Notes on this run"));
    notes->setTextFormat(Qt::PlainText);
    notes->setWordWrap(true);
    notes->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return notes;
}

void frmResTxtPlt::makeShortcut(const QKeySequence& key, QPushButton* target) {
    connect(new QShortcut(key, this), &QShortcut::activated, target, &QPushButton::click);
}

void frmResTxtPlt::load() {
    showWarnings();
    nextPage();
    show();
    telvo::note(messages(), "Results displayed");
}

void frmResTxtPlt::setCaseName(const std::string& fileName, std::string inputPage) {
    m_view.heading.FileName = fileName;
    m_view.pages.front() = std::move(inputPage);
    setWindowTitle(toQt(titles::Results) + toQt(withoutFolder(fileName)));
    if (m_page == 0) showPage();
}

void frmResTxtPlt::showWarnings() {
    constexpr char title[] = "TELVO Warnings";
    const std::string& text = m_view.WarningSummary;
    if (text.empty()) return;
    if (characterCount(text) <= MessageBoxCharacters)
        messages().tell(text, title);
    else {
        messages().history(historyLine(excerpt(withoutControls(text), 200), title));
        telvo::ui::frmPopUp(title, text, HelpTopic, services(), parentWidget()).exec();
    }
}

void frmResTxtPlt::nextPage() {
    if (m_page < LastReportPage) ++m_page;
    showPage();
}

void frmResTxtPlt::previousPage() {
    if (m_page > 0) --m_page;
    showPage();
}

void frmResTxtPlt::goToPage(int page) {
    m_page = static_cast<std::int16_t>(page);
    showPage();
}

void frmResTxtPlt::showPage() {
    const QWidget* pressed = focusWidget();
    m_text->setPlainText(toQtLines(m_view.pages[static_cast<std::size_t>(m_page)]));
    m_pageLabel->setText(tr("Page %1 of %2").arg(m_page).arg(LastReportPage));
    m_pageList->setCurrentIndex(m_page);
    m_next->setEnabled(m_page < LastReportPage);
    m_previous->setEnabled(m_page > 0);
    // A button that turns itself off must not leave the keyboard on a button of another kind.
    if (pressed && !pressed->isEnabled()) m_text->setFocus();
}

QString frmResTxtPlt::focusTopic() const {
    if (!services().topicOfLine || focusWidget() != m_text) return Form::focusTopic();
    const QString page = QString("ReportPage%1.htm").arg(m_page);
    // A line of numbers belongs to the heading above it.
    for (QTextBlock line = m_text->textCursor().block(); line.isValid(); line = line.previous()) {
        const QString topic = services().topicOfLine(page, line.text());
        if (!topic.isEmpty()) return topic;
    }
    return page;
}

void frmResTxtPlt::copyPage() {
    copy(m_view.pages[static_cast<std::size_t>(m_page)]);
    telvo::note(messages(), "Output page #" + generalNumber(m_page) + " copied to clipboard");
}

void frmResTxtPlt::copyAll() {
    std::string all;
    for (const std::string& page : m_view.pages)
        all += page;
    copy(all);
    telvo::note(messages(), "Output copied to clipboard");
}

void frmResTxtPlt::copy(const std::string& text) {
    QApplication::clipboard()->setText(toQtLines(text));
}

void frmResTxtPlt::printPage() {
    print(std::span(m_view.pages).subspan(static_cast<std::size_t>(m_page), 1), tr("Print Page"),
          "Current page printed");
}

void frmResTxtPlt::printAll() {
    print(m_view.pages, tr("Print All Pages"), "All pages printed");
}

// The status stands before the print dialog opens, and is replaced when nothing is printed.
void frmResTxtPlt::print(std::span<const std::string> pages, const QString& title,
                         std::string_view outcome) {
    messages().status(outcome);
    if (m_printer.print({{pages.begin(), pages.end()}, m_view.heading}, this, title))
        messages().history(outcome);
    else
        telvo::note(messages(), "Printing aborted");
    showPage();
}

void frmResTxtPlt::setUpPrinter() {
    m_printer.setUp(this);
}

void frmResTxtPlt::viewPlots() {
    m_view.viewPlots();
}

void frmResTxtPlt::showWorking() {
    m_view.showWorking();
}

} // namespace telvo::report::ui
