// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/frmMain.h"

#include "app/ui/CaseOverview.h"
#include "app/ui/Program.h"
#include "app/ui/StartPage.h"
#include "base/titles.h"
#include "base/ui/qtText.h"
#include "base/ui/screenRoom.h"

#include <exception>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDir>
#include <QDropEvent>
#include <QFileInfo>
#include <QFontDatabase>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTextBlock>
#include <QTimer>
#include <QToolBar>
#include <QWindow>
#include <utility>

namespace telvo::app::ui {

using telvo::ui::fromQt;
using telvo::ui::toQt;

namespace {

/// A path that makes no menu wider than the screen: its folders in the middle go first.
QString shortened(const QString& path) {
    const QFontMetrics metrics(QApplication::font("QMenu"));
    return metrics.elidedText(path, Qt::ElideMiddle, metrics.averageCharWidth() * 70);
}

/// A tool tip would take a name like "<b>" for markup.
QString plainTip(const QString& text) {
    return QStringLiteral("<span>%1</span>").arg(text.toHtmlEscaped());
}

} // namespace

frmMain::frmMain(Program& program) : m_program(program), m_commands(program, *this) {
    setObjectName("frmMain");
    setAcceptDrops(true);
    buildMenus();
    buildToolbar();
    buildCentre();
    m_status = new QLabel(this);
    m_status->setObjectName("lblStatus");
    m_status->setTextFormat(Qt::PlainText);
    m_status->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed); // a long path widens nothing
    statusBar()->addWidget(m_status, 1);
    resize(sizeHint()
               .expandedTo({fontMetrics().averageCharWidth() * 150, fontMetrics().height() * 42})
               .boundedTo(telvo::ui::roomOnScreen(*this)));

    DesktopMessages& messages = m_program.messages();
    for (const std::string& line : messages.lines().lines())
        addLine(line, 0); // what came before there was a window
    messages.onLine = [this](const std::string& line, std::size_t dropped) {
        addLine(line, dropped);
    };
    messages.onStatus = [this](const std::string& status) { m_status->setText(toQt(status)); };
    applySettings();
    showCase();
}

frmMain::~frmMain() {
    m_program.messages().onLine = {};
    m_program.messages().onStatus = {};
}

void frmMain::buildCentre() {
    m_splitter = new QSplitter(Qt::Vertical, this);
    m_splitter->setObjectName("splMain");
    m_splitter->setChildrenCollapsible(false);
    m_pages = new QStackedWidget(m_splitter);
    m_pages->setObjectName("stkCase");
    m_start = makeStartPage();
    m_overview = new CaseOverview(m_program.session(), m_program.settings(), m_pages);
    m_pages->addWidget(m_start);
    m_pages->addWidget(m_overview);
    txtMain = new QPlainTextEdit(m_splitter);
    txtMain->setObjectName("txtMain");
    txtMain->setAccessibleName(tr("History"));
    txtMain->setToolTip(tr("Commands and messages of this session"));
    txtMain->setReadOnly(true);
    txtMain->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    txtMain->setUndoRedoEnabled(false);
    // On a low screen the case needs the room more than the history does.
    txtMain->setMinimumHeight(fontMetrics().height() * 3);
    m_splitter->addWidget(m_pages);
    m_splitter->addWidget(txtMain);
    m_splitter->setStretchFactor(0, 1);
    m_splitter->setStretchFactor(1, 0); // a larger window is for the case
    m_splitter->setSizes({1000, 9 * fontMetrics().height()});
    setCentralWidget(m_splitter);
    if (auto* places = m_program.formServices().places) places->restore(*m_splitter);
}

