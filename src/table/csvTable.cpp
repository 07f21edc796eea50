// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/csvTable.h"

#include "base/csv.h"
#include "base/text.h"
#include "table/columns.h"
#include "table/TableBuilder.h"

#include <algorithm>

namespace telvo::table {

namespace {

constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";
constexpr std::size_t MostCells = 16384; // of a row, as in a spreadsheet
constexpr std::size_t MostNotes = 10;
constexpr std::size_t MostHeadingBytes = std::size_t{1} << 20; // looked at to tell a table

/// Splits a text into rows of cells.
class CsvScanner {
  public:
    CsvScanner(std::string_view text, char separator) : m_rest(text), m_separator(separator) {}

    bool atEnd() const { return m_rest.empty(); }
    /// Whether a line end stands behind the row that was read last.
    bool hadLineEnd() const { return m_lineEnd; }
    /// Number of the next row; a row of several lines counts as one, as in a spreadsheet.
    std::uint32_t row() const { return m_row; }

    /// Reads a row into `cells`, of which the first `count` are then in use. Faults in words: the
    /// text ends within quotes, too many cells.
    std::optional<std::string> next(std::vector<std::string>& cells, std::size_t& count) {
        count = 0;
        ++m_row;
        m_lineEnd = false;
        while (true) {
            if (count == MostCells) return "has more than 16384 cells";
            if (count == cells.size()) cells.emplace_back();
            std::string& cell = cells[count++];
            cell.clear();
            if (m_rest.starts_with('"') && !takeQuoted(cell))
                return "a cell begins with a quote that nothing ends";
            // What stands behind the closing quote belongs to the cell all the same.
            const char ends[] = {m_separator, '\r', '\n'};
            const auto end =
                std::min(m_rest.find_first_of(std::string_view(ends, 3)), m_rest.size());
            cell += m_rest.substr(0, end);
            m_rest.remove_prefix(end);
            if (m_rest.empty()) return std::nullopt;
            const char c = m_rest.front();
            m_rest.remove_prefix(1);
            if (c == m_separator) continue;
            m_lineEnd = true;
            if (c == '\r' && m_rest.starts_with('\n')) m_rest.remove_prefix(1);
            return std::nullopt;
        }
    }

  private:
    bool takeQuoted(std::string& cell) {
        m_rest.remove_prefix(1);
        while (true) {
            const auto quote = m_rest.find('"');
            if (quote == std::string_view::npos) return false;
            cell += m_rest.substr(0, quote);
            m_rest.remove_prefix(quote + 1);
            if (!m_rest.starts_with('"')) return true;
            cell += '"';
            m_rest.remove_prefix(1);
        }
    }

    std::string_view m_rest;
    char m_separator;
    std::uint32_t m_row = 0;
    bool m_lineEnd = false;
};

/// Number of line ends, each of which may be CR LF, LF or CR.
std::uint32_t lineEndCount(std::string_view text) {
    std::uint32_t count = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] == '\n' || (text[i] == '\r' && text.substr(i + 1, 1) != "\n")) ++count;
    return count;
}

/// Why bytes are no text at all.
std::optional<std::string> notText(std::string_view bytes) {
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))
        return "is text in UTF-16; save it as CSV in UTF-8";
    if (bytes.starts_with("PK\x03\x04")) return "is a packed file, such as a workbook, and no text";
    if (bytes.starts_with("\xD0\xCF\x11\xE0"))
        return "is an old workbook (.xls); save it as .xlsx or CSV";
    if (bytes.find('\0') != std::string_view::npos) return "is not text";
    return std::nullopt;
}

/// The separator after which the most headings of the first row are known; a comma where none is.
char foundSeparator(std::string_view text) {
    char best = ',';
    std::size_t mostKnown = 0;
    std::size_t mostCells = 0;
    for (const char separator : {',', ';', '\t'}) {
        std::vector<std::string> cells;
        std::size_t count = 0;
        CsvScanner scanner(text, separator);
        if (scanner.next(cells, count)) continue;
        const auto known = static_cast<std::size_t>(std::count_if(
            cells.begin(), cells.begin() + static_cast<std::ptrdiff_t>(count),
            [](const std::string& cell) { return columnOf(trimmed(cell)).has_value(); }));
        if (known < mostKnown || (known == mostKnown && count <= mostCells)) continue;
        best = separator;
        mostKnown = known;
        mostCells = count;
    }
    return best;
}

/// Takes a first line like "sep=;" off the text.
std::optional<char> namedSeparator(std::string_view& text) {
    if (text.size() < 6 || !text.starts_with("sep=")) return std::nullopt;
    const char separator = text[4];
    const auto end = std::min(text.find_first_of("\r\n"), text.size());
    if (!trimmed(text.substr(5, end - 5)).empty()) return std::nullopt;
    const bool both = text.substr(end, LineBreak.size()) == LineBreak;
    text.remove_prefix(std::min(end + (both ? 2 : 1), text.size()));
    return separator;
}

} // namespace

bool looksLikeCsv(std::string_view bytes) {
    if (bytes.starts_with(Utf8Mark)) bytes.remove_prefix(Utf8Mark.size());
    const auto named = namedSeparator(bytes);
    bytes.remove_prefix(std::min(bytes.find_first_not_of("\r\n"), bytes.size()));
    bytes = bytes.substr(0, MostHeadingBytes);
    std::vector<std::string> cells;
    std::size_t count = 0;
    CsvScanner scanner(bytes, named ? *named : foundSeparator(bytes));
    if (bytes.empty() || scanner.next(cells, count)) return false;
    cells.resize(count);
    return TableBuilder::namesField(cells);
}

