// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/switches.h"

#include "base/numbers.h"
#include "engine/scalarRules.h"
#include "project/units.h"

#include <bit>
#include <cmath>
#include <utility>

namespace telvo::study {

using namespace engine;

namespace {

/// Volumes of the front abutment, after frontAbutmentOnAMZ().
enum Front { FullHeight, GobWithinLoadedWidth, GobWiderThanLoaded };

Front frontVolumes(const WorkingInputs& in, const AnalysisResults& r) {
    const double E = in.GobExtent[1];
    const double HT = in.H * in.AbutmentTangent[1];
    if (r.LoadedWidth / 2 >= HT && E / 2 >= HT) return FullHeight;
    return E <= r.LoadedWidth ? GobWithinLoadedWidth : GobWiderThanLoaded;
}

bool isSubcritical(const WorkingInputs& in, int gob) {
    return in.GobExtent[gob] / 2 <= in.H * in.AbutmentTangent[gob];
}

/// Branches of barrierTransfer().
enum Transfer { AllTransfer, PartTransfer, NoTransfer };

Transfer transferBranch(double SF) {
    if (SF > TransferThreshold) return NoTransfer;
    return SF < 0.5 ? AllTransfer : PartTransfer;
}

std::string steps(const std::string& what, double before, double after, std::string_view unit) {
    return what + " steps from " + generalNumber(before, 7) + " to " + generalNumber(after, 7) +
           std::string(unit);
}

std::string archText(double before, double after, std::int16_t units) {
    const bool reachesOne = before == 1 || after == 1;
    std::string text = steps("Pressure arch factor", before, after, "");
    // A step of more than a hundredth is not made by rounding.
    if (reachesOne && std::abs(after - before) > 0.015)
        return text + ": it is 1 where the depth exceeds the panel width by less than 80 " +
               (units == project::English ? "ft" : "m");
    return text + ", being rounded to two decimals";
}

std::string gobText(std::string_view gob, bool subcriticalAfter) {
    return std::string(gob) + (subcriticalAfter ? " turns from super- to subcritical"
                                                : " turns from sub- to supercritical");
}

/// What follows the name of a side: " barrier becomes ...".
std::string sideText(Rule rule, std::int64_t before, std::int64_t after) {
    switch (rule) {
    case Rule::Barrier:
        return after ? " side has a barrier from here on" : " side has no barrier from here on";
    case Rule::BarrierStrength:
        return after ? " barrier is narrower than the mining height from here on: its strength is "
                       "set to zero"
                     : " barrier is no longer narrower than the mining height: it has strength "
                       "from here on";
    case Rule::RemnantStrength:
        return after ? " remnant barrier is narrower than the mining height from here on: its "
                       "strength is set to zero"
                     : " remnant barrier is no longer narrower than the mining height: it has "
                       "strength from here on";
    case Rule::SlabcutTakesAll:
        return after ? " barrier is taken by its slab cut from here on: all of its front abutment "
                       "goes to the AMZ"
                     : " barrier is no longer taken whole by its slab cut";
    case Rule::RemnantTransfer:
        return after ? " remnant SF falls to 1.5: load transfer to the AMZ begins"
                     : " remnant SF rises above 1.5: load transfer to the AMZ ends";
    case Rule::RemnantAll:
        return after ? " remnant hands all of its front abutment to the AMZ from here on"
                     : " remnant keeps part of its front abutment from here on";
    case Rule::BarrierTransfer1:
    case Rule::BarrierTransfer2: {
        std::string text = " barrier SF in ";
        text += rule == Rule::BarrierTransfer1 ? "development" : "retreat";
        if (after == NoTransfer) return text + " rises above 1.5: load transfer to the AMZ ends";
        if (after == AllTransfer) return text + " falls below 0.5: all of its load is transferred";
        return text + (before == NoTransfer
                           ? " falls to 1.5: load transfer to the AMZ begins"
                           : " rises to 0.5: less than all of its load is transferred");
    }
    case Rule::BleederExcess:
        return after ? " barrier gets load-bearing capacity from its bleeder row from here on"
                     : " barrier gets no more load-bearing capacity from its bleeder row";
    default:
        return {};
    }
}

} // namespace

std::size_t Regime::slot(Rule rule, int k) {
    const auto place = static_cast<std::size_t>(rule);
    return k == SecondSide ? place + static_cast<std::size_t>(Rule::Count) - firstOfSide : place;
}

Regime::Regime(const WorkingInputs& in, const AnalysisResults& r) : m_computed(true) {
    const auto set = [this](Rule rule, auto branch, int k = FirstSide) {
        m_branches[slot(rule, k)] = static_cast<std::int64_t>(branch);
    };
    set(Rule::ArchFactor, std::bit_cast<std::int64_t>(static_cast<double>(r.ArchFactor)));
    set(Rule::AMZBreadth, std::bit_cast<std::int64_t>(in.B));
    std::int64_t shapes = 0;
    for (int i = 1; i <= in.NumberPillars; ++i)
        shapes = 2 * shapes + (r.PillarLength <= in.PillarGrossWidth[i] ? 1 : 0);
    set(Rule::PillarShape, shapes);
    if (in.AnalysisCase >= ActiveGob) {
        set(Rule::FrontVolumes, frontVolumes(in, r));
        set(Rule::ActiveGob, isSubcritical(in, 1));
    }
    for (int k = FirstSide; k <= in.AnalysisCase; ++k) {
        const bool barrier = in.BarrierWidth[k] != 0;
        set(Rule::SideGob, isSubcritical(in, gobOfSide(k)), k);
        set(Rule::Barrier, barrier, k);
        set(Rule::SlabcutTakesAll, r.RemnantWidth[k] <= 0, k);
        set(Rule::RemnantStrength, r.RemnantWidth[k] > 0 && r.RemnantWidth[k] < in.h, k);
        set(Rule::RemnantTransfer, r.RemnantSF[k] <= TransferThreshold, k);
        set(Rule::RemnantAll, r.LTRANSREM[Retreat][k] == r.FrontOnRemnant[Retreat][k], k);
        set(Rule::BleederExcess, r.BleederExcess[k] != 0, k);
        if (!barrier) continue;
        set(Rule::BarrierStrength, in.BarrierWidth[k] < in.h, k);
        set(Rule::BarrierTransfer1, transferBranch(r.BarrierSF[Development][k]), k);
        set(Rule::BarrierTransfer2, transferBranch(r.BarrierSF[Retreat][k]), k);
    }
}

bool gobTurns(const Regime& before, const Regime& after, int pass) {
    const auto differs = [&](Rule rule, int k) {
        return before.branch(rule, k) != after.branch(rule, k);
    };
    return (pass == Retreat && differs(Rule::ActiveGob, FirstSide)) ||
           differs(Rule::SideGob, FirstSide) || differs(Rule::SideGob, SecondSide);
}

std::string switchText(const Regime& before, const Regime& after, std::int16_t units) {
    std::string text;
    const auto add = [&](const std::string& more) {
        if (!text.empty() && !more.empty()) text += "; ";
        text += more;
    };
    const auto differs = [&](Rule rule, int k = FirstSide) {
        return before.branch(rule, k) != after.branch(rule, k);
    };
    const auto values = [&](Rule rule) {
        return std::pair(std::bit_cast<double>(before.branch(rule, FirstSide)),
                         std::bit_cast<double>(after.branch(rule, FirstSide)));
    };
    const auto addSides = [&](std::initializer_list<Rule> rules) {
        for (const int k : {FirstSide, SecondSide})
            for (const Rule rule : rules)
                if (differs(rule, k))
                    add((k == FirstSide ? "First" : "Second") +
                        sideText(rule, before.branch(rule, k), after.branch(rule, k)));
    };

    if (differs(Rule::ArchFactor)) {
        const auto [from, to] = values(Rule::ArchFactor);
        // Narrow again: the factor is shown as the single-precision number that it is.
        add(archText(roundHalfEven2(from), roundHalfEven2(to), units));
    }
    if (differs(Rule::AMZBreadth)) {
        const auto [from, to] = values(Rule::AMZBreadth);
        add(steps("Automatic breadth of the AMZ", from, to,
                  units == project::English ? " ft, being a whole number"
                                            : " m, being a whole number"));
    }
    const auto widerBefore = before.branch(Rule::FrontVolumes, FirstSide) == GobWiderThanLoaded;
    const auto widerAfter = after.branch(Rule::FrontVolumes, FirstSide) == GobWiderThanLoaded;
    if (widerBefore != widerAfter)
        add(widerAfter ? "Front abutment: from here on the active gob counts as wider than the "
                         "loaded width, and half of the load on the AMZ goes over a remnant"
                       : "Front abutment: from here on the active gob no longer counts as wider "
                         "than the loaded width, which changes the load over a remnant");
    addSides({Rule::Barrier, Rule::BarrierStrength, Rule::RemnantStrength, Rule::SlabcutTakesAll});
    if (!text.empty()) return text;

    if (differs(Rule::ActiveGob))
        add(gobText("Active gob", after.branch(Rule::ActiveGob, FirstSide) != 0));
    else if (differs(Rule::FrontVolumes))
        add("Front abutment: the loaded width passes the reach of the abutment angle");
    for (const int k : {FirstSide, SecondSide})
        if (differs(Rule::SideGob, k))
            add(gobText(k == FirstSide ? "First side gob" : "Second side gob",
                        after.branch(Rule::SideGob, k) != 0));
    addSides({Rule::RemnantTransfer, Rule::RemnantAll, Rule::BarrierTransfer1,
              Rule::BarrierTransfer2, Rule::BleederExcess});
    if (differs(Rule::PillarShape)) add("Length and width of pillars change places");
    return text;
}

} // namespace telvo::study
