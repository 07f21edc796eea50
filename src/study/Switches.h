// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Noting.h"

#include <cstdint>
#include <string>
#include <vector>

namespace telvo::study {

/// What it means in words when two runs of a study went different ways. The runs noted which way
/// every rule went; this knows which of these decisions a reader of a curve has to know of, and
/// which decide nothing because another one does not let them.
class Switches {
  public:
    /// Given: decisions  the rules behind the places of the regimes of a study
    ///        lastPass   the last one whose results are shown
    Switches(const engine::Decisions& decisions, int lastPass);

    /// Whether a rule switches between two runs that makes a curve jump or bend.
    bool differ(const engine::Regime& a, const engine::Regime& b) const;

    /// Whether a gob that loads the pass turns between sub- and supercritical. Its load goes on
    /// without jump or bend there; a reader looks for the place all the same.
    bool gobTurns(const engine::Regime& a, const engine::Regime& b, int pass) const;

    /// What switches for the results of a pass, in words for an engineer: the rules that make the
    /// factors jump; where there are none, those that only bend the curve. Empty when no rule
    /// switches.
    /// Given: before, after  the runs left and right of the switch
    ///        units          unit system of the case
    std::string text(const engine::Regime& before, const engine::Regime& after, int pass,
                     std::int16_t units) const;

  private:
    struct Fact {
        std::size_t row = 0; ///< of the table of words
        engine::Decision decision;
        std::size_t place = 0; ///< in the regime
        int governor = -1;     ///< place of the decision that may leave this one without a meaning
    };

    static bool meant(const Fact& fact, const engine::Regime& regime);
    static bool yes(const Fact& fact, const engine::Regime& regime);
    static double step(const Fact& fact, const engine::Regime& regime);
    static bool differs(const Fact& fact, const engine::Regime& a, const engine::Regime& b);
    static std::string words(const Fact& fact, const engine::Regime& before,
                             const engine::Regime& after, std::int16_t units);

    std::vector<Fact> m_facts; ///< in the order in which they are told
};

} // namespace telvo::study