StartPage* frmMain::makeStartPage() {
    Commands& c = m_commands;
    StartActions actions;
    actions.newCase = [this, &c](std::int16_t units) {
        dispatch([&c, units] { c.newCase(units); });
    };
    actions.open = [this, &c] { dispatch([&c] { c.fileOpen(); }); };
    actions.tutorial = [this, &c] { dispatch([&c] { c.tutorial(); }); };
    actions.openRecent = [this, &c](int slot) { dispatch([&c, slot] { c.openRecent(slot); }); };
    actions.openExample = [this, &c](const std::string& path) {
        dispatch([&c, path] { c.openNamed(path); });
    };
    actions.bringBack = [this, &c](const KeptCopy& copy) {
        dispatch([&c, copy] { c.bringBack(copy); });
    };
    return new StartPage(std::move(actions), exampleFiles(m_program.folders()), m_pages);
}

void frmMain::addLine(const std::string& line, std::size_t dropped) {
    txtMain->appendPlainText(toQt(line));
    if (dropped == 0) return;
    QTextCursor oldest(txtMain->document());
    oldest.movePosition(QTextCursor::NextBlock, QTextCursor::KeepAnchor, static_cast<int>(dropped));
    oldest.removeSelectedText();
}

void frmMain::setHistoryShown(bool shown) {
    txtMain->setVisible(shown);
    action(MenuEntry::ShowHistory)
        .setText(shown ? tr("Close History &Window") : tr("Restore History &Window"));
}

void frmMain::toggleHistory() {
    const bool show = !txtMain->isVisibleTo(this);
    setHistoryShown(show);
    m_program.messages().status(show ? "History window restored" : "History window closed");
}

void frmMain::clearHistory() {
    m_program.messages().lines().clear();
    txtMain->clear();
    m_program.messages().status("History window cleared");
}

void frmMain::applySettings() {
    const Settings& settings = m_program.settings().values();
    // A pane that the menu closed stays closed when another setting changes.
    if (std::exchange(m_displayHistory, settings.DisplayHistoryWin) != settings.DisplayHistoryWin)
        setHistoryShown(settings.DisplayHistoryWin == 1);
    m_toolbar->setVisible(settings.EnableMainMenuToolbar == 1);
    const std::size_t dropped =
        m_program.messages().lines().setCapacity(static_cast<std::size_t>(settings.MaxDisplaySize));
    if (dropped > 0) {
        txtMain->clear();
        for (const std::string& line : m_program.messages().lines().lines())
            addLine(line, 0);
    }
    showRecentFiles();
}

void frmMain::applyHistoryFont() {
    const Settings& settings = m_program.settings().values();
    const QString family = toQt(settings.DisplayFontName);
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    if (QFontDatabase::hasFamily(family))
        font.setFamily(family);
    else
        m_program.messages().tell("Invalid font selection:" + settings.DisplayFontName);
    font.setPointSizeF(static_cast<qreal>(settings.DisplayFontSize));
    font.setBold(settings.DisplayFontBold != 0);
    font.setItalic(settings.DisplayFontItalic != 0);
    txtMain->setFont(font);
}

void frmMain::showKeptCopies() {
    QMenu& menu = *action(MenuEntry::RecoverDiscarded).menu();
    menu.clear();
    int number = 0;
    for (const KeptCopy& copy : m_program.recovery().copies()) {
        const QString name = QFileInfo(copy.name).fileName();
        const QString time = QLocale().toString(copy.time, QLocale::ShortFormat);
        QAction* one = menu.addAction(QStringLiteral("&%1 %2").arg(++number).arg(
            (copy.discarded ? tr("%1, discarded %2") : tr("%1, left unsaved %2"))
                .arg(shortened(name), time)
                .replace('&', "&&")));
        one->setObjectName(QStringLiteral("mnuFileRecover_%1").arg(number));
        one->setToolTip(plainTip(copy.name));
        connect(one, &QAction::triggered, this,
                [this, copy] { dispatch([this, copy] { m_commands.bringBack(copy); }); });
    }
    menu.setEnabled(number > 0);
}

