// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/ui/studies/StudyPage.h"

class QComboBox;

namespace telvo::study::ui {

class OutcomeBox;

/// A scenario as it is being edited. Texts that are no value stay in their cells, and the scenario
/// is not computed as long as there is one.
struct ScenarioDraft {
    struct Refused {
        std::optional<project::FieldId> id; ///< nothing: the name
        std::string text, why;
    };
    Scenario scenario;
    std::vector<Refused> refused;

    const Refused* refusedAt(const std::optional<project::FieldId>& id) const;
    std::optional<double> at(project::FieldId id) const;
    void clear(const std::optional<project::FieldId>& id);
};

/// The scenarios of a case with their results, as table and picture show them.
struct ScenarioSheet {
    project::ProjectCase base;
    std::vector<ScenarioDraft> drafts;
    std::vector<project::FieldId> inputs; ///< columns
    std::vector<Outcome> outcomes;        ///< columns
    Scenarios made;                       ///< of those drafts that nothing is refused of
    /// Per draft its row in `made`.
    std::vector<std::optional<std::size_t>> madeRow;

    // Rows of the table: the case, the drafts, the worst of each result.
    std::size_t rows() const { return drafts.size() + 2; }
    const ScenarioDraft* draftAt(std::size_t row) const;
    /// Nothing for the last row and for a draft that is not computed.
    const ScenarioRow* resultAt(std::size_t row) const;
    // Columns: name, inputs, outcomes, flags, remark.
    std::optional<project::FieldId> inputAt(int column) const;
    std::optional<std::size_t> outcomeAt(int column) const;
};

/// What a cell of a scenario means: nothing for a blank, which is as in the case.
/// Faults: what is wrong with the text
Result<std::optional<double>> scenarioValue(project::FieldId id, const std::string& text,
                                            std::int16_t units);
/// What an input without free numbers can be: loading conditions, yes and no. Empty for any other.
std::vector<std::string> scenarioChoices(project::FieldId id);

/// Computes the drafts of a sheet.
Result<StudyResult> scenarioResult(ScenarioSheet sheet, int RoundTELVOSF);
/// The table alone: with what was computed before, while new results are on their way.
std::shared_ptr<const StudyTable> scenarioTable(std::shared_ptr<const ScenarioSheet> sheet);

/// "What if?" Named sets of changed inputs, a row each; cells are edited in the table.
class ScenariosPage : public StudyPage {
    Q_OBJECT
  public:
    ScenariosPage(PageActions actions, QWidget* parent);
    ~ScenariosPage() override;

  protected:
    void fill(bool another) override;
    Result<Compute> read() override;
    void shown() override;
    bool edits(std::size_t row, int column) override;
    void addToMenu(QMenu& menu, std::size_t row) override;

  private:
    void makeFields();
    void makeShortcuts();
    ScenarioSheet sheet() const;
    std::vector<project::FieldId> inputColumns() const;
    std::vector<Outcome> outcomeColumns() const;
    std::optional<std::size_t> current() const; ///< draft of the current row
    void take(std::size_t row, int column, const std::string& text);
    std::string refusedName(std::size_t which, const std::string& name) const;
    std::string freeName(const std::string& like) const;
    void add();
    void duplicate();
    void rename();
    void remove();
    void move(int by);
    void clearCell();
    void addInput();
    void addOutcome();
    void removeColumn();
    void saveFiles();
    void changed(std::optional<std::size_t> currentDraft, int column);
    void showButtons();

    std::vector<ScenarioDraft> m_drafts;
    std::shared_ptr<const ScenarioSheet> m_sheet; ///< as the table shows it
    QPushButton *m_add, *m_duplicate, *m_rename, *m_delete, *m_up, *m_down, *m_save;
    QComboBox* m_input;
    QPushButton* m_addInput;
    OutcomeBox* m_outcome;
    QPushButton *m_addOutcome, *m_removeColumn;
};

} // namespace telvo::study::ui
