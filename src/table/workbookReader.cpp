// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/workbookReader.h"

#include "base/text.h"
#include "table/SheetReader.h"
#include "table/TableBuilder.h"
#include "table/workbookParts.h"

#include <set>

namespace telvo::table {

namespace {

/// Name of the part that a relationship of a part in `folder` points to.
std::string partName(std::string_view folder, std::string_view target) {
    if (target.starts_with('/')) return std::string(target.substr(1));
    return std::string(folder) + std::string(target);
}

std::string inSmallLetters(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return text;
}

std::string quotedName(const Sheets::Sheet& sheet) {
    return "\"" + excerpt(sheet.name) + "\"" + (sheet.hidden ? " (hidden)" : "");
}

/// Reads the parts of one workbook, whose costs count together.
class WorkbookReader {
  public:
    WorkbookReader(const WorkbookParts& parts, const std::string& file, const ReadWatch& watch)
        : m_parts(parts), m_file(file), m_budget(watch) {}

    Result<CaseTable> read();

  private:
    /// Reads a part into a handler; one that is not there leaves the handler as it is.
    Result<bool> readPart(const std::string& name, XmlHandler& handler);
    Result<bool> readPartOfType(std::string_view type, XmlHandler& handler);
    /// Reads relationships, styles and texts. Faults: no workbook, damage.
    Status readFrame();
    /// Why the file is no workbook that can be read.
    Fault notWorkbook() const;
    Result<bool> readSheet(const Sheets::Sheet& sheet);
    std::vector<std::string> sheetNotes() const;

    const WorkbookParts& m_parts;
    const std::string& m_file;
    XmlBudget m_budget;
    std::string m_folder; // of the workbook's part
    Sheets m_sheets;
    Relations m_relations;
    Styles m_styles;
    SharedTexts m_shared;
    std::set<std::string> m_read; // parts of sheets, in small letters
    std::optional<CaseTable> m_table;
    std::optional<Sheets::Sheet> m_tableSheet;
    std::vector<std::string> m_others, m_unreadable;
};

Result<bool> WorkbookReader::readPart(const std::string& name, XmlHandler& handler) {
    const auto part = m_parts(name);
    if (!part) return Fault{part.fault().message, m_file + ", " + name};
    if (!*part) return false;
    if (const Status read = readXml(**part, handler, m_file + ", " + name, m_budget); !read)
        return read.fault();
    return true;
}

Result<bool> WorkbookReader::readPartOfType(std::string_view type, XmlHandler& handler) {
    const auto found = m_relations.byType.find(type);
    if (found == m_relations.byType.end()) return false;
    return readPart(partName(m_folder, found->second), handler);
}

Fault WorkbookReader::notWorkbook() const {
    const auto has = [&](const std::string& name) {
        const auto part = m_parts(name);
        return part && *part;
    };
    if (has("content.xml"))
        return {"is an OpenDocument file (.ods); save it as .xlsx or CSV", m_file};
    if (has("xl/workbook.bin"))
        return {"is a binary workbook (.xlsb); save it as .xlsx or CSV", m_file};
    return {"is not an XLSX workbook; save it as .xlsx or CSV", m_file};
}

Status WorkbookReader::readFrame() {
    Relations package;
    if (const auto read = readPart("_rels/.rels", package); !read) return read.fault();
    const auto main = package.byType.find("officeDocument");
    const std::string workbook =
        main == package.byType.end() ? "xl/workbook.xml" : partName("", main->second);
    if (workbook.ends_with(".bin")) return notWorkbook();
    const auto isThere = readPart(workbook, m_sheets);
    if (!isThere) return isThere.fault();
    if (!*isThere || m_sheets.found.empty()) return notWorkbook();
    const auto slash = workbook.rfind('/');
    m_folder = slash == std::string::npos ? std::string() : workbook.substr(0, slash + 1);
    const auto related = m_folder + "_rels/" + workbook.substr(m_folder.size()) + ".rels";
    if (const auto read = readPart(related, m_relations); !read) return read.fault();
    if (const auto read = readPartOfType("styles", m_styles); !read) return read.fault();
    if (const auto read = readPartOfType("sharedStrings", m_shared); !read) return read.fault();
    return success();
}

/// Reads the table of a sheet, where there is none yet, or looks whether there are cases in it.
/// Returned: whether there are.
Result<bool> WorkbookReader::readSheet(const Sheets::Sheet& sheet) {
    const auto found = m_relations.byId.find(sheet.id);
    if (found == m_relations.byId.end()) return false;
    const std::string part = partName(m_folder, found->second);
    if (!m_read.insert(inSmallLetters(part)).second)
        return Fault{"is the part of more than one sheet", m_file + ", " + part};
    const bool whole = !sheet.hidden && !(m_table && !m_table->rows.empty());
    TableBuilder builder(m_file, false);
    builder.setSheet(sheet.name);
    SheetReader reader(builder, m_shared, m_styles,
                       whole ? SheetReader::WholeSheet : SheetReader::FirstCase, m_budget.watch());
    if (const auto read = readPart(part, reader); !read) return read.fault();
    if (!reader.headed()) return false;
    const bool hasCases = builder.rowCount() > 0;
    if (!whole || (m_table && !hasCases)) return hasCases;
    if (const Status done = reader.finish(); !done) return done.fault();
    m_table = builder.take();
    m_tableSheet = sheet;
    return hasCases;
}

std::vector<std::string> WorkbookReader::sheetNotes() const {
    const auto list = [](const std::vector<std::string>& names) {
        constexpr std::size_t most = 10;
        std::string out;
        for (std::size_t i = 0; i < names.size() && i < most; ++i)
            out += (i == 0 ? "" : ", ") + names[i];
        return names.size() > most ? out + " and " + std::to_string(names.size() - most) + " more"
                                   : out;
    };
    std::vector<std::string> notes;
    if (!m_others.empty() || m_tableSheet->id != m_sheets.found.front().id)
        notes.push_back("read from the sheet " + quotedName(*m_tableSheet));
    if (!m_others.empty())
        notes.push_back("other sheets with cases, which are not read: " + list(m_others));
    if (!m_unreadable.empty())
        notes.push_back("sheets that are damaged and are not read: " + list(m_unreadable));
    return notes;
}

Result<CaseTable> WorkbookReader::read() {
    if (const Status done = readFrame(); !done) return done.fault();
    for (const Sheets::Sheet& sheet : m_sheets.found) {
        const bool hadCases = m_table && !m_table->rows.empty();
        const auto cases = readSheet(sheet);
        if (!cases) {
            // What stands beside the cases may be damaged, but may not eat the program.
            if (!hadCases || m_budget.ended()) return cases.fault();
            m_unreadable.push_back(quotedName(sheet));
        } else if (*cases && (hadCases || sheet.hidden)) {
            m_others.push_back(quotedName(sheet));
        }
    }
    if (!m_table && !m_others.empty())
        return Fault{"the only sheet with cases is hidden: " + m_others.front() +
                         "; bring it in sight in a spreadsheet",
                     m_file};
    if (!m_table)
        return Fault{"no sheet names an input field, such as DepthCover, in its first row; a table "
                     "of cases needs the names of its columns there",
                     m_file};
    m_table->sheetNotes = sheetNotes();
    return std::move(*m_table);
}

} // namespace

Result<CaseTable> readWorkbookParts(const WorkbookParts& parts, const std::string& file,
                                    const ReadWatch& watch) {
    return WorkbookReader(parts, file, watch).read();
}

} // namespace telvo::table
