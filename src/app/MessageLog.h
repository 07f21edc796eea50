// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

namespace telvo::app {

/// The lines of the history pane. Above its capacity the oldest lines go, always whole ones.
class MessageLog {
  public:
    explicit MessageLog(std::size_t capacity) : m_capacity(capacity) {}

    /// Adds one line; line breaks in it become blanks.
    /// Returned: how many of the oldest lines went.
    std::size_t append(std::string_view line);
    /// Capacity in characters, line ends included.
    std::size_t setCapacity(std::size_t capacity);
    void clear();

    const std::deque<std::string>& lines() const { return m_lines; }

  private:
    std::size_t dropOldest();

    std::size_t m_capacity;
    std::size_t m_characters = 0;
    std::deque<std::string> m_lines;
};

} // namespace telvo::app
