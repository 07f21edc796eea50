// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/recovery.h"

#include "base/text.h"
#include "project/CaseFile.h"

#include <algorithm>

namespace telvo::app {

namespace {

constexpr std::string_view Marker = "TELVO recovery copy of: ";
// Only behind a damaged file: units, items and name of the case that they were kept from.
constexpr std::string_view KeptMarker = "Not from the file: ";

std::string_view takeLine(std::string_view& rest) {
    const auto end = std::min(rest.find(LineBreak), rest.size());
    const auto line = rest.substr(0, end);
    rest.remove_prefix(std::min(end + LineBreak.size(), rest.size()));
    return line;
}

std::string keptLine(const project::KeptItems& kept) {
    std::string line = std::string(KeptMarker) + (kept.units == project::English ? "0 " : "1 ");
    for (const std::string& item : kept.items)
        line.append(&item == &kept.items.front() ? "" : ",").append(item);
    return line + ' ' + withoutControls(kept.from);
}

project::KeptItems readKeptLine(std::string_view line) {
    project::KeptItems kept;
    kept.damaged = true;
    kept.units = line.starts_with('1') ? project::Metric : project::English;
    line.remove_prefix(std::min(line.find(' '), line.size() - 1) + 1);
    const auto end = std::min(line.find(' '), line.size());
    for (std::string_view items = line.substr(0, end); !items.empty();) {
        const auto comma = std::min(items.find(','), items.size());
        kept.items.emplace_back(items.substr(0, comma));
        items.remove_prefix(std::min(comma + 1, items.size()));
    }
    kept.from = asUtf8(line.substr(std::min(end + 1, line.size())));
    return kept;
}

} // namespace

Result<std::string> recoveryText(const UnsavedCase& unsaved) {
    project::ProjectCase copy = unsaved.current;
    auto text = project::writeCaseText(copy); // brings the copy into the form of a file
    if (!text) return text.fault();
    std::string head = std::string(Marker) + withoutControls(unsaved.current.FileName);
    head += LineBreak;
    if (unsaved.kept.damaged) head.append(keptLine(unsaved.kept)).append(LineBreak);
    return head + *text;
}

std::string recoveredName(std::string_view head) {
    const std::string_view line = takeLine(head);
    return line.starts_with(Marker) ? asUtf8(line.substr(Marker.size())) : std::string();
}

Result<UnsavedCase> readRecovery(std::string_view bytes, std::string_view name) {
    const Fault damaged{"The recovery copy is damaged", std::string(name)};
    std::string_view rest = bytes;
    const std::string_view head = takeLine(rest);
    if (!head.starts_with(Marker)) return damaged;
    UnsavedCase kept;
    if (rest.starts_with(KeptMarker)) {
        const std::string_view line = takeLine(rest).substr(KeptMarker.size());
        if (line.empty()) return damaged;
        kept.kept = readKeptLine(line);
    }
    const auto reading = project::readCaseText(rest, name, kept.current);
    if (!reading.accepted) return damaged;
    if (reading.fault) return *reading.fault;
    kept.current.FileName = asUtf8(head.substr(Marker.size()));
    return kept;
}

std::string recoveryQuestion(std::string_view name, std::string_view time, int others) {
    std::string question = "TELVO ended without saving the case: ";
    question.append(name).append("\nA copy of ").append(time);
    question +=
        " was kept. Open it?\nYes opens the copy, No puts it under File, Recover Discarded, "
        "Cancel asks again at the next start.";
    if (others > 0)
        question += "\nOlder copies that wait beside it: " + std::to_string(others) +
                    ". They are under File, Recover Discarded too.";
    return question;
}

} // namespace telvo::app
