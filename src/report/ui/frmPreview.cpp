// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/ui/frmPreview.h"

#include "base/files.h"
#include "base/note.h"
#include "base/titles.h"
#include "base/ui/qtText.h"

#include <algorithm>
#include <QApplication>
#include <QClipboard>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>
#include <QPrintPreviewWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

namespace telvo::report::ui {

using telvo::ui::toQt;
using telvo::ui::toQtLines;

frmPreview::frmPreview(PrintJob job, const telvo::ui::FormServices& services,
                       ReportPrinter& printer, QWidget* parent)
    : Form("frmPreview", titles::PrintPreview, "Printing.htm", services, parent),
      m_job(std::move(job)), m_printer(printer) {
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    setWindowTitle(toQt(titles::PrintPreview) + toQt(withoutFolder(m_job.heading.FileName)));

    m_sheets = new QPrintPreviewWidget(&m_printer.printer(), this);
    m_sheets->setObjectName("picPreview");
    m_sheets->setAccessibleName(tr("Printed sheets"));
    m_sheets->setFocusPolicy(Qt::StrongFocus);
    connect(m_sheets, &QPrintPreviewWidget::paintRequested, this,
            [this](QPrinter* target) { paint(*target, m_printer.dated(m_job), false); });
    connect(m_sheets, &QPrintPreviewWidget::previewChanged, this, &frmPreview::showSheetNumber);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(makeViewRow());
    layout->addWidget(m_sheets, 1);
    auto* buttons = makeButtons();
    makeCommands(*buttons);
    layout->addWidget(buttons);

    const QFontMetrics metrics(font());
    resize(metrics.averageCharWidth() * 110, metrics.lineSpacing() * 44);
    m_sheets->fitInView();
    m_sheets->setFocus();
}

QPushButton* frmPreview::viewButton(QHBoxLayout& row, const QString& name, const QString& caption,
                                    const QString& toolTip) {
    QPushButton* made = makeButton(name, caption, toolTip);
    row.addWidget(made);
    return made;
}

QHBoxLayout* frmPreview::makeViewRow() {
    auto* row = new QHBoxLayout;
    m_previous =
        viewButton(*row, "cmdPreviousSheet", tr("Pr&evious Sheet"), tr("Shows the sheet before"));
    connect(m_previous, &QPushButton::clicked, this, [this] { goToSheet(-1); });
    m_sheetLabel = new QLabel(this);
    m_sheetLabel->setObjectName("lblSheet");
    m_sheetLabel->setAccessibleName(tr("Number of the sheet"));
    row->addWidget(m_sheetLabel);
    m_next = viewButton(*row, "cmdNextSheet", tr("&Next Sheet"), tr("Shows the sheet after"));
    connect(m_next, &QPushButton::clicked, this, [this] { goToSheet(1); });
    row->addStretch(1);

    const auto* larger = viewButton(*row, "cmdZoomIn", tr("Zoom &In"), tr("Shows it larger"));
    connect(larger, &QPushButton::clicked, m_sheets, [this] { m_sheets->zoomIn(); });
    const auto* smaller = viewButton(*row, "cmdZoomOut", tr("Zoom &Out"), tr("Shows it smaller"));
    connect(smaller, &QPushButton::clicked, m_sheets, [this] { m_sheets->zoomOut(); });
    const auto* sheet =
        viewButton(*row, "cmdFitSheet", tr("Fit &Sheet"), tr("Shows the whole sheet"));
    connect(sheet, &QPushButton::clicked, m_sheets, &QPrintPreviewWidget::fitInView);
    const auto* width =
        viewButton(*row, "cmdFitWidth", tr("Fit &Width"), tr("Shows the whole width of the sheet"));
    connect(width, &QPushButton::clicked, m_sheets, &QPrintPreviewWidget::fitToWidth);
    return row;
}

void frmPreview::makeCommands(QDialogButtonBox& buttons) {
    auto* copyButton = addButton(buttons, "cmdCopy", tr("&Copy"), QDialogButtonBox::ActionRole);
    copyButton->setToolTip(tr("Copies the text to the clipboard"));
    connect(copyButton, &QPushButton::clicked, this, &frmPreview::copy);
    auto* printButton = addButton(buttons, "cmdPrint", tr("P&rint"), QDialogButtonBox::ActionRole);
    printButton->setToolTip(tr("Prints these sheets"));
    connect(printButton, &QPushButton::clicked, this, &frmPreview::print);
    auto* setUp =
        addButton(buttons, "cmdPrinterSetup", tr("Printer Set&up"), QDialogButtonBox::ActionRole);
    setUp->setToolTip(tr("Chooses the printer and the orientation of the paper"));
    connect(setUp, &QPushButton::clicked, this, &frmPreview::setUpPrinter);
    auto* close = addButton(buttons, "cmdClose", tr("C&lose"), QDialogButtonBox::RejectRole);
    close->setToolTip(tr("Closes the preview (Esc)"));
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
}

void frmPreview::showEvent(QShowEvent* event) {
    Form::showEvent(event);
    if (!std::exchange(m_announced, true)) messages().status("Preview displayed");
}

void frmPreview::goToSheet(int step) {
    m_sheets->setCurrentPage(m_sheets->currentPage() + step);
    showSheetNumber();
}

void frmPreview::showSheetNumber() {
    const int sheet = m_sheets->currentPage();
    const int count = m_sheets->pageCount();
    m_sheetLabel->setText(tr("Sheet %1 of %2").arg(sheet).arg(count));
    m_previous->setEnabled(sheet > 1);
    m_next->setEnabled(sheet < count);
}

void frmPreview::copy() {
    QString text;
    for (const std::string& page : m_job.pages)
        text += toQtLines(page);
    QApplication::clipboard()->setText(text);
    telvo::note(messages(), "Output copied to clipboard");
}

void frmPreview::print() {
    const bool printed = m_printer.print(m_job, this, tr("Print"));
    telvo::note(messages(), printed ? "Current page printed" : "Printing aborted");
    paintAgain();
}

void frmPreview::setUpPrinter() {
    if (m_printer.setUp(this)) paintAgain();
}

// The dialogs may have changed the paper; the sheet in view stays.
void frmPreview::paintAgain() {
    const int sheet = m_sheets->currentPage();
    m_sheets->updatePreview();
    m_sheets->setCurrentPage(std::min(sheet, m_sheets->pageCount()));
    showSheetNumber();
}

} // namespace telvo::report::ui
