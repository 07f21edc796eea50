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
    std::string name; ///< of its file; of several in a file "panel.find.study"
    study::Study study;
    std::vector<study::NamedCase> cases; ///< as study::filesOf() has them
};

/// Reads the studies of a file and their cases. What cannot be read is left out after a complaint
/// that raises `status`.
std::vector<LoadedStudy> loadStudies(Console& console, const std::string& file, ExitStatus& status);

/// Whether a study may be run: its lists fit together, its inputs and results belong to the case.
/// Of a table of values only the ends are looked at.
std::optional<Fault> checkStudy(const LoadedStudy& loaded);

} // namespace telvo::cli
