// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/IndexedArray.h"
#include "engine/AnalysisResults.h"
#include "study/graph/sfGraph.h"
#include "study/Runner.h"

#include <vector>

namespace telvo::study {

/// A run along the axis of a graph.
struct AxisSample : Sample {
    /// A rule switches between this sample and the next, which lies as close as switches are
    /// located.
    bool switchesAfter = false;
    bool located = false; ///< a side of a switch, which is no point of the axis by itself

    /// Factor of a pass: TELVO SF, or the barrier SF of the graph's side.
    double factor(int pass) const {
        return values[static_cast<std::size_t>(pass - engine::Development)];
    }
};

/// Runs a case along the axis of a graph.
class GraphSampler {
  public:
    GraphSampler(const project::ProjectCase& current, GraphKind kind);

    AxisSample at(double x) const { return {m_runner.at(x)}; }
    /// Samples from one end of the axis to the other, with both sides of every switch.
    std::vector<AxisSample> along(double low, double high) const;

    const Runner& runner() const { return m_runner; }
    /// Last pass that the report shows.
    int lastPass() const { return m_lastPass; }

  private:
    void walkSwitches(std::vector<AxisSample>& samples, const AxisSample& right,
                      double resolution) const;
    void towardsStep(AxisSample& before, AxisSample& after, double resolution) const;

    int m_lastPass;
    Runner m_runner;
};

/// Whether a factor really jumps between two samples of a switch, instead of only bending.
bool isJump(double before, double after);

} // namespace telvo::study
