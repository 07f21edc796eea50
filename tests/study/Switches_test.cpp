// SPDX-License-Identifier: GPL-3.0-or-later
// The words for what switches between two runs, from decisions noted by hand.
#include "study/Switches.h"

#include "engine/AnalysisResults.h"
#include "project/ProjectInput.h"

#include <gtest/gtest.h>
#include <initializer_list>
#include <utility>
#include <vector>

namespace telvo::study {
namespace {

using engine::Development, engine::Retreat, engine::FirstSide, engine::SecondSide;
using engine::Regime;
using project::English, project::Metric;

struct Choice {
    Rule rule;
    Where where;
    bool before, after;
};
struct Step {
    Rule rule;
    double before, after;
};

/// Two runs that differ in what is told of them.
struct Runs {
    engine::Decisions decisions;
    Regime before, after;

    Runs(std::initializer_list<Choice> choices, std::initializer_list<Step> steps = {}) {
        for (const Choice& choice : choices) {
            decisions.choices.push_back({choice.rule, choice.where});
            before.note(choice.before);
            after.note(choice.after);
        }
        for (const Step& step : steps) {
            decisions.steps.push_back({step.rule, {}});
            before.noteStep(step.before);
            after.noteStep(step.after);
        }
    }
    Switches switches(int lastPass = Retreat) const { return {decisions, lastPass}; }
    std::string text(int pass = Retreat, std::int16_t units = English) const {
        return switches().text(before, after, pass, units);
    }
    std::string back(int pass = Retreat) const {
        return switches().text(after, before, pass, English);
    }
    bool differ() const { return switches().differ(before, after); }
};

constexpr Where First{0, FirstSide}, Second{0, SecondSide};
constexpr Where RetreatFirst{Retreat, FirstSide}, RetreatSecond{Retreat, SecondSide};

TEST(Switches, StepsOfRoundingsAreToldWithTheirValues) {
    const Choice shallow{Rule::ArchShallow, {}, false, false};
    EXPECT_EQ(Runs({shallow}, {{Rule::ArchRounded, 0.83, 0.82}}).text(),
              "Pressure arch factor steps from 0.83 to 0.82, being rounded to two decimals");
    // What the logarithm gives where the depth is shallow is not used.
    const Runs limit({{Rule::ArchShallow, {}, true, false}}, {{Rule::ArchRounded, 0.97, 0.95}});
    EXPECT_EQ(limit.text(Development, Metric),
              "Pressure arch factor steps from 1 to 0.95: it is 1 where the depth exceeds the "
              "panel width by less than 80 m");
    EXPECT_EQ(limit.back(), "Pressure arch factor steps from 0.95 to 1: it is 1 where the depth "
                            "exceeds the panel width by less than 80 ft");
    EXPECT_FALSE(
        Runs({{Rule::ArchShallow, {}, true, true}}, {{Rule::ArchRounded, 0.97, 0.96}}).differ());
    EXPECT_FALSE(
        Runs({{Rule::ArchShallow, {}, true, false}}, {{Rule::ArchRounded, 0.97, 1}}).differ());
    EXPECT_EQ(Runs({}, {{Rule::BreadthRounded, 100, 101}}).text(),
              "Automatic breadth of the AMZ steps from 100 to 101 ft, being a whole number");
    EXPECT_EQ(Runs({shallow}, {{Rule::BreadthRounded, 30, 31}, {Rule::ArchRounded, 0.5, 0.49}})
                  .text(Retreat, Metric),
              "Pressure arch factor steps from 0.5 to 0.49, being rounded to two decimals; "
              "Automatic breadth of the AMZ steps from 30 to 31 m, being a whole number");
}

TEST(Switches, EveryRuleHasItsWordsEitherWay) {
    struct Row {
        Rule rule;
        Where where;
        const char *toYes, *toNo;
    };
    const Row rows[] = {
        {Rule::AngleBelowRight, First,
         "First side gob: the abutment angle is below 90 degrees from here on",
         "First side gob: an abutment angle of 90 degrees counts as 89.9 degrees"},
        {Rule::FrontGobWider, RetreatFirst,
         "Front abutment: from here on the active gob counts as wider than the loaded width, and "
         "half of the load on the AMZ goes over a remnant",
         "Front abutment: from here on the active gob no longer counts as wider than the loaded "
         "width, which changes the load over a remnant"},
        {Rule::FrontGobWider,
         {Retreat},
         "Front abutment: the active gob is wider than the loaded width from here on",
         "Front abutment: the active gob is no longer wider than the loaded width"},
        {Rule::NoBarrier, First, "First side has no barrier from here on",
         "First side has a barrier from here on"},
        {Rule::BarrierTooNarrow, Second,
         "Second barrier is narrower than the mining height from here on: its strength is set to "
         "zero",
         "Second barrier is no longer narrower than the mining height: it has strength from here "
         "on"},
        {Rule::RemnantTooNarrow, RetreatFirst,
         "First remnant barrier is narrower than the mining height from here on: its strength is "
         "set to zero",
         "First remnant barrier is no longer narrower than the mining height: it has strength "
         "from here on"},
        {Rule::RemnantGone, RetreatSecond,
         "Second barrier is taken by its slab cut from here on: all of its front abutment goes to "
         "the AMZ",
         "Second barrier is no longer taken whole by its slab cut"},
        {Rule::GobSubcritical,
         {Retreat},
         "Active gob turns from super- to subcritical",
         "Active gob turns from sub- to supercritical"},
        {Rule::GobSubcritical, Second, "Second side gob turns from super- to subcritical",
         "Second side gob turns from sub- to supercritical"},
        {Rule::FrontFullHeight,
         {Retreat},
         "Front abutment: the loaded width passes the reach of the abutment angle",
         "Front abutment: the loaded width passes the reach of the abutment angle"},
        {Rule::RemnantIsWeak, RetreatFirst,
         "First remnant SF falls to 1.5: load transfer to the AMZ begins",
         "First remnant SF rises above 1.5: load transfer to the AMZ ends"},
        {Rule::RemnantGivesAll, RetreatFirst,
         "First remnant hands all of its front abutment to the AMZ from here on",
         "First remnant keeps part of its front abutment from here on"},
        {Rule::BarrierKeepsAll, RetreatFirst,
         "First barrier SF in retreat rises above 1.5: load transfer to the AMZ ends",
         "First barrier SF in retreat falls to 1.5: load transfer to the AMZ begins"},
        {Rule::BarrierGivesAll, RetreatSecond,
         "Second barrier SF in retreat falls below 0.5: all of its load is transferred",
         "Second barrier SF in retreat rises to 0.5: less than all of its load is transferred"},
        {Rule::BleederNegligible, First,
         "First barrier gets no more load-bearing capacity from its bleeder row",
         "First barrier gets load-bearing capacity from its bleeder row from here on"},
        {Rule::LengthIsMinimum,
         {0, 0, 2},
         "Length and width of pillars change places",
         "Length and width of pillars change places"},
    };
    for (const Row& row : rows) {
        // What governs a rule is there and says no.
        const bool governs = row.rule == Rule::NoBarrier || row.rule == Rule::RemnantGone;
        std::vector<Choice> others;
        for (const Rule governor : {Rule::NoBarrier, Rule::RemnantGone, Rule::FrontFullHeight})
            if (!governs && row.rule != governor)
                others.push_back({governor, row.where, false, false});
        Runs runs{{row.rule, row.where, false, true}};
        for (const Choice& other : others) {
            runs.decisions.choices.push_back({other.rule, other.where});
            runs.before.note(false), runs.after.note(false);
        }
        EXPECT_EQ(runs.text(), row.toYes);
        EXPECT_EQ(runs.back(), row.toNo);
        EXPECT_TRUE(runs.differ());
    }
}

TEST(Switches, DecisionWithoutMeaningIsNotTold) {
    // A barrier that is not there is not too narrow, one that takes no part is not asked of.
    EXPECT_FALSE(
        Runs({{Rule::BarrierTooNarrow, First, true, false}, {Rule::NoBarrier, First, true, true}})
            .differ());
    EXPECT_FALSE(Runs({{Rule::BarrierTooNarrow, Second, true, false},
                       {Rule::NoBarrier, First, false, false}})
                     .differ());
    EXPECT_EQ(
        Runs({{Rule::BarrierTooNarrow, First, true, true}, {Rule::NoBarrier, First, true, false}})
            .text(),
        "First side has a barrier from here on; First barrier is narrower than the mining "
        "height from here on: its strength is set to zero");
    EXPECT_FALSE(Runs({{Rule::RemnantIsWeak, RetreatFirst, false, true},
                       {Rule::RemnantGone, RetreatFirst, true, true}})
                     .differ());
    EXPECT_FALSE(Runs({{Rule::FrontGobWider, {Retreat}, false, true},
                       {Rule::FrontFullHeight, {Retreat}, true, true}})
                     .differ());
    // The factor reaches 1 without a bend.
    const Runs silent{{Rule::RFactorFull, {}, false, true}};
    EXPECT_FALSE(silent.differ());
    EXPECT_EQ(silent.text(), "");
    EXPECT_FALSE(silent.before == silent.after);
}

TEST(Switches, WhatJumpsIsToldBeforeWhatBends) {
    const Choice narrow{Rule::BarrierTooNarrow, Second, false, true};
    const Choice barrier{Rule::NoBarrier, Second, false, false};
    const Choice gob{Rule::GobSubcritical, First, false, true};
    const Choice pillars{Rule::LengthIsMinimum, {0, 0, 1}, true, false};
    const Choice others{Rule::LengthIsMinimum, {0, 0, 2}, true, false};
    EXPECT_EQ(Runs({gob, barrier, narrow}).text(),
              "Second barrier is narrower than the mining height from here on: its strength is "
              "set to zero");
    // In the order of the table whatever the order of the run, the same words once.
    EXPECT_EQ(Runs({others, pillars, gob}).text(),
              "First side gob turns from super- to subcritical; Length and width of pillars "
              "change places");
    // First side before second side.
    EXPECT_EQ(Runs({{Rule::NoBarrier, Second, true, false}, {Rule::NoBarrier, First, true, false}})
                  .text(),
              "First side has a barrier from here on; Second side has a barrier from here on");
}

TEST(Switches, OneEventIsToldOnce) {
    const Choice full{Rule::FrontFullHeight, {Retreat}, true, false};
    EXPECT_EQ(Runs({full, {Rule::GobSubcritical, {Retreat}, false, true}}).text(),
              "Active gob turns from super- to subcritical");
    EXPECT_EQ(Runs({full, {Rule::GobSubcritical, First, false, true}}).text(),
              "Front abutment: the loaded width passes the reach of the abutment angle; First side "
              "gob turns from super- to subcritical");
    // From above 1.5 to below 0.5 at once, and back.
    const Runs fall({{Rule::NoBarrier, RetreatFirst, false, false},
                     {Rule::BarrierKeepsAll, RetreatFirst, true, false},
                     {Rule::BarrierGivesAll, RetreatFirst, false, true}});
    EXPECT_EQ(fall.text(),
              "First barrier SF in retreat falls below 0.5: all of its load is transferred");
    EXPECT_EQ(fall.back(),
              "First barrier SF in retreat rises above 1.5: load transfer to the AMZ ends");
}

TEST(Switches, EachPassHasItsOwn) {
    const Runs runs({{Rule::NoBarrier, {Development, FirstSide}, false, false},
                     {Rule::NoBarrier, RetreatFirst, false, false},
                     {Rule::BarrierKeepsAll, {Development, FirstSide}, true, false},
                     {Rule::BarrierKeepsAll, RetreatFirst, true, true},
                     {Rule::GobSubcritical, {Retreat}, true, false}});
    EXPECT_EQ(runs.text(Development),
              "First barrier SF in development falls to 1.5: load transfer to the AMZ begins");
    EXPECT_EQ(runs.text(Retreat), "Active gob turns from sub- to supercritical");
    const Switches both = runs.switches();
    EXPECT_TRUE(both.gobTurns(runs.before, runs.after, Retreat));
    EXPECT_FALSE(both.gobTurns(runs.before, runs.after, Development));
    EXPECT_FALSE(both.gobTurns(runs.before, runs.before, Retreat));
    // A development case has no use for what retreat decides.
    const Runs gob({{Rule::GobSubcritical, {Retreat}, true, false}});
    EXPECT_TRUE(gob.differ());
    EXPECT_FALSE(gob.switches(Development).differ(gob.before, gob.after));
    // A side gob loads both passes.
    const Runs side({{Rule::GobSubcritical, First, true, false}});
    EXPECT_TRUE(side.switches().gobTurns(side.before, side.after, Development));
    EXPECT_TRUE(side.switches().gobTurns(side.before, side.after, Retreat));
}

} // namespace
} // namespace telvo::study
