// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/file/asciiToml.h"

#include <array>
#include <cstdint>

namespace telvo::study {

namespace {

enum class Within { Nothing, Comment, Basic, LongBasic, Literal, LongLiteral };

/// "\u00E4" or "\U0001F600".
void appendEscape(std::string& text, std::uint32_t character) {
    const int digits = character > 0xFFFF ? 8 : 4;
    text += digits == 8 ? "\\U" : "\\u";
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
        text += "0123456789ABCDEF"[character >> shift & 15];
}

/// Bytes of a character by its first one.
std::size_t lengthOf(unsigned char lead) {
    return lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

std::uint32_t characterAt(std::string_view bytes) {
    constexpr std::array<unsigned, 5> ofLead = {0, 0x7F, 0x1F, 0x0F, 0x07};
    const std::size_t length = bytes.size();
    std::uint32_t character = static_cast<unsigned char>(bytes[0]) & ofLead[length];
    for (std::size_t i = 1; i < length; ++i)
        character = character << 6 | (static_cast<unsigned char>(bytes[i]) & 0x3FU);
    return character;
}

} // namespace

AsciiToml asciiToml(std::string_view utf8) {
    AsciiToml made;
    made.text.reserve(utf8.size() + utf8.size() / 8);
    Within within = Within::Nothing;
    std::size_t line = 1;
    bool escaped = false; // the next character belongs to a backslash
    for (std::size_t at = 0; at < utf8.size();) {
        const char c = utf8[at];
        const std::size_t length = lengthOf(static_cast<unsigned char>(c));
        if (length > 1) {
            const bool quoted = within == Within::Basic || within == Within::LongBasic;
            if (quoted && !escaped) {
                appendEscape(made.text, characterAt(utf8.substr(at, length)));
            } else if (within == Within::Comment) {
                made.text += '?';
            } else {
                made.brokenLine = line;
                return made;
            }
            at += length;
            continue;
        }
        const bool threefold = (c == '"' || c == '\'') && utf8.substr(at, 3) == std::string(3, c);
        const bool wasEscaped = escaped;
        escaped = false;
        std::size_t taken = 1;
        switch (within) {
        case Within::Nothing:
            if (c == '#') within = Within::Comment;
            if (c == '"') within = threefold ? Within::LongBasic : Within::Basic;
            if (c == '\'') within = threefold ? Within::LongLiteral : Within::Literal;
            if (threefold) taken = 3;
            break;
        case Within::Comment:
            if (c == '\n') within = Within::Nothing;
            break;
        case Within::Basic:
            escaped = c == '\\' && !wasEscaped;
            if ((c == '"' && !wasEscaped) || c == '\n') within = Within::Nothing;
            break;
        case Within::LongBasic:
            escaped = c == '\\' && !wasEscaped;
            if (c == '"' && threefold && !wasEscaped) {
                within = Within::Nothing;
                taken = 3;
            }
            break;
        case Within::Literal:
            if (c == '\'' || c == '\n') within = Within::Nothing;
            break;
        case Within::LongLiteral:
            if (c == '\'' && threefold) {
                within = Within::Nothing;
                taken = 3;
            }
            break;
        }
        if (c == '\n') ++line;
        made.text += utf8.substr(at, taken);
        at += taken;
    }
    return made;
}

} // namespace telvo::study
