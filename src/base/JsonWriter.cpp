// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/JsonWriter.h"

#include "base/numbers.h"

namespace telvo {

namespace {

constexpr std::size_t JsonIndent = 2;

} // namespace

void JsonWriter::key(std::string_view name) {
    next();
    quoted(name);
    m_out += ": ";
    m_afterKey = true;
}

void JsonWriter::text(std::string_view value) {
    next();
    quoted(value);
}

void JsonWriter::number(double value) {
    next();
    appendGeneralNumber(m_out, value);
}

void JsonWriter::number(float value) {
    next();
    m_out += generalNumber(value);
}

void JsonWriter::number(int value) {
    next();
    m_out += std::to_string(value);
}

void JsonWriter::number(std::size_t value) {
    next();
    m_out += std::to_string(value);
}

void JsonWriter::boolean(bool value) {
    next();
    m_out += value ? "true" : "false";
}

void JsonWriter::null() {
    next();
    m_out += "null";
}

void JsonWriter::begin(char bracket) {
    next();
    m_out += bracket;
    ++m_depth;
    m_empty = true;
}

void JsonWriter::end(char bracket) {
    --m_depth;
    newLine(); // of an empty array, too
    m_empty = false;
    m_out += bracket;
}

/// What stands between the value before and the one that follows.
void JsonWriter::next() {
    if (m_afterKey) {
        m_afterKey = false;
        return;
    }
    if (m_depth == 0) return;
    if (!m_empty) m_out += ',';
    m_empty = false;
    newLine();
}

void JsonWriter::newLine() {
    m_out += '\n';
    m_out.append(JsonIndent * m_depth, ' ');
}

void JsonWriter::quoted(std::string_view value) {
    constexpr std::string_view digits = "0123456789abcdef";
    m_out += '"';
    for (const char c : value) {
        const auto code = static_cast<unsigned char>(c);
        switch (c) {
        case '"':
            m_out += "\\\"";
            break;
        case '\\':
            m_out += "\\\\";
            break;
        case '\b':
            m_out += "\\b";
            break;
        case '\f':
            m_out += "\\f";
            break;
        case '\n':
            m_out += "\\n";
            break;
        case '\r':
            m_out += "\\r";
            break;
        case '\t':
            m_out += "\\t";
            break;
        default:
            if (code < 0x20) {
                m_out += "\\u00";
                m_out += digits[code >> 4];
                m_out += digits[code & 15];
            } else {
                m_out += c;
            }
        }
    }
    m_out += '"';
}

} // namespace telvo
