// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "study/Criterion.h"
#include "study/tally.h"
#include "study/Variable.h"

#include <optional>
#include <string>
#include <vector>

/// Required value of one input over another for several targets.
namespace telvo::study {

struct DesignChartRequest {
    Variable required;
    Span in;         ///< where to look for it
    double step = 1; ///< practical step
    Variable over;
    std::vector<double> values; ///< of `over`, rising
    Outcome outcome;
    Criterion::Sense sense = Criterion::Sense::AtLeast;
    std::vector<std::optional<double>> targets; ///< nothing: the suggested factor
};

/// From which side the criterion has to be met.
enum class Direction {
    FromOn, // "from 82 ft on": the least value from which it always holds
    UpTo    // "up to 900 ft": the largest value up to which it always holds
};

struct DesignPoint {
    enum class State {
        Required,   // a value inside the range
        Everywhere, // holds in all of the range
        Never,      // nothing in the range helps, or not at the end that counts
        Uncomputable
    };
    double over = 0;
    State state = State::Never;
    double required = 0;             ///< exact; the end of the range where it holds everywhere
    std::optional<double> practical; ///< rounded to the safe side and looked at again
    bool holdsElsewhere = false;     ///< it also holds beyond a window in which it does not

    bool hasValue() const { return state == State::Required || state == State::Everywhere; }
};

struct DesignCurve {
    Criterion criterion;
    std::vector<DesignPoint> points; ///< one per value of `over`, and both sides of every step
};

struct DesignChart {
    std::string headline;
    Direction direction = Direction::FromOn;
    std::vector<DesignCurve> curves; ///< per target
    Tally tally;
};

/// Faults: what find() and sweep() would find
Result<DesignChart> designChart(const project::ProjectCase& base, const DesignChartRequest& request,
                                int RoundTELVOSF = 0);

} // namespace telvo::study
