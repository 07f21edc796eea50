// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ui/Form.h"
#include "study/questions/uncertainty.h"

#include <array>
#include <optional>

class QComboBox;
class QGroupBox;
class QLabel;
class QPlainTextEdit;
class QTableWidget;

namespace telvo::ui {
class NumberEdit;
}

namespace telvo::study::ui {

/// Which inputs of a case scatter, how, and which of them move together.
class frmScatter : public telvo::ui::Form {
    Q_OBJECT
  public:
    frmScatter(const project::ProjectCase& base, AskedUncertainty asked,
               const telvo::ui::FormServices& services, QWidget* parent);

    /// What was asked, with what was changed here; as it was where Cancel was chosen.
    const AskedUncertainty& asked() const { return m_asked; }

  private:
    struct Row {
        ScatteredInput input;
        bool scatters = false;
        std::string label() const;
    };

    void makeRows();
    void makeTable();
    QWidget* makeEditor();
    QWidget* makePairs();
    void showTable();
    void showRowText(int row);
    void showScatter();
    void showFields();
    void readScatter();
    void setScatter(const Scatter& scatter);
    void showEffect(const Scatter& scatter);
    void showPairs();
    void addPair();
    void okay();
    Row* current();
    Scatter scatterOf(const Row& row) const;
    Result<Scatter> typed() const;

    project::ProjectCase m_base;
    AskedUncertainty m_asked;
    std::vector<Row> m_rows;
    std::vector<AskedUncertainty::Together> m_pairs;
    QTableWidget* m_table;
    QGroupBox* m_editor;
    QComboBox* m_shape;
    QComboBox* m_form;
    std::array<QLabel*, 4> m_captions{};
    std::array<telvo::ui::NumberEdit*, 4> m_numbers{};
    QLabel* m_listCaption;
    QPlainTextEdit* m_list;
    telvo::ui::NumberEdit* m_low;
    telvo::ui::NumberEdit* m_high;
    QLabel* m_effect;
    QTableWidget* m_pairTable;
    QComboBox* m_first;
    QComboBox* m_second;
    telvo::ui::NumberEdit* m_rank;
    std::optional<Fault> m_fault; ///< of what is typed
    int m_shown = -1;             ///< row in the editor
};

} // namespace telvo::study::ui
