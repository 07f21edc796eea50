// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/association.h"

#include "app/SettingsStore.h"
#include "base/files.h"
#include "base/text.h"
#include "base/titles.h"

namespace telvo::app {

namespace {

std::string titled(std::string_view kind) {
    return std::string(titles::ProgramOptions).append(kind);
}

std::string inSmallLetters(std::string_view text) {
    std::string out(text);
    for (char& c : out)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return out;
}

std::string xmlEscaped(std::string_view text) {
    std::string out;
    for (const char c : text)
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        default:
            out += c;
        }
    return out;
}

/// A path as the first word of an entry's Exec line. Two rules work one upon the other: a word with
/// a reserved character stands in quotes, in which " ` $ \ take a backslash; and like every text of
/// an entry the line doubles its backslashes. A percent sign is doubled, or it would begin a field.
std::string execWord(std::string_view path) {
    constexpr std::string_view reserved = " \t\n\"'\\><~|&;$*?#()`";
    const bool quoted = path.find_first_of(reserved) != std::string_view::npos;
    std::string out = quoted ? "\"" : "";
    for (const char c : path)
        switch (c) {
        case '"':
        case '`':
        case '$':
            out.append("\\\\") += c;
            break;
        case '\\':
            out += "\\\\\\\\";
            break;
        case '%':
            out += "%%";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\t':
            out += "\\t";
            break;
        case '\r':
            out += "\\r";
            break;
        default:
            out += c;
        }
    if (quoted) out += '"';
    return out;
}

} // namespace

std::string associationQuestion(std::string_view extension) {
    return "This operation may break an existing association of file extension " +
           std::string(extension) + " with other programs on this computer. Proceed?";
}

std::string associationMade(std::string_view extension, std::string_view program) {
    return "The file association for " + std::string(extension) + " has been made to " +
           std::string(program);
}

void associateExtension(std::string_view extension, std::string_view program,
                        const std::function<Status()>& associate, Messages& messages) {
    const auto name = trimmed(extension);
    if (name.empty()) {
        messages.tell("No file extension is set. Enter one under Utilities, Settings, Files.",
                      titled(titles::Error));
        return;
    }
    if (const auto refused = checkFileExtension(name)) {
        messages.tell(refused->message, titled(refused->title));
        return;
    }
    if (messages.ask(associationQuestion(name), Buttons::YesNo, Answer::No,
                     titled(titles::Message)) != Answer::Yes)
        return;
    if (const Status status = associate(); !status) messages.history(faultText(status.fault()));
    messages.tell(associationMade(name, program), titled(titles::Message));
}

std::string userDataHome(const char* xdgDataHome, const char* home) {
    if (xdgDataHome && *xdgDataHome == '/') return xdgDataHome;
    return home && *home ? utf8FromPath(pathFromUtf8(home) / ".local" / "share") : std::string();
}

AssociationFiles associationFiles(const std::string& dataHome) {
    const auto folder = pathFromUtf8(dataHome);
    return {utf8FromPath(folder / "mime" / "packages" / "telvo.xml"),
            utf8FromPath(folder / "applications" / DesktopEntryId)};
}

std::string mimePackage(std::string_view extension) {
    // Patterns in small letters match names in any.
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<mime-info xmlns=\"http://www.freedesktop.org/standards/"
           "shared-mime-info\">\n"
           "  <mime-type type=\"" +
           std::string(CaseMimeType) +
           "\">\n"
           "    <comment>TELVO case</comment>\n"
           "    <sub-class-of type=\"text/plain\"/>\n"
           "    <icon name=\"application-x-telvo-case\"/>\n"
           "    <magic priority=\"60\">\n" // 3: behind a byte order mark
           "      <match type=\"string\" offset=\"0:3\" value=\"TELVO_60\"/>\n"
           "      <match type=\"string\" offset=\"0:3\" value=\"TELVO_50\"/>\n"
           "    </magic>\n"
           "    <glob pattern=\"*." +
           xmlEscaped(inSmallLetters(extension)) +
           "\"/>\n"
           "  </mime-type>\n"
           "</mime-info>\n";
}

std::string desktopEntry(std::string_view program) {
    return "[Desktop Entry]\n"
           "Version=1.0\n"
           "Type=Application\n"
           "Name=TELVO\n"
           "GenericName=Pillar Stability Analysis\n"
           "Comment=Stability of room-and-pillar retreat mining panels in coal\n"
           "Exec=" +
           execWord(program) +
           " %f\n"
           "Icon=telvo\n"
           "Terminal=false\n"
           "StartupNotify=true\n"
           "Categories=Science;Engineering;Geology;\n"
           "Keywords=coal;mining;pillar;barrier;retreat;stability;\n"
           "MimeType=" +
           std::string(CaseMimeType) + ";\n";
}

std::string openCommand(std::string_view program) {
    // In quotes, so that blanks in the program's folder and in the case's name do no harm.
    return '"' + std::string(program) + "\" \"%1\"";
}

} // namespace telvo::app
