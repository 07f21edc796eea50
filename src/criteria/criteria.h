// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "criteria/assess.h"
#include "engine/AnalysisResults.h"
#include "engine/WorkingInputs.h"
#include "project/ProjectInput.h"

#include <cstdint>

/// One case against the criteria.
namespace telvo::criteria {

struct Assessment {
    std::uint16_t flags = 0; ///< bit i is flag i
    FiguresOf<double> figures{};

    bool flag(int i) const { return (flags >> i & 1) != 0; }
};

/// Given: in    of the run   input  the record that they are of
///        mode  in which stability factors are shown and compared
Assessment assess(const engine::WorkingInputs& in, const project::ProjectInput& input,
                  const engine::AnalysisResults& results, int mode);

} // namespace telvo::criteria
