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

/// What a study looks at along an axis: values that may jump, and which way the rules behind them
/// went.
class Response {
  public:
    /// Roundings that hang on x alone and cost little: their steps are looked for first.
    static constexpr std::size_t Roundings = 2;

    virtual ~Response() = default;
    virtual Sample at(double x) const = 0;
    /// Whether a rule switches or a gap begins between two samples.
    virtual bool differ(const Sample& a, const Sample& b) const = 0;
    virtual double rounded(std::size_t rounding, double x) const = 0;
    /// What switches between two computed samples for one of their values, in words.
    virtual std::string switchText(const Sample& before, const Sample& after,
                                   std::size_t value) const = 0;
    /// Why there is a gap at a value; empty where there is none.
    virtual std::string gapAt(double x) const = 0;
};

/// The one way a study runs single cases: a case with one variable set, read by outcomes.
class Runner final : public Response {
  public:
    /// Given: outcomes  at most Sample::most
    ///        lastPass  the last pass that the outcomes belong to
    ///        RoundTELVOSF  of the factors, for what is suggested at a depth
    Runner(const project::ProjectCase& base, const Variable& variable,
           std::vector<Outcome> outcomes, int lastPass, int RoundTELVOSF = 0);

    Sample at(double x) const override;
    /// The case as it is, without any rule of the parameter form.
    Sample own() const;
    /// Why the case as it is has no results; empty where it has.
    std::string whyNoOwn() const { return gapOf(m_base); }
    double ownValue() const { return m_variable.of(m_base); }
    std::string gapAt(double x) const override;
    std::string switchText(const Sample& before, const Sample& after,
                           std::size_t value) const override;

    /// The breadth of the active mining zone, 0 for one that does not follow the variable, and the
    /// pressure arch factor.
    double rounded(std::size_t rounding, double x) const override;
    bool differ(const Sample& a, const Sample& b) const override;
    const Switches& switches() const { return m_switches; }

    const Variable& variable() const { return m_variable; }
    const std::vector<Outcome>& outcomes() const { return m_outcomes; }

  private:
    project::ProjectInput varied(double x) const;
    std::string gapOf(const project::ProjectInput& input) const;
    bool hasOutcomes(const project::ProjectInput& input) const;
    void note(engine::Noting& calc, const project::ProjectInput& input) const;
    Sample run(const project::ProjectInput& input, double x) const;
    engine::Decisions decisions() const;

    project::ProjectInput m_base;
    std::int16_t m_units;
    engine::Frame m_frame;
    Variable m_variable;
    std::vector<Outcome> m_outcomes;
    int m_lastPass;
    Switches m_switches;
    int m_rounding;
    bool m_asksForSuggested = false;
};

} // namespace telvo::study