Result<CaseTable> readCsv(std::string_view bytes, const std::string& file, const ReadWatch& watch) {
    if (auto why = notText(bytes)) return Fault{*why, file};
    const std::string decoded = isValidUtf8(bytes) ? std::string() : asUtf8(bytes);
    std::string_view text = decoded.empty() ? bytes : std::string_view(decoded);
    if (text.starts_with(Utf8Mark)) text.remove_prefix(Utf8Mark.size());
    const auto named = namedSeparator(text); // a spreadsheet does not count that line
    if (named && *named != ',' && *named != ';' && *named != '\t')
        return Fault{"the separator named in the first line is neither comma, semicolon nor tab",
                     file};
    const auto start = text.find_first_not_of("\r\n");
    if (start == std::string_view::npos) return Fault{"the table is empty", file};
    const std::uint32_t linesBefore = lineEndCount(text.substr(0, start));
    text.remove_prefix(start);
    const char separator = named ? *named : foundSeparator(text);

    TableBuilder builder(file, true);
    const auto scan = [&](auto&& take) -> std::optional<Fault> {
        CsvScanner scanner(text, separator);
        std::vector<std::string> cells;
        std::size_t count = 0;
        while (!scanner.atEnd()) {
            const std::uint32_t row = scanner.row() + 1 + linesBefore;
            if (row % RowsPerLook == 0) {
                if (watch.stopped()) return Fault{ReadingStopped, file};
                watch.tell(builder.rowCount());
            }
            if (auto why = scanner.next(cells, count))
                return Fault{*why, file + ", row " + std::to_string(row)};
            if (auto fault = take(row, cells, count, scanner.hadLineEnd())) return fault;
        }
        return std::nullopt;
    };
    // Twice through the text: which decimal sign it has, only the whole of it tells.
    DecimalSigns signs(separator != ',');
    bool headed = false;
    const auto fault = scan([&](std::uint32_t row, const std::vector<std::string>& cells,
                                std::size_t count, bool) -> std::optional<Fault> {
        if (!headed) {
            headed = true;
            const Status done = builder.setHeadings(
                {cells.begin(), cells.begin() + static_cast<std::ptrdiff_t>(count)}, row);
            return done ? std::nullopt : std::optional(done.fault());
        }
        for (std::size_t i = 0; i < count; ++i)
            if (builder.isNumeric(i)) signs.note(cells[i]);
        return std::nullopt;
    });
    if (fault) return *fault;
    std::vector<Cell> row;
    headed = false;
    const auto again = scan([&](std::uint32_t number, std::vector<std::string>& cells,
                                std::size_t count, bool hadLineEnd) -> std::optional<Fault> {
        if (!std::exchange(headed, true)) return std::nullopt;
        row.resize(count);
        for (std::size_t i = 0; i < count; ++i) {
            row[i].kind = cells[i].empty() ? Cell::Kind::Blank : Cell::Kind::Text;
            std::swap(row[i].text, cells[i]);
            if (row[i].text.size() > MaxCellBytes)
                row[i] = {Cell::Kind::Refused, "the text is longer than a cell can hold", 0};
        }
        const std::size_t before = builder.rowCount();
        const Status added = builder.addRow(number, row, signs);
        if (!added) return added.fault();
        if (!hadLineEnd && builder.rowCount() > before) builder.setOpenRow(number);
        return std::nullopt;
    });
    if (again) return *again;
    return builder.take();
}

Result<CsvText> writeCsv(std::span<const project::ProjectCase> cases, char separator) {
    CsvText out;
    out.bytes.reserve(cases.size() * 300 + 1000);
    const auto endCell = [&](std::size_t column) {
        if (column + 1 < columns().size())
            out.bytes += separator;
        else
            out.bytes += LineBreak;
    };
    for (std::size_t i = 0; i < columns().size(); ++i) {
        appendCsvCell(out.bytes, columns()[i].name, separator);
        endCell(i);
    }
    std::size_t notes = 0;
    std::size_t number = 1;
    for (const project::ProjectCase& current : cases) {
        ++number;
        const auto cells = cellsOf(current);
        if (!cells)
            return Fault{cells.fault().message, current.FileName + ", " + cells.fault().where};
        for (std::size_t i = 0; i < cells->size(); ++i) {
            const CellValue& cell = (*cells)[i];
            if (!cell.blank) appendCsvCell(out.bytes, cell.text, separator);
            if (cell.isNumber && separator != ',' && maybeThousands(cell.text, '.'))
                out.bytes += '0';
            endCell(i);
            if (cell.isNumber || cell.text.empty() ||
                std::string_view("=+-@").find(cell.text.front()) == std::string_view::npos)
                continue;
            if (++notes <= MostNotes)
                out.notes.push_back("row " + std::to_string(number) + ", column " +
                                    columnLetters(i) + " (" + columns()[i].name +
                                    "): a spreadsheet may take this text for a formula; a workbook "
                                    "(.xlsx) keeps it a text");
        }
    }
    // Without the mark, spreadsheets take other letters than ASCII for those of an old code page.
    if (std::any_of(out.bytes.begin(), out.bytes.end(),
                    [](char c) { return static_cast<unsigned char>(c) >= 0x80; }))
        out.bytes.insert(0, Utf8Mark);
    if (notes > MostNotes)
        out.notes.push_back("and " + std::to_string(notes - MostNotes) + " more such texts");
    return out;
}

} // namespace telvo::table
