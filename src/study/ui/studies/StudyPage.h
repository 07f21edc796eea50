// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "study/output/headlines.h"
#include "study/tally.h"
#include "study/ui/studies/Background.h"
#include "study/ui/studies/exportRecord.h"
#include "study/ui/studies/StudyChart.h"
#include "study/ui/studies/StudySettings.h"
#include "study/ui/studies/StudyTableView.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <QWidget>
#include <string>
#include <vector>

class QLabel;
class QLineEdit;
class QPushButton;
class QSplitter;
class QTimer;
class QVBoxLayout;

namespace telvo::ui {
class NumberEdit;
}

namespace telvo::study::ui {

class Wash;

/// A case that a place of a result stands for.
struct CaseChoice {
    std::string what; ///< "Depth of Cover 826.2 ft"
    std::function<project::ProjectCase()> make;
};

/// What a page shows. Everything in it belongs to the case for which it was computed.
struct StudyResult {
    std::string headline;
    std::string remark; ///< a line below it; may be empty
    std::shared_ptr<const StudyTable> table = std::make_shared<StudyTable>();
    Drawing drawing;
    Tally tally;
    bool stopped = false;
    std::shared_ptr<const void> made = nullptr; ///< what the page itself knows it by
    /// What was asked of which cases; nothing where it cannot be run again.
    std::shared_ptr<const Asked> asked = nullptr;
    /// The cases of a cell, that of a double click first.
    std::function<std::vector<CaseChoice>(std::size_t row, int column)> ofRow;
    std::function<std::optional<CaseChoice>(std::size_t spot)> ofSpot;
};

/// A widget that shows the plan of a case.
struct PlanPane {
    QWidget* widget = nullptr;
    std::function<void(const project::ProjectCase& current)> show;
};

/// What the window does for its pages.
struct PageActions {
    std::function<void(const CaseChoice& choice)> openAsCase;
    /// Returned: why the value was not taken; empty when it was.
    std::function<std::string(const project::ProjectInput& values, const std::string& what)> take;
    std::function<void(const QString& title, const std::string& text)> showText;
    std::function<StudySettings&()> settings; ///< of the case on screen
    /// Makes a case file of each, in a folder that is asked for once.
    std::function<void(const std::vector<CaseChoice>& cases)> saveAsFiles;
    /// Case files, chosen by the user.
    std::function<std::vector<std::string>()> chooseFiles;
    std::function<PlanPane(const QString& name, QWidget* parent)> makePlan; ///< may be empty
    /// Puts cases beside the one on screen.
    std::function<void(const std::vector<CaseChoice>& cases)> addToCompare;
    /// What was run since the program started, the last one first.
    std::function<std::vector<NamedCase>()> runs;
    /// Asks a question that is answered with yes or no.
    std::function<bool(const std::string& text)> confirm;
};

/// A page of the studies: sentence, fields, picture, table and foot line. It computes in a thread
/// of its own; what is on screen is gray as long as it does not belong to case and fields.
class StudyPage : public QWidget {
    Q_OBJECT
  public:
    /// Given: prefix  of the names of its controls: "Tornado" makes lblTornadoHeadline
    StudyPage(const QString& prefix, const QString& title, const QString& subtitle,
              PageActions actions, QWidget* parent);
    ~StudyPage() override;

    const QString& title() const { return m_title; }
    const QString& subtitle() const { return m_subtitle; }

    /// The case changed.
    /// Given: another  the fields begin anew from the settings of the case
    void setCase(const StudyCase& subject, bool another);
    /// Something that it asks about changed elsewhere: it computes anew, now or when it is shown.
    void refresh();
    /// Whether what it shows belongs to case and fields, so that it may leave the program.
    bool isCurrent() const { return m_current; }
    const StudyResult& result() const { return m_result; }
    const StudyTableView& table() const { return *m_table; }
    std::string headline() const;
    std::string footLine() const;
    chart::ui::Picture picture() const;

  Q_SIGNALS:
    void currentChanged();

  protected:
    /// Makes the result in the thread of the page; looks at the token when it takes long.
    using Compute = std::function<Result<StudyResult>(const std::stop_token& stop)>;

    /// Sets the fields: for another case from its settings or as they begin; else what there is to
    /// choose from, for the same case may have other inputs and results now.
    virtual void fill(bool another) = 0;
    /// Reads the fields.
    /// Faults: `where` is the name of the control, which is marked
    virtual Result<Compute> read() = 0;
    /// Something of the page besides what all have.
    virtual void shown() {}
    /// Entries that a page has for a row besides those of its cases.
    virtual void addToMenu(QMenu&, std::size_t) {}
    /// Whether Enter and double click are for something else in a cell.
    virtual bool edits(std::size_t, int) { return false; }

    const StudyCase& subject() const { return m_subject; }
    const PageActions& actions() const { return m_actions; }
    StudySettings& settings() const { return m_actions.settings(); }
    QString named(const char* kind, const char* what) const;
    QVBoxLayout& fields() { return *m_fields; }
    StudyChart& chart() { return *m_chart; }
    StudyTableView& tableView() { return *m_table; }
    QSplitter& splitter() { return *m_splitter; }

    telvo::ui::NumberEdit* makeNumber(const char* what, const QString& accessibleName,
                                      const QString& toolTip);
    /// The number of a box, or why there is none.
    Result<double> numberIn(const telvo::ui::NumberEdit& box) const;

    /// What a page asks of the case on screen.
    std::shared_ptr<const Asked> asking(Study::Request request, unsigned threads = 1) const;

    /// Percent done, for a job that takes long to tell.
    std::shared_ptr<std::atomic<int>> progress() const { return m_progress; }

    /// The user changed a field: it computes anew now, or after a short rest of the keyboard.
    void renew();
    void renewSoon();
    /// Whether the user has changed a field since the settings of the case were shown; what was
    /// not is not kept.
    bool isEdited() const { return m_edited; }
    void showEvent(QShowEvent* event) override;

  private:
    void compute();
    void showResult(StudyResult result, double milliseconds);
    void refuse(const Fault& fault);
    void clearRefusals();
    void setCurrent(bool current);
    void showFoot(double milliseconds);
    void showBusy();
    void openChoices(const std::vector<CaseChoice>& choices);
    void showMenu(const std::vector<CaseChoice>& choices, std::optional<std::size_t> row,
                  const QPoint& globalPos);
    std::vector<CaseChoice> markedCases(const std::vector<CaseChoice>& choices,
                                        std::optional<std::size_t> row) const;

    QString m_prefix, m_title, m_subtitle;
    PageActions m_actions;
    StudyCase m_subject;
    StudyResult m_result;
    std::shared_ptr<std::atomic<int>> m_progress = std::make_shared<std::atomic<int>>(0);
    bool m_current = false;
    bool m_due = false; ///< to be computed when it is shown
    bool m_edited = false;
    Background* m_background;
    QTimer* m_rest;     ///< of the keyboard
    QTimer* m_patience; ///< until it is said that it takes long
    QLabel* m_headline;
    QLabel* m_remark;
    QLabel* m_problem;
    QVBoxLayout* m_fields;
    QSplitter* m_splitter;
    StudyChart* m_chart;
    StudyTableView* m_table;
    QLabel* m_foot;
    QPushButton* m_left; ///< how many could not be computed
    QPushButton* m_stop;
    Wash* m_wash;
};

} // namespace telvo::study::ui
