// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/driver.h"
#include "engine/scalarRules.h"
#include "explain/Run.h"

namespace telvo::explain {

using namespace engine;

namespace {

/// A pass while its steps are written: the run with the inputs of the pass.
struct PassRun {
    Run& run;
    Worksheet& sheet;
    WorkingInputs in;
    const AnalysisResults& r;
    int pass;

    bool hasBarrier(int k) const { return in.BarrierWidth[k] != 0; }
};

// --- Front abutment

/// Inputs that development changes.
void addDevelopmentInputs(PassRun& p) {
    p.sheet.add("Ea", {p.pass}, 0, Kind::Length, "0", "development: there is no active gob yet");
    for (int k = FirstSide; k <= p.in.AnalysisCase; ++k)
        p.sheet.add("Sl", {p.pass, k}, 0, Kind::Length, "0",
                    "development: there are no slab cuts yet");
}

void addLoadedWidth(PassRun& p) {
    const At at{p.pass};
    switch (p.in.AnalysisCase) {
    case ActiveGob:
        return p.sheet.add("Wl", at, "Wa");
    case OneSideGob:
        return p.sheet.add("Wl", at, "Wa + Sl1", "the slab cut widens the section");
    case TwoSideGobs:
        return p.sheet.add("Wl", at, "Wa + Sl1 + Sl2", "the slab cuts widen the section");
    default:
        return p.sheet.add("Wl", at, "0", "development load: the front abutment loads no width");
    }
}

void addFrontVolumes(PassRun& p) {
    Worksheet& sheet = p.sheet;
    const At at{p.pass};
    const FrontVolumes front = frontAbutmentOnAMZ(p.in, p.r.LoadedWidth, p.r.RFactorFront);
    const auto volume = [&](const char* symbol, double weight, const char* formula) {
        sheet.add(symbol, at, weight, Kind::Force, formula);
    };
    const auto share = [&](const char* formula, std::string rule = {}, const char* condition = "") {
        sheet.add("Lv", at, front.load, Kind::Force, formula, std::move(rule), condition);
    };
    if (p.in.GobExtent[1] == 0) {
        sheet.add("a", at, "Ea / 2", "without an active gob there is no corner volume");
        return share("0", "no active gob, no front abutment", "Ea = 0");
    }
    if (front.fullHeight) {
        sheet.add("a", at, "H * ta",
                  "gob and loaded width both reach beyond the abutment angle (tie included)",
                  "min(Ea, Wl) / 2 >= H * ta");
        volume("P2", front.P2, "(Wl - 2 * a) * H * a / 2 * Gamma");
        volume("P4", front.P4, "a * H * a / 3 * Gamma");
        return share("(2 * P4 + P2) * Rf");
    }
    const bool wide = front.gobWiderThanLoaded;
    sheet.add("a", at, wide ? "Wl / 2" : "Ea / 2",
              wide ? "the active gob is wider than the loaded width"
                   : "the active gob is no wider than the loaded width (tie included)",
              wide ? "Ea > Wl" : "Ea <= Wl");
    sheet.add("z1", at, front.z1, Kind::Length, "H - a / ta");
    sheet.add("z2", at, front.z2, Kind::Length, wide ? "H - z1" : "a / ta");
    if (!wide) {
        volume("P1", front.P1, "(Wl - Ea) * z1 * a * Gamma");
        volume("P2", front.P2, "(Wl - Ea) * z2 * a / 2 * Gamma");
    }
    volume("P3", front.P3, "a * z1 * a / 2 * Gamma");
    volume("P4", front.P4, "a * z2 * a / 3 * Gamma");
    share(wide ? "(2 * P3 + 2 * P4) * Rf" : "(P1 + P2 + 2 * P3 + 2 * P4) * Rf");
}

void addFrontAbutment(PassRun& p) {
    Worksheet& sheet = p.sheet;
    const At at{p.pass};
    if (p.in.GobExtent[1] == 0)
        sheet.add("Lf", at, "0", "no active gob", "Ea = 0");
    else
        addGobLoad(p.run, at, {"Lf", "Ea", "ta", "active"}, 1, p.in.GobExtent[1]);
    addLoadedWidth(p);
    addFrontVolumes(p);

    std::string onAMZ = "Lv";
    for (int k = FirstSide; k <= p.in.AnalysisCase; ++k) {
        onAMZ += k == FirstSide ? " - Lc1" : " - Lc2";
        if (p.in.Slabcut[k] == 0)
            sheet.add("Lc", {p.pass, k}, "0", "no slab cut", "Sl = 0");
        else
            sheet.add(
                "Lc", {p.pass, k},
                "Gamma * Rf * ((Sl / 2)^2 * (H - Sl / 2 / ta) / 2 + (Sl / 2)^3 / ta / 3)",
                "the corner over the slab cut, which the barrier carries in place of the AMZ");
    }
    sheet.add("Laf", at, onAMZ,
              p.r.AbutmentLoadAMZ[p.pass][Front] < 0
                  ? "negative: the slab cuts take off more than the active gob brings"
                  : "");
    const bool wide =
        frontAbutmentOnAMZ(p.in, p.r.LoadedWidth, p.r.RFactorFront).gobWiderThanLoaded;
    for (int k = FirstSide; k <= p.in.AnalysisCase; ++k)
        sheet.add("X", {p.pass, k}, wide ? "Laf / 2" : "Wp * Lf * Rf / 2 - Laf / 2",
                  wide ? "the active gob is wider than the loaded width: half of the load on the "
                         "AMZ; the rule jumps here"
                       : "half of what the loaded panel would take, less half of the load on the "
                         "AMZ",
                  wide ? "Ea > Wl" : "");
}

// --- Remnant barriers

void addRemnant(PassRun& p, int k) {
    Worksheet& sheet = p.sheet;
    const At at{p.pass, k};
    const double width = p.r.RemnantWidth[k];
    const double length = p.r.AbutmentHalfWidth;
    sheet.add("Wm", at, "Wb - Sl");
    if (length != 0 && width != 0)
        sheet.add("Lm", at, "Gamma * H * Wm * a + a * Ls + X");
    else
        sheet.add("Lm", at, "0",
                  width == 0 ? "the remnant has no width" : "the remnant has no length",
                  width == 0 ? "Wm = 0" : "a = 0");
    if (width < p.in.h)
        sheet.add("sm", at, "0", "a remnant narrower than the mining height has no strength",
                  "Wm < h");
    else
        sheet.add("sm", at, "S1 * (0.64 + 0.54 * Wm / h)", "infinitely long, as a barrier is",
                  "Wm >= h");
    sheet.add("Km", at, "a * sm * Wm");
    if (p.in.rowLeft(k))
        sheet.add("Kn", at, "Km + a * Xr / Sc",
                  "the bleeder row lends a / Sc times what it has over the breadth");
    else
        sheet.add("Kn", at, "Km");
    if (width > 0 && p.r.LFBAR[p.pass][k] != 0)
        sheet.add("SFm", at, "Kn / Lm");
    else
        sheet.add("SFm", at, "0",
                  width > 0 ? "no load on the remnant: the factor is not computed and stays 0"
                            : "nothing is left of the barrier",
                  width > 0 ? "Lm = 0" : "Wm <= 0");
}

void addRemnantTransfer(PassRun& p, int k) {
    Worksheet& sheet = p.sheet;
    const At at{p.pass, k};
    const double SF = p.r.RemnantSF[k];
    const bool negative = p.r.FrontOnRemnant[p.pass][k] < 0;
    if (p.r.RemnantWidth[k] <= 0)
        sheet.add("Lrem", at, "X",
                  p.hasBarrier(k) ? "the slab cut takes the whole barrier: all of X is transferred"
                                  : "without a barrier all of X is transferred",
                  "Wm <= 0");
    else if (SF <= TransferThreshold)
        sheet.add("Lrem", at, "min(X, (1.5 - SFm) * 0.67 * X)",
                  "the remnant is weak (tie included); at most X", "SFm <= 1.5");
    else
        sheet.add("Lrem", at, negative ? "min(X, 0)" : "0",
                  negative ? "the remnant is strong; yet never more than X, which is negative"
                           : "the remnant keeps its load",
                  "SFm > 1.5");

    const double base = frontTransferBase(p.in, p.pass, k, p.r);
    if (p.hasBarrier(k))
        sheet.add("Xf", at, base, Kind::Force, "(We / 2 + Wb) * Lf * Rf - Lc");
    else
        sheet.add("Xf", at, base, Kind::Force, "0", "no barrier", "Wb = 0");
    if (SF < TransferThreshold)
        sheet.add("Tf", at, "(1.5 - SFm) * 0.67 * Xf", "the remnant is weak", "SFm < 1.5");
    else
        sheet.add("Tf", at, "0", "nothing moves", "SFm >= 1.5");
}

// --- Barriers

void addBarrierTransfer(PassRun& p, int k) {
    const At at{p.pass, k};
    const double SF = p.r.BarrierSF[p.pass][k];
    if (SF > TransferThreshold)
        p.sheet.add("Ltb", at, "0", "the barrier keeps its load", "SFb > 1.5");
    else if (SF < 0.5)
        p.sheet.add("Ltb", at, "Lbs + Lba", "all of it, the linear rule would give more",
                    "SFb < 0.5");
    else
        p.sheet.add("Ltb", at, "(1.5 - SFb) * (Lbs + Lba)",
                    "from 0.5 to 1.5 (ties included); without the 0.67 of the remnant's rule",
                    "SFb <= 1.5");
}

void addBarrier(PassRun& p, int k) {
    Worksheet& sheet = p.sheet;
    const At at{p.pass, k};
    if (!p.hasBarrier(k)) {
        sheet.add(
            "Ltb", at, "0",
            "no barrier, nothing that could be transferred: with Rs = 0 the AMZ has the whole "
            "side abutment already",
            "Wb = 0");
        return;
    }
    sheet.add("Lbt", at, "Gamma * H * (We / 2 + Wb) * B", "the barrier with half an entry");
    sheet.add("Lbs", at, "Ls * " + p.run.sideR(k) + " * B");
    sheet.add("Lba", at, "(1 - Fpa) / 2 * (Lt + Laf) + (1 - Fpa) * (Lrem + Las)",
              "what the arch sheds: half of tributary and front load to each side, all of the "
              "side's own");
    sheet.add("Lb", at, "Lbt + Tf + Lbs + Lba + Lc");
    sheet.add("Lbf", at, p.r.BarrierFrontTransfer[p.pass][k] + p.r.SlabCornerLoad[p.pass][k],
              Kind::Force, "Tf + Lc", "the row \"Front Abutment\" of the barrier loads");
    sheet.add("SFb", at, "Kb / Lb");
    addBarrierTransfer(p, k);
}

// --- Load on the AMZ

void addLoadOnAMZ(PassRun& p) {
    Worksheet& sheet = p.sheet;
    const At at{p.pass};
    const bool front = p.run.hasFront();
    const double arch = p.r.ArchFactor;
    sheet.add("Q1", at, "Fpa * Lt", "held in single precision: seven digits");
    sheet.add("Q2", at, front ? "Fpa * Laf + Q1" : "Q1",
              front ? "cumulative; held in single precision" : "no active section");
    for (const int k : {FirstSide, SecondSide}) {
        const At side{p.pass, k};
        const std::string before = k == FirstSide ? "Q2" : "Q3";
        const char* symbol = k == FirstSide ? "Q3" : "Q4";
        if (k > p.in.AnalysisCase)
            sheet.add(symbol, side, before, "no gob on this side");
        else
            sheet.add(symbol, side, "(Lrem + Las) * Fpa + " + before + " + Ltb",
                      "cumulative; LTRANSBAR is not scaled by the arch factor");
    }
    if (p.in.AnalysisCase >= ActiveGob)
        sheet.add("Qf", at, arch * p.r.AbutmentLoadAMZ[p.pass][Front], Kind::Force, "Fpa * Laf");
    for (int k = FirstSide; k <= p.in.AnalysisCase; ++k) {
        const At side{p.pass, k};
        sheet.add("Qs", side, arch * p.r.AbutmentLoadAMZ[p.pass][k], Kind::Force, "Fpa * Las");
        sheet.add("Qr", side, arch * p.r.LTRANSREM[p.pass][k], Kind::Force, "Fpa * Lrem");
    }
}

void addFactor(PassRun& p) {
    std::string rule = p.in.AnalysisCase == ActiveGob
                           ? "one active section: without the outer rows that are left"
                           : "all pillars, left rows included";
    if (p.pass > report::lastPass(p.run.source))
        rule += "; not printed, since the case has no active gob to retreat from, yet the warnings "
                "use it";
    const std::string load = "Q" + std::to_string(p.in.AnalysisCase);
    p.sheet.add("SF", {p.pass}, (p.in.AnalysisCase == ActiveGob ? "Ka / " : "Kt / ") + load, rule);
}

} // namespace

void addPassSteps(Run& run, int pass) {
    PassRun p{run, run.sheet, forPass(run.in, pass), run.after(pass), pass};
    p.sheet.chapter(pass == Development ? "Development loading" : "Retreat loading");
    if (run.hasFront()) {
        if (pass == Development) addDevelopmentInputs(p);
        addFrontAbutment(p);
    }
    for (int k = FirstSide; k <= p.in.AnalysisCase; ++k)
        p.sheet.add("Las", {pass, k}, "B * Ls * (1 - " + run.sideR(k) + ")",
                    "what the barrier does not take");
    for (int k = FirstSide; k <= p.in.AnalysisCase; ++k) {
        addRemnant(p, k);
        addRemnantTransfer(p, k);
        addBarrier(p, k);
    }
    addLoadOnAMZ(p);
    addFactor(p);
}

} // namespace telvo::explain
