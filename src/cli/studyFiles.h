// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Console.h"
#include "study/file/runStudy.h"

#include <optional>
#include <string>
#include <vector>

/// Studies as files, with the cases that they name.
namespace telvo::cli {

struct LoadedStudy {
    study::Study study;
    std::vector<study::NamedCase> cases; ///< as study::filesOf() has them
};

/// Reads a study and its cases. Nothing, after a complaint that raises `status`, where one of them
/// cannot be read.
std::optional<LoadedStudy> loadStudy(Console& console, const std::string& file, ExitStatus& status);

/// Whether a study may be run: its lists fit together, its inputs and results belong to the case.
/// Of a table of values only the ends are looked at.
std::optional<Fault> checkStudy(const LoadedStudy& loaded);

} // namespace telvo::cli