void frmMain::showRecentFiles() {
    const Settings& settings = m_program.settings().values();
    bool any = false;
    for (int slot = 1; slot <= static_cast<int>(m_recent.size()); ++slot) {
        // With the list switched off the menu stays without it.
        QString caption =
            settings.KeepFileNames == 1 ? toQt(recentFileCaption(settings, slot)) : QString();
        QAction& recent = recentFileAction(slot);
        recent.setVisible(!caption.isEmpty());
        any = any || !caption.isEmpty();
        recent.setToolTip(plainTip(caption));
        recent.setText('&' + toQt(std::to_string(slot)) + ' ' +
                       shortened(caption).replace('&', "&&"));
    }
    m_recentSeparator->setVisible(any);
}

void frmMain::SetGraphMenu() {
    const ProjectSession& session = m_program.session();
    for (std::size_t index = 0; index < m_graphs.size(); ++index)
        m_graphs[index]->setEnabled(
            !session.isEmpty() && !session.isUnsettled() &&
            study::isOffered(static_cast<study::GraphKind>(index), session.project().Input));
}

void frmMain::showCase() {
    const ProjectSession& session = m_program.session();
    setWindowTitle(toQt(session.windowTitle()));
    nameProgramInFrame();
    m_overview->showCase();
    m_commands.graphsFollow();
    if (session.isUntouched())
        m_start->showLists(m_program.settings(), m_program.recovery().copies());
    m_pages->setCurrentWidget(session.isUntouched() ? static_cast<QWidget*>(m_start) : m_overview);
    m_commands.markOutdated();
    showRecentFiles();
    showKeptCopies();
    SetGraphMenu();
}

// Of this window alone: a display name of the application would stand behind every title.
void frmMain::nameProgramInFrame() {
    if (windowHandle())
        windowHandle()->setTitle(windowTitle() + QStringLiteral(" \u2014 ") +
                                 toQt(titles::Program));
}

void frmMain::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    nameProgramInFrame();
}

void frmMain::setBlockedBy(QWidget* form) {
    m_blocker = form;
    menuBar()->setEnabled(!form);
    m_toolbar->setEnabled(!form);
    centralWidget()->setEnabled(!form);
}

void frmMain::dispatch(const std::function<void()>& command) {
    if (m_blocker) { // a shortcut came through
        m_blocker->raise();
        m_blocker->activateWindow();
        return;
    }
    try {
        command();
    } catch (const std::exception& error) {
        m_program.messages().tell("The command could not be finished: " +
                                  std::string(error.what()));
    }
}

namespace {

/// The one file of a drag; empty when it is none, several, or not on this computer.
QString droppedFile(const QMimeData& data) {
    const QList<QUrl> urls = data.urls();
    return urls.size() == 1 ? urls.first().toLocalFile() : QString();
}

} // namespace

void frmMain::dragEnterEvent(QDragEnterEvent* event) {
    if (!m_blocker && !droppedFile(*event->mimeData()).isEmpty()) event->acceptProposedAction();
}

void frmMain::dropEvent(QDropEvent* event) {
    const QString file = droppedFile(*event->mimeData());
    if (file.isEmpty()) return;
    event->acceptProposedAction();
    activateWindow();
    // The program that it was dragged from waits until this returns; the question may take longer.
    QTimer::singleShot(0, this, [this, path = fromQt(QDir::toNativeSeparators(file))] {
        dispatch([this, &path] { m_commands.openNamed(path); });
    });
}

void frmMain::closeEvent(QCloseEvent* event) {
    if (m_blocker) {
        m_blocker->raise();
        m_blocker->activateWindow();
        event->ignore();
        return;
    }
    if (!m_program.session().mayClose() || !m_commands.mayCloseStudies()) {
        event->ignore();
        return;
    }
    m_commands.closeViews();
    if (auto* places = m_program.formServices().places) places->save(*m_splitter);
    m_program.shutDown();
    event->accept();
}

} // namespace telvo::app::ui
