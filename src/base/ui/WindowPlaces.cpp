// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ui/WindowPlaces.h"

#include "base/files.h"
#include "base/ui/qtText.h"

#include <filesystem>
#include <QSplitter>
#include <QWidget>
#include <system_error>

namespace telvo::ui {

namespace {

QString key(const QWidget& widget, const char* what) {
    return widget.objectName() + '/' + what;
}

} // namespace

WindowPlaces::WindowPlaces(const std::string& path) {
    // A pipe would be waited for, and a huge file taken apart line by line.
    std::error_code error;
    const auto file = pathFromUtf8(path);
    const bool exists = std::filesystem::exists(file, error);
    const bool usable = !exists || (std::filesystem::is_regular_file(file, error) &&
                                    std::filesystem::file_size(file, error) < MaxSettingsBytes);
    if (!path.empty() && usable) m_file.emplace(toQt(path), QSettings::IniFormat);
}

void WindowPlaces::save(const QWidget& window) {
    if (m_file) m_file->setValue(key(window, "geometry"), window.saveGeometry());
}

bool WindowPlaces::restore(QWidget& window) const {
    return m_file && window.restoreGeometry(m_file->value(key(window, "geometry")).toByteArray());
}

void WindowPlaces::save(const QSplitter& splitter) {
    if (m_file) m_file->setValue(key(splitter, "position"), splitter.saveState());
}

bool WindowPlaces::restore(QSplitter& splitter) const {
    return m_file && splitter.restoreState(m_file->value(key(splitter, "position")).toByteArray());
}

} // namespace telvo::ui
