// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/alongAxis.h"
#include "study/graph/sfGraph.h"
#include "study/Runner.h"

#include <vector>

namespace telvo::study {

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
    int m_lastPass;
    Runner m_runner;
};

} // namespace telvo::study
