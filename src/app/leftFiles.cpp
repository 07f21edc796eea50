// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/leftFiles.h"

#include "base/files.h"
#include "base/temporaryFiles.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <system_error>

namespace telvo::app {

namespace {

bool isLowerCase(char c) {
    return c >= 'a' && c <= 'z';
}

bool isUpperCase(char c) {
    return c >= 'A' && c <= 'Z';
}

/// Whether a name is that of a file of window places under work: six letters behind it, drawn by
/// lot. What may be a word, as in a copy that somebody made, is none.
bool isUnfinished(std::string_view name, std::string_view windowsFile) {
    constexpr std::size_t letters = 6;
    if (name.size() != windowsFile.size() + 1 + letters || !name.starts_with(windowsFile))
        return false;
    name.remove_prefix(windowsFile.size());
    if (name.front() != '.') return false;
    name.remove_prefix(1);
    return std::all_of(
               name.begin(), name.end(),
               [](char c) { return isLowerCase(c) || isUpperCase(c) || (c >= '0' && c <= '9'); }) &&
           std::any_of(name.begin(), name.end(), isLowerCase) &&
           std::any_of(name.begin() + 1, name.end(), isUpperCase);
}

} // namespace

void removeLeftFiles(const Folders& folders, std::string_view windowsFile) {
    removeLeftTemporaryFiles(pathFromUtf8(folders.DataFolder));
    removeLeftTemporaryFiles(pathFromUtf8(folders.TempDataFolder));
    std::error_code error;
    for (std::filesystem::directory_iterator file(pathFromUtf8(folders.DataFolder), error), end;
         !error && file != end; file.increment(error)) {
        std::error_code kept;
        const auto written = file->last_write_time(kept);
        // No write takes an hour; a younger file may be that of another program.
        const bool old = !kept && std::filesystem::file_time_type::clock::now() - written >
                                      std::chrono::hours(1);
        if (old && isUnfinished(utf8FromPath(file->path().filename()), windowsFile))
            std::filesystem::remove(file->path(), kept);
    }
}

} // namespace telvo::app
