// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/CaseFile.h"

#include "base/codePage.h"
#include "base/files.h"
#include "base/numbers.h"
#include "base/text.h"
#include "project/description.h"
#include "project/inputFields.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <type_traits>

namespace telvo::project {

namespace {

struct FormatTag {
    std::string_view tag;
    int level;
};
// From the current one downward, the order in which a file's first item is compared.
constexpr std::array<FormatTag, 4> FormatTags = {
    {{"TELVO_602", 53}, {"TELVO_601", 52}, {"TELVO_501", 51}, {"TELVO_500", 50}}};

constexpr std::string_view StartMarker = "##StartDesc##";
constexpr std::string_view EndMarker = "##EndDesc##";
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

/// Calls visit(row, item, number) for the items of a record in file order; of the center-to-center
/// distances those that the number of entries asks for when their turn comes. Reader and writer
/// both walk here, so that they cannot drift apart.
template <typename Input, typename Visit>
void visitItems(Input& in, Visit visit) {
    for (const Field field : FileOrder) {
        const InputField& row = rowOf(field);
        const auto visitMember = [&](auto member) {
            auto& value = in.*member;
            if constexpr (requires { value[1]; })
                for (int i = 1; i <= distanceCount(in); ++i)
                    visit(row, itemNameOf({field, i}), value[i]);
            else
                visit(row, row.name, value);
        };
        std::visit(visitMember, row.member);
    }
}

std::string_view withoutByteOrderMark(std::string_view bytes) {
    return bytes.starts_with(ByteOrderMark) ? bytes.substr(ByteOrderMark.size()) : bytes;
}

/// What ends the lines of a file: LF, with or without CR before it, or CR alone, as the desktop
/// computers of the nineties had it. A CR within a line of a file with LF is none.
char lineEndOf(std::string_view bytes) {
    return bytes.find('\n') == std::string_view::npos ? '\r' : '\n';
}

std::string_view afterLine(std::string_view bytes, char lineEnd) {
    const auto end = bytes.find(lineEnd);
    return end == std::string_view::npos ? std::string_view() : bytes.substr(end + 1);
}

/// Level of the tag in the first item of a file, 0 when it is unknown.
int levelOfTag(std::string_view bytes) {
    const auto line = bytes.substr(0, bytes.find_first_of(",\r\n"));
    const auto item = trimmed(line);
    const auto* found = std::find_if(FormatTags.begin(), FormatTags.end(),
                                     [&](const FormatTag& tag) { return tag.tag == item; });
    return found == FormatTags.end() ? 0 : found->level;
}

/// Walks through the lines of a case file. After the first fault every further read does nothing,
/// so that the reading below needs no branch per item and the items before the fault stay.
class ItemReader {
  public:
    ItemReader(std::string_view bytes, std::string_view name, int firstLine)
        : m_rest(bytes), m_name(name), m_line(firstLine - 1), m_lineEnd(lineEndOf(bytes)),
          m_utf8(isValidUtf8(bytes)) {}

    const std::optional<Fault>& fault() const { return m_fault; }
    bool good() const { return !m_fault; }

    std::string text(std::string_view item) {
        const auto line = next(item);
        return line ? decoded(*line) : std::string();
    }

    template <typename Number>
    void number(std::string_view item, Number& field) {
        const auto line = next(item);
        if (!line) return;
        const auto read = leadingNumber(*line);
        if (!read) return fail(item, quoted(*line) + notANumber(*line));
        const auto rest = trimmed(line->substr(read->length));
        if (rest.starts_with(','))
            return fail(item, quoted(*line) + " has a decimal comma; numbers take a \".\"");
        if (!rest.empty()) return fail(item, quoted(*line) + " is not a number alone");
        if constexpr (std::is_integral_v<Number>) {
            constexpr auto low = std::numeric_limits<Number>::min();
            constexpr auto high = std::numeric_limits<Number>::max();
            if (read->value != std::floor(read->value))
                return fail(item, quoted(*line) + " is not a whole number");
            if (read->value < low || read->value > high)
                return fail(item, quoted(*line) + " is outside " + std::to_string(low) + " to " +
                                      std::to_string(high));
        } else if (std::abs(read->value) >
                   static_cast<double>(std::numeric_limits<Number>::max())) {
            return fail(item, quoted(*line) + " is too large");
        }
        field = static_cast<Number>(read->value);
    }

