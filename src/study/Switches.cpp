// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/Switches.h"

#include "base/numbers.h"
#include "engine/AnalysisResults.h"
#include "project/ProjectInput.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <tuple>

namespace telvo::study {

using engine::Decision;
using engine::Regime;

namespace {

/// When a rule is told, in the order of telling: what jumps before what bends.
enum class Told { JumpOfPanel, JumpOfSide, BendOfGob, BendOfSide, BendOfPillars, Never };

/// Which decisions of a rule a row is about.
enum class About { All, Sides, Panel };

/// What an engineer has to know of a rule that switches. {Side} is First or Second, {Gob} which
/// gob, {pass} development or retreat, {unit} ft or m, {from} and {to} the values of a step.
struct RuleWords {
    Rule rule;
    Told told = Told::Never;
    std::string_view toYes = {}; ///< the decision turns to yes; of a step: its value changes
    std::string_view toNo = {};  ///< to no; of a step: its governor switches
    /// The decision means something only where this one of the same place was taken and said no.
    Rule governor = Rule::Count;
    double governed = 0; ///< of a step: the value where the governor says yes
    /// Not told where this one of the same place switches as well, or only where it turns to yes.
    Rule toldBy = Rule::Count;
    bool toldByYes = false;
    About about = About::All;
};

/// Every rule once, or once for the sides and once for the panel; within a time of telling in the
/// order of telling.
constexpr std::array Table = {
    RuleWords{.rule = Rule::ArchRounded,
              .told = Told::JumpOfPanel,
              .toYes = "Pressure arch factor steps from {from} to {to}, being rounded to two "
                       "decimals",
              .toNo = "Pressure arch factor steps from {from} to {to}: it is 1 where the depth "
                      "exceeds the panel width by less than 80 {unit}",
              .governor = Rule::ArchShallow,
              .governed = 1},
    RuleWords{.rule = Rule::BreadthRounded,
              .told = Told::JumpOfPanel,
              .toYes = "Automatic breadth of the AMZ steps from {from} to {to} {unit}, being a "
                       "whole number"},
    RuleWords{.rule = Rule::AngleBelowRight,
              .told = Told::JumpOfPanel,
              .toYes = "{Gob}: the abutment angle is below 90 degrees from here on",
              .toNo = "{Gob}: an abutment angle of 90 degrees counts as 89.9 degrees"},
    RuleWords{.rule = Rule::FrontGobWider,
              .told = Told::JumpOfPanel,
              .toYes = "Front abutment: from here on the active gob counts as wider than the "
                       "loaded width, and half of the load on the AMZ goes over a remnant",
              .toNo = "Front abutment: from here on the active gob no longer counts as wider than "
                      "the loaded width, which changes the load over a remnant",
              .about = About::Sides},
    RuleWords{.rule = Rule::NoBarrier,
              .told = Told::JumpOfSide,
              .toYes = "{Side} side has no barrier from here on",
              .toNo = "{Side} side has a barrier from here on"},
    RuleWords{.rule = Rule::BarrierTooNarrow,
              .told = Told::JumpOfSide,
              .toYes = "{Side} barrier is narrower than the mining height from here on: its "
                       "strength is set to zero",
              .toNo = "{Side} barrier is no longer narrower than the mining height: it has "
                      "strength from here on",
              .governor = Rule::NoBarrier},
    RuleWords{.rule = Rule::RemnantTooNarrow,
              .told = Told::JumpOfSide,
              .toYes = "{Side} remnant barrier is narrower than the mining height from here on: "
                       "its strength is set to zero",
              .toNo = "{Side} remnant barrier is no longer narrower than the mining height: it "
                      "has strength from here on",
              .governor = Rule::RemnantGone},
    RuleWords{.rule = Rule::RemnantGone,
              .told = Told::JumpOfSide,
              .toYes = "{Side} barrier is taken by its slab cut from here on: all of its front "
                       "abutment goes to the AMZ",
              .toNo = "{Side} barrier is no longer taken whole by its slab cut"},

    RuleWords{.rule = Rule::GobSubcritical,
              .told = Told::BendOfGob,
              .toYes = "{Gob} turns from super- to subcritical",
              .toNo = "{Gob} turns from sub- to supercritical"},
    RuleWords{.rule = Rule::FrontFullHeight,
              .told = Told::BendOfGob,
              .toYes = "Front abutment: the loaded width passes the reach of the abutment angle",
              .toNo = "Front abutment: the loaded width passes the reach of the abutment angle",
              .toldBy = Rule::GobSubcritical},
    RuleWords{.rule = Rule::FrontGobWider,
              .told = Told::BendOfGob,
              .toYes = "Front abutment: the active gob is wider than the loaded width from here on",
              .toNo = "Front abutment: the active gob is no longer wider than the loaded width",
              .governor = Rule::FrontFullHeight,
              .about = About::Panel},

    RuleWords{.rule = Rule::RemnantIsWeak,
              .told = Told::BendOfSide,
              .toYes = "{Side} remnant SF falls to 1.5: load transfer to the AMZ begins",
              .toNo = "{Side} remnant SF rises above 1.5: load transfer to the AMZ ends",
              .governor = Rule::RemnantGone},
    RuleWords{.rule = Rule::RemnantGivesAll,
              .told = Told::BendOfSide,
              .toYes = "{Side} remnant hands all of its front abutment to the AMZ from here on",
              .toNo = "{Side} remnant keeps part of its front abutment from here on",
              .governor = Rule::RemnantGone},
    RuleWords{.rule = Rule::BarrierKeepsAll,
              .told = Told::BendOfSide,
              .toYes = "{Side} barrier SF in {pass} rises above 1.5: load transfer to the AMZ ends",
              .toNo = "{Side} barrier SF in {pass} falls to 1.5: load transfer to the AMZ begins",
              .governor = Rule::NoBarrier,
              .toldBy = Rule::BarrierGivesAll,
              .toldByYes = true},
    RuleWords{.rule = Rule::BarrierGivesAll,
              .told = Told::BendOfSide,
              .toYes = "{Side} barrier SF in {pass} falls below 0.5: all of its load is "
                       "transferred",
              .toNo = "{Side} barrier SF in {pass} rises to 0.5: less than all of its load is "
                      "transferred",
              .governor = Rule::NoBarrier,
              .toldBy = Rule::BarrierKeepsAll,
              .toldByYes = true},
    RuleWords{.rule = Rule::BleederNegligible,
              .told = Told::BendOfSide,
              .toYes = "{Side} barrier gets no more load-bearing capacity from its bleeder row",
              .toNo = "{Side} barrier gets load-bearing capacity from its bleeder row from here on",
              .governor = Rule::NoBarrier},

    RuleWords{.rule = Rule::LengthIsMinimum,
              .told = Told::BendOfPillars,
              .toYes = "Length and width of pillars change places",
              .toNo = "Length and width of pillars change places"},

    // The analysis computes the arch factor by its own rule.
    RuleWords{.rule = Rule::FormArchDeepEnough},
    RuleWords{.rule = Rule::FormArchShallow},
    RuleWords{.rule = Rule::FormArchLowest},
    RuleWords{.rule = Rule::FormArchRounded},
    RuleWords{.rule = Rule::FormArchNoPanel},
    // Told by the step of the factor, or never met by a panel that has pillars.
    RuleWords{.rule = Rule::ArchShallow},
    RuleWords{.rule = Rule::ArchLowest},
    RuleWords{.rule = Rule::ArchDeepEnough},
    RuleWords{.rule = Rule::ArchNoPanel},
    // On either side lies the same value and the same slope.
    RuleWords{.rule = Rule::PillarLengthIsRounding},
    RuleWords{.rule = Rule::NoPillarWidth},
    RuleWords{.rule = Rule::RFactorFull},
    // They switch where RemnantGone or RemnantIsWeak does, or at a single value between two others.
    RuleWords{.rule = Rule::RemnantWithoutLoad},
    RuleWords{.rule = Rule::RemnantWithoutFactor},
    RuleWords{.rule = Rule::FrontMoves},
    // No factor follows from them.
    RuleWords{.rule = Rule::RFactorAlmostOne},
    RuleWords{.rule = Rule::DivisionByZero},
    RuleWords{.rule = Rule::LeavePillarOverloaded},
    RuleWords{.rule = Rule::LowestBarrier},
};

constexpr bool holdsEveryRule() {
    for (std::size_t rule = 0; rule < RuleCount; ++rule) {
        bool sides = false, panel = false;
        for (const RuleWords& row : Table) {
            if (row.rule != static_cast<Rule>(rule)) continue;
            if ((row.about != About::Panel && sides) || (row.about != About::Sides && panel))
                return false;
            sides = sides || row.about != About::Panel;
            panel = panel || row.about != About::Sides;
        }
        if (!sides || !panel) return false;
    }
    return true;
}
static_assert(holdsEveryRule(), "every rule needs its words, or a row that says why it has none");

std::size_t rowOf(const Decision& decision) {
    const About not_ = decision.where.side != 0 ? About::Panel : About::Sides;
    for (std::size_t row = 0; row < Table.size(); ++row)
        if (Table[row].rule == decision.rule && Table[row].about != not_) return row;
    return Table.size();
}

/// Place of the decision of a rule that is taken at the same place of the panel, or for both passes
/// at once; -1 where there is none.
int placeOf(Rule rule, const Where& where, const std::vector<Decision>& choices) {
    for (const int pass : {where.pass, 0})
        for (std::size_t place = 0; place < choices.size(); ++place)
            if (choices[place].rule == rule &&
                choices[place].where == Where{pass, where.side, where.pillar})
                return static_cast<int>(place);
    return -1;
}

std::string_view gobName(int side) {
    return side == 0                   ? "Active gob"
           : side == engine::FirstSide ? "First side gob"
                                       : "Second side gob";
}

void replace(std::string& text, std::string_view mark, std::string_view by) {
    if (const std::size_t at = text.find(mark); at != std::string::npos)
        text.replace(at, mark.size(), by);
}

} // namespace

Switches::Switches(const engine::Decisions& decisions, int lastPass) {
    const auto add = [&](const Decision& decision, std::size_t place) {
        const std::size_t row = rowOf(decision);
        if (Table[row].told == Told::Never || decision.where.pass > lastPass) return;
        const bool known = std::any_of(m_facts.begin(), m_facts.end(), [&](const Fact& fact) {
            return fact.decision == decision; // one question that several formulas ask
        });
        if (known) return;
        int governor = -1;
        if (Table[row].governor != Rule::Count) {
            governor = placeOf(Table[row].governor, decision.where, decisions.choices);
            if (governor < 0) return; // a side that takes no part
        }
        m_facts.push_back({row, decision, place, governor});
    };
    for (std::size_t place = 0; place < decisions.choices.size(); ++place)
        add(decisions.choices[place], place);
    for (std::size_t place = 0; place < decisions.steps.size(); ++place)
        add(decisions.steps[place], Regime::most + place);
    std::stable_sort(m_facts.begin(), m_facts.end(), [](const Fact& a, const Fact& b) {
        const auto order = [](const Fact& fact) {
            return std::tuple(Table[fact.row].told, fact.decision.where.side, fact.row);
        };
        return order(a) < order(b);
    });
}

bool Switches::meant(const Fact& fact, const Regime& regime) {
    return fact.governor < 0 || !regime.went(static_cast<std::size_t>(fact.governor));
}

bool Switches::yes(const Fact& fact, const Regime& regime) {
    return meant(fact, regime) && regime.went(fact.place);
}

double Switches::step(const Fact& fact, const Regime& regime) {
    return meant(fact, regime) ? regime.step(fact.place - Regime::most) : Table[fact.row].governed;
}

bool Switches::differs(const Fact& fact, const Regime& a, const Regime& b) {
    if (fact.place >= Regime::most) return step(fact, a) != step(fact, b);
    return yes(fact, a) != yes(fact, b);
}

bool Switches::differ(const Regime& a, const Regime& b) const {
    if (a == b) return false;
    return std::any_of(m_facts.begin(), m_facts.end(),
                       [&](const Fact& fact) { return differs(fact, a, b); });
}

bool Switches::gobTurns(const Regime& a, const Regime& b, int pass) const {
    return std::any_of(m_facts.begin(), m_facts.end(), [&](const Fact& fact) {
        const int of = fact.decision.where.pass;
        return fact.decision.rule == Rule::GobSubcritical && (of == 0 || of == pass) &&
               differs(fact, a, b);
    });
}

std::string Switches::words(const Fact& fact, const Regime& before, const Regime& after,
                            std::int16_t units) {
    const RuleWords& row = Table[fact.row];
    const bool isStep = fact.place >= Regime::most;
    const bool first = isStep ? meant(fact, before) == meant(fact, after) : yes(fact, after);
    std::string text(first ? row.toYes : row.toNo);
    const Where& where = fact.decision.where;
    replace(text, "{Side}", where.side == engine::FirstSide ? "First" : "Second");
    replace(text, "{Gob}", gobName(where.side));
    replace(text, "{pass}", where.pass == engine::Development ? "development" : "retreat");
    replace(text, "{unit}", units == project::English ? "ft" : "m");
    if (isStep) {
        replace(text, "{from}", generalNumber(step(fact, before), 7));
        replace(text, "{to}", generalNumber(step(fact, after), 7));
    }
    return text;
}

std::string Switches::text(const Regime& before, const Regime& after, int pass,
                           std::int16_t units) const {
    std::vector<const Fact*> switching;
    for (const Fact& fact : m_facts)
        if (const int of = fact.decision.where.pass;
            (of == 0 || of == pass) && differs(fact, before, after))
            switching.push_back(&fact);
    const auto isToldBy = [&](const Fact& fact) {
        const RuleWords& row = Table[fact.row];
        return std::any_of(switching.begin(), switching.end(), [&](const Fact* other) {
            return other->decision == Decision{row.toldBy, fact.decision.where} &&
                   (!row.toldByYes || yes(*other, after));
        });
    };

    std::vector<std::string> told;
    bool jumps = false;
    for (const Fact* fact : switching) {
        const bool bends = Table[fact->row].told >= Told::BendOfGob;
        if (bends && jumps) break;
        if (isToldBy(*fact)) continue;
        jumps = jumps || !bends;
        if (std::string text = words(*fact, before, after, units);
            std::find(told.begin(), told.end(), text) == told.end())
            told.push_back(std::move(text));
    }
    std::string text;
    for (const std::string& each : told)
        text += (text.empty() ? "" : "; ") + each;
    return text;
}

} // namespace telvo::study
