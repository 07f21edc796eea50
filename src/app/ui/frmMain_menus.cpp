// SPDX-License-Identifier: GPL-3.0-or-later
// The menus and the toolbar of frmMain.
#include "app/ui/frmMain.h"
#include "app/ui/icons.h"
#include "app/ui/Program.h"
#include "base/ui/qtText.h"

#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QToolBar>

namespace telvo::app::ui {

using telvo::ui::toQt;

/// One row of a menu. The object names are those that scripts know the entries by; they count the
/// places of the first menus and stay with their entry wherever it stands now.
struct frmMain::MenuRow {
    MenuEntry entry;
    const char* objectName;
    QString caption;
    std::function<void()> command; ///< empty: a menu of its own
    QString tip;
    QKeySequence shortcut = {};
};

QAction& frmMain::action(MenuEntry entry) const {
    QAction* found = m_actions.at(static_cast<std::size_t>(entry));
    Q_ASSERT(found);
    return *found;
}

QAction& frmMain::graphAction(study::GraphKind kind) const {
    return *m_graphs.at(static_cast<std::size_t>(kind));
}

QAction& frmMain::recentFileAction(int slot) const {
    return *m_recent.at(static_cast<std::size_t>(slot - 1));
}

void frmMain::buildMenus() {
    buildFileMenu();
    Commands& c = m_commands;
    using enum MenuEntry;
    addMenu(tr("&Input"), {{{Description, "mnuEditItem_0", tr("Project &Description..."),
                             [&c] { c.editDescription(); }, tr("Title and description of the case"),
                             QKeySequence("Ctrl+D")},
                            {Parameters, "mnuEditItem_1", tr("Project &Parameters..."),
                             [&c] { c.editParameters(); }, tr("The parameters of the case"),
                             QKeySequence("Ctrl+E")}}});
    addMenu(tr("&Output"), {{{StabilityFactors, "mnuCalcItem_0", tr("Stability Factors..."),
                              [&c] { c.stabilityFactors(); },
                              tr("Run the analysis and show the report"), QKeySequence("F5")}},
                            {{Graph, "mnuCalcItem_2", tr("Graph"), {}, {}}}});
    fillGraphMenu(*action(Graph).menu());
    using study::ui::StudyKind;
    addMenu(
        tr("&Studies"),
        {{{WhatMatters, "mnuStudyItem_0", tr("&What Matters..."),
           [&c] { c.studies(StudyKind::WhatMatters); },
           tr("Which inputs move a result most, as a tornado")},
          {TableOfValues, "mnuStudyItem_1", tr("&Table of Values..."),
           [&c] { c.studies(StudyKind::TableOfValues); },
           tr("Results over one to four inputs, with curve or map")},
          {FindValue, "mnuStudyItem_2", tr("&Find a Value..."),
           [&c] { c.studies(StudyKind::FindValue); },
           tr("Which value of an input makes a result reach a target")},
          {DesignChart, "mnuStudyItem_3", tr("&Design Chart..."),
           [&c] { c.studies(StudyKind::DesignChart); },
           tr("The required value of one input over another")},
          {Scenarios, "mnuStudyItem_5", tr("&Scenarios..."),
           [&c] { c.studies(StudyKind::Scenarios); },
           tr("Named sets of changed inputs side by side")},
          {Compare, "mnuStudyItem_6", tr("&Compare..."), [&c] { c.studies(StudyKind::Compare); },
           tr("This case, its scenarios and other files side by side")},
          {HowSure, "mnuStudyItem_7", tr("&How Sure..."), [&c] { c.studies(StudyKind::HowSure); },
           tr("The share of samples that miss a limit when inputs scatter")},
          {ShareCurve, "mnuStudyItem_8", tr("Share o&ver a Variable..."),
           [&c] { c.studies(StudyKind::ShareCurve); },
           tr("How that share goes with the width of a barrier")}}});
    addMenu(tr("&Utilities"),
            {{{Settings, "mnuUtilItem_0", tr("&Settings..."), [&c] { c.settings(); },
               tr("Preferences of the program")},
              {Options, "mnuUtilItem_1", tr("&Options..."), [&c] { c.options(); },
               tr("Options of input, output and plots")},
              {UnitConversion, "mnuUtilItem_2", tr("&Unit Conversion..."),
               [&c] { c.unitConversion(); }, tr("Convert values between units")},
              {FileConversion, "mnuUtilItem_3", tr("&File Conversion..."),
               [&c] { c.fileConversion(); }, tr("Convert the case to the other unit system")}},
             {{ClearHistory, "mnuUtilItem_5", tr("&Clear History Window"),
               [this] { clearHistory(); }, tr("Empty the history window")},
              {ShowHistory, "mnuUtilItem_6", tr("Close History &Window"),
               [this] { toggleHistory(); }, tr("Hide the history window, or show it again")},
              {CopyHistory, "mnuUtilItem_7", tr("Co&py History Window"), [&c] { c.copyHistory(); },
               tr("Copy the lines of the history window to the clipboard")}}});
    addMenu(tr("&Help"),
            {{{HelpContents, "mnuHelpItem_0", tr("Help &Contents..."), [&c] { c.helpContents(); },
               tr("Contents of the help"), QKeySequence::HelpContents},
              {HelpIndex, "mnuHelpItem_1", tr("Help &Index..."), [&c] { c.helpIndex(); },
               tr("Index of the help")},
              {HelpPdf, "mnuHelpItem_2", tr("Help in &PDF format..."), [&c] { c.helpPdf(); },
               tr("The manual as a document")}},
             {{ResourceFiles, "mnuHelpItem_4", tr("&Resource Files..."),
               [&c] { c.resourceFiles(); }, tr("Manuals, notes and the template of case tables")}},
             {{Disclaimer, "mnuHelpItem_6", tr("&Disclaimer..."), [&c] { c.disclaimer(); },
               tr("What the results are worth")}},
             {{Updates, "mnuHelpItem_8", tr("Program Updates..."), [&c] { c.update(); },
               tr("Where updates are found")}},
             {{About, "mnuHelpItem_10", tr("&About the Program..."), [&c] { c.about(); },
               tr("Version and license")}}});
}

void frmMain::buildFileMenu() {
    Commands& c = m_commands;
    using enum MenuEntry;
    QMenu& file = addMenu(
        tr("&File"),
        {{{New, "mnuFileItem_0", tr("&New"), [&c] { c.fileNew(); }, tr("Begin a new case"),
           QKeySequence::New},
          {Open, "mnuFileItem_1", tr("&Open..."), [&c] { c.fileOpen(); }, tr("Open a project file"),
           QKeySequence::Open},
          {Save, "mnuFileItem_2", tr("&Save "), [&c] { c.fileSave(false); }, tr("Save the case"),
           QKeySequence::Save},
          {SaveAs, "mnuFileItem_3", tr("Save &As..."), [&c] { c.fileSave(true); },
           tr("Save the case under another name"), QKeySequence("Ctrl+Shift+S")}},
         {{ImportSibling, "mnuFileItem_5", tr("&Import KORV Project..."), [&c] { c.importKORV(); },
           tr("Import the case in a project file of the sibling program")}},
         {{RecoverDiscarded, "mnuFileRecover", tr("Recover &Discarded"), {}, {}}},
         {{PrinterSetup, "mnuFileItem_7", tr("Printer Set&up..."), [&c] { c.printerSetup(); },
           tr("Choose the printer and the orientation")},
          {Print, "mnuFileItem_8", tr("&Print"), [&c] { c.print(); },
           tr("Print the input of the case"), QKeySequence::Print},
          {PrintPreview, "mnuFileItem_9", tr("Print Pre&view..."), [&c] { c.preview(); },
           tr("Show the input of the case as it is printed")}},
         {{ViewSourceFiles, "mnuFileItem_11", tr("&View Source Files..."),
           [&c] { c.viewSourceFiles(); }, tr("Read project files and other text files")}},
         {{Exit, "mnuFileItem_13", tr("E&xit"), [this] { close(); }, tr("End the program"),
           QKeySequence::Quit}}});
    connect(&file, &QMenu::aboutToShow, this, &frmMain::showKeptCopies);
    m_recentSeparator = file.addSeparator();
    for (int slot = 1; slot <= static_cast<int>(m_recent.size()); ++slot) {
        QAction* recent = file.addAction(QString());
        recent->setObjectName(QStringLiteral("mnuFileArray_%1").arg(slot));
        recent->setVisible(false);
        connect(recent, &QAction::triggered, this,
                [this, slot] { dispatch([this, slot] { m_commands.openRecent(slot); }); });
        m_recent[static_cast<std::size_t>(slot - 1)] = recent;
    }
}

void frmMain::fillGraphMenu(QMenu& menu) {
    for (std::size_t index = 0; index < m_graphs.size(); ++index) {
        const auto kind = static_cast<study::GraphKind>(index);
        QAction* graph = menu.addAction(toQt(study::GraphRows[index].caption));
        graph->setObjectName(QStringLiteral("mnuCalcGrafItem_%1").arg(index));
        graph->setToolTip(tr("How the stability factor answers to this choice"));
        connect(graph, &QAction::triggered, this,
                [this, kind] { dispatch([this, kind] { m_commands.graph(kind); }); });
        m_graphs[index] = graph;
    }
}

QMenu& frmMain::addMenu(const QString& caption, const std::vector<std::vector<MenuRow>>& groups) {
    QMenu* menu = menuBar()->addMenu(caption);
    menu->setToolTipsVisible(true);
    for (const auto& group : groups) {
        if (!menu->isEmpty()) menu->addSeparator();
        for (const MenuRow& row : group) {
            QAction* action = nullptr;
            if (row.command) {
                action = menu->addAction(row.caption);
                connect(action, &QAction::triggered, this,
                        [this, command = row.command] { dispatch(command); });
            } else {
                QMenu* below = menu->addMenu(row.caption);
                below->setToolTipsVisible(true);
                action = below->menuAction();
            }
            action->setObjectName(row.objectName);
            action->setToolTip(row.tip);
            action->setStatusTip({});
            action->setShortcut(row.shortcut);
            m_actions.at(static_cast<std::size_t>(row.entry)) = action;
        }
    }
    return *menu;
}

void frmMain::buildToolbar() {
    m_toolbar = addToolBar(tr("Toolbar"));
    m_toolbar->setObjectName("tlbMain");
    m_toolbar->setMovable(false);
    m_toolbar->setContextMenuPolicy(Qt::PreventContextMenu);
    m_toolbar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    struct Button {
        MenuEntry entry;
        ToolIcon icon;
        QString caption;
    };
    const std::vector<Button> groups[] = {
        {{MenuEntry::New, ToolIcon::New, tr("New")},
         {MenuEntry::Open, ToolIcon::Open, tr("Open")},
         {MenuEntry::Save, ToolIcon::Save, tr("Save")},
         {MenuEntry::Print, ToolIcon::Print, tr("Print")}},
        {{MenuEntry::Description, ToolIcon::Description, tr("Description")},
         {MenuEntry::Parameters, ToolIcon::Parameters, tr("Parameters")},
         {MenuEntry::StabilityFactors, ToolIcon::Factors, tr("Stability Factors")}},
        {{MenuEntry::HelpContents, ToolIcon::Help, tr("Help")}}};
    for (const auto& group : groups) {
        if (!m_toolbar->actions().isEmpty()) m_toolbar->addSeparator();
        for (const Button& button : group) {
            QAction& command = action(button.entry);
            command.setIcon(toolIcon(button.icon));
            command.setIconText(button.caption);
            m_toolbar->addAction(&command);
        }
    }
}

} // namespace telvo::app::ui
