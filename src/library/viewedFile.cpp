// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/viewedFile.h"

#include "base/files.h"
#include "base/text.h"

#include <algorithm>

namespace telvo::library {

namespace {

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

/// Control characters that occur in texts; Ctrl-Z ended the files of older systems.
constexpr std::string_view TextControls = "\t\n\r\f\b\x1A\x1B";

bool isText(std::string_view bytes) {
    const auto strange = std::count_if(bytes.begin(), bytes.end(), [](char c) {
        return static_cast<unsigned char>(c) < ' ' && TextControls.find(c) == std::string::npos;
    });
    return bytes.find('\0') == std::string_view::npos &&
           static_cast<std::size_t>(strange) <= bytes.size() / 100;
}

std::string megabytes(std::uintmax_t bytes) {
    return std::to_string((bytes + (std::uintmax_t{1} << 20) - 1) >> 20) + " MB";
}

} // namespace

Result<std::string> readForView(const std::string& path) {
    std::error_code error;
    const auto file = pathFromUtf8(path);
    // Before anything is read: a pipe would never end.
    if (std::filesystem::exists(file, error) && !std::filesystem::is_regular_file(file, error))
        return Fault{"This is not a file that can be shown", path};
    const auto size = std::filesystem::file_size(file, error);
    if (!error && size > MaxViewedBytes)
        return Fault{"The file has " + megabytes(size) + "; files above " +
                         megabytes(MaxViewedBytes) + " are not shown",
                     path};
    auto bytes = readFile(path);
    if (!bytes) return bytes.fault();
    if (bytes->size() > MaxViewedBytes) return Fault{"The file is too large to be shown", path};
    if (!isText(*bytes)) return Fault{"The file is not a text file", path};
    std::string_view text = *bytes;
    if (text.starts_with(ByteOrderMark)) text.remove_prefix(ByteOrderMark.size());
    const std::string utf8 = asUtf8(text);
    std::string shown;
    for (const std::string_view line : splitLines(utf8))
        shown.append(line) += '\n';
    return shown;
}

std::vector<BrowseFilter> browseFilters(std::string_view extension) {
    std::vector<BrowseFilter> filters;
    const auto add = [&](std::string_view what, std::string_view patterns) {
        filters.push_back(
            {std::string(what) + " (" + std::string(patterns) + ")", std::string(patterns)});
    };
    if (!extension.empty()) add("Project Files", "*." + std::string(extension));
    add("KORV Project Files", "*.KRV");
    add("Text Files", "*.txt");
    add("All Files", "*");
    return filters;
}

std::vector<std::string> typedPatterns(std::string_view typed) {
    constexpr std::string_view separators = " ,;\t";
    std::vector<std::string> patterns;
    for (std::size_t at = 0; (at = typed.find_first_not_of(separators, at)) != typed.npos;) {
        const auto end = std::min(typed.find_first_of(separators, at), typed.size());
        std::string pattern(typed.substr(at, end - at));
        if (pattern.find_first_of("*?[") == std::string::npos) {
            const auto dot = pattern.find_last_of('.');
            if (dot == std::string::npos)
                pattern = "*." + pattern;
            else if (dot == 0)
                pattern.insert(0, 1, '*'); // else the name of one file
        }
        patterns.push_back(std::move(pattern));
        at = end;
    }
    if (patterns.empty()) patterns.emplace_back("*");
    return patterns;
}

} // namespace telvo::library
