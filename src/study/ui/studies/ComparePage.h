// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/questions/compare.h"
#include "study/ui/studies/StudyPage.h"

#include <QStringList>

class QCheckBox;
class QComboBox;
class QPlainTextEdit;
class QTabWidget;

namespace telvo::study::ui {

/// What a comparison is made of. The case itself comes first, then its scenarios,
/// then rows and runs, then the files.
struct CompareOrder {
    project::ProjectCase own;
    std::string ownName;
    std::vector<Scenario> scenarios;
    std::vector<NamedCase> cases;   ///< rows and runs
    std::vector<std::string> files; ///< paths
    std::string base;               ///< name of a case; any other: the case itself
    bool onlyDifferences = true;
    int RoundTELVOSF = 0;
};

/// Cases side by side as table and picture show them.
struct ComparedCases {
    Comparison comparison;
    std::vector<std::size_t> rows;    ///< of the comparison, those that are shown
    std::vector<std::size_t> others;  ///< all cases but the base
    std::vector<std::string> remarks; ///< on files, and why one is left out

    /// The case of a column; nothing of those that stand for no case.
    std::optional<std::size_t> caseAt(int column) const;
};

/// Faults: fewer than two cases that can be read
Result<StudyResult> compareResult(const CompareOrder& order);

/// "Side by side": the case, its scenarios and other files; the table has a row per input and
/// result. Beside it the reports of two cases line by line, and their plans.
class ComparePage : public StudyPage {
    Q_OBJECT
  public:
    ComparePage(PageActions actions, QWidget* parent);

  protected:
    void fill(bool another) override;
    Result<Compute> read() override;
    void shown() override;
    void showEvent(QShowEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    void makeFields();
    void makeTabs();
    void addFiles();
    void showRuns();
    void add(const std::vector<std::string>& paths);
    void removeFile();
    void listCases();
    void showPair();

    QPushButton *m_add, *m_addRun, *m_remove;
    QComboBox* m_files;
    QComboBox* m_base;
    QCheckBox* m_onlyDifferences;
    QCheckBox* m_scenarios;
    QTabWidget* m_tabs;
    QComboBox *m_first, *m_second; ///< of the two whose reports and plans are shown
    QPlainTextEdit* m_reports;
    PlanPane m_firstPlan, m_secondPlan;
    std::shared_ptr<const ComparedCases> m_cases;
};

} // namespace telvo::study::ui
