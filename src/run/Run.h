// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/AnalysisResults.h"
#include "engine/RunResults.h"
#include "project/ProjectInput.h"

#include <string>
#include <string_view>
#include <vector>

namespace telvo::run {

/// Build of the calculation modules, as reports name it.
inline constexpr std::string_view ModuleBuild = "050817";

/// One run: a case, what the engine made of it, and nothing of how it is shown. A value: whoever
/// shows it longer than a call keeps it, and it stays as it was whatever happens to the case.
struct Run {
    project::ProjectCase current;
    engine::WorkingInputs in;        ///< prepared, for both passes
    engine::RunResults byPass;       ///< every quantity as each pass has it
    engine::AnalysisResults results; ///< the same by their given names
    std::vector<std::string> notes;  ///< remarks for the reader of this run, one sentence each
};

} // namespace telvo::run
