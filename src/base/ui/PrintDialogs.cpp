// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ui/PrintDialogs.h"

#include <QDialogButtonBox>
#include <QPrintDialog>
#include <QPushButton>
#include <QTimer>

namespace telvo::ui {

namespace {

// What is printed is chosen by the program's own buttons: no page numbers, no selection.
constexpr auto Shown = QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintShowPageSize |
                       QAbstractPrintDialog::PrintCollateCopies;

/// Where the dialog is Qt's own it offers a range of pages whatever its options say, and nothing
/// would come of it. The dialog of the system follows the options.
void hideRangeOfPages(QPrintDialog& dialog) {
    for (const char* name : {"gbPrintRange", "pageSetLabel", "pageSetCombo"})
        if (auto* part = dialog.findChild<QWidget*>(name)) {
            part->hide();
            QTimer::singleShot(0, part, &QWidget::hide); // showing the dialog shows it again
        }
}

} // namespace

bool QtPrintDialogs::choosePrinter(QPrinter& printer, QWidget* parent, const QString& title) {
    QPrintDialog dialog(&printer, parent);
    dialog.setOptions(Shown);
    dialog.setPrintRange(QAbstractPrintDialog::AllPages);
    dialog.setWindowTitle(title);
    hideRangeOfPages(dialog);
    return dialog.exec() == QDialog::Accepted;
}

bool QtPrintDialogs::setUpPrinter(QPrinter& printer, QWidget* parent) {
    QPrintDialog dialog(&printer, parent);
    dialog.setOptions(Shown);
    dialog.setWindowTitle(tr("Printer Setup"));
    hideRangeOfPages(dialog);
    // Where the dialog is Qt's own: nothing is printed, so its button must not say so.
    for (const auto* box : dialog.findChildren<QDialogButtonBox*>())
        if (auto* accept = box->button(QDialogButtonBox::Ok)) accept->setText(tr("OK"));
    return dialog.exec() == QDialog::Accepted;
}

} // namespace telvo::ui
