// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/workbookReader.h"

#include "base/numbers.h"
#include "base/text.h"
#include "table/columns.h"
#include "table/TableBuilder.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <utility>

namespace telvo::table {

namespace {

constexpr std::uint32_t LastRow = 1'048'576; // of a spreadsheet
constexpr std::size_t LastColumn = 16'384;
constexpr std::size_t MaxCellBytes = 262'144; // 32767 characters, the most that a cell may have
constexpr std::size_t MaxSharedBytes = std::size_t{256} << 20;
constexpr std::size_t MaxStyles = 65'536;
constexpr std::size_t MaxSheets = 1'000;

std::optional<std::uint64_t> wholeNumber(std::string_view text) {
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

/// A text of a workbook, where _x000D_ stands for the character of that number.
std::string unescaped(const std::string& text) {
    if (text.find("_x") == std::string::npos) return text;
    std::string out;
    for (std::size_t at = 0; at < text.size();) {
        unsigned code = 0;
        if (text.compare(at, 2, "_x") == 0 && at + 6 < text.size() && text[at + 6] == '_') {
            const char* end = text.data() + at + 6;
            const auto read = std::from_chars(text.data() + at + 2, end, code, 16);
            // Others than those of ASCII stand in the text as they are.
            if (read.ec == std::errc() && read.ptr == end && code > 0 && code < 0x80) {
                out += static_cast<char>(code);
                at += 7;
                continue;
            }
            if (read.ec == std::errc() && read.ptr == end && code >= 0xFFFE) {
                out += code == 0xFFFE ? "\xEF\xBF\xBE" : "\xEF\xBF\xBF"; // XML has neither
                at += 7;
                continue;
            }
        }
        out += text[at++];
    }
    return out;
}

/// Whether a number format shows a date or a time.
bool showsDate(std::string_view format) {
    bool quoted = false;
    for (std::size_t i = 0; i < format.size(); ++i) {
        const char c = format[i];
        if (c == '"') quoted = !quoted;
        if (quoted) continue;
        if (c == '\\' || c == '_' || c == '*') {
            ++i;               // the character behind it is shown, or as wide as a blank
        } else if (c == '[') { // a colour, a condition or hours beyond 24
            const auto close = std::min(format.find(']', i), format.size());
            const auto inside = format.substr(i + 1, close - i - 1);
            if (!inside.empty() && inside.find_first_not_of("hHmMsS") == std::string_view::npos)
                return true;
            i = close;
        } else if (std::string_view("yYmMdDhHsS").find(c) != std::string_view::npos) {
            return true;
        }
    }
    return false;
}

bool isDateFormat(std::uint64_t id) {
    return (id >= 14 && id <= 22) || (id >= 27 && id <= 36) || (id >= 45 && id <= 47) ||
           (id >= 50 && id <= 58);
}

/// Relationships of a part: their targets by id, and by the last word of their type.
struct Relations : XmlHandler {
    std::map<std::string, std::string, std::less<>> byId;
    std::map<std::string, std::string, std::less<>> byType;

    void start(std::string_view name, const XmlAttributes& attributes) override {
        if (name != "Relationship") return;
        if (byId.size() > MaxSheets * 4) return fail("has too many parts");
        const auto type = attributes.value("Type");
        const std::string target(attributes.value("Target"));
        byId.emplace(attributes.value("Id"), target);
        byType.emplace(type.substr(type.rfind('/') + 1), target);
    }
    void end(std::string_view) override {}
};

struct Sheets : XmlHandler {
    std::vector<std::pair<std::string, std::string>> found; // name, id of the relationship

    void start(std::string_view name, const XmlAttributes& attributes) override {
        if (name != "sheet") return;
        if (found.size() == MaxSheets) return fail("has too many sheets");
        found.emplace_back(attributes.value("name"), attributes.value("id"));
    }
    void end(std::string_view) override {}
};

/// Which cell styles show dates.
struct Styles : XmlHandler {
    std::vector<bool> dates;

    void start(std::string_view name, const XmlAttributes& attributes) override {
        if (name == "cellXfs") {
            m_inCells = true;
        } else if (name == "numFmt") {
            if (const auto id = wholeNumber(attributes.value("numFmtId"));
                id && m_formats.size() < MaxStyles)
                m_formats[*id] = showsDate(attributes.value("formatCode"));
        } else if (name == "xf" && m_inCells) {
            if (dates.size() == MaxStyles) return fail("has too many styles");
            const auto id = wholeNumber(attributes.value("numFmtId")).value_or(0);
            const auto own = m_formats.find(id);
            dates.push_back(own == m_formats.end() ? isDateFormat(id) : own->second);
        }
    }
    void end(std::string_view name) override {
        if (name == "cellXfs") m_inCells = false;
    }

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

/// The texts that cells share.
struct SharedTexts : XmlHandler {
    std::vector<std::string> texts;

    void start(std::string_view name, const XmlAttributes&) override {
        if (name == "si") m_text.clear();
        m_runs.start(name);
    }
    void end(std::string_view name) override {
        m_runs.end(name);
        if (name != "si") return;
        texts.push_back(unescaped(m_text));
        m_bytes += texts.back().size() + sizeof(std::string);
        if (m_bytes > MaxSharedBytes) fail("has more text than a table of cases can have");
    }
    void characters(std::string_view text) override {
        if (!m_runs.taking()) return;
        m_text += text;
        if (m_text.size() > MaxCellBytes) fail("a text is longer than a cell can hold");
    }

  private:
    std::string m_text;
    TextRuns m_runs;
    std::size_t m_bytes = 0;
};

/// Reads the rows of a sheet into a table.
class SheetReader : public XmlHandler {
  public:
    SheetReader(TableBuilder& builder, const std::vector<std::string>& shared,
                const std::vector<bool>& dates)
        : m_builder(builder), m_shared(shared), m_dates(dates) {}

    /// Whether the first row of the sheet names an input field.
    bool headed() const { return m_headed; }

    void start(std::string_view name, const XmlAttributes& attributes) override {
        m_runs.start(name);
        if (name == "row")
            startRow(attributes);
        else if (name == "c")
            startCell(attributes);
        else if (name == "f")
            m_hasFormula = true;
        else if (name == "v")
            m_takesValue = m_hasValue = true;
    }

    void end(std::string_view name) override {
        m_runs.end(name);
        if (name == "v")
            m_takesValue = false;
        else if (name == "c")
            endCell();
        else if (name == "row")
            endRow();
        else if (name == "sheetData")
            stop(); // what follows is drawn, not read
    }

    void characters(std::string_view text) override {
        if (!m_takesValue && !(m_runs.taking() && m_type == "inlineStr")) return;
        m_text += text;
        if (m_text.size() > MaxCellBytes) fail(place() + "the text is longer than a cell can hold");
    }

  private:
    std::string place() const {
        return "row " + std::to_string(m_row) + ", column " + columnLetters(m_column) + ": ";
    }

    void startRow(const XmlAttributes& attributes) {
        const auto given = attributes.value("r");
        const std::uint64_t row = given.empty() ? m_row + 1 : wholeNumber(given).value_or(0);
        if (row <= m_row || row > LastRow)
            return fail("the rows are not in order behind row " + std::to_string(m_row));
        m_row = static_cast<std::uint32_t>(row);
        m_next = 0;
        m_used = 0;
    }

    void startCell(const XmlAttributes& attributes) {
        m_text.clear();
        m_type = attributes.value("t");
        m_style = wholeNumber(attributes.value("s")).value_or(0);
        m_hasFormula = m_hasValue = m_takesValue = false;
        m_column = m_next;
        const auto reference = attributes.value("r");
        if (!reference.empty()) {
            std::size_t column = 0;
            for (std::size_t i = 0; i < reference.size() && i < 4; ++i) {
                if (reference[i] < 'A' || reference[i] > 'Z') break;
                column = column * 26 + static_cast<std::size_t>(reference[i] - 'A' + 1);
            }
            m_column = column - 1; // without letters beyond the last one, and refused below
        }
        if (m_column >= LastColumn)
            return fail("row " + std::to_string(m_row) + ": a cell has no column");
        m_next = m_column + 1;
    }

    void endCell() {
        if (m_headed && !m_builder.isRead(m_column)) return;
        Cell cell = readCell();
        if (cell.kind == Cell::Kind::Blank) return;
        if (m_column >= m_cells.size()) m_cells.resize(m_column + 1);
        if (m_column >= m_used) {
            for (std::size_t i = m_used; i < m_column; ++i)
                m_cells[i].kind = Cell::Kind::Blank;
            m_used = m_column + 1;
        }
        m_cells[m_column] = std::move(cell);
    }

    Cell readCell() const {
        const auto refused = [](std::string why) {
            return Cell{Cell::Kind::Refused, std::move(why), 0};
        };
        const auto text = [](std::string value) {
            return Cell{value.empty() ? Cell::Kind::Blank : Cell::Kind::Text, std::move(value), 0};
        };
        if (m_type == "inlineStr") return text(unescaped(m_text));
        if (m_hasFormula && !m_hasValue)
            return refused(
                "the formula has no stored value; open the workbook in a spreadsheet and "
                "save it, or put the value in the place of the formula");
        if (!m_hasValue) return {};
        const auto value = trimmed(m_text);
        if (m_type == "e") return refused("the cell holds the error " + excerpt(value));
        if (m_type == "d") return refused("the cell holds a date");
        if (m_type == "str") return text(unescaped(m_text));
        if (m_type == "s") {
            const auto index = wholeNumber(value);
            if (!index || *index >= m_shared.size())
                return refused("the cell points to a text that the workbook does not have");
            return text(m_shared[static_cast<std::size_t>(*index)]);
        }
        if (m_type == "b") {
            if (value != "0" && value != "1") return refused("the cell is damaged");
            return {Cell::Kind::Boolean, {}, value == "1" ? 1.0 : 0.0};
        }
        if (value.empty()) return {};
        double number = 0;
        const auto [end, error] =
            std::from_chars(value.data(), value.data() + value.size(), number);
        if (error == std::errc::result_out_of_range && end == value.data() + value.size())
            return refused("\"" + excerpt(value) + "\" is outside the range of numbers");
        if (error != std::errc() || end != value.data() + value.size())
            return refused("\"" + excerpt(value) + "\" is not a number");
        if (m_style < m_dates.size() && m_dates[static_cast<std::size_t>(m_style)])
            return refused("the cell holds a date; give it the number format General and enter the "
                           "value again");
        return {Cell::Kind::Number, {}, number};
    }

    void endRow() {
        if (m_used == 0) return;
        if (m_headed) {
            m_cells.resize(m_used);
            if (const Status added = m_builder.addRow(m_row, m_cells, DecimalSigns()); !added)
                fail(added.fault().message);
            return;
        }
        std::vector<std::string> headings(m_used);
        bool blank = true;
        for (std::size_t i = 0; i < m_used; ++i) {
            if (m_cells[i].kind == Cell::Kind::Text) headings[i] = m_cells[i].text;
            if (m_cells[i].kind == Cell::Kind::Number)
                headings[i] = generalNumber(m_cells[i].number);
            blank = blank && m_cells[i].kind == Cell::Kind::Blank;
        }
        if (blank) return;
        if (!TableBuilder::namesField(headings)) return stop();
        m_headed = true;
        if (const Status done = m_builder.setHeadings(headings, m_row); !done)
            fail(done.fault().message);
    }

    TableBuilder& m_builder;
    const std::vector<std::string>& m_shared;
    const std::vector<bool>& m_dates;
    std::vector<Cell> m_cells;
    std::size_t m_used = 0; // of m_cells, in this row
    bool m_headed = false;
    std::uint32_t m_row = 0;
    std::size_t m_column = 0;
    std::size_t m_next = 0;
    std::string m_type;
    std::uint64_t m_style = 0;
    std::string m_text;
    TextRuns m_runs;
    bool m_hasFormula = false;
    bool m_hasValue = false;
    bool m_takesValue = false;
};

/// Name of the part that a relationship of a part in `folder` points to.
std::string partName(std::string_view folder, std::string_view target) {
    if (target.starts_with('/')) return std::string(target.substr(1));
    return std::string(folder) + std::string(target);
}

/// Reads a part into a handler; a part that is not there leaves the handler as it is.
Result<bool> readPart(const WorkbookParts& parts, const std::string& name, XmlHandler& handler,
                      const std::string& file) {
    const auto part = parts(name);
    if (!part) return Fault{part.fault().message, file + ", " + name};
    if (!*part) return false;
    if (const Status read = readXml(**part, handler, file + ", " + name); !read)
        return read.fault();
    return true;
}

} // namespace

Result<CaseTable> readWorkbookParts(const WorkbookParts& parts, const std::string& file) {
    Relations package;
    if (const auto read = readPart(parts, "_rels/.rels", package, file); !read) return read.fault();
    const auto main = package.byType.find("officeDocument");
    const std::string workbook =
        main == package.byType.end() ? "xl/workbook.xml" : partName("", main->second);
    Sheets sheets;
    const auto isThere = readPart(parts, workbook, sheets, file);
    if (!isThere) return isThere.fault();
    if (!*isThere || sheets.found.empty())
        return Fault{"is not an XLSX workbook; save it as .xlsx or CSV", file};
    const auto slash = workbook.rfind('/');
    const auto folder = slash == std::string::npos ? std::string() : workbook.substr(0, slash + 1);
    Relations relations;
    const auto related = folder + "_rels/" + workbook.substr(folder.size()) + ".rels";
    if (const auto read = readPart(parts, related, relations, file); !read) return read.fault();
    const auto partOfType = [&](std::string_view type, XmlHandler& handler) -> Result<bool> {
        const auto found = relations.byType.find(type);
        if (found == relations.byType.end()) return false;
        return readPart(parts, partName(folder, found->second), handler, file);
    };
    Styles styles;
    if (const auto read = partOfType("styles", styles); !read) return read.fault();
    SharedTexts shared;
    if (const auto read = partOfType("sharedStrings", shared); !read) return read.fault();

    for (const auto& [name, id] : sheets.found) {
        const auto found = relations.byId.find(id);
        if (found == relations.byId.end()) continue;
        TableBuilder builder(file);
        builder.setSheet(name, &name != &sheets.found.front().first);
        SheetReader reader(builder, shared.texts, styles.dates);
        const auto read = readPart(parts, partName(folder, found->second), reader, file);
        if (!read) return read.fault();
        if (reader.headed()) return builder.take();
    }
    return Fault{"no sheet names an input field, such as DepthCover, in its first row; a table of "
                 "cases needs the names of its columns there",
                 file};
}

} // namespace telvo::table
