// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/folders.h"
#include "app/platform/DecimalSymbol.h"
#include "app/ProjectSession.h"
#include "app/SettingsStore.h"
#include "app/ui/DesktopMessages.h"
#include "app/ui/RecoveryKeeper.h"
#include "base/ui/Form.h"
#include "base/ui/WindowPlaces.h"
#include "report/ui/ReportPrinter.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace telvo::help::ui {
class frmHelp;
}

namespace telvo::app::ui {

class frmMain;

/// What the program finds around it; tests bring their own.
struct Surroundings {
    SystemFolders system;
    std::string commandLine; ///< one case file name, quotes allowed; may be empty
    std::function<std::chrono::year_month_day()> today; ///< asked anew where it is needed
    DesktopMessages::Box box;
    FileDialogs& fileDialogs;
    telvo::ui::PrintDialogs& printDialogs;

    /// Those of a real run.
    static Surroundings ofDesktop(FileDialogs& files, telvo::ui::PrintDialogs& print);
};

/// The running program: everything that lives as long as it does, and the order in which it starts
/// and ends.
class Program {
  public:
    explicit Program(Surroundings surroundings);
    ~Program();
    Program(const Program&) = delete;

    /// The start-up, up to the shown main window with its case.
    void start();
    /// What closing the main window leaves to do.
    void shutDown();

    const Folders& folders() const { return m_folders; }
    DesktopMessages& messages() { return m_messages; }
    SettingsStore& settings() { return m_settings; }
    ProjectSession& session() { return m_session; }
    FileDialogs& fileDialogs() { return m_surroundings.fileDialogs; }
    report::ui::ReportPrinter& printer() { return m_printer; }
    RecoveryKeeper& recovery() { return m_recovery; }
    telvo::ui::WindowPlaces& places() { return m_places; }
    frmMain& window() { return *m_window; }
    std::chrono::year_month_day today() const { return m_surroundings.today(); }

    telvo::ui::FormServices formServices();
    /// Opens a topic of the help, "" its contents, "Index" its index; tells when the help is not
    /// installed.
    void showHelp(const QString& topic);
    /// Opens a file with the desktop's program for it, on the paper of the user's country where it
    /// comes on two; tells when it is missing.
    void openDocument(const std::string& wanted);
    /// Opens a file in the external editor of the settings; tells when it does not start.
    void openInEditor(const std::string& path);

  private:
    void loadMainWindow();
    /// The help as it is installed, read when it is first asked for; nullptr: it is not there.
    help::ui::frmHelp* helpWindow();

    Surroundings m_surroundings;
    DesktopMessages m_messages;
    Folders m_folders;
    DecimalSymbol m_decimalSymbol;
    SettingsStore m_settings;
    ProjectSession m_session;
    report::ui::ReportPrinter m_printer;
    telvo::ui::WindowPlaces m_places;
    RecoveryKeeper m_recovery;
    std::unique_ptr<help::ui::frmHelp> m_help;
    std::unique_ptr<frmMain> m_window;
};

} // namespace telvo::app::ui
