// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbers.h"
#include "engine/driver.h"
#include "engine/scalarRules.h"
#include "explain/Run.h"
#include "project/automatic.h"
#include "project/inputFields.h"
#include "project/units.h"
#include "report/warnings.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace telvo::explain {

using namespace engine;

namespace {

constexpr std::string_view FeetPerMetreText = "3.280839895013123";

/// "C1 + C2 + C3"
std::string sum(std::string_view symbol, int first, int last) {
    std::string text;
    for (int i = first; i <= last; ++i)
        text += (text.empty() ? "" : " + ") + std::string(symbol) + std::to_string(i);
    return text;
}

bool isEnglish(const Run& run) {
    return run.in.Units == project::English;
}

// --- Inputs

/// The automatic breadth, as the parameter form works it out.
std::string breadthRule(const Run& run) {
    const project::ProjectInput& input = run.source.current.Input;
    if (input.AMZ != 1) return "set by hand";
    const auto breadth = project::automaticAMZBreadth(run.in.H, run.in.Units);
    const std::string rule =
        isEnglish(run) ? "automatic: 5 sqrt(H) as a whole number, which the parameter form fills in"
                       : "automatic: 5 sqrt(H) with H in feet, back in "
                         "meters, as a whole number, which the parameter form fills in";
    if (breadth && *breadth == input.BreadthAMZ) return rule;
    return rule + "; the case holds another value, and the analysis takes what the case holds";
}

void addInputs(Run& run) {
    run.sheet.chapter("Inputs");
    for (const std::string& key : run.sheet.unwritten())
        if (key.starts_with("inputs."))
            run.sheet.given(key, key == "inputs.BreadthAMZ" ? breadthRule(run) : "");
}

std::string tangentRule(double degrees) {
    return degrees < 90 ? std::string()
                        : "an abutment angle of 90 degrees and more is analyzed as 89.9 degrees, "
                          "which keeps its tangent finite";
}

void addPreparedInputs(Run& run) {
    Worksheet& sheet = run.sheet;
    const project::ProjectInput& input = run.source.current.Input;
    const At at;
    sheet.chapter("Prepared inputs");
    sheet.add("S1", at, run.in.S1, Kind::Stress, isEnglish(run) ? "S0 * 144" : "S0 * 1000",
              isEnglish(run) ? "psi to psf: depth in ft times unit weight in pcf gives psf"
                             : "MPa to kPa: depth in m times unit weight in kN/m3 gives kPa");
    sheet.add("sinT", at, run.in.SinTheta, Kind::Number, "sin(Theta)");
    const auto tangent = [&](const char* symbol, const char* angle, const At& of, int gob,
                             double degrees) {
        sheet.add(symbol, of, run.in.AbutmentTangent[gob], Kind::Number,
                  degrees < 90 ? "tan(" + std::string(angle) + ")" : "tan(89.9 deg)",
                  tangentRule(degrees));
    };
    if (run.hasFront()) tangent("ta", "betaA", at, 1, input.AbutmentAngleActiveGob);
    if (run.in.AnalysisCase >= OneSideGob)
        tangent("ts", "betaS", {Retreat, FirstSide}, 2, input.AbutmentAngleFirstGob);
    if (run.in.AnalysisCase >= TwoSideGobs)
        tangent("ts", "betaS", {Retreat, SecondSide}, 3, input.AbutmentAngleSecondGob);
}

// --- Geometry and strength

void addPillarGeometry(Run& run, int i) {
    Worksheet& sheet = run.sheet;
    const At at{Retreat, FirstSide, i};
    sheet.add("Wg", at, run.in.PillarGrossWidth[i], Kind::Length, "C - We");
    sheet.add("Ws", at, "Wg / sinT");
    sheet.add("A", at, "Lp * Ws");
    const bool shorter = run.results.PillarLength <= run.in.PillarGrossWidth[i];
    sheet.add(
        "w", at, shorter ? "Lp" : "Wg",
        shorter
            ? "the pillar is no longer than it is wide (tie included): its length is the minimum"
            : "the pillar is longer than it is wide",
        shorter ? "Lp <= Wg" : "Lp > Wg");
    sheet.add("L", at, shorter ? "Ws" : "Lp / sinT");
}

void addGeometry(Run& run) {
    Worksheet& sheet = run.sheet;
    const At at;
    const int pillars = run.in.NumberPillars;
    sheet.chapter("Panel geometry");
    sheet.add("Wp", at, sum("C", 1, pillars));
    sheet.add("rHW", at, run.in.H / run.in.PanelWidth, Kind::Number, "H / Wp");
    sheet.add("B", at, "B0");
    sheet.add("Az", at, "B * Wp");
    sheet.add("Lp", at, "(Sc - We / sinT) * sinT");
    for (int i = 1; i <= pillars; ++i)
        addPillarGeometry(run, i);
    sheet.add("Ap", at, "(" + sum("A", 1, pillars) + ") * B / Sc",
              "the pillars of one crosscut interval times the intervals within the breadth");
    sheet.add("e", at, "(Az - Ap) / Az");

    std::string width = "Wp";
    std::string rows;
    if (run.in.rowLeft(1)) {
        width += " - C1";
        rows = "row A is left";
    }
    if (run.in.rowLeft(2)) {
        width += " - C" + std::to_string(pillars);
        rows += rows.empty() ? "row B is left" : ", and so is row B";
    }
    sheet.add("Wa", at, width, rows.empty() ? "no outer row is left" : rows);
    sheet.add("Aa", at, "Wa * B");
}

void addBleederRow(Run& run, int k) {
    Worksheet& sheet = run.sheet;
    const At at{Retreat, k};
    const double excess = (sheet.value("Kr", at) - sheet.value("Tr", at)) * run.in.B / run.in.Sc;
    if (!sheet.has("PillarLengthAlong"))
        sheet.add("Lr", at, run.in.PillarLengthAlong, Kind::Length, "Sc - We",
                  "along the entries, whatever the crosscut angle");
    sheet.add("sr", at, "S1 * (0.64 + 0.54 * Wr / h - 0.18 * Wr^2 / (h * Lr))");
    sheet.add("Kr", at, "Wr * sr * Lr");
    sheet.add("Tr", at, "(We + Wr) * Sc * H * Gamma", "overburden of one bleeder pillar");
    constexpr double negligible = 0.01;
    if (excess >= negligible)
        sheet.add("Xr", at, "(Kr - Tr) * B / Sc", "lent to the barrier beside the row");
    else if (excess <= 0)
        sheet.add("Xr", at, "max(0, (Kr - Tr) * B / Sc)", "the row has nothing to lend");
    else
        sheet.add("Xr", at, "0", "an excess below 0.01 counts as nothing",
                  "(Kr - Tr) * B / Sc < 0.01");
}

void addBarrierCapacity(Run& run, int k) {
    Worksheet& sheet = run.sheet;
    const At at{Retreat, k};
    const bool takesPart = k <= run.in.AnalysisCase;
    if (!takesPart && run.results.BarrierCapacity[k] == 0) return;
    const std::string idle = takesPart ? "" : "; this side takes no part in the loading condition";
    if (run.in.BarrierWidth[k] < run.in.h)
        sheet.add("sb", at, "0", "a barrier narrower than the mining height has no strength" + idle,
                  "Wb < h");
    else
        sheet.add("sb", at, "S1 * (0.64 + 0.54 * Wb / h)",
                  "a barrier counts as infinitely long: without the third term of a pillar's "
                  "strength" +
                      idle,
                  "Wb >= h");
    if (run.in.rowLeft(k))
        sheet.add("Kb", at, "Wb * sb * B + Xr", "includes what the bleeder row lends");
    else
        sheet.add("Kb", at, "Wb * sb * B");
}

void addStrength(Run& run) {
    Worksheet& sheet = run.sheet;
    const At all;
    sheet.chapter("Pillar strength and load-bearing capacity");
    for (int i = 1; i <= run.in.NumberPillars; ++i) {
        const At at{Retreat, FirstSide, i};
        if (run.results.MinDimension[i] == 0)
            sheet.add("s", at, "0", "a pillar of width 0 has no strength", "w = 0");
        else
            sheet.add("s", at, "S1 * (0.64 + 0.54 * w / h - 0.18 * w^2 / (h * L))");
        sheet.add("K", at, "s * A");
    }
    sheet.add("Kt", all, "(" + sum("K", 1, run.in.NumberPillars) + ") * B / Sc");
    const ActiveRows rows = activeRows(run.in);
    if (rows.first > rows.last)
        sheet.add("Ka", all, "0", "the rows that are left leave no pillar between them");
    else
        sheet.add("Ka", all, "(" + sum("K", rows.first, rows.last) + ") * B / Sc",
                  rows.last - rows.first + 1 == run.in.NumberPillars
                      ? "no outer row is left"
                      : "without the outer rows that are left");
    for (const int k : {FirstSide, SecondSide})
        if (run.in.rowLeft(k)) addBleederRow(run, k);
    for (const int k : {FirstSide, SecondSide})
        addBarrierCapacity(run, k);
}

// --- Loads of the run

void addArchFactor(Run& run) {
    Worksheet& sheet = run.sheet;
    const At at;
    const std::string unit(unitName(Kind::Length, run.in.Units));
    const std::string asItIs =
        isEnglish(run) ? "" : "; 80 is compared with meters as it is with feet";
    const double W = archPanelWidth(run.in);
    if (!run.in.ArchAutomatic)
        sheet.add("Fpa", at, "F0", "entered by hand");
    else if (W == 0)
        sheet.add("Fpa", at, "1", "automatic; a panel without width has no arch");
    else if (run.in.H - 80 < W)
        sheet.add("Fpa", at, "1",
                  "automatic; the depth exceeds the panel width by less than 80 " + unit +
                      ": no arch" + asItIs,
                  "H - 80 < Wp");
    else
        sheet.add("Fpa", at, "round(max(0.28, 1 - 0.28 * ln(H / Wp)), 2)",
                  "automatic, never below 0.28; the analysis computes it anew, whatever factor the "
                  "case shows. Two decimals, a tie goes to the even digit; Wp and the factor are "
                  "held in single precision" +
                      asItIs,
                  "H - 80 >= Wp");
}

void addRFactors(Run& run) {
    Worksheet& sheet = run.sheet;
    const std::string cap = "the share of the load within B of the gob's edge";
    sheet.add("Rf", {}, "min(1, 1 - ((D - B) / D)^3)",
              run.results.RFactorFront == 1 ? cap + "; it is at most 1" : cap);
    for (int k = FirstSide; k <= run.in.AnalysisCase; ++k) {
        const At at{Retreat, k};
        const std::string share = "min(1, 1 - ((D - (We / 2 + Wb)) / D)^3)";
        if (run.in.BarrierWidth[k] == 0) {
            sheet.add("Rs", at, "0", "no barrier, so that the AMZ takes the whole load", "Wb = 0");
        } else if (run.sideR(k) == "Ru") {
            sheet.add("Ru", at, run.development.RFactorSide[k], Kind::Number, share,
                      "the loads of both passes are computed with this 1");
            sheet.add("Rs", at, "0.999",
                      "an R-factor of exactly 1 is stored and printed as 0.999 once the loads are "
                      "computed: the stresses of the plots divide by 1 - R");
        } else {
            sheet.add(
                "Rs", at, share,
                "the share that the barrier takes, together with half an entry; the AMZ takes "
                "the rest");
        }
    }
}

void addRunLoads(Run& run) {
    Worksheet& sheet = run.sheet;
    const At at;
    sheet.chapter("Pressure arch, tributary load, R-factors and side abutments");
    addArchFactor(run);
    if (run.in.AnalysisCase == ActiveGob)
        sheet.add("Lt", at, "Gamma * H * Aa",
                  "one active section: without the outer rows that are left");
    else
        sheet.add("Lt", at, "Gamma * H * Az", "whole AMZ, left rows included");
    if (run.in.Units == project::Metric)
        sheet.add("D", at,
                  "9.3 * sqrt(H * " + std::string(FeetPerMetreText) + ") / " +
                      std::string(FeetPerMetreText),
                  "the rule is stated in feet; the depth in feet is held in single precision");
    else
        sheet.add("D", at, "9.3 * sqrt(H)");
    addRFactors(run);
    for (int k = FirstSide; k <= run.in.AnalysisCase; ++k) {
        const int gob = gobOfSide(k);
        addGobLoad(run, {Retreat, k}, {"Ls", "Es", "ts", "side"}, gob, run.in.GobExtent[gob]);
    }
}

// --- What follows the passes

void addBarrierStresses(Run& run, int k) {
    Worksheet& sheet = run.sheet;
    const At at{Retreat, k};
    sheet.add("pt", at, "Lbt / (B * Wb)");
    sheet.add("pf", at, "Tf / (B * Wb)");
    sheet.add("ps", at, "Lbs / (B * Wb)");
    sheet.add("pb", at, "(Lbt + Tf + Lbs) / (B * Wb)", "without the arch and the slab corner");
}

void addSideStresses(Run& run, int k) {
    constexpr int reach = 3;
    Worksheet& sheet = run.sheet;
    const int pillars = run.in.NumberPillars;
    std::string distance = "Wb";
    std::string before = "Rs";
    double x = run.in.BarrierWidth[k];
    for (int step = 1; step <= std::min(reach, pillars); ++step) {
        const int i = k == FirstSide ? step : pillars + 1 - step;
        const At at{Retreat, k, i};
        x += run.in.EntryCenter[i];
        distance += " + C" + std::to_string(i);
        sheet.add("x", at, x, Kind::Length, distance);
        sheet.add("R", at, rFactor(run.results.AbutmentExtent, x), Kind::Number,
                  "min(1, 1 - ((D - x) / D)^3)");
        sheet.add("dR", at, "(R - " + before + ") / (1 - Rs)",
                  step == 1 ? "the three pillars next to the gob share the load that passes the "
                              "barrier"
                            : "");
        if (run.results.PillarArea[i] == 0)
            sheet.add("pp", at, "0", "the pillar has no area", "A = 0");
        else
            sheet.add("pp", at,
                      run.in.BarrierWidth[k] == 0 ? "Las / B * dR * Sc / A"
                                                  : "(Ltb + Las) / B * dR * Sc / A");
        before = "R" + std::to_string(i);
    }
}

void addStresses(Run& run) {
    Worksheet& sheet = run.sheet;
    sheet.chapter("Stresses of the plots, retreat");
    if (run.results.ExtractionRatioAMZ == 1)
        sheet.add("pa", {}, "0", "there is no pillar to carry the load", "e = 1");
    else
        sheet.add("pa", {}, "Gamma * H / (1 - e)", "held in single precision");
    for (int k = FirstSide; k <= run.in.AnalysisCase; ++k) {
        if (run.in.BarrierWidth[k] > 0) addBarrierStresses(run, k);
        addSideStresses(run, k);
    }
}

void addLeavePillars(Run& run) {
    Worksheet& sheet = run.sheet;
    const auto symbol = [](const char* name, int i) { return name + std::to_string(i); };
    for (const int row : {1, 2}) {
        if (!run.in.rowLeft(row)) continue;
        const int i = row == 1 ? 1 : run.in.NumberPillars;
        const At at{Retreat, row, i};
        const double load = run.in.Gamma * run.in.H * run.in.EntryCenter[i] * run.in.Sc;
        sheet.add("To", at, load, Kind::Force, "Gamma * H * " + symbol("C", i) + " * Sc");
        sheet.add("Xo", at, std::max(0.0, run.results.PillarCapacity[i] - load), Kind::Force,
                  "max(0, " + symbol("K", i) + " - To)");
    }
    for (const int k : {FirstSide, SecondSide}) {
        if (!run.in.rowLeft(k)) continue;
        const bool lends = k <= run.in.AnalysisCase;
        const double excess =
            lends ? run.results.AbutmentHalfWidth * run.results.BleederExcess[k] / run.in.Sc : 0;
        sheet.add("Xo", {Retreat, k}, excess, Kind::Force, lends ? "a * Xr / Sc" : "0",
                  lends ? "adjusted for the effective length of the remnant barrier"
                        : "this side takes no part and has no remnant to lend to");
    }
}

/// The least factor of the barriers that there are, over sides and passes.
void addLeastBarrierFactor(Run& run) {
    const At* least = nullptr;
    std::vector<At> barriers;
    for (const int pass : {Development, Retreat})
        for (int k = FirstSide; k <= run.in.AnalysisCase; ++k)
            if (run.in.BarrierWidth[k] != 0) barriers.push_back({pass, k});
    const auto factor = [&](const At& at) { return run.results.BarrierSF[at.pass][at.side]; };
    for (const At& at : barriers)
        if (!least || factor(at) < factor(*least)) least = &at;
    if (least)
        run.sheet.add(
            "SFmin", *least, factor(*least), Kind::Factor, "SFb",
            "the least over both sides and both passes, compared without rounding; a side "
            "without a barrier has none");
}

void addWarningFigures(Run& run) {
    Worksheet& sheet = run.sheet;
    const double n = run.in.NumberPillars;
    sheet.add("rwh", {}, (run.results.PanelWidth - n * run.in.We) / (n * run.in.h), Kind::Number,
              "(Wp - (n - 1) * We) / ((n - 1) * h)",
              "below 4.0 the warnings ask for a factor of 2.0");
    addLeastBarrierFactor(run);
    const double feet = run.in.H * (isEnglish(run) ? 1 : project::FeetPerMetre);
    if (feet <= report::ShallowLimit || feet > report::DeepLimit) return;
    constexpr int halfEven = 0, unrounded = 1, cut = 2;
    const int mode = run.source.options.RoundTELVOSF;
    const std::string factor = "1.5 - 0.2 * (Hft - 650) / 350";
    std::string rule = "falls from 1.5 at 650 ft to 1.3 at 1000 ft";
    if (mode == halfEven) rule += "; two decimals, a tie goes to the even digit";
    if (mode == cut) rule += "; cut after two decimals before it is compared";
    sheet.add("Hft", {}, feet, Kind::Number,
              isEnglish(run) ? "H" : "H * " + std::string(FeetPerMetreText),
              "the limits of the warnings are in feet in every unit system");
    sheet.add("SFsug", {}, report::suggestedSF(feet, mode == halfEven ? halfEven : unrounded),
              Kind::Factor, mode == halfEven ? "round(" + factor + ", 2)" : factor, rule);
}

/// What is left of the list of quantities after all the steps.
void addNotArising(Run& run) {
    run.sheet.chapter("Quantities that do not arise in this case");
    const std::string condition(project::LoadingConditionNames[run.in.AnalysisCase - 1]);
    const std::string rule =
        "does not arise under the loading condition " + condition + " with these inputs; stays 0";
    run.sheet.chapters().back().note = rule;
    for (const std::string& key : run.sheet.unwritten())
        run.sheet.addUnexplained(key, rule);
}

} // namespace

