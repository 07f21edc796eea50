// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace telvo {

/// The door to the dialogs that name a file or a folder. The desktop program opens the system's,
/// the tests answer from a list. Every function returns an absolute path, or nothing for Cancel.
class FileDialogs {
  public:
    virtual ~FileDialogs() = default;

    /// Filters are like "TLV Files (*.TLV)".
    virtual std::optional<std::string> openFile(std::string_view title, std::string_view folder,
                                                const std::vector<std::string>& filters) = 0;
    /// Several files; none for Cancel.
    virtual std::vector<std::string> openFiles(std::string_view title, std::string_view folder,
                                               const std::vector<std::string>& filters) = 0;
    /// Asks before a file is replaced.
    /// Given: proposal   folder and name to begin with
    ///        extension  added to a name without one; may be empty
    virtual std::optional<std::string> saveFile(std::string_view title, std::string_view proposal,
                                                const std::vector<std::string>& filters,
                                                std::string_view extension) = 0;
    virtual std::optional<std::string> chooseFolder(std::string_view title,
                                                    std::string_view folder) = 0;
};

} // namespace telvo
