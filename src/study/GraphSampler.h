// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/IndexedArray.h"
#include "engine/AnalysisResults.h"
#include "project/ProjectInput.h"
#include "study/sfGraph.h"
#include "study/switches.h"

#include <optional>
#include <string>
#include <vector>

namespace telvo::study {

/// The factors of one run by pass: TELVO SF, or the barrier SF of the graph's side.
using Factors = IndexedArray<double, engine::Development, engine::Retreat>;

/// A run at one value of the varied parameter.
struct Sample {
    double x = 0;
    std::optional<Factors> factors; ///< nothing in a gap
    Regime regime;
    std::string gap; ///< why there is a gap
    /// A rule switches or a factor jumps between this sample and the next, which lies as close as
    /// switches are located.
    bool switchesAfter = false;
    bool located = false; ///< a side of a switch, which is no point of the axis by itself
};

/// Runs a case at values of one parameter.
class GraphSampler {
  public:
    GraphSampler(const project::ProjectCase& current, GraphKind kind);

    Sample at(double x) const;
    /// The case as it is, without any rule of the parameter form.
    Sample own() const;
    /// Last pass that the report shows.
    int lastPass() const;

    /// Samples from one end of the axis to the other, with both sides of every switch.
    std::vector<Sample> along(double low, double high) const;

  private:
    Sample run(const project::ProjectInput& input, double x) const;
    void walkSwitches(std::vector<Sample>& samples, Sample right, double resolution) const;
    void findHiddenJump(std::vector<Sample>& samples, const Sample& right, double resolution) const;

    project::ProjectInput m_input;
    std::int16_t m_units;
    GraphKind m_kind;
};

/// The input with the varied parameter set, by the rule of variedCase().
project::ProjectInput variedInput(project::ProjectInput input, std::int16_t units, GraphKind kind,
                                  double x);
/// The varied parameter of an input.
double parameterOf(const project::ProjectInput& input, GraphKind kind);

/// Whether a factor really jumps between two samples of a switch, instead of only bending.
bool isJump(double before, double after);

/// The limits of the warnings along the axis of a graph.
std::vector<ReferenceLine> graphLimits(const project::ProjectCase& current, const SfGraph& graph,
                                       const report::ReportOptions& options);

} // namespace telvo::study
