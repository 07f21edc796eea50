// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/recovery.h"

#include "base/text.h"
#include "project/CaseFile.h"

namespace telvo::app {

namespace {

constexpr std::string_view Marker = "TELVO recovery copy of: ";

} // namespace

Result<std::string> recoveryText(const project::ProjectCase& unsaved) {
    project::ProjectCase copy = unsaved;
    auto text = project::writeCaseText(copy); // brings the copy into the form of a file
    if (!text) return text.fault();
    return std::string(Marker) + withoutControls(unsaved.FileName) + std::string(LineBreak) + *text;
}

Result<project::ProjectCase> readRecovery(std::string_view bytes, std::string_view name) {
    const Fault damaged{"The recovery copy is damaged", std::string(name)};
    const auto end = bytes.find(LineBreak);
    if (!bytes.starts_with(Marker) || end == std::string_view::npos) return damaged;
    project::ProjectCase kept;
    const auto reading = project::readCaseText(bytes.substr(end + LineBreak.size()), name, kept);
    if (!reading.accepted) return damaged;
    if (reading.fault) return *reading.fault;
    kept.FileName = asUtf8(bytes.substr(Marker.size(), end - Marker.size()));
    return kept;
}

} // namespace telvo::app
