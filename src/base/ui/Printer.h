// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Messages.h"

#include <functional>
#include <memory>
#include <QString>
#include <string>

class QPrinter;
class QWidget;

namespace telvo::ui {

class PrintDialogs;

/// Prints whatever can be painted on paper, and keeps the printer that was chosen for as long as
/// the program runs.
class Printer {
  public:
    Printer(Messages& messages, PrintDialogs& dialogs);
    ~Printer();
    Printer(const Printer&) = delete;

    /// Asks for the printer and prints. A printer or file that cannot be written is told.
    /// Given: fileName  of the case, after which a PDF is proposed to be called
    /// Returned: false when nothing was printed.
    bool print(const std::string& fileName, QWidget* parent, const QString& title,
               const std::function<bool(QPrinter&)>& paintOn);
    /// Lets the user choose printer and orientation. Returned: false for Cancel.
    bool setUp(QWidget* parent);

    /// The printer of the session. It is made when it is first asked for, because the system's
    /// printers are looked up then, which takes its time.
    QPrinter& printer();

  private:
    void rememberPdfFolder();

    Messages& m_messages;
    PrintDialogs& m_dialogs;
    std::unique_ptr<QPrinter> m_printer;
    QString m_pdfFolder; ///< where the last PDF went; empty: none yet
};

} // namespace telvo::ui
