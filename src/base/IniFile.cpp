// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/IniFile.h"

#include "base/text.h"

#include <algorithm>

namespace telvo {

namespace {

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Names are ASCII; other characters have to be the same.
bool sameName(std::string_view a, std::string_view b) {
    a = trimmed(a);
    b = trimmed(b);
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lower(x) == lower(y); });
}

/// Name of the section that a line opens; nothing when it opens none.
std::optional<std::string_view> sectionOf(std::string_view line) {
    line = trimmed(line);
    if (!line.starts_with('[')) return std::nullopt;
    const auto end = line.find(']');
    return end == std::string_view::npos ? std::nullopt : std::optional(line.substr(1, end - 1));
}

bool isComment(std::string_view line) {
    return trimmed(line).starts_with(';');
}

} // namespace

IniFile::IniFile(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    const std::string utf8 = asUtf8(bytes);
    for (const auto line : splitLines(utf8))
        m_lines.emplace_back(line);
}

IniFile::Place IniFile::find(std::string_view section, std::string_view key) const {
    Place place;
    place.line = m_lines.size();
    bool inside = false;
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
        const std::string_view line = m_lines[i];
        if (const auto name = sectionOf(line)) {
            inside = sameName(*name, section);
            if (inside && !place.sectionFound) {
                place.sectionFound = true;
                place.line = i + 1;
            }
            continue;
        }
        if (!inside || isComment(line)) continue;
        const auto equals = line.find('=');
        if (equals == std::string_view::npos) continue;
        if (sameName(line.substr(0, equals), key)) return {i, true, true};
        place.line = i + 1; // a new key follows the last one of its section
    }
    return place;
}

std::optional<std::string> IniFile::value(std::string_view section, std::string_view key) const {
    const Place place = find(section, key);
    if (!place.found) return std::nullopt;
    const std::string_view line = m_lines[place.line];
    const auto text = trimmed(line.substr(line.find('=') + 1));
    return std::string(text.substr(0, characterOffset(text, longestValue)));
}

void IniFile::set(std::string_view section, std::string_view key, std::string_view value) {
    const std::string line = std::string(trimmed(key)) + "=" + withoutControls(value);
    Place place = find(section, key);
    if (place.found) {
        m_lines[place.line] = line;
        return;
    }
    if (!place.sectionFound) {
        m_lines.push_back("[" + std::string(section) + "]");
        place.line = m_lines.size();
    }
    m_lines.insert(m_lines.begin() + static_cast<std::ptrdiff_t>(place.line), line);
}

std::string IniFile::text() const {
    std::string out;
    for (const std::string& line : m_lines)
        out.append(line).append(LineBreak);
    return out;
}

} // namespace telvo
