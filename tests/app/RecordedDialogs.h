// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileDialogs.h"

#include <deque>

namespace telvo::test {

/// Answers file dialogs from a list (Cancel when it is empty) and remembers what was asked.
struct RecordedDialogs : FileDialogs {
    std::deque<std::optional<std::string>> answers;
    std::vector<std::string> asked; // "title|folder or proposal|first filter"

    std::optional<std::string> openFile(std::string_view title, std::string_view folder,
                                        const std::vector<std::string>& filters) override {
        return next(title, folder, filters.empty() ? "" : filters.front());
    }
    /// Takes answers up to a Cancel or their end.
    std::vector<std::string> openFiles(std::string_view title, std::string_view folder,
                                       const std::vector<std::string>& filters) override {
        std::vector<std::string> paths;
        for (auto path = openFile(title, folder, filters); path;
             path = answers.empty() ? std::nullopt : openFile(title, folder, filters))
            paths.push_back(*path);
        return paths;
    }
    std::optional<std::string> saveFile(std::string_view title, std::string_view proposal,
                                        const std::vector<std::string>& filters,
                                        std::string_view) override {
        return next(title, proposal, filters.empty() ? "" : filters.front());
    }
    std::optional<std::string> chooseFolder(std::string_view title,
                                            std::string_view folder) override {
        return next(title, folder, "");
    }

  private:
    std::optional<std::string> next(std::string_view title, std::string_view start,
                                    std::string_view filter) {
        asked.push_back(std::string(title) + '|' + std::string(start) + '|' + std::string(filter));
        if (answers.empty()) return std::nullopt;
        auto answer = answers.front();
        answers.pop_front();
        return answer;
    }
};

} // namespace telvo::test
