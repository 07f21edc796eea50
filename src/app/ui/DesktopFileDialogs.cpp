// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/DesktopFileDialogs.h"

#include "base/ui/qtText.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>

namespace telvo::app::ui {

using telvo::ui::fromQt;
using telvo::ui::toQt;

namespace {

/// A file system of lower-case names keeps "case.tlv" too.
QString withLowerCase(const std::string& filter) {
    QString text = toQt(filter);
    const auto start = text.lastIndexOf(QStringLiteral("(*."));
    const QString pattern = text.mid(start + 1).chopped(1);
    if (start >= 0 && pattern != pattern.toLower())
        text.insert(text.size() - 1, ' ' + pattern.toLower());
    return text == QStringLiteral("All Files (*.*)") ? QStringLiteral("All Files (*)") : text;
}

QStringList filterList(const std::vector<std::string>& filters) {
    QStringList list;
    for (const std::string& filter : filters)
        list << withLowerCase(filter);
    return list;
}

std::optional<std::string> chosen(const QFileDialog& dialog) {
    const QStringList files = dialog.selectedFiles();
    if (files.isEmpty()) return std::nullopt;
    return fromQt(QDir::toNativeSeparators(files.first()));
}

} // namespace

std::optional<std::string> DesktopFileDialogs::openFile(std::string_view title,
                                                        std::string_view folder,
                                                        const std::vector<std::string>& filters) {
    QFileDialog dialog(QApplication::activeWindow(), toQt(title), toQt(folder));
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setNameFilters(filterList(filters));
    return dialog.exec() == QDialog::Accepted ? chosen(dialog) : std::nullopt;
}

std::optional<std::string> DesktopFileDialogs::saveFile(std::string_view title,
                                                        std::string_view proposal,
                                                        const std::vector<std::string>& filters,
                                                        std::string_view extension) {
    const QFileInfo start(toQt(proposal));
    QFileDialog dialog(QApplication::activeWindow(), toQt(title), start.path());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters(filterList(filters));
    if (!extension.empty()) dialog.setDefaultSuffix(toQt(extension));
    dialog.selectFile(start.fileName());
    return dialog.exec() == QDialog::Accepted ? chosen(dialog) : std::nullopt;
}

std::optional<std::string> DesktopFileDialogs::chooseFolder(std::string_view title,
                                                            std::string_view folder) {
    const QString path =
        QFileDialog::getExistingDirectory(QApplication::activeWindow(), toQt(title), toQt(folder));
    if (path.isEmpty()) return std::nullopt;
    return fromQt(QDir::toNativeSeparators(path));
}

} // namespace telvo::app::ui
