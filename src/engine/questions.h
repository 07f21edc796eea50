// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/WorkingInputs.h"

#include <vector>

/// What the inputs alone tell of a run.
namespace telvo::engine {

/// Last pass that is shown: there is no retreat without an active gob.
inline int lastPass(int loadingCondition, double extentActiveGob) {
    return loadingCondition >= ActiveGob && extentActiveGob != 0 ? Retreat : Development;
}
inline int lastPass(const WorkingInputs& in) {
    return lastPass(in.AnalysisCase, in.GobExtent[1]);
}

/// Sides (3, 4) that take part in the loading condition and have a barrier.
inline std::vector<int> barrierSides(const WorkingInputs& in) {
    std::vector<int> sides;
    for (const int k : in.sidesInUse())
        if (in.BarrierWidth[k] != 0) sides.push_back(k);
    return sides;
}

} // namespace telvo::engine
