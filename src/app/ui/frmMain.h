// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/commands.h"
#include "app/ui/MenuEntry.h"

#include <array>
#include <cstdint>
#include <functional>
#include <QMainWindow>
#include <QPointer>
#include <vector>

class QLabel;
class QPlainTextEdit;
class QSplitter;
class QStackedWidget;
class QToolBar;

namespace telvo::app::ui {

class CaseOverview;
class Program;
class StartPage;

/// The main window: menus, toolbar, an overview of the open case, the history pane and the status
/// line. What the menus do is in Commands.
class frmMain : public QMainWindow {
    Q_OBJECT
  public:
    explicit frmMain(Program& program);
    ~frmMain() override;

    const Commands& commands() const { return m_commands; }
    QAction& action(MenuEntry entry) const;
    QAction& graphAction(study::GraphKind kind) const;
    /// Of the recent files' entries; slots count from 1.
    QAction& recentFileAction(int slot) const;

    /// The case, its name or its saved state changed.
    void showCase();
    /// The settings changed: history pane, toolbar, recent files.
    void applySettings();
    /// Sets the font of the history pane; a font that is not there is told.
    void applyHistoryFont();
    /// While a form that edits the case is open the window takes no commands.
    void setBlockedBy(QWidget* form);

  protected:
    void closeEvent(QCloseEvent* event) override;
    // A case file that is dropped on the window is opened.
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    struct MenuRow;
    void buildMenus();
    void buildFileMenu();
    void fillGraphMenu(QMenu& menu);
    /// Between the groups stand separators.
    QMenu& addMenu(const QString& caption, const std::vector<std::vector<MenuRow>>& groups);
    void buildToolbar();
    void buildCentre();
    StartPage* makeStartPage();
    void showRecentFiles();
    /// Fills File, Recover Discarded with the copies that there are.
    void showKeptCopies();
    void nameProgramInFrame();
    void SetGraphMenu();
    void addLine(const std::string& line, std::size_t dropped);
    void setHistoryShown(bool shown);
    void toggleHistory();
    void clearHistory();
    /// Runs a command; what it throws ends the command and not the program.
    void dispatch(const std::function<void()>& command);

    Program& m_program;
    Commands m_commands;
    QPointer<QWidget> m_blocker;
    QToolBar* m_toolbar = nullptr;
    QSplitter* m_splitter = nullptr;
    QStackedWidget* m_pages = nullptr; ///< the start page, or the case
    StartPage* m_start = nullptr;
    CaseOverview* m_overview = nullptr;
    QPlainTextEdit* txtMain = nullptr;
    QLabel* m_status = nullptr;
    std::array<QAction*, MenuEntries> m_actions{};
    std::array<QAction*, study::GraphKinds> m_graphs{};
    std::array<QAction*, 4> m_recent{};
    QAction* m_recentSeparator = nullptr;
    std::int16_t m_displayHistory = -1; ///< the setting last applied
    std::string m_font;                 ///< family last applied to the history pane
};

} // namespace telvo::app::ui
