// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "table/Xml.h"

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The parts of a workbook beside its sheets.
namespace telvo::table {

inline constexpr std::size_t MaxSheets = 1'000;

std::optional<std::uint64_t> wholeNumber(std::string_view text);

/// A text of a workbook, where _x000D_ stands for the character of that number.
std::string unescaped(std::string_view text);

/// Relationships of a part: their targets by id, and by the last word of their type.
struct Relations : XmlHandler {
    std::map<std::string, std::string, std::less<>> byId;
    std::map<std::string, std::string, std::less<>> byType;

    void start(std::string_view name, const XmlAttributes& attributes) override;
    void end(std::string_view) override {}
};

struct Sheets : XmlHandler {
    struct Sheet {
        std::string name;
        std::string id; // of the relationship
        bool hidden = false;
    };
    std::vector<Sheet> found;

    void start(std::string_view name, const XmlAttributes& attributes) override;
    void end(std::string_view) override {}
};

/// Which cell styles show dates.
struct Styles : XmlHandler {
    std::vector<bool> dates;

    void start(std::string_view name, const XmlAttributes& attributes) override;
    void end(std::string_view name) override;

  private:
    std::map<std::uint64_t, bool> m_formats;
    bool m_inCells = false;
};

/// Gathers the text of <t> elements, without the readings that East Asian texts carry.
class TextRuns {
  public:
    void start(std::string_view name) {
        if (name == "rPh") m_phonetic = true;
        m_taking = name == "t" && !m_phonetic;
    }
    void end(std::string_view name) {
        if (name == "rPh") m_phonetic = false;
        if (name == "t") m_taking = false;
    }
    bool taking() const { return m_taking; }

  private:
    bool m_phonetic = false;
    bool m_taking = false;
};

/// The texts that cells share. They lie in few large blocks: a file of some kilobytes can have
/// millions of them.
struct SharedTexts : XmlHandler {
    std::deque<std::string_view> texts;

    void start(std::string_view name, const XmlAttributes&) override;
    void end(std::string_view name) override;
    void characters(std::string_view text) override;

  private:
    std::string m_text;
    TextRuns m_runs;
    std::deque<std::string> m_blocks;
    std::size_t m_bytes = 0;
};

} // namespace telvo::table
