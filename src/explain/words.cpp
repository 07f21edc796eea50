// SPDX-License-Identifier: GPL-3.0-or-later
#include "explain/words.h"

#include "criteria/assess.h"

namespace telvo::explain {

using namespace engine;

namespace {

constexpr bool IsYes = true, IsNo = false;

struct Words {
    Rule rule;
    bool yes;
    std::string_view sentence;
    bool withCondition = true;
    std::string_view symbol = {}; ///< empty: of every quantity but those that have their own row
};

constexpr Words Reasons[] = {
    {Rule::AngleBelowRight, IsNo,
     "an abutment angle of 90 degrees and more is analyzed as this one, which keeps its tangent "
     "finite",
     false},
    {Rule::PillarLengthIsRounding, IsYes, "a length below 0 by rounding alone counts as 0", false},
    {Rule::LengthIsMinimum, IsYes,
     "the pillar is no longer than it is wide (tie included): its length is the minimum", true,
     "w"},
    {Rule::LengthIsMinimum, IsNo, "the pillar is longer than it is wide", true, "w"},
    {Rule::NoPillarWidth, IsYes, "a pillar of width 0 has no strength"},
    {Rule::BarrierTooNarrow, IsYes, "a barrier narrower than the mining height has no strength"},
    {Rule::BarrierTooNarrow, IsNo,
     "a barrier counts as infinitely long: without the third term of a pillar's strength"},
    {Rule::RemnantTooNarrow, IsYes, "a remnant narrower than the mining height has no strength"},
    {Rule::RemnantTooNarrow, IsNo, "infinitely long, as a barrier is"},
    {Rule::BleederNegligible, IsYes, "so small an excess counts as nothing"},
    {Rule::BleederNegligible, IsNo, "lent to the barrier beside the row", false},
    {Rule::ArchNoPanel, IsYes, "a panel without width has no arch"},
    {Rule::ArchShallow, IsYes,
     "the depth exceeds the panel width by less than the margin: no arch"},
    {Rule::ArchShallow, IsNo, "two decimals, a tie goes to the even digit"},
    {Rule::ArchLowest, IsYes, "never below the least factor"},
    {Rule::RFactorFull, IsYes, "it is at most 1"},
    {Rule::GobSubcritical, IsYes, "subcritical gob (tie included)"},
    {Rule::GobSubcritical, IsNo, "supercritical gob"},
    {Rule::FrontFullHeight, IsYes,
     "gob and loaded width both reach beyond the abutment angle (tie included)", true, "a"},
    {Rule::FrontGobWider, IsYes, "the active gob is wider than the loaded width", true, "a"},
    {Rule::FrontGobWider, IsNo, "the active gob is no wider than the loaded width (tie included)",
     true, "a"},
    {Rule::FrontGobWider, IsYes,
     "the active gob is wider than the loaded width: half of the load on the AMZ; the rule jumps "
     "here",
     true, "X"},
    {Rule::FrontGobWider, IsNo,
     "half of what the loaded panel would take, less half of the load on the AMZ", false, "X"},
    {Rule::NoBarrier, IsYes, "no barrier, so that the AMZ takes the whole load", true, "Ru"},
    {Rule::NoBarrier, IsYes,
     "no barrier, nothing that could be transferred: the AMZ has the whole side abutment already",
     true, "Ltb"},
    {Rule::NoBarrier, IsYes, "no barrier"},
    {Rule::RemnantWithoutLoad, IsYes, "a remnant without width or length has no load"},
    {Rule::RemnantWithoutFactor, IsYes,
     "nothing is left of the barrier, or nothing loads the remnant: the factor is not computed and "
     "stays 0"},
    {Rule::RemnantGone, IsYes,
     "nothing is left of the barrier, or there was none: all of X is transferred"},
    {Rule::RemnantIsWeak, IsYes, "the remnant is weak (tie included); at most X"},
    {Rule::RemnantIsWeak, IsNo, "the remnant keeps its load"},
    {Rule::RemnantGivesAll, IsYes, "never more than X"},
    {Rule::FrontMoves, IsYes, "the remnant is weak"},
    {Rule::FrontMoves, IsNo, "nothing moves"},
    {Rule::BarrierKeepsAll, IsYes, "the barrier keeps its load"},
    {Rule::BarrierGivesAll, IsYes, "all of it, the linear rule would give more"},
    {Rule::BarrierGivesAll, IsNo,
     "between the two limits (ties included); without the share that the remnant's rule has"},
    {Rule::RFactorAlmostOne, IsYes,
     "an R-factor of exactly 1 is stored and printed as this once the loads are computed: the "
     "stresses of the plots divide by 1 - R"},
    {Rule::DivisionByZero, IsYes, "there is no pillar to carry the load", true, "pa"},
    {Rule::DivisionByZero, IsYes, "the pillar has no area", true, "pp"},
    {Rule::DivisionByZero, IsYes, "the barrier takes all of the load", true, "dR"},
    {Rule::LeavePillarOverloaded, IsYes, "the row has nothing to spare"},
};

using Applies = bool (*)(const Frame& f, const TracedStep& step);

bool always(const Frame&, const TracedStep&) {
    return true;
}
bool isEnglish(const Frame& f, const TracedStep&) {
    return f.english();
}
bool isMetric(const Frame& f, const TracedStep&) {
    return !f.english();
}
bool convertsDepth(const Frame& f, const TracedStep&) {
    return f.Units == project::Metric;
}
bool isAutomatic(const Frame& f, const TracedStep&) {
    return f.ArchAutomatic;
}
bool isByHand(const Frame& f, const TracedStep&) {
    return !f.ArchAutomatic;
}
bool hasRow(const Frame& f, const TracedStep& step) {
    return f.rowLeft(step.where.side);
}
bool isIdleSide(const Frame& f, const TracedStep& step) {
    return step.where.side >= FirstSide && step.where.side > f.AnalysisCase;
}
bool noOuterRow(const Frame& f, const TracedStep&) {
    return !f.rowLeft(1) && !f.rowLeft(2);
}
bool anyOuterRow(const Frame& f, const TracedStep& step) {
    return !noOuterRow(f, step);
}
bool oneSection(const Frame& f, const TracedStep&) {
    return f.oneActiveSection();
}
bool notOneSection(const Frame& f, const TracedStep&) {
    return !f.oneActiveSection();
}
bool isDevelopment(const Frame&, const TracedStep& step) {
    return step.where.pass == Development && step.tree->op == Op::Literal;
}
bool isSomething(const Frame&, const TracedStep& step) {
    return step.value != 0;
}
bool isNegative(const Frame&, const TracedStep& step) {
    return step.value < 0;
}
bool besideGob(const Frame& f, const TracedStep& step) {
    return step.where.pillar == (step.where.side == FirstSide ? 1 : f.NumberPillars);
}
bool withSlabCuts(const Frame& f, const TracedStep&) {
    return f.AnalysisCase >= OneSideGob;
}
bool developmentLoad(const Frame& f, const TracedStep&) {
    return f.AnalysisCase == DevelopmentLoad;
}

struct Note {
    std::string_view symbol;
    std::string_view sentence;
    Applies applies = always;
};

constexpr std::string_view NoFrontYet = "development: no active gob and no slab cuts yet";
constexpr std::string_view Cumulative = "cumulative; LTRANSBAR is not scaled by the arch factor";
constexpr std::string_view NoGobHere = "no gob on this side";

constexpr Note Notes[] = {
    {"S1", "psi to psf: depth in ft times unit weight in pcf gives psf", isEnglish},
    {"S1", "MPa to kPa: depth in m times unit weight in kN/m3 gives kPa", isMetric},
    {"Ap", "the pillars of one crosscut interval times the intervals within the breadth"},
    {"Wa", "no outer row is left", noOuterRow},
    {"Wa", "without the outer rows that are left", anyOuterRow},
    {"Ka", "no outer row is left", noOuterRow},
    {"Ka", "without the outer rows that are left", anyOuterRow},
    {"Lr", "along the entries, whatever the crosscut angle"},
    {"Tr", "overburden of one bleeder pillar"},
    {"sb", "this side takes no part in the loading condition", isIdleSide},
    {"Kb", "includes what the bleeder row lends", hasRow},
    {"Fpa", "entered by hand", isByHand},
    {"Fpa",
     "automatic: the analysis computes it anew, whatever factor the case shows; Wp and the "
     "factor are held in single precision",
     isAutomatic},
    {"Fpa", "the margin is compared with meters as it is with feet", isMetric},
    {"Lt", "one active section: without the outer rows that are left", oneSection},
    {"Lt", "whole AMZ, left rows included", notOneSection},
    {"D", "the rule is stated in feet; the depth in feet is held in single precision",
     convertsDepth},
    {"Rf", "the share of the load within B of the gob's edge"},
    {"Ru", "the share that the barrier takes, together with half an entry; the AMZ takes the rest"},
    {"Las", "what the barrier does not take"},
    {"Lbt", "the barrier with half an entry", isSomething},
    {"Wl", "slab cuts widen the section", withSlabCuts},
    {"Wl", "the front abutment loads no width", developmentLoad},
    {"Laf", "negative: the slab cuts take off more than the active gob brings", isNegative},
    {"Laf", NoFrontYet, isDevelopment},
    {"Lc", NoFrontYet, isDevelopment},
    {"Lc", "the corner over the slab cut, which the barrier carries in place of the AMZ",
     [](const Frame& f, const TracedStep& step) { return !isDevelopment(f, step); }},
    {"X", NoFrontYet, isDevelopment},
    {"Lm", NoFrontYet, isDevelopment},
    {"Lrem", NoFrontYet, isDevelopment},
    {"Tf", NoFrontYet, isDevelopment},
    {"Kn", "the bleeder row lends a / Sc times what it has over the breadth", hasRow},
    {"Lba", "what the arch sheds: half of tributary and front load to each side, all of the side's "
            "own"},
    {"Lbf", "the row \"Front Abutment\" of the barrier loads"},
    {"Q1", "held in single precision: seven digits"},
    {"Q2", "cumulative; held in single precision: seven digits"},
    {"Q3", Cumulative, [](const Frame& f, const TracedStep& s) { return !isIdleSide(f, s); }},
    {"Q3", NoGobHere, isIdleSide},
    {"Q4", Cumulative, [](const Frame& f, const TracedStep& s) { return !isIdleSide(f, s); }},
    {"Q4", NoGobHere, isIdleSide},
    {"SF", "one active section: without the outer rows that are left", oneSection},
    {"SF", "all pillars, left rows included", notOneSection},
    {"pb", "without the arch and the slab corner"},
    {"pa", "held in single precision"},
    {"dR", "the three pillars next to the gob share the load that passes the barrier", besideGob},
    {"Xo", "this side takes no part and has no remnant to lend to", isIdleSide},
    {"Xo", "adjusted for the effective length of the remnant barrier",
     [](const Frame& f, const TracedStep& s) {
         return s.where.side >= FirstSide && !isIdleSide(f, s);
     }},
    {"rwh", "a low ratio makes the warnings ask for a higher factor"},
    {"Hft", "the limits of the warnings are in feet in every unit system"},
    {"SFsug", "falls from the shallow to the deep limit of the warnings"},
    {"SFmin", "the least over both sides and both passes, compared without rounding; a side "
              "without a barrier has none"},
};

void append(std::string& text, std::string_view sentence) {
    text.append(text.empty() ? "" : "; ").append(sentence);
}

} // namespace

Reason reasonOf(Rule rule, bool yes, std::string_view symbol) {
    Reason reason;
    for (const Words& words : Reasons) {
        if (words.rule != rule || words.yes != yes) continue;
        if (words.symbol == symbol) return {words.sentence, words.withCondition};
        if (words.symbol.empty()) reason = {words.sentence, words.withCondition};
    }
    return reason;
}

std::string noteOn(const TracedStep& step, const Frame& frame, int mode) {
    std::string text;
    for (const Note& note : Notes)
        if (note.symbol == step.symbol && note.applies(frame, step)) append(text, note.sentence);
    if (step.symbol == "SFsug" && mode == criteria::HalfEven)
        append(text, "two decimals, a tie goes to the even digit");
    if (step.symbol == "SFsug" && mode == criteria::Cut)
        append(text, "cut after two decimals before it is compared");
    return text;
}

} // namespace telvo::explain
