// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Messages.h"
#include "report/sheets.h"

#include <functional>
#include <memory>
#include <QFont>
#include <QString>
#include <string>
#include <vector>

class QPrinter;
class QWidget;

namespace telvo::report::ui {

class PrintDialogs;

/// Report pages on their way to paper.
struct PrintJob {
    std::vector<std::string> pages; ///< lines ended by CR LF
    SheetHeading heading;
};

/// Prints report pages and keeps the printer that was chosen for as long as the program runs.
class ReportPrinter {
  public:
    /// Given: today  the date at the moment of printing
    ReportPrinter(Messages& messages, PrintDialogs& dialogs,
                  std::function<std::chrono::year_month_day()> today);
    ~ReportPrinter();

    /// Asks for the printer and prints. A printer or file that cannot be written is told.
    /// Returned: false when nothing was printed.
    bool print(const PrintJob& job, QWidget* parent, const QString& title);
    /// The same for anything else that can be painted on paper.
    /// Given: fileName  of the case, after which a PDF is proposed to be called
    bool print(const std::string& fileName, QWidget* parent, const QString& title,
               const std::function<bool(QPrinter&)>& paintOn);
    /// Lets the user choose printer and orientation. Returned: false for Cancel.
    bool setUp(QWidget* parent);

    /// The job as it would be printed now: with today's date.
    PrintJob dated(PrintJob job) const;

    /// The printer of the session. It is made when it is first asked for, because the system's
    /// printers are looked up then, which takes its time.
    QPrinter& printer();

  private:
    void rememberPdfFolder();

    Messages& m_messages;
    PrintDialogs& m_dialogs;
    std::function<std::chrono::year_month_day()> m_today;
    std::unique_ptr<QPrinter> m_printer;
    QString m_pdfFolder; ///< where the last PDF went; empty: none yet
};

/// Paints the sheets of a job for the paper of `printer`, one copy of them or as many as are set.
/// The size of the font follows from its measured width and the paper: a page stands on one sheet
/// as long as that leaves the letters readable, whatever the font, the paper and its orientation.
/// Returned: false when the printer did not take them.
bool paint(QPrinter& printer, const PrintJob& job, bool allCopies);

/// The fixed-pitch font of this system, in which reports are shown.
QFont reportFont();
/// The one in which they are printed: a well-known one where it is installed, else reportFont().
QFont printFont();

} // namespace telvo::report::ui
