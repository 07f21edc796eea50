// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ui/Form.h"
#include "report/ReportWriter.h"
#include "report/ui/ReportPrinter.h"

#include <functional>
#include <span>
#include <string>
#include <vector>

class QComboBox;
class QHBoxLayout;
class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace telvo::report::ui {

/// What the results window shows of one run.
struct ResultsView {
    ReportPages pages;
    std::string WarningSummary;      ///< depth and stability-factor warnings; may be empty
    std::vector<std::string> notes;  ///< remarks on record and run, shown above every page
    SheetHeading heading;            ///< case name, units, module header and date of printed sheets
    std::function<void()> viewPlots; ///< empty: there is no such button
    std::function<void()> showWorking = {}; ///< likewise
};

/// The results window: the six pages of a run one at a time, on paper and on the clipboard.
class frmResTxtPlt : public telvo::ui::Form {
    Q_OBJECT
  public:
    frmResTxtPlt(ResultsView view, const telvo::ui::FormServices& services, ReportPrinter& printer,
                 QWidget* parent = nullptr);

    /// Puts the warnings before the user and then shows the window, not modal, on page 1.
    void load();
    /// The same case has another name now, which its page 0 repeats.
    void setCaseName(const std::string& fileName, std::string inputPage);

  protected:
    /// On the text of a page: what explains the line with the cursor.
    QString focusTopic() const override;

  private:
    QHBoxLayout* makePageRow();
    QLabel* makeNotes();
    QHBoxLayout* makeCommandRow();
    void goToPage(int page);
    void makeShortcut(const QKeySequence& key, QPushButton* target);
    void nextPage();
    void previousPage();
    void showPage();
    void copyPage();
    void copyAll();
    void printPage();
    void printAll();
    void setUpPrinter();
    void viewPlots();
    void showWorking();
    void showWarnings();
    void copy(const std::string& text);
    /// Given: outcome  what history and status line say of pages that were printed
    void print(std::span<const std::string> pages, const QString& title, std::string_view outcome);

    ResultsView m_view;
    ReportPrinter& m_printer;
    std::int16_t m_page = 0;
    QLabel* m_pageLabel = nullptr;
    QComboBox* m_pageList = nullptr;
    QPushButton* m_next = nullptr;
    QPushButton* m_previous = nullptr;
    QPlainTextEdit* m_text = nullptr;
};

} // namespace telvo::report::ui
