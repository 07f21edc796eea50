// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/association.h"
#include "app/ui/dialogs/associate.h"
#include "base/files.h"
#include "base/ui/qtText.h"

#include <filesystem>
#include <QProcess>

namespace telvo::app::ui {

namespace {

using telvo::ui::toQt;

constexpr int ToolTimeout = 10000; // ms; a tool that hangs must not hold the program

Status writeInItsFolder(const std::string& path, const std::string& text) {
    std::error_code error;
    std::filesystem::create_directories(pathFromUtf8(path).parent_path(), error);
    if (error) return Fault{"The folder cannot be created: " + error.message(), path};
    return writeFile(path, text);
}

/// Runs a tool of the desktop. Where it is not installed, the desktop finds the files by itself.
void runTool(const QString& tool, const QStringList& arguments, const std::string& dataHome) {
    QProcess process;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", toQt(dataHome));
    process.setProcessEnvironment(environment);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(tool, arguments);
    if (process.waitForFinished(ToolTimeout) || process.state() == QProcess::NotRunning) return;
    process.kill();
    process.waitForFinished();
}

} // namespace

Status associateWithSystem(const std::string& extension, const std::string& program,
                           const std::string& dataHome) {
    if (dataHome.empty()) return Fault{"The folder of the user's desktop files is not known", {}};
    const AssociationFiles files = associationFiles(dataHome);
    if (auto written = writeInItsFolder(files.mimePackage, mimePackage(extension)); !written)
        return written;
    if (auto written = writeInItsFolder(files.desktopEntry, desktopEntry(program)); !written)
        return written;
    runTool("update-mime-database", {toQt(dataHome + "/mime")}, dataHome);
    runTool("update-desktop-database", {toQt(dataHome + "/applications")}, dataHome);
    runTool("xdg-mime", {"default", toQt(DesktopEntryId), toQt(CaseMimeType)}, dataHome);
    return success();
}

} // namespace telvo::app::ui
