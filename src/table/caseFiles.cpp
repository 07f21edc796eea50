// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/caseFiles.h"

#include "base/text.h"

#include <algorithm>
#include <string_view>

namespace telvo::table {

namespace {

constexpr std::size_t LongestName = 60;   // characters
constexpr std::size_t LongestBytes = 200; // of a name, whose letters may have several
constexpr std::string_view Refused = "\\/:*?\"<>|#%&{}$!'`@+=";
constexpr std::string_view Devices[] = {"con", "prn", "aux", "nul", "com", "lpt"};

std::string inSmallLetters(std::string_view text) {
    std::string out(text);
    for (char& c : out)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return out;
}

/// Names that Windows keeps for devices, whatever their ending.
bool isDevice(std::string_view name) {
    const std::string first = inSmallLetters(name.substr(0, name.find('.')));
    return std::any_of(std::begin(Devices), std::end(Devices), [&](std::string_view device) {
        const bool numbered = device == "com" || device == "lpt";
        return first.starts_with(device) &&
               (numbered ? first.size() == 4 && first[3] >= '0' && first[3] <= '9'
                         : first.size() == 3);
    });
}

std::string safeName(std::string_view title) {
    std::string name;
    for (const char c : title) {
        const bool bad = static_cast<unsigned char>(c) < 0x20 || c == 0x7F ||
                         Refused.find(c) != std::string_view::npos;
        name += bad ? '_' : c;
    }
    name.resize(characterOffset(name, LongestName));
    while (name.size() > LongestBytes)
        name.resize(characterOffset(name, characterCount(name) - 1));
    // Blanks and points at the ends hide a file, or are dropped by some systems.
    const auto first = name.find_first_not_of(" .");
    if (first == std::string::npos) return {};
    name = name.substr(first, name.find_last_not_of(" .") - first + 1);
    if (name.starts_with('-')) name.front() = '_'; // or commands take it for an option
    return isDevice(name) ? "_" + name : name;
}

} // namespace

std::string CaseFileNames::next(const CaseRow& row,
                                const std::function<bool(const std::string& name)>& isTaken) {
    std::string base = safeName(row.current.Title);
    if (base.empty()) base = "row " + std::to_string(row.number);
    std::string name = base + ".TLV";
    // The number of the row tells equal titles apart; a title may end in such a number itself.
    for (int again = 1; (isTaken && isTaken(name)) || !m_taken.insert(inSmallLetters(name)).second;
         ++again) {
        name = base + " (row " + std::to_string(row.number) + ")";
        if (again > 1) name += " " + std::to_string(again);
        name += ".TLV";
    }
    return name;
}

} // namespace telvo::table
