// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/calc.h"

#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace telvo::engine {

/// Which way every decision of a run went, and what its roundings came to. Cases of the same Frame
/// decide the same rules in the same order, so that two regimes of one frame are compared place by
/// place; Decisions tells which rule stands where.
class Regime {
  public:
    static constexpr std::size_t most = 256, mostSteps = 4;

    TELVO_INLINE void note(bool yes) {
        assert(m_count < most);
        m_yes[m_count / 64] |= std::uint64_t{yes} << m_count % 64;
        ++m_count;
    }
    void noteStep(double value) {
        assert(m_stepCount < mostSteps);
        m_steps[m_stepCount++] = value;
    }

    std::size_t count() const { return m_count; }
    bool went(std::size_t place) const { return (m_yes[place / 64] >> place % 64 & 1) != 0; }
    std::size_t stepCount() const { return m_stepCount; }
    double step(std::size_t place) const { return m_steps[place]; }

    bool operator==(const Regime&) const = default;

  private:
    std::array<std::uint64_t, most / 64> m_yes{};
    std::array<double, mostSteps> m_steps{};
    std::size_t m_count = 0, m_stepCount = 0;
};

/// A rule and what it is applied to.
struct Decision {
    Rule rule = Rule::Count;
    Where where;

    bool operator==(const Decision&) const = default;
};

/// The rules behind the places of a regime.
struct Decisions {
    std::vector<Decision> choices, steps;
};

/// One case, and which way its decisions went.
struct Noting : Scalar {
    Regime regime;
    Decisions* decisions = nullptr; ///< filled where somebody asks for them

    TELVO_INLINE double choose(Rule rule, bool yes, double a, double b) {
        note(rule, yes);
        return yes ? a : b;
    }
    TELVO_INLINE double atMost(Rule rule, double x, double limit) {
        note(rule, x > limit);
        return x > limit ? limit : x;
    }
    TELVO_INLINE double atLeast(Rule rule, double x, double limit) {
        note(rule, x < limit);
        return x < limit ? limit : x;
    }
    double stepped(Rule rule, double rounded) {
        if (decisions) decisions->steps.push_back({rule, here});
        regime.noteStep(rounded);
        return rounded;
    }

  private:
    TELVO_INLINE void note(Rule rule, bool yes) {
        if (decisions) tell(rule);
        regime.note(yes);
    }
    // Once per frame; within the other one it would keep that from melting into the rules.
    [[gnu::noinline]] void tell(Rule rule) { decisions->choices.push_back({rule, here}); }
};

} // namespace telvo::engine