    /// The next line as it stands, or nothing after a fault or at the end of the file.
    std::optional<std::string_view> next(std::string_view item) {
        if (m_fault) return std::nullopt;
        ++m_line;
        if (m_rest.empty()) {
            fail(item, "the file ends before this item");
            return std::nullopt;
        }
        const auto end = m_rest.find(m_lineEnd);
        auto line = m_rest.substr(0, end);
        m_rest = end == std::string_view::npos ? std::string_view() : m_rest.substr(end + 1);
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (line.size() > MaxLineBytes) {
            fail(item, "the line is longer than " + std::to_string(MaxLineBytes) + " characters");
            return std::nullopt;
        }
        if (line.find('\0') != std::string_view::npos) {
            fail(item, "the line holds a NUL character");
            return std::nullopt;
        }
        return line;
    }

    std::string decoded(std::string_view line) const {
        return m_utf8 ? std::string(line) : utf8FromWindows1252(line);
    }

    std::string_view rest() const { return m_rest; }

    void fail(std::string_view item, const std::string& what) {
        m_fault = Fault{std::string(item) + ": " + what,
                        std::string(m_name) + ", line " + std::to_string(m_line)};
    }

  private:
    std::string quoted(std::string_view line) const {
        return "\"" + excerpt(decoded(line.substr(0, 200))) + "\"";
    }
    static std::string notANumber(std::string_view line) {
        auto text = trimmed(line);
        if (text.starts_with('-') || text.starts_with('+') || text.starts_with('.'))
            text.remove_prefix(1);
        const bool digit = !text.empty() && text.front() >= '0' && text.front() <= '9';
        return digit ? " is too large a number" : " is not a number";
    }

    std::string_view m_rest;
    std::string_view m_name;
    int m_line;
    char m_lineEnd;
    bool m_utf8;
    std::optional<Fault> m_fault;
};

/// Collects the lines of a description that are not blank.
class DescriptionReader {
  public:
    explicit DescriptionReader(ProjectCase& into) : m_into(into) {
        into.Description.clear();
        into.DescriptionLines = 0;
    }
    void add(const std::string& line) {
        if (trimmed(line).empty()) return;
        if (!m_into.Description.empty()) m_into.Description += LineBreak;
        m_into.Description += line;
        if (m_into.DescriptionLines < std::numeric_limits<std::int16_t>::max())
            ++m_into.DescriptionLines;
    }

