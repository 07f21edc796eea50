// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/workbookParts.h"

#include "table/CaseTable.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace telvo::table {

namespace {

constexpr std::size_t MaxSharedBytes = std::size_t{96} << 20; // 400 bytes for each of the most rows
constexpr std::size_t MaxSharedTexts = 2'000'000;
constexpr std::size_t SharedBlockBytes = std::size_t{1} << 20;
constexpr std::size_t MaxStyles = 65'536;
constexpr std::size_t MaxNameBytes = 2'000; // of a sheet, a part or a relationship

/// Whether a number format shows a date or a time.
bool showsDate(std::string_view format) {
    bool quoted = false;
    for (std::size_t i = 0; i < format.size(); ++i) {
        const char c = format[i];
        if (c == '"') quoted = !quoted;
        if (quoted) continue;
        if (c == '\\' || c == '_' || c == '*') {
            ++i;               // the character behind it is shown, or as wide as a blank
        } else if (c == '[') { // a colour, a condition or hours beyond 24
            const auto close = std::min(format.find(']', i), format.size());
            const auto inside = format.substr(i + 1, close - i - 1);
            if (!inside.empty() && inside.find_first_not_of("hHmMsS") == std::string_view::npos)
                return true;
            i = close;
        } else if (std::string_view("yYmMdDhHsS").find(c) != std::string_view::npos) {
            return true;
        }
    }
    return false;
}

bool isDateFormat(std::uint64_t id) {
    return (id >= 14 && id <= 22) || (id >= 27 && id <= 36) || (id >= 45 && id <= 47) ||
           (id >= 50 && id <= 58);
}

} // namespace

std::optional<std::uint64_t> wholeNumber(std::string_view text) {
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

std::string unescaped(std::string_view text) {
    if (text.find("_x") == std::string_view::npos) return std::string(text);
    std::string out;
    for (std::size_t at = 0; at < text.size();) {
        unsigned code = 0;
        if (text.compare(at, 2, "_x") == 0 && at + 6 < text.size() && text[at + 6] == '_') {
            const char* end = text.data() + at + 6;
            const auto read = std::from_chars(text.data() + at + 2, end, code, 16);
            // Others than those of ASCII stand in the text as they are.
            if (read.ec == std::errc() && read.ptr == end && code > 0 && code < 0x80) {
                out += static_cast<char>(code);
                at += 7;
                continue;
            }
            if (read.ec == std::errc() && read.ptr == end && code >= 0xFFFE) {
                out += code == 0xFFFE ? "\xEF\xBF\xBE" : "\xEF\xBF\xBF"; // XML has neither
                at += 7;
                continue;
            }
        }
        out += text[at++];
    }
    return out;
}

void Relations::start(std::string_view name, const XmlAttributes& attributes) {
    if (name != "Relationship") return;
    if (byId.size() > MaxSheets * 4) return fail("has too many parts");
    const auto id = attributes.value("Id");
    const auto type = attributes.value("Type");
    const auto target = attributes.value("Target");
    if (std::max({id.size(), type.size(), target.size()}) > MaxNameBytes)
        return; // a link to a place outside may be as long as it likes
    byId.emplace(id, target);
    byType.emplace(type.substr(type.rfind('/') + 1), target);
}

void Sheets::start(std::string_view name, const XmlAttributes& attributes) {
    if (name != "sheet") return;
    if (found.size() == MaxSheets) return fail("has too many sheets");
    const auto title = attributes.value("name");
    const auto id = attributes.value("id");
    if (std::max(title.size(), id.size()) > MaxNameBytes)
        return fail("has a sheet whose name is too long");
    const auto state = attributes.value("state");
    found.push_back({std::string(title), std::string(id), !state.empty() && state != "visible"});
}

void Styles::start(std::string_view name, const XmlAttributes& attributes) {
    if (name == "cellXfs") {
        m_inCells = true;
    } else if (name == "numFmt") {
        if (const auto id = wholeNumber(attributes.value("numFmtId"));
            id && m_formats.size() < MaxStyles)
            m_formats[*id] = showsDate(attributes.value("formatCode"));
    } else if (name == "xf" && m_inCells) {
        if (dates.size() == MaxStyles) return fail("has too many styles");
        const auto id = wholeNumber(attributes.value("numFmtId")).value_or(0);
        const auto own = m_formats.find(id);
        dates.push_back(own == m_formats.end() ? isDateFormat(id) : own->second);
    }
}

void Styles::end(std::string_view name) {
    if (name == "cellXfs") m_inCells = false;
}

void SharedTexts::start(std::string_view name, const XmlAttributes&) {
    if (name == "si") m_text.clear();
    m_runs.start(name);
}

void SharedTexts::end(std::string_view name) {
    m_runs.end(name);
    if (name != "si") return;
    const std::string text = unescaped(m_text);
    m_bytes += text.size();
    if (m_bytes > MaxSharedBytes || texts.size() == MaxSharedTexts)
        return fail("has more text than a table of cases can have");
    if (m_blocks.empty() || m_blocks.back().capacity() - m_blocks.back().size() < text.size())
        m_blocks.emplace_back().reserve(std::max(text.size(), SharedBlockBytes));
    std::string& block = m_blocks.back(); // never grows beyond what it has, so that views stay
    const std::size_t at = block.size();
    block += text;
    texts.push_back(std::string_view(block).substr(at));
}

void SharedTexts::characters(std::string_view text) {
    if (!m_runs.taking()) return;
    m_text += text;
    if (m_text.size() > MaxCellBytes) fail("a text is longer than a cell can hold");
}

} // namespace telvo::table
