// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ui/Form.h"
#include "project/KeyFigures.h"
#include "table/CaseTable.h"

#include <functional>
#include <optional>
#include <vector>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QScrollArea;
class QTableView;

namespace telvo::table::ui {

class CaseTableModel;

/// The rows of a case table, from which one is loaded. Rows that cannot be read are shown with the
/// reason; the user's question about unsaved changes is the caller's.
class frmCaseTable : public telvo::ui::Form {
    Q_OBJECT
  public:
    /// The key figures of a case, for the preview.
    using Figures = std::function<project::KeyFigures(const project::ProjectCase&)>;

    frmCaseTable(table::CaseTable table, const telvo::ui::FormServices& services,
                 QWidget* parent = nullptr, Figures figures = {});
    ~frmCaseTable() override;

    /// The case of the row that was loaded; nothing before, and after Cancel.
    std::optional<project::ProjectCase> chosen() const { return m_chosen; }

    /// Puts a row beside the open case; without it there is no such entry in the menu of a row.
    std::function<void(const table::CaseRow& row)> addToCompare;

    void accept() override;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    QWidget* makeRemarks();
    QWidget* makeTable();
    QWidget* makePreview();
    void filter();
    void showCurrent();
    void showMenu(const QPoint& place);
    const table::CaseRow* currentRow() const;

    const table::CaseTable m_table;
    Figures m_figures;
    std::optional<project::ProjectCase> m_chosen;
    std::size_t m_bad = 0; // rows with a problem
    CaseTableModel* m_model;
    QLabel* m_remarks;
    QScrollArea* m_remarksArea;
    QLineEdit* m_filter;
    QCheckBox* m_onlyBad;
    QLabel* m_count;
    QTableView* m_view;
    std::vector<QLabel*> m_facts;
    QPlainTextEdit* m_notes;
    QPushButton* m_load;
};

} // namespace telvo::table::ui
