// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QSettings>
#include <string>

class QSplitter;
class QWidget;

namespace telvo::ui {

/// Remembers the sizes of windows and the positions of splitters, by their object names, in a file
/// of its own: they belong to the screen at hand, not to the user's preferences.
class WindowPlaces {
  public:
    /// An empty path remembers nothing.
    explicit WindowPlaces(const std::string& path);

    void save(const QWidget& window);
    bool restore(QWidget& window) const;
    void save(const QSplitter& splitter);
    bool restore(QSplitter& splitter) const;

  private:
    std::optional<QSettings> m_file;
};

} // namespace telvo::ui
