// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace telvo {

/// Text of a profile (INI) file: sections in square brackets, then "key=value" lines.
/// Sections and keys are compared trimmed and without case, the first occurrence wins. Lines that
/// it does not know, comments and the order of lines stay as they are.
class IniFile {
  public:
    static constexpr std::size_t longestValue = 255; ///< longer values are cut when they are read

    /// Any bytes make an IniFile; what is no UTF-8 is taken for Windows-1252.
    explicit IniFile(std::string_view bytes = {});

    /// The trimmed value, cut to longestValue characters; nothing when the key is absent.
    std::optional<std::string> value(std::string_view section, std::string_view key) const;

    /// Sets a value in place, or adds the key at the end of its section, or the section at the end.
    /// Line breaks in the value become blanks.
    void set(std::string_view section, std::string_view key, std::string_view value);

    /// The file, lines ended by CR LF.
    std::string text() const;

  private:
    struct Place {
        std::size_t line = 0; ///< of the key, or where it would be added
        bool found = false;
        bool sectionFound = false;
    };
    Place find(std::string_view section, std::string_view key) const;

    std::vector<std::string> m_lines;
};

} // namespace telvo
