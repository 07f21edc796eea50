// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/AnalysisResults.h"
#include "engine/WorkingInputs.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

/// Which way the rules of the analysis went in a run, and what it means when two runs differ.
namespace telvo::study {

/// Rules that switch. Those of a side come twice, for the first and for the second side. The
/// R-factors are not among them: they reach 1 without a bend.
enum class Rule : std::size_t {
    ArchFactor,       // its hundredths
    AMZBreadth,       // its whole feet or metres when automatic
    FrontVolumes,     // which volumes the front abutment consists of
    ActiveGob,        // sub- or supercritical
    PillarShape,      // which pillars are shorter than wide
    Barrier,          // whether there is a barrier; from here on by side
    BarrierStrength,  // narrower than the mining height: none
    RemnantStrength,  // likewise
    SlabcutTakesAll,  // nothing is left of the barrier
    RemnantTransfer,  // stability factor at most 1.5
    RemnantAll,       // the remnant hands on everything
    BarrierTransfer1, // none, part or all of the load, in development
    BarrierTransfer2, // and in retreat
    SideGob,          // sub- or supercritical
    BleederExcess,    // whether the bleeder row lends something
    Count
};

/// The branch that every rule took, in numbers that are only compared. A run without results has
/// no branches and differs from every other run.
class Regime {
  public:
    Regime() = default;
    Regime(const engine::WorkingInputs& in, const engine::AnalysisResults& r);

    bool operator==(const Regime&) const = default;

  private:
    friend bool gobTurns(const Regime&, const Regime&, int);
    friend std::string switchText(const Regime&, const Regime&, std::int16_t);
    static constexpr int firstOfSide = static_cast<int>(Rule::Barrier);
    static constexpr std::size_t slots = 2 * static_cast<std::size_t>(Rule::Count) - firstOfSide;

    static std::size_t slot(Rule rule, int k);
    std::int64_t branch(Rule rule, int k) const { return m_branches[slot(rule, k)]; }

    bool m_computed = false;
    std::array<std::int64_t, slots> m_branches{};
};

/// Whether a gob that loads the pass turns between sub- and supercritical. Its load goes on without
/// jump or bend there; a reader looks for the place all the same.
bool gobTurns(const Regime& before, const Regime& after, int pass);

/// What switches between two runs, in words for an engineer; rules that make the factors jump
/// before rules that only bend the curve. Empty when no rule switches.
/// Given: before, after  the runs left and right of the switch
///        units          unit system of the case
std::string switchText(const Regime& before, const Regime& after, std::int16_t units);

} // namespace telvo::study
