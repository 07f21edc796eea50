// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ui/Printer.h"
#include "report/sheets.h"

#include <functional>
#include <QFont>
#include <string>
#include <vector>

namespace telvo::report::ui {

/// Report pages on their way to paper.
struct PrintJob {
    std::vector<std::string> pages; ///< lines ended by CR LF
    SheetHeading heading;
};

/// The printer of the session, which knows how report pages are printed.
class ReportPrinter : public telvo::ui::Printer {
  public:
    using Printer::print;

    /// Given: today  the date at the moment of printing
    ReportPrinter(Messages& messages, telvo::ui::PrintDialogs& dialogs,
                  std::function<std::chrono::year_month_day()> today);

    /// Asks for the printer and prints. A printer or file that cannot be written is told.
    /// Returned: false when nothing was printed.
    bool print(const PrintJob& job, QWidget* parent, const QString& title);

    /// The job as it would be printed now: with today's date.
    PrintJob dated(PrintJob job) const;

  private:
    std::function<std::chrono::year_month_day()> m_today;
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
