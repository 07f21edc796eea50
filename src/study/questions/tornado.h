// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "study/alongAxis.h"
#include "study/Outcome.h"
#include "study/questions/ranges.h"
#include "study/tally.h"

#include <optional>
#include <string>
#include <vector>

/// "What matters?" Each input by itself over its range, all others as in the case.
namespace telvo::study {

struct TornadoRequest {
    Outcome outcome;
    std::vector<RangedInput> inputs;
};

/// What one input does to the outcome.
struct TornadoBar {
    Variable variable;
    Span range;                          ///< what was varied, in the units of the case
    double own = 0;                      ///< value of the input in the case
    std::optional<double> atLow, atHigh; ///< the outcome at the ends; nothing: not computed
    /// Smallest and largest outcome inside the range and where they are; a peak inside is seen.
    std::optional<GraphPoint> least, most;
    std::vector<Stretch>
        curve; ///< the outcome over the input, cut where it jumps: the spider's leg
    std::vector<Jump> jumps;
    std::string withoutEffect; ///< why it changes nothing; empty where it does
    std::size_t notComputed = 0;

    double swing() const { return least && most ? most->y - least->y : 0; }
};

struct Tornado {
    std::string headline; ///< "Retreat factor 1.61. Depth of cover moves it most: 1.41 to 1.90."
    std::optional<double> own;    ///< the outcome of the case itself
    std::vector<TornadoBar> bars; ///< widest first; without effect last, in the order of the record
    Tally tally;
};

/// Faults: an outcome that the case does not have; a case that cannot be computed, with its message
Result<Tornado> tornado(const project::ProjectCase& base, const TornadoRequest& request);

} // namespace telvo::study