  private:
    ProjectCase& m_into;
};

void readMarkedDescription(ItemReader& reader, ProjectCase& into) {
    DescriptionReader description(into);
    while (const auto line = reader.next("Description")) {
        if (*line == StartMarker) continue;
        if (*line == EndMarker) return;
        description.add(reader.decoded(*line));
    }
}

/// The older rule: exactly five lines, no markers.
void readFiveLineDescription(ItemReader& reader, ProjectCase& into) {
    DescriptionReader description(into);
    for (int i = 0; i < 5; ++i)
        if (const auto line = reader.next("Description")) description.add(reader.decoded(*line));
}

void readEntryCount(ItemReader& reader, std::int16_t& field) {
    std::int16_t count = field;
    reader.number("NumberEntries", count);
    if (!reader.good()) return;
    if (count < 0 || count > MaxEntries)
        return reader.fail("NumberEntries", std::to_string(count) + " is outside 0 to " +
                                                std::to_string(MaxEntries));
    field = count == 0 ? std::int16_t{1} : count;
}

bool breaksAt(std::u32string_view line, std::size_t column) {
    return column <= line.size() && line[column - 1] == U' ';
}

/// Columns of the first piece of a line that is too long, by the rule of the description.
std::size_t firstPieceLength(std::u32string_view line) {
    constexpr std::size_t widest = DescriptionColumns;
    constexpr std::size_t narrowest = 40;
    if (breaksAt(line, widest)) return widest;
    // The search runs on a rest shorter than 60 columns too and may split it once more; files have
    // always been broken so.
    for (std::size_t column = widest - 1; column >= narrowest; --column)
        if (breaksAt(line, column)) return column;
    return std::min(widest, line.size());
}

/// One wide character per column, so that no character is cut in two.
std::u32string columns(std::string_view utf8) {
    std::u32string out;
    for (std::size_t at = 0; at < utf8.size();) {
        const auto length = std::max<std::size_t>(1, characterOffset(utf8.substr(at), 1));
        out +=
            length == 1 ? static_cast<char32_t>(static_cast<unsigned char>(utf8[at])) : U'\uFFFD';
        at += length;
    }
    return out;
}

void appendDescriptionLine(std::string& out, std::string_view line) {
    if (!out.empty()) out += LineBreak;
    // A line that looks like a marker would end the description when it is read back.
    if (line == StartMarker || line == EndMarker) out += ' ';
    out += line;
}

std::optional<Fault> faultOfUnreadableValue(const ProjectCase& from) {
    std::optional<Fault> fault;
    const ProjectInput& in = from.Input;
    if (in.NumberEntries < 0 || in.NumberEntries > MaxEntries)
        return Fault{std::to_string(in.NumberEntries) + " is outside 0 to " +
                         std::to_string(MaxEntries),
                     "NumberEntries"};
    visitItems(in, [&](const InputField&, std::string_view item, auto value) {
        if (!fault && !std::isfinite(static_cast<double>(value)))
            fault = Fault{"the value is not a finite number", std::string(item)};
    });
    return fault;
}

/// Bytes in which a case is kept on this system.
std::string systemBytes(std::string utf8) {
    // Other programs of such a system read case files in its code page. Only what the reader turns
    // into the same text again: it takes bytes that happen to be valid UTF-8 as such, and all others
    // for Windows-1252, whatever the code page here. A text that it cannot hold stays UTF-8.
    const auto bytes = inCodePage(utf8);
    return bytes && asUtf8(*bytes) == utf8 ? *bytes : utf8;
}

} // namespace

bool hasCaseTag(std::string_view bytes) {
    return levelOfTag(withoutByteOrderMark(bytes)) != 0;
}

std::optional<Fault> readCaseItems(std::string_view bytes, int level, std::string_view name,
                                   ProjectCase& into, int firstLine, std::vector<std::string>* kept,
                                   std::optional<std::string_view>* rest) {
    ItemReader reader(bytes, name, firstLine);
    const auto settle = [&](std::string_view item, bool inLevel = true) {
        if (kept && !(inLevel && reader.good())) kept->emplace_back(item);
    };
    reader.number("Units", into.Units);
    settle("Units");
    if (reader.good() && (into.Units < English || into.Units > Metric)) into.Units = English;
    if (std::string title = reader.text("Title"); reader.good()) into.Title = std::move(title);
    settle("Title");
    settle("Description"); // one that breaks off is the file's as far as it goes
    if (reader.good()) {
        if (level >= 50)
            readMarkedDescription(reader, into);
        else
            readFiveLineDescription(reader, into);
    }
    visitItems(into.Input, [&](const InputField& row, std::string_view item, auto& field) {
        const bool inLevel = level >= row.level;
        if (row.role == FieldRole::Count)
            readEntryCount(reader, into.Input.NumberEntries);
        else if (inLevel)
            reader.number(item, field);
        settle(item, inLevel);
    });
    into.Input.Anal = std::min<std::int16_t>(into.Input.Anal, 3);
    const bool isCut = reader.rest().empty() && !bytes.ends_with(lineEndOf(bytes));
    if (rest && !isCut) *rest = reader.rest();
    return reader.fault();
}

namespace {

/// What there is to say of the end of a file whose case was read.
std::vector<std::string> endRemarks(std::optional<std::string_view> rest, char lineEnd) {
    std::vector<std::string> remarks;
    if (!rest)
        remarks.emplace_back("the last line has no line end; the file may have been cut inside its "
                             "last number");
    for (std::string_view text = rest.value_or(""); !text.empty();
         text = afterLine(text, lineEnd)) {
        if (levelOfTag(text) == 0) continue;
        remarks.emplace_back("a second case follows in the file, which is not read");
        break;
    }
    return remarks;
}

} // namespace

CaseReading readCaseText(std::string_view bytes, std::string_view name, ProjectCase& into) {
    CaseReading reading;
    bytes = withoutByteOrderMark(bytes);
    const int level = levelOfTag(bytes);
    if (level == 0) {
        reading.fault = Fault{bytes.empty() ? "Invalid file format: the file is empty"
                                            : "Invalid file format: the version tag is unknown",
                              std::string(name) + ", line 1"};
        return reading;
    }
    reading.accepted = true;
    into.FileVersion = static_cast<std::int16_t>(level);
    const auto items = afterLine(bytes, lineEndOf(bytes));
    std::optional<std::string_view> rest;
    reading.fault = readCaseItems(items, level, name, into, 2, &reading.kept, &rest);
    if (!reading.fault) reading.remarks = endRemarks(rest, lineEndOf(bytes));
    return reading;
}

CaseReading readCaseSection(std::string_view bytes, std::string_view name, ProjectCase& into) {
    bytes = withoutByteOrderMark(bytes);
    const char lineEnd = lineEndOf(bytes);
    for (int line = 1; !bytes.empty(); ++line) {
        const auto tag = trimmed(bytes.substr(0, bytes.find_first_of("\r\n")));
        const int level = tag.find(',') == std::string_view::npos ? levelOfTag(tag) : 0;
        bytes = afterLine(bytes, lineEnd);
        if (level == 0) continue;
        into.FileVersion = static_cast<std::int16_t>(level);
        CaseReading reading{true, {}, {}, {}};
        reading.fault = readCaseItems(bytes, level, name, into, line + 1, &reading.kept);
        return reading;
    }
    return {false, Fault{"Invalid file format", std::string(name)}, {}, {}};
}

CaseReading readCaseFile(const std::string& path, ProjectCase& into) {
    const auto bytes = readFile(path);
    if (!bytes) return {false, bytes.fault(), {}, {}};
    CaseReading reading = readCaseText(*bytes, path, into);
    if (!reading.fault) into.FileName = path;
    return reading;
}

std::string normalisedDescription(std::string_view description) {
    std::string text(description);
    std::replace(text.begin(), text.end(), '\0', ' ');
    std::string out;
    for (std::string_view line : splitLines(text)) {
        const auto words = trimmed(line);
        if (words.empty()) continue;
        if (characterCount(words) <= DescriptionColumns) {
            appendDescriptionLine(out, line);
            continue;
        }
        const std::u32string wide = columns(line);
        for (std::size_t at = 0; at < wide.size();) {
            const auto piece = firstPieceLength(std::u32string_view(wide).substr(at));
            const auto bytes = characterOffset(line, piece);
            // A piece of blanks alone would be dropped when it is read back.
            if (!trimmed(line.substr(0, bytes)).empty())
                appendDescriptionLine(out, line.substr(0, bytes));
            line.remove_prefix(bytes);
            at += piece;
        }
    }
    return out;
}

Result<std::string> writeCaseText(ProjectCase& from) {
    if (auto fault = faultOfUnreadableValue(from)) return *fault;
    if (from.Input.NumberEntries == 0) from.Input.NumberEntries = 1;
    from.Units = from.Units == English ? English : Metric;
    from.Title = onOneLine(asUtf8(from.Title));
    from.Description = normalisedDescription(asUtf8(from.Description));
    const auto lines = splitLines(from.Description);
    from.DescriptionLines = static_cast<std::int16_t>(
        std::min<std::size_t>(lines.size(), std::numeric_limits<std::int16_t>::max()));
    if (from.Title.size() > MaxLineBytes)
        return Fault{"the title is too long for a case file", "Title"};
    // Only blanks can make a line that long: words are broken after 60 characters.
    if (std::any_of(lines.begin(), lines.end(),
                    [](std::string_view line) { return line.size() > MaxLineBytes; }))
        return Fault{"a line is too long for a case file", "Description"};
    from.FileVersion = CurrentLevel;

    std::string out;
    const auto line = [&](std::string_view text) {
        out += text;
        out += LineBreak;
    };
    const auto number = [&](auto value, bool plain) {
        line((plain && !(value < 0) ? " " : "") + generalNumber(value));
    };
    line(FormatTags.front().tag);
    number(from.Units, true);
    line(from.Title);
    line(StartMarker);
    if (!from.Description.empty()) line(from.Description);
    line(EndMarker);
    visitItems(from.Input, [&](const InputField& row, std::string_view, auto value) {
        number(value, row.plain);
    });
    return systemBytes(std::move(out));
}

Status saveCaseFile(ProjectCase& from, const std::string& path, Existing existing,
                    std::vector<std::string>* remarks) {
    ProjectCase saved = from;
    const auto text = writeCaseText(saved);
    if (!text) return text.fault();
    if (Status written = writeFile(path, *text, existing, remarks); !written) return written;
    saved.FileName = path;
    from = std::move(saved);
    return success();
}

} // namespace telvo::project