void addGobLoad(Run& run, const At& at, const GobSymbols& symbols, int gob, double extent) {
    const auto replaced = [&](std::string text) {
        for (const auto& [place, symbol] :
             {std::pair{"{E}", symbols.extent}, std::pair{"{t}", symbols.tangent}})
            for (auto i = text.find(place); i != std::string::npos; i = text.find(place))
                text.replace(i, 3, symbol);
        return text;
    };
    const bool subcritical = extent / 2 <= run.in.H * run.in.AbutmentTangent[gob];
    if (subcritical)
        run.sheet.add(symbols.load, at, replaced("Gamma * (H * {E} / 2 - {E}^2 / (8 * {t}))"),
                      "subcritical gob (tie included)", replaced("{E} / 2 <= H * {t}"));
    else
        run.sheet.add(symbols.load, at, replaced("Gamma * H^2 * {t} / 2"), "supercritical gob",
                      replaced("{E} / 2 > H * {t}"));
}

Chapters explain(const project::ProjectCase& current, const AnalysisResults& results,
                 const report::ReportOptions& options, int digits) {
    const WorkingInputs in = workingInputs(current.Input, current.Units, results.AnalysisCase);
    const AnalysisResults development = afterDevelopment(in);
    const report::ReportSource source{current, results, options, {}};
    Worksheet sheet(source, development, digits);
    Run run{source, in, results, development, sheet};

    addInputs(run);
    addPreparedInputs(run);
    addGeometry(run);
    addStrength(run);
    addRunLoads(run);
    addPassSteps(run, Development);
    addPassSteps(run, Retreat);
    addStresses(run);
    sheet.chapter("Figures that only the report has");
    addLeavePillars(run);
    addWarningFigures(run);
    addNotArising(run);
    addPrintedFigures(source, sheet);
    std::erase_if(sheet.chapters(), [](const Chapter& chapter) { return chapter.steps.empty(); });
    return std::move(sheet.chapters());
}

} // namespace telvo::explain
