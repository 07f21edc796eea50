// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/ui/PrintDialogs.h"

#include <QDialogButtonBox>
#include <QPrintDialog>
#include <QPushButton>

namespace telvo::report::ui {

namespace {

// What is printed is chosen by the program's own buttons: no page numbers, no selection.
constexpr auto Shown = QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintShowPageSize |
                       QAbstractPrintDialog::PrintCollateCopies;

} // namespace

bool QtPrintDialogs::choosePrinter(QPrinter& printer, QWidget* parent, const QString& title) {
    QPrintDialog dialog(&printer, parent);
    dialog.setOptions(Shown);
    dialog.setWindowTitle(title);
    return dialog.exec() == QDialog::Accepted;
}

bool QtPrintDialogs::setUpPrinter(QPrinter& printer, QWidget* parent) {
    QPrintDialog dialog(&printer, parent);
    dialog.setOptions(Shown);
    dialog.setWindowTitle(tr("Printer Setup"));
    // Where the dialog is Qt's own: nothing is printed, so its button must not say so.
    for (const auto* box : dialog.findChildren<QDialogButtonBox*>())
        if (auto* accept = box->button(QDialogButtonBox::Ok)) accept->setText(tr("OK"));
    return dialog.exec() == QDialog::Accepted;
}

} // namespace telvo::report::ui
