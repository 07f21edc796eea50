// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QString>

class QPrinter;
class QWidget;

namespace telvo::ui {

/// The door to the dialogs of the printer. The desktop program opens the system's, the tests choose
/// from a list.
class PrintDialogs {
  public:
    virtual ~PrintDialogs() = default;

    /// The print dialog, without page numbers. Returned: false for Cancel.
    virtual bool choosePrinter(QPrinter& printer, QWidget* parent, const QString& title) = 0;
    /// Printer and orientation of later print jobs; prints nothing. Returned: false for Cancel.
    virtual bool setUpPrinter(QPrinter& printer, QWidget* parent) = 0;
};

class QtPrintDialogs : public PrintDialogs {
    Q_DECLARE_TR_FUNCTIONS(QtPrintDialogs)
  public:
    bool choosePrinter(QPrinter& printer, QWidget* parent, const QString& title) override;
    bool setUpPrinter(QPrinter& printer, QWidget* parent) override;
};

} // namespace telvo::ui
