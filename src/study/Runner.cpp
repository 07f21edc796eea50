// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/Runner.h"

#include "criteria/criteria.h"
#include "engine/diagnosis.h"
#include "project/automaticRules.h"
#include "project/checks.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace telvo::study {

using namespace engine;

Runner::Runner(const project::ProjectCase& base, const Variable& variable,
               std::vector<Outcome> outcomes, int lastPass, int RoundTELVOSF)
    : m_base(base.Input), m_units(base.Units),
      m_frame(frameOf(base.Input, base.Units, DevelopmentLoad)), m_variable(variable),
      m_outcomes(std::move(outcomes)), m_lastPass(lastPass), m_switches(decisions(), lastPass),
      m_rounding(RoundTELVOSF) {
    assert(m_outcomes.size() <= Sample::most);
    m_asksForSuggested = std::any_of(m_outcomes.begin(), m_outcomes.end(),
                                     [](const Outcome& one) { return one.asksForSuggested(); });
}

/// Cases of one frame decide the same rules, so that the case itself tells them, whether or not it
/// has results.
Decisions Runner::decisions() const {
    Decisions decisions;
    Noting calc;
    calc.decisions = &decisions;
    note(calc, m_base);
    RunResults run;
    AnalysisResults results;
    computeNoting(calc, workingInputs(calc, m_base, m_frame), run, results);
    return decisions;
}

/// Notes what the automatic values decided that follow the variable.
void Runner::note(Noting& calc, const project::ProjectInput& input) const {
    if (!m_variable.movesBreadth(m_base)) return;
    calc.at({});
    project::automaticAMZBreadth(calc, m_units == project::English, input.DepthCover);
}

project::ProjectInput Runner::varied(double x) const {
    return m_variable.in(m_base, m_units, x);
}

bool Runner::hasOutcomes(const project::ProjectInput& input) const {
    return std::all_of(m_outcomes.begin(), m_outcomes.end(),
                       [&](const Outcome& outcome) { return outcome.isDefined(m_frame, input); });
}

Sample Runner::at(double x) const {
    const project::ProjectInput input = varied(x);
    if (m_variable.leftOut(input)) return {x, false, {}, {}};
    return run(input, x);
}

Sample Runner::own() const {
    return run(m_base, ownValue());
}

Sample Runner::run(const project::ProjectInput& input, double x) const {
    Sample sample;
    sample.x = x;
    if (!hasOutcomes(input) || project::checkBeforeAnalysis(input)) return sample;
    Noting calc;
    note(calc, input);
    const WorkingInputs in = workingInputs(calc, input, m_frame);
    if (impossibleInput(in)) return sample;
    RunResults run;
    AnalysisResults results;
    if (computeNoting(calc, in, run, results).cause != Stop::None) return sample;
    sample.computed = true;
    double suggested = 0;
    if (m_asksForSuggested)
        suggested = criteria::assess(in, input, results, m_rounding).figures.panelLimit;
    for (std::size_t n = 0; n < m_outcomes.size(); ++n)
        sample.values[n] = m_outcomes[n].of(results, m_frame, input, suggested);
    sample.regime = calc.regime;
    return sample;
}

std::string Runner::gapAt(double x) const {
    const project::ProjectInput input = varied(x);
    if (const auto reason = m_variable.leftOut(input)) return std::string(*reason);
    return gapOf(input);
}

std::string Runner::gapOf(const project::ProjectInput& input) const {
    if (!hasOutcomes(input)) return "There is no barrier";
    const auto prepared = PrepareAnalysis(input, m_units);
    if (const auto* refusal = std::get_if<Refusal>(&prepared)) return refusal->message;
    const auto results = ComputeAnalysis(std::get<WorkingInputs>(prepared));
    return results ? std::string() : faultText(results.fault());
}

double Runner::rounded(std::size_t rounding, double x) const {
    if (rounding == 1) return archFactorUsed(varied(x), m_frame);
    if (!m_variable.movesBreadth(m_base)) return 0; // else the variable is the depth
    Scalar calc;
    return project::automaticAMZBreadth(calc, m_units == project::English, x);
}

bool Runner::differ(const Sample& a, const Sample& b) const {
    if (a.computed != b.computed) return true;
    return a.computed && m_switches.differ(a.regime, b.regime);
}

std::string Runner::switchText(const Sample& before, const Sample& after, std::size_t value) const {
    const int pass = m_outcomes[value].pass();
    return m_switches.text(before.regime, after.regime, pass != 0 ? pass : m_lastPass, m_units);
}

} // namespace telvo::study
