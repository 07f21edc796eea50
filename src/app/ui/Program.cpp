// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/Program.h"

#include "app/platform/systemEditor.h"
#include "app/startUp.h"
#include "app/ui/dialogs/frmDisclaimer.h"
#include "app/ui/dialogs/frmUpdate.h"
#include "app/ui/dialogs/programIcon.h"
#include "app/ui/documentPaper.h"
#include "app/ui/frmMain.h"
#include "base/files.h"
#include "base/note.h"
#include "base/titles.h"
#include "base/ui/PrintDialogs.h"
#include "base/ui/qtText.h"
#include "help/ui/frmHelp.h"

#include <algorithm>
#include <filesystem>
#include <QApplication>
#include <QDate>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QFontDatabase>
#include <QFontInfo>
#include <QPrinter>
#include <QProcess>
#include <QStandardPaths>
#include <QTextDocument>
#include <QUrl>
#include <utility>

namespace telvo::app::ui {

using telvo::ui::fromQt;
using telvo::ui::toQt;

namespace fs = std::filesystem;

namespace {

constexpr std::string_view SettingsFile = "TELVO.INI";
constexpr std::string_view SettingsLock = "~TELVO.INI.lock"; // in the temporary data folder
constexpr std::string_view WindowsFile = "TELVO-windows.ini";
constexpr std::string_view HelpFolder = "help"; // in the install folder
constexpr std::string_view HelpFile = "TELVO.CHM";

/// The first of the four fonts that is installed, else the desktop's own.
std::string defaultFont() {
    const QStringList families = QFontDatabase::families();
    for (const char* name : {"Arial", "Courier New", "System", "Terminal"})
        if (families.contains(QLatin1String(name))) return name;
    // Its family may be an alias such as "Sans Serif"; the installed one is meant.
    return fromQt(QFontInfo(QFontDatabase::systemFont(QFontDatabase::GeneralFont)).family());
}

/// A folder of the desktop; a documents folder that the desktop names but nobody has used yet is
/// made.
std::optional<std::string> standardFolder(QStandardPaths::StandardLocation location) {
    const QString path = QStandardPaths::writableLocation(location);
    const bool homeless = QDir::homePath() == QDir::rootPath();
    if (homeless || path.isEmpty() || !QDir(path).mkpath(".")) return std::nullopt;
    return fromQt(QDir::toNativeSeparators(path));
}

/// The command line as one file name: quotes removed, and a relative name resolved before the
/// current folder changes.
std::string commandLineFile() {
    const QString line = QCoreApplication::arguments().mid(1).join(' ').remove('"').trimmed();
    if (line.isEmpty()) return {};
    return fromQt(QDir::toNativeSeparators(QDir::cleanPath(QFileInfo(line).absoluteFilePath())));
}

} // namespace

Surroundings Surroundings::ofDesktop(FileDialogs& files, telvo::ui::PrintDialogs& print) {
    const auto today = [] {
        const QDate date = QDate::currentDate();
        return std::chrono::year{date.year()} /
               std::chrono::month{static_cast<unsigned>(date.month())} /
               std::chrono::day{static_cast<unsigned>(date.day())};
    };
    return {{fromQt(QDir::toNativeSeparators(
                 toQt(installFolder(fromQt(QCoreApplication::applicationDirPath()))))),
             standardFolder(QStandardPaths::DocumentsLocation),
             standardFolder(QStandardPaths::DesktopLocation)},
            commandLineFile(),
            today,
            {}, // the desktop's own
            files,
            print};
}

Program::Program(Surroundings surroundings)
    : m_surroundings(std::move(surroundings)), m_messages(m_surroundings.box),
      m_folders(resolveFolders(m_surroundings.system)),
      m_settings(m_folders.DataFolder + std::string(SettingsFile),
                 {m_folders.DataFolder, defaultFont(), std::string(SystemEditor),
                  std::string(titles::Program),
                  m_folders.TempDataFolder + std::string(SettingsLock)},
                 m_messages),
      m_session(m_settings, m_messages, m_surroundings.fileDialogs),
      m_printer(m_messages, m_surroundings.printDialogs, m_surroundings.today),
      m_places(m_folders.DataFolder + std::string(WindowsFile)),
      m_recovery(m_folders.TempDataFolder, m_messages, [this]() -> std::optional<UnsavedCase> {
          if (auto draft = m_window ? m_window->commands().draft() : std::nullopt)
              return UnsavedCase{std::move(*draft), m_session.unsaved().kept};
          if (m_session.isSaved()) return std::nullopt;
          return m_session.unsaved();
      }) {
    m_session.onDiscard = [this](const UnsavedCase& discarded) {
        m_recovery.keepDiscarded(discarded);
    };
    m_messages.helpOf = [this](std::string_view text) -> std::function<void()> {
        const auto* window = helpWindow();
        const QString topic = window ? window->addressOfMessage(text) : QString();
        if (topic.isEmpty()) return {};
        return [this, topic] { showHelp(topic); };
    };
}

Program::~Program() = default;

void Program::start() {
    QApplication::setWindowIcon(programIcon()); // of every window and box
    m_decimalSymbol.force();
    prepareStart(m_folders, WindowsFile, m_settings, m_messages);
    loadMainWindow();
    m_session.FileNew();
    m_window->show();
    m_window->applyHistoryFont();
    if (const auto trouble = settingsTrouble(m_settings, m_folders)) m_messages.tell(*trouble);
    openFirstFiles(m_session, m_settings.values(), m_surroundings.commandLine);
    m_recovery.offer([this](UnsavedCase kept) { m_session.acceptRecovered(std::move(kept)); });
    m_window->showCase(); // an answer may have moved a copy that the lists name
}

void Program::loadMainWindow() {
    QDir::setCurrent(toQt(m_folders.InstallFolder));
    m_window = std::make_unique<frmMain>(*this);
    m_places.restore(*m_window);
    if (m_settings.values().MaxMainMenu == 1)
        m_window->setWindowState(m_window->windowState() | Qt::WindowMaximized);
    m_session.onChange = [this] {
        m_window->showCase();
        if (m_session.isSaved())
            m_recovery.keep(); // an older copy must not outlive the saved case
        else
            m_recovery.touch();
    };
    const FirstBoxes boxes = firstBoxes(m_settings.values(), m_surroundings.today());
    if (boxes.disclaimer) frmDisclaimer(m_settings, formServices()).exec();
    if (boxes.updateReminder) frmUpdate(m_settings, formServices()).exec();
}

void Program::shutDown() {
    if (m_help) m_help->close();
    m_places.save(*m_window);
    m_decimalSymbol.restore();
    (void)m_settings.SaveSettings(SettingsSaveMode::FileMenu);
    m_recovery.discard();
}

telvo::ui::FormServices Program::formServices() {
    return {m_messages, [this](const QString& topic) { showHelp(topic); }, &m_places,
            [this](const QString& form, const QString& control) {
                const auto* window = helpWindow();
                return window ? window->addressOf(form, control) : QString();
            },
            [this](const QString& topicFile, const QString& line) {
                const auto* window = helpWindow();
                return window ? window->addressOfLine(topicFile, line) : QString();
            }};
}

help::ui::frmHelp* Program::helpWindow() {
    if (m_help) return m_help.get();
    const fs::path folder = pathFromUtf8(m_folders.InstallFolder) / HelpFolder / "";
    auto book = help::HelpBook::open(utf8FromPath(folder));
    if (!book) return nullptr;
    help::ui::HelpActions actions;
    actions.print = [this](QTextDocument& page, QWidget* parent) {
        QPrinter printer;
        if (m_surroundings.printDialogs.choosePrinter(printer, parent, "Print Help"))
            page.print(&printer);
    };
    actions.openExternal = [](const QUrl& url) { QDesktopServices::openUrl(url); };
    m_help = std::make_unique<help::ui::frmHelp>(std::move(*book), m_messages, std::move(actions),
                                                 &m_places);
    return m_help.get();
}

void Program::showHelp(const QString& topic) {
    m_messages.history("Help: " + (topic.isEmpty() ? std::string("Contents") : fromQt(topic)));
    if (auto* window = helpWindow())
        window->showTopic(topic);
    else
        openDocument(m_folders.InstallFolder + std::string(HelpFile));
}

void Program::openDocument(const std::string& wanted) {
    const std::string path = documentForPaper(wanted, QLocale::system().territory());
    std::error_code error;
    if (!std::filesystem::exists(pathFromUtf8(path), error)) {
        m_messages.status("File not opened");
        m_messages.tell("Requested File not found: " + path);
        return;
    }
    note(m_messages, "Opening: " + path);
    const auto tellFailure = [this, path] {
        m_messages.status("File not opened");
        m_messages.tell("No program of this desktop opens " + path);
    };
    const QString opener = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
    if (opener.isEmpty()) {
        if (!QDesktopServices::openUrl(QUrl::fromLocalFile(toQt(path)))) tellFailure();
        return;
    }
    // The toolkit's own call does not learn that the desktop has no program for the file. Nobody
    // owns the process: a viewer that it has become outlives this program.
    auto* process = new QProcess;
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    QObject::connect(process, &QProcess::finished, m_window.get(),
                     [tellFailure](int code, QProcess::ExitStatus) {
                         if (code != 0) tellFailure();
                     });
    QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
    process->start(opener, {toQt(path)});
}

void Program::openInEditor(const std::string& path) {
    const QString editor = toQt(m_settings.values().ExternalEditor);
    // A program whose name has blanks in it, or one with arguments.
    QStringList command{editor};
    if (!QFileInfo(editor).isFile() && QStandardPaths::findExecutable(editor).isEmpty())
        command = QProcess::splitCommand(editor);
    if (command.isEmpty()) {
        m_messages.tell("No external editor is set. Check Utilities, Settings");
        return;
    }
    const QString program = command.takeFirst();
    if (QProcess::startDetached(program, command << toQt(path)))
        m_messages.history("External editor: " + path);
    else
        m_messages.tell("The external editor did not start: " + fromQt(editor));
}

} // namespace telvo::app::ui
