// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileDialogs.h"

namespace telvo::app::ui {

/// The file dialogs of the desktop.
class DesktopFileDialogs : public FileDialogs {
  public:
    std::optional<std::string> openFile(std::string_view title, std::string_view folder,
                                        const std::vector<std::string>& filters) override;
    std::optional<std::string> saveFile(std::string_view title, std::string_view proposal,
                                        const std::vector<std::string>& filters,
                                        std::string_view extension) override;
    std::optional<std::string> chooseFolder(std::string_view title,
                                            std::string_view folder) override;
};

} // namespace telvo::app::ui
