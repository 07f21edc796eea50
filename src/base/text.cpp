// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/text.h"

#include <array>
#include <cstdint>

namespace telvo {

namespace {

bool isContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

bool isControl(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

/// Length of the well-formed UTF-8 sequence at the start of `bytes`, 0 where there is none.
std::size_t sequenceLength(std::string_view bytes) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned char lead = byte(0);
    if (lead < 0x80) return 1;
    std::size_t length = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        if (lead == 0xE0) low = 0xA0;  // overlong
        if (lead == 0xED) high = 0x9F; // surrogates
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        if (lead == 0xF0) low = 0x90;  // overlong
        if (lead == 0xF4) high = 0x8F; // above U+10FFFF
    }
    if (length == 0 || bytes.size() < length) return 0;
    if (byte(1) < low || byte(1) > high) return 0;
    for (std::size_t i = 2; i < length; ++i)
        if (!isContinuation(bytes[i])) return 0;
    return length;
}

// Windows-1252 from 0x80 to 0x9F; the other bytes are the code points of the same number.
constexpr std::array<std::uint16_t, 32> Windows1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

void appendCodePoint(std::string& out, std::uint16_t point) {
    if (point < 0x80) {
        out += static_cast<char>(point);
    } else if (point < 0x800) {
        out += static_cast<char>(0xC0 | (point >> 6));
        out += static_cast<char>(0x80 | (point & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (point >> 12));
        out += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (point & 0x3F));
    }
}

} // namespace

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::vector<std::string_view> splitLines(std::string_view text) {
    std::vector<std::string_view> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        const auto end = text.find_first_of("\r\n", start);
        if (end == std::string_view::npos) {
            lines.push_back(text.substr(start));
            break;
        }
        lines.push_back(text.substr(start, end - start));
        start = text.substr(end, 2) == LineBreak ? end + 2 : end + 1;
    }
    return lines;
}

bool isValidUtf8(std::string_view bytes) {
    for (std::size_t at = 0; at < bytes.size();) {
        const auto length = sequenceLength(bytes.substr(at));
        if (length == 0) return false;
        at += length;
    }
    return true;
}

std::string utf8FromWindows1252(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 8);
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        appendCodePoint(out, byte >= 0x80 && byte <= 0x9F ? Windows1252[byte - 0x80u] : byte);
    }
    return out;
}

std::string asUtf8(std::string_view bytes) {
    return isValidUtf8(bytes) ? std::string(bytes) : utf8FromWindows1252(bytes);
}

std::size_t characterCount(std::string_view utf8) {
    std::size_t count = 0;
    for (const char c : utf8)
        if (!isContinuation(c)) ++count;
    return count;
}

std::size_t characterOffset(std::string_view utf8, std::size_t character) {
    std::size_t at = 0;
    for (; at < utf8.size(); ++at)
        if (!isContinuation(utf8[at]) && character-- == 0) return at;
    return at;
}

std::string excerpt(std::string_view utf8, std::size_t limit) {
    // Only the part that can be shown is looked at: the text may be very long.
    std::string_view head = utf8.substr(0, limit * 4 + 4);
    std::string out(head.substr(0, characterOffset(head, limit)));
    const bool cut = out.size() < utf8.size();
    for (char& c : out)
        if (isControl(c)) c = '?';
    if (!isValidUtf8(out))
        for (char& c : out)
            if (static_cast<unsigned char>(c) >= 0x80) c = '?';
    return cut ? out + "..." : out;
}

std::string inSentence(std::string text) {
    const auto isCapital = [](char c) { return c >= 'A' && c <= 'Z'; };
    if (!text.empty() && isCapital(text[0]) && !(text.size() > 1 && isCapital(text[1])))
        text[0] = static_cast<char>(text[0] - 'A' + 'a');
    return text;
}

std::string withoutControls(std::string_view text) {
    std::string out(text);
    for (char& c : out)
        if (isControl(c)) c = ' ';
    return out;
}

} // namespace telvo
