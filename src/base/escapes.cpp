// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/escapes.h"

#include "base/text.h"

#include <cstddef>
#include <cstdint>

namespace telvo {

namespace {

/// Bytes of the character that a text begins with; 0 where it begins with none.
std::size_t lengthOfCharacter(std::string_view text) {
    for (std::size_t length = 1; length <= 4 && length <= text.size(); ++length)
        if (isValidUtf8(text.substr(0, length))) return length;
    return 0;
}

char hexDigit(std::uint32_t digit) {
    return "0123456789ABCDEF"[digit & 0xF];
}

std::uint32_t codePoint(std::string_view sequence) {
    const auto lead = static_cast<unsigned char>(sequence.front());
    if (sequence.size() == 1) return lead;
    std::uint32_t point = lead & (0xFFu >> (sequence.size() + 1));
    for (const char c : sequence.substr(1))
        point = point << 6 | (static_cast<unsigned char>(c) & 0x3Fu);
    return point;
}

/// Characters that end a line or turn the direction of writing, besides the controls.
bool steersLines(std::uint32_t point) {
    return point == 0x200E || point == 0x200F || (point >= 0x2028 && point <= 0x202E) ||
           (point >= 0x2066 && point <= 0x2069);
}

/// Calls escape(out, point, sequence) for every character; it appends it in one form or another.
template <typename Escape>
std::string withBytesWrittenOut(std::string_view text, Escape&& escape) {
    std::string out;
    for (std::size_t at = 0; at < text.size();) {
        const auto length = lengthOfCharacter(text.substr(at));
        if (length == 0) {
            const auto byte = static_cast<unsigned char>(text[at++]);
            out.append({'\\', 'x', hexDigit(byte >> 4u), hexDigit(byte)});
            continue;
        }
        const std::string_view sequence = text.substr(at, length);
        escape(out, codePoint(sequence), sequence);
        at += length;
    }
    return out;
}

} // namespace

std::string forTerminal(std::string_view text) {
    return withBytesWrittenOut(
        text, [](std::string& out, std::uint32_t point, std::string_view sequence) {
            if (point == '\n') {
                out += "\\n";
            } else if (point == '\t') {
                out += "\\t";
            } else if (point < 0x20 || (point >= 0x7F && point < 0xA0)) {
                out.append({'\\', 'x', hexDigit(point >> 4), hexDigit(point)});
            } else if (steersLines(point)) {
                out.append({'\\', 'u', hexDigit(point >> 12), hexDigit(point >> 8),
                            hexDigit(point >> 4), hexDigit(point)});
            } else {
                out += sequence;
            }
        });
}

std::string withEscapedBytes(std::string_view text) {
    return withBytesWrittenOut(
        text, [](std::string& out, std::uint32_t, std::string_view sequence) { out += sequence; });
}

} // namespace telvo
