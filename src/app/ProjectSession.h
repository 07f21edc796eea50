// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/CaseDocument.h"
#include "app/recovery.h"
#include "app/SettingsStore.h"
#include "base/FileDialogs.h"
#include "base/Messages.h"
#include "project/CaseFile.h"
#include "project/KeyFigures.h"
#include "project/ProjectInput.h"
#include "report/ReportWriter.h"
#include "run/caseRun.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace telvo::app {

/// The case that the desktop program has open, and the commands that open, save and replace it.
/// Nothing of the user's is lost: what is unsaved is asked for before it goes, a failed save keeps
/// the case unsaved, a damaged file is opened under no name, and a file that changed on disk since
/// it was read is not overwritten unasked.
class ProjectSession {
  public:
    ProjectSession(SettingsStore& settings, Messages& messages, FileDialogs& dialogs);

    /// Called after every change of the case, its name or its saved state.
    std::function<void()> onChange;
    /// Keeps a copy of a case whose unsaved changes the user lets go.
    std::function<void(const UnsavedCase&)> onDiscard;

    const project::ProjectCase& project() const { return state().Project; }
    /// What a damaged or older file did not give of the case.
    const project::KeptItems& kept() const { return state().Kept; }
    bool isSaved() const { return m_document.isSaved(); }
    bool isEmpty() const { return state().empty; }
    /// Whether the case has the name of a file that a save may replace.
    bool hasFile() const { return state().named; }
    /// Another one of every case that was opened since the program started.
    std::size_t caseNumber() const { return m_document.number(); }
    /// Nothing at all was entered yet: the start page has the place of the case.
    bool isUntouched() const;
    /// The case is that of a damaged file and was not accepted in the parameter form since. It
    /// shows no factors.
    bool isUnsettled() const { return kept().damaged; }
    /// The case as a copy keeps it.
    UnsavedCase unsaved() const { return {project(), kept()}; }
    /// File name without its folder.
    std::string displayName() const;
    /// Name in the title of the main window: with "*" when there are unsaved changes.
    std::string windowTitle() const;

    /// A new untitled case in the default units, or in those given, without a question.
    void FileNew(std::optional<std::int16_t> units = {});
    /// Opens a file without a question. What does not open leaves the case and its name; a damaged
    /// file opens as far as it could be read, untitled and unsaved.
    bool LoadProjFile(const std::string& path);
    /// Imports the case in a project file of the sibling program KORV without a question: untitled,
    /// unsaved, and not in the recent list. A file without one leaves the case.
    bool LoadKORVFile(const std::string& path);
    /// Takes a case that came from elsewhere, such as a row of a table: untitled and unsaved.
    void acceptImported(project::ProjectCase imported, const std::string& from,
                        project::KeptItems kept = {});
    /// Takes a case that a study made of the open one: untitled and unsaved.
    /// Given: what  it is, such as "Depth of Cover 826 ft"
    void acceptStudied(project::ProjectCase studied, const std::string& what);
    /// Saves under the case's name, or, when it has none yet or `saveAs` is set, under one that is
    /// asked for.
    bool FileMenuSave(bool saveAs);

    // The menu's commands: they ask about unsaved changes before these go.
    bool newCommand(std::optional<std::int16_t> units = {});
    bool openCommand();
    bool importCommand();
    /// A slot of the recent-files list, 1 to 4.
    bool openRecent(int slot);
    /// A file that was named otherwise, as by a drop on the window; that of the sibling program is
    /// imported.
    bool openNamed(const std::string& path);
    /// Query step of the shutdown: whether the window may close.
    bool mayClose();
    /// Asks about unsaved changes. What is let go is kept as a discarded copy.
    /// Returned: whether a command that replaces the case may go on.
    bool settleUnsaved();
    /// Of dialogs that name a case file: "TLV Files (*.TLV)" and all files.
    std::vector<std::string> fileFilters() const;

    /// OK of the parameter form. Returned: whether the values differ from those of the project.
    /// Given: what  changed, in a few words
    bool acceptParameters(const project::ProjectInput& values,
                          std::string_view what = "Project parameters");
    /// OK of the description form.
    bool acceptDescription(std::string_view title, std::string_view description);
    /// The case converted to the other unit system, under its new name, to be saved as.
    void acceptConverted(project::ProjectCase converted);
    /// A case that was kept when the program ended unexpectedly; it is unsaved and the first save
    /// asks for its name.
    void acceptRecovered(UnsavedCase recovered);
    /// A case that was let go, brought back untitled and unsaved.
    void acceptDiscarded(UnsavedCase discarded);

    /// A run; its loading condition is remembered.
    run::RunOutcome run(const project::ProjectCase& current);
    /// The settings of a report, also used by graphs.
    report::ReportOptions reportOptions() const;
    /// The figures of a case without a run's traces; the panel width alone where it cannot be
    /// computed.
    project::KeyFigures figures(const project::ProjectCase& current) const;
    /// The same for values of the open case; an unsettled one has no factors.
    project::KeyFigures figuresOfOpen(const project::ProjectCase& trial) const;
    /// Page 0 of the project, which needs no run.
    std::string inputEcho() const;

    // What a command needs of the open case; what is missing is told or asked for.
    // Returned: whether the command may go on.
    bool mayRun();
    bool mayShowFactors(); ///< of the open case and of trials of it
    bool mayConvert();
    bool mayPrint();
    /// Why the open case has no graphs yet; nothing where it may have them.
    std::optional<Refusal> graphRefusal() const;

  private:
    const CaseState& state() const { return m_document.state(); }
    bool change(CaseState next, std::string_view what);
    std::optional<std::string> readOrTell(const std::string& path);
    project::KeptItems keptOf(const project::CaseReading& reading) const;
    void tellDamage(const Fault& fault, const project::KeptItems& kept,
                    const project::ProjectCase& record);
    void tellOlderLevel();
    void takeRecovered(UnsavedCase recovered);
    bool confirmUnsettled();
    bool settleUnsaved(Answer preset);
    std::optional<std::string> askSavePath();
    bool changedOnDisk(const std::string& path) const;
    bool saveTo(const std::string& path);
    void changed();

    SettingsStore& m_settings;
    Messages& m_messages;
    FileDialogs& m_dialogs;
    CaseDocument m_document;
    int m_previousAnalysisCase = 1;
    std::int16_t m_graphUnitsOf = -1; ///< units that GraphUnits last followed
};

} // namespace telvo::app
