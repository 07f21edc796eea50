// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/CaseStudies.h"
#include "app/outdated.h"
#include "app/ui/RecoveryKeeper.h"
#include "base/ui/Form.h"
#include "project/ProjectInput.h"
#include "report/ShownRun.h"
#include "report/ui/frmResTxtPlt.h"
#include "study/ui/frmGraph.h"
#include "study/ui/studies/frmStudies.h"

#include <functional>
#include <memory>
#include <optional>
#include <QPageLayout>
#include <QPointer>
#include <QString>
#include <string_view>
#include <vector>

class QTextDocument;

namespace telvo::project::ui {
class frmTELVODesc;
class frmTELVOParm;
} // namespace telvo::project::ui

namespace telvo::app::ui {

class frmMain;
class Program;

/// What the menus, the toolbar and the forms' buttons do.
class Commands {
  public:
    Commands(Program& program, frmMain& window);
    ~Commands();

    void fileNew();
    void fileOpen();
    void fileSave(bool saveAs);
    void importKORV();
    void viewSourceFiles();
    void openRecent(int slot);
    /// Opens a file that was dropped on the window or picked on the start page.
    void openNamed(const std::string& path);
    /// A new case in the given units and its parameter form.
    void newCase(std::int16_t units);
    /// A discarded or abandoned copy becomes the case.
    void bringBack(const KeptCopy& copy);
    void printerSetup();
    void print();
    void preview();

    void editDescription();
    void editParameters();
    void stabilityFactors();
    void graph(study::GraphKind kind);

    /// Asks about studies that are not saved. Returned: whether the program may end.
    bool mayCloseStudies();
    /// Opens the window of the studies on a page, or brings it to the front.
    void studies(study::ui::StudyKind kind);

    void settings();
    void options();
    void unitConversion();
    void fileConversion();
    void copyHistory();

    void helpContents();
    void helpIndex();
    void helpPdf();
    void tutorial();
    void resourceFiles();
    void disclaimer();
    void update();
    void about();

    /// Values of an open parameter or description form that have not been accepted yet.
    std::optional<project::ProjectCase> draft() const;
    /// The graphs that are not pinned follow the open case. To be called when it changed.
    void graphsFollow();
    /// The studies follow the case on screen. To be called when case, form or options changed.
    void studiesFollow();
    /// Marks the windows of runs that no longer belong to the case on screen, and takes the mark
    /// from those that do again. To be called when case, form or options changed.
    void markOutdated();
    void closeResults();
    /// Closes every window that shows the outcome of a run.
    void closeViews();

  private:
    /// One line in the history and in the status line.
    void note(std::string_view action);
    report::SheetHeading sheetHeading() const;
    report::ui::PrintJob inputEchoJob() const;
    /// Runs a case and shows its report. Returned: the input that a check refused.
    std::optional<Refusal> showResults(const project::ProjectCase& current);

    /// Parent of the windows that show outcomes: with one they stay above the main window.
    QWidget* viewParent();
    study::GraphOptions graphOptions(study::GraphKind kind) const;
    chart::ui::PictureActions pictureActions();
    study::ui::GraphActions graphActions(study::GraphKind kind,
                                         std::shared_ptr<project::ProjectCase> shown);
    bool editGraphOptions(QWidget* parent);
    void settleGraphTitle();
    std::variant<study::ui::GraphSubject, Refusal> graphOfOpenCase(study::GraphKind kind);
    /// A window that shows a run, and how it takes a new name of the same case.
    struct RunWindow {
        QPointer<telvo::ui::Form> window;
        ShownCase shown;
        std::function<void(const std::string& fileName)> rename;
    };
    void viewPlots(const report::ShownRun& shown);
    void showWorking(const report::ShownRun& shown);
    study::ui::StudyActions studyActions();
    study::ui::StudyCase studyCase() const;
    void saveStudies();
    void addToCompare(study::NamedCase one);
    /// Offers a case that was run for comparison.
    void keepRun(const project::ProjectCase& current);
    std::string openStudied(const project::ProjectCase& current, const std::string& what);
    std::string takeStudied(const project::ProjectInput& values, const std::string& what);
    /// What the user sees and edits: the values of the parameter form while it is open, else the
    /// project.
    ShownCase onScreen() const;
    /// From now on the window says when its run no longer belongs to the case on screen.
    void watch(RunWindow watched, std::function<void()> runAgain);
    /// Runs the case on screen for a window that shows an outdated run; what stops it is told.
    std::optional<report::ShownRun> runOnScreen();
    void runResultsAgain();
    /// The run that a watched window shows from now on.
    void showsNow(const telvo::ui::Form& window, const report::ShownRun& shown);
    /// Shows the rows of a table that is asked for and loads one. Returned: whether one was loaded.
    bool importCase(QWidget* parent);
    /// The question about the spreadsheet software, where the user wants it.
    bool confirmSpreadsheet(QWidget* parent);
    /// Keeps the reminder before a plot is printed from being shown again.
    void stopReminding();
    /// Remembers a window about the case until the user closes it.
    void keep(QWidget& view);
    void printDocument(const QTextDocument& text, const std::string& name, QWidget* parent);
    void printPicture(const chart::ui::Picture& picture, QWidget* parent);

    Program& m_program;
    frmMain& m_window;
    std::optional<QPageLayout::Orientation> m_pictureOrientation; ///< of the last one printed
    std::optional<std::string> m_titledCase; ///< file of the case that the graphs' title is of
    struct GraphWindow {
        QPointer<study::ui::frmGraph> window;
        std::shared_ptr<project::ProjectCase> shown; ///< the case that it was computed for
    };
    std::vector<GraphWindow> m_graphs;
    QPointer<study::ui::frmStudies> m_studies;
    CaseStudies m_caseStudies;
    std::vector<study::NamedCase> m_sessionRuns; ///< the last one last
    std::size_t m_runCount = 0;
    project::OpenCase m_edited; ///< the case as the parameter form has it
    QPointer<project::ui::frmTELVOParm> m_parameters;
    QPointer<project::ui::frmTELVODesc> m_description;
    QPointer<report::ui::frmResTxtPlt> m_results;
    std::vector<QPointer<QWidget>> m_views; ///< graphs, plots and workings
    std::vector<RunWindow> m_runs;          ///< those that belong to a run, results included
};

} // namespace telvo::app::ui
