// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/resourceList.h"

#include "base/files.h"
#include "base/text.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace telvo::library {

namespace {

constexpr std::size_t MaxTitle = 200; // characters; longer ones are no titles

bool isPlainName(std::string_view file) {
    return file.find_first_of("/\\:") == std::string_view::npos && file != "." && file != "..";
}

} // namespace

Result<std::vector<Resource>> readResourceText(std::string_view bytes, std::string_view name) {
    std::vector<Resource> resources;
    const std::string text = asUtf8(bytes);
    int number = 0;
    for (const std::string_view line : splitLines(text)) {
        const std::string where = std::string(name) + ", line " + std::to_string(++number);
        const auto words = trimmed(line);
        if (words.empty() || words.starts_with('#')) continue;
        const auto mark = words.find(';');
        if (mark == std::string_view::npos)
            return Fault{"a file name, \";\" and a title belong here", where};
        const auto file = trimmed(words.substr(0, mark));
        const auto title = trimmed(words.substr(mark + 1));
        if (file.empty() || title.empty() || file.find('\0') != std::string_view::npos)
            return Fault{"a file name, \";\" and a title belong here", where};
        if (!isPlainName(file)) return Fault{"a document is named without its folder", where};
        if (characterCount(title) > MaxTitle) return Fault{"the title is too long", where};
        if (resources.size() == MaxResources)
            return Fault{"there are more than " + std::to_string(MaxResources) + " documents",
                         where};
        resources.push_back({std::string(file), std::string(title)});
    }
    return resources;
}

Result<std::vector<Resource>> readResourceList(const std::string& path) {
    auto bytes = readFile(path);
    if (!bytes) return bytes.fault();
    return readResourceText(*bytes, path);
}

bool isTable(std::string_view file) {
    constexpr std::array<std::string_view, 4> extensions = {".xlsx", ".csv", ".ods", ".xls"};
    std::string lower(file);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return std::any_of(extensions.begin(), extensions.end(),
                       [&](std::string_view extension) { return lower.ends_with(extension); });
}

} // namespace telvo::library
