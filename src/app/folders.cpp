// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/folders.h"

#include "base/files.h"
#include "base/text.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace telvo::app {

namespace fs = std::filesystem;

namespace {

std::string withSeparator(const fs::path& path) {
    std::string text = utf8FromPath(path);
    const auto separator = static_cast<char>(fs::path::preferred_separator);
    if (!text.ends_with(separator) && !text.ends_with('/')) text += separator;
    return text;
}

/// The folder, created one level deep when it is missing; the fallback when that fails.
std::string createdOr(const fs::path& folder, const std::string& fallback,
                      std::vector<std::string>& fallbacks) {
    std::error_code error;
    if (fs::is_directory(folder, error) || fs::create_directory(folder, error))
        return withSeparator(folder);
    fallbacks.push_back("Folder " + utf8FromPath(folder) + " cannot be created; " + fallback +
                        " is used instead");
    return fallback;
}

bool isExampleName(const std::string& name) {
    constexpr std::string_view extension = ".tlv";
    if (name.starts_with('.') || name.size() <= extension.size()) return false;
    return std::equal(
        extension.begin(), extension.end(), name.end() - extension.size(),
        [](char wanted, char c) { return wanted == (c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c); });
}

bool holdsInstalledFiles(const fs::path& folder) {
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = utf8FromPath(entry->path().filename());
        if (isExampleName(name) || name == "TELVO.CHM" || name == "TELVO.PDF") return true;
    }
    return false;
}

} // namespace

std::string installFolder(const std::string& programFolder) {
    const fs::path program = pathFromUtf8(programFolder);
    // The last is build/<preset>/docs, seen from the desktop program in build/<preset>/src/app/ui.
    for (const char* folder : {".", "../share/telvo", "../../../docs"})
        if (holdsInstalledFiles(program / folder))
            return utf8FromPath((program / folder / "").lexically_normal());
    return programFolder;
}

Folders resolveFolders(const SystemFolders& system) {
    Folders folders;
    folders.InstallFolder = withSeparator(pathFromUtf8(system.program));
    folders.DataFolder = folders.TempDataFolder = folders.InstallFolder;
    const bool hasDocuments = system.documents && !system.documents->empty();
    const auto& base = hasDocuments ? system.documents : system.desktop;
    if (!base || base->empty()) {
        folders.fallbacks.push_back("No documents folder is known; " + folders.InstallFolder +
                                    " is used instead");
        return folders;
    }
    const fs::path data = pathFromUtf8(*base) / "MyBODRA";
    folders.DataFolder = createdOr(data, folders.InstallFolder, folders.fallbacks);
    folders.TempDataFolder = createdOr(data / "Temp", folders.InstallFolder, folders.fallbacks);
    return folders;
}

bool copyTextFile(const std::string& from, const std::string& to, Messages& messages) {
    std::error_code error;
    if (!fs::exists(pathFromUtf8(from), error)) {
        messages.tell("Requested File not found: " + from);
        return false;
    }
    const auto bytes = readFile(from);
    if (!bytes) return false;
    std::string text;
    for (const auto line : splitLines(*bytes))
        text.append(line).append(LineBreak);
    return static_cast<bool>(writeFile(to, text));
}

void copyExampleFiles(const Folders& folders, Messages& messages) {
    std::error_code error;
    std::vector<std::string> names;
    for (fs::directory_iterator entry(pathFromUtf8(folders.InstallFolder), error), end;
         !error && entry != end; entry.increment(error))
        names.push_back(utf8FromPath(entry->path().filename()));
    for (const std::string& name : names) {
        const std::string target = folders.DataFolder + name;
        if (!isExampleName(name) || fs::exists(pathFromUtf8(target), error)) continue;
        copyTextFile(folders.InstallFolder + name, target, messages);
    }
}

std::vector<std::string> exampleFiles(const Folders& folders) {
    std::error_code error;
    std::vector<std::string> paths;
    for (fs::directory_iterator entry(pathFromUtf8(folders.InstallFolder), error), end;
         !error && entry != end; entry.increment(error)) {
        const std::string name = utf8FromPath(entry->path().filename());
        if (!isExampleName(name) || name.starts_with("tutorial-")) continue;
        const std::string copy = folders.DataFolder + name;
        paths.push_back(fs::exists(pathFromUtf8(copy), error) ? copy
                                                              : folders.InstallFolder + name);
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::string copyExamplesNote(const std::string& DataFolder) {
    return "When this option is enabled, every time the program runs, it will try to copy the "
           "example files from the install directory to the " +
           DataFolder +
           " directory. The modified files will not be overridden, but missing files will be "
           "replaced. ";
}

} // namespace telvo::app
