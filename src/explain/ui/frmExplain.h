// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileDialogs.h"
#include "base/ui/Form.h"
#include "explain/Working.h"
#include "report/ShownRun.h"

#include <string>
#include <vector>

class QCheckBox;
class QLineEdit;
class QPushButton;
class QSpinBox;
class QSplitter;
class QTextBrowser;
class QTreeWidget;
class QTreeWidgetItem;

namespace telvo::ui {
class Printer;
}

namespace telvo::explain::ui {

/// The working of a run: chapters and quantities to the left, formula, numbers and result of the
/// chosen one to the right, with links to what it depends on. Not modal.
class frmExplain : public telvo::ui::Form {
    Q_OBJECT
  public:
    frmExplain(report::ShownRun shown, const telvo::ui::FormServices& services,
               telvo::ui::Printer& printer, FileDialogs& dialogs, QWidget* parent = nullptr);

    void done(int result) override;

    /// Shows the working of another run, of the same quantity where it has it.
    void setRun(report::ShownRun shown);
    /// The same case has another name now.
    void setCaseName(const std::string& fileName);

    /// Shows the working of a quantity; an unknown key is passed over.
    void showQuantity(const std::string& key);

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    QWidget* makeList();
    QWidget* makeWorking();
    void makeShortcut(const QKeySequence& key, QWidget* target);
    void computeWorking();
    void showFactor();
    void fillList();
    void filter(const QString& text);
    void goToFirstFound();
    void chooseCurrent(QTreeWidgetItem* item);
    void go(int step);
    void back();
    void forward();
    void showWorking();
    void copy();
    void print();
    void saveWorkbook();
    const project::ProjectCase& current() const { return m_shown.run->current; }
    Chapters shown() const;
    QTreeWidgetItem* itemOf(const std::string& key) const;

    report::ShownRun m_shown;
    telvo::ui::Printer& m_printer;
    FileDialogs& m_dialogs;
    Chapters m_all;
    std::vector<std::string> m_visited; ///< keys, with the shown one at m_place
    std::size_t m_place = 0;
    QSplitter* m_splitter = nullptr;
    QLineEdit* m_find = nullptr;
    QTreeWidget* m_list = nullptr;
    QPushButton* m_back = nullptr;
    QPushButton* m_forward = nullptr;
    QCheckBox* m_withAll = nullptr;
    QSpinBox* m_digits = nullptr;
    QTextBrowser* m_text = nullptr;
};

} // namespace telvo::explain::ui
