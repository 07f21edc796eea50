// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace telvo {

/// Writes JSON as it comes, a value to a line, without a tree of it in the memory. Numbers are in
/// the shortest form that reads back to the same value.
class JsonWriter {
  public:
    /// Appends to `out`.
    explicit JsonWriter(std::string& out) : m_out(out) {}

    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    void beginArray() { begin('['); }
    void endArray() { end(']'); }

    void key(std::string_view name);
    /// Given: value  UTF-8
    void text(std::string_view value);
    void number(double value);
    void number(float value); ///< 0.82, not 0.819999993
    void number(int value);
    void number(std::size_t value);
    void boolean(bool value);
    void null();

    /// A key and its value.
    void member(std::string_view name, std::string_view value) {
        key(name);
        text(value);
    }

  private:
    void begin(char bracket);
    void end(char bracket);
    void next();
    void newLine();
    void quoted(std::string_view value);

    std::string& m_out;
    std::size_t m_depth = 0;
    bool m_empty = true; ///< the innermost bracket holds nothing yet
    bool m_afterKey = false;
};

} // namespace telvo
