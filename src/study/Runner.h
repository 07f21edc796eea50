// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/driver.h"
#include "study/Outcome.h"
#include "study/Switches.h"
#include "study/Variable.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace telvo::study {

/// A run at one value of the variable.
struct Sample {
    static constexpr std::size_t most = 4;

    double x = 0;
    bool computed = false;             ///< else there is a gap
    std::array<double, most> values{}; ///< of the outcomes
    engine::Regime regime;
};

/// The one way a study runs single cases: a case with one variable set, read by outcomes.
class Runner {
  public:
    /// Given: outcomes  at most Sample::most
    ///        lastPass  the last pass that the outcomes belong to
    Runner(const project::ProjectCase& base, const Variable& variable,
           std::vector<Outcome> outcomes, int lastPass);

    Sample at(double x) const;
    /// The case as it is, without any rule of the parameter form.
    Sample own() const;
    double ownValue() const { return m_variable.of(m_base); }
    /// Why there is a gap at a value; empty where there is none.
    std::string gapAt(double x) const;

    /// The rounded values that hang on the inputs alone, for a small part of a run's cost; 0 for a
    /// breadth that does not follow the variable.
    double breadthAt(double x) const;
    double archFactorAt(double x) const;

    /// Whether a rule switches or a gap begins between two runs.
    bool differ(const Sample& a, const Sample& b) const;
    const Switches& switches() const { return m_switches; }

    const Variable& variable() const { return m_variable; }
    const std::vector<Outcome>& outcomes() const { return m_outcomes; }

  private:
    project::ProjectInput varied(double x) const;
    bool hasOutcomes(const project::ProjectInput& input) const;
    void note(engine::Noting& calc, const project::ProjectInput& input) const;
    Sample run(const project::ProjectInput& input, double x) const;
    engine::Decisions decisions() const;

    project::ProjectInput m_base;
    std::int16_t m_units;
    engine::Frame m_frame;
    Variable m_variable;
    std::vector<Outcome> m_outcomes;
    Switches m_switches;
};

} // namespace telvo::study
