// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MessageLog.h"

#include "base/text.h"

namespace telvo::app {

namespace {

std::size_t lengthOf(const std::string& line) {
    return characterCount(line) + 1;
}

} // namespace

std::size_t MessageLog::append(std::string_view line) {
    std::string one;
    for (const std::string_view part : splitLines(line)) {
        if (!one.empty()) one += ' ';
        one += withoutControls(part);
    }
    m_characters += lengthOf(one);
    m_lines.push_back(std::move(one));
    return dropOldest();
}

std::size_t MessageLog::setCapacity(std::size_t capacity) {
    m_capacity = capacity;
    return dropOldest();
}

void MessageLog::clear() {
    m_lines.clear();
    m_characters = 0;
}

std::size_t MessageLog::dropOldest() {
    std::size_t dropped = 0;
    // The newest line stays even when it is too long by itself.
    for (; m_characters > m_capacity && m_lines.size() > 1; ++dropped) {
        m_characters -= lengthOf(m_lines.front());
        m_lines.pop_front();
    }
    return dropped;
}

} // namespace telvo::app
