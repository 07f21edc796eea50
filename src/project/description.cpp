// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/description.h"

#include "base/text.h"
#include "project/CaseFile.h"

#include <algorithm>

namespace telvo::project {

namespace {

/// What stands for the character at the start of `text`, or nothing when it stands for itself.
struct Replacement {
    std::size_t bytes = 0; ///< of the character; 0: it is kept
    char by = ' ';
};

Replacement replacementOf(std::string_view text) {
    const auto byte = static_cast<unsigned char>(text[0]);
    if (text.starts_with(LineBreak)) return {2, '\n'};
    if (byte == '\r' || byte == '\n') return {1, '\n'};
    if (byte < 0x20 || byte == 0x7F) return {1, ' '};
    // U+2028 and U+2029 separate lines and paragraphs; U+0080 to U+009F are controls, U+0085 among
    // them ends a line.
    if (text.starts_with("\xE2\x80\xA8") || text.starts_with("\xE2\x80\xA9")) return {3, '\n'};
    if (byte == 0xC2 && text.size() > 1) {
        const auto next = static_cast<unsigned char>(text[1]);
        if (next == 0x85) return {2, '\n'};
        if (next < 0xA0) return {2, ' '};
    }
    return {};
}

} // namespace

const std::string_view TitleCutMessage = "A title has at most 250 characters";
const std::string_view DescriptionCutMessage =
    "A description has at most 20000 characters; the end of the pasted text was left out";
const std::string_view DiscardQuestion = "Changes in Input Data will be discarded. Proceed?";

std::string plainLines(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    while (!utf8.empty()) {
        const Replacement found = replacementOf(utf8);
        out += found.bytes > 0 ? found.by : utf8.front();
        utf8.remove_prefix(std::max<std::size_t>(1, found.bytes));
    }
    return out;
}

std::string onOneLine(std::string_view title) {
    std::string out;
    for (std::size_t at = 0; at < title.size(); ++at) {
        if (title.substr(at, LineBreak.size()) == LineBreak) continue; // the LF becomes the blank
        const char c = title[at];
        out += c == '\r' || c == '\n' || c == '\0' ? ' ' : c;
    }
    return out;
}

std::string titleFromText(std::string_view utf8) {
    std::string title = plainLines(utf8);
    std::replace(title.begin(), title.end(), '\n', ' ');
    return title;
}

std::string descriptionFromText(std::string_view utf8) {
    return normalisedDescription(plainLines(utf8));
}

} // namespace telvo::project
