// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileDialogs.h"

#include <QString>
#include <QStringList>

namespace telvo::ui {
class WindowPlaces;
}

namespace telvo::app::ui {

/// The file dialogs of the desktop.
class DesktopFileDialogs : public FileDialogs {
  public:
    std::optional<std::string> openFile(std::string_view title, std::string_view folder,
                                        const std::vector<std::string>& filters) override;
    std::vector<std::string> openFiles(std::string_view title, std::string_view folder,
                                       const std::vector<std::string>& filters) override;
    std::optional<std::string> saveFile(std::string_view title, std::string_view proposal,
                                        const std::vector<std::string>& filters,
                                        std::string_view extension) override;
    std::optional<std::string> chooseFolder(std::string_view title,
                                            std::string_view folder) override;

    /// Where the size of the dialogs is remembered.
    void rememberIn(telvo::ui::WindowPlaces& places) { m_places = &places; }

  private:
    telvo::ui::WindowPlaces* m_places = nullptr;
};

/// The name under which a file is saved: with the extension of the chosen filter, unless it ends
/// with that of any filter already. A point in a name, as in "Panel 2.5m", begins no extension.
/// Given: extension  added where the filter takes all files and the name has no point
QString savedName(const QString& name, const QStringList& filters, const QString& chosenFilter,
                  const QString& extension);

} // namespace telvo::app::ui
