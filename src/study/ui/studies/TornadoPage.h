// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/output/StudyAnswer.h"
#include "study/ui/studies/StudyPage.h"

class QComboBox;
class QGroupBox;

namespace telvo::study::ui {

class OutcomeBox;

/// "What matters?" All inputs over their ranges, as tornado or spider; the range of the input in the
/// selected row is edited above the table.
class TornadoPage : public StudyPage {
    Q_OBJECT
  public:
    TornadoPage(PageActions actions, QWidget* parent);
    ~TornadoPage() override;

  protected:
    void fill(bool another) override;
    Result<Compute> read() override;
    void shown() override;
    bool edits(std::size_t row, int column) override;

  private:
    void makeFields();
    std::vector<RangedInput> ranges() const;
    void select(const Variable& variable);
    void showRange();
    void readRange();
    void setRange(const std::optional<Range>& range);
    void editCells();
    void takeCell(const Variable& variable, int column, const std::string& text);
    void showForm(const Range& range);

    OutcomeBox* m_outcome;
    QComboBox* m_look;
    QComboBox* m_input;
    QComboBox* m_form;
    telvo::ui::NumberEdit* m_low;
    telvo::ui::NumberEdit* m_high;
    QPushButton* m_default;
    QPushButton* m_allDefault;
    std::shared_ptr<const Tornado> m_tornado;
    std::optional<Fault> m_rangeFault; ///< of what is typed
    /// A text that is no range, in its cell.
    struct RefusedCell {
        Variable variable;
        int column;
        QString text;
    };
    std::optional<RefusedCell> m_refusedCell;
    std::optional<std::pair<Variable, int>> m_editedCell; ///< to be gone to again
};

/// Columns of the table that are edited.
inline constexpr int TornadoRangeColumn = 1, TornadoFromColumn = 3, TornadoToColumn = 4;

/// What the page shows.
/// Given: suggested  factor of the warnings, where the outcome has one
StudyResult tornadoResult(std::shared_ptr<const TornadoAnswer> answer, bool spider,
                          std::optional<double> suggested);

} // namespace telvo::study::ui
