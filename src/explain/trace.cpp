// SPDX-License-Identifier: GPL-3.0-or-later
#include "explain/trace.h"

#include "criteria/assess.h"
#include "engine/driver.h"
#include "engine/InputsOf.h"
#include "engine/rules/figures.h"
#include "engine/rules/pass.h"
#include "engine/rules/preparation.h"

#include <algorithm>
#include <array>

namespace telvo::explain {

using namespace engine;

/// A factor that is cut is compared cut, and explained as it was before.
Traced shownFactor(const Traced& factor, int mode) {
    const Traced single = toSingle(factor);
    return mode == criteria::HalfEven ? toSingle(hundredths(single)) : single;
}

namespace {

struct TracedInput {
    project::Field field;
    const char* symbol;
    int side = 0;
};
constexpr TracedInput TracedInputs[] = {
    {project::Field::EntryHeight, "h"},
    {project::Field::DepthCover, "H"},
    {project::Field::EntryWidth, "We"},
    {project::Field::XcutSpacing, "Sc"},
    {project::Field::XcutAngle, "Theta"},
    {project::Field::XcutCenters, "C"},
    {project::Field::CoalStrength, "S0"},
    {project::Field::UnitWeight, "Gamma"},
    {project::Field::BreadthAMZ, "B0"},
    {project::Field::ArchFactor, "F0"},
    {project::Field::ExtentActiveGob, "Ea"},
    {project::Field::AbutmentAngleActiveGob, "betaA"},
    {project::Field::ExtentFirstGob, "Es", FirstSide},
    {project::Field::AbutmentAngleFirstGob, "betaS", FirstSide},
    {project::Field::BarrierFirstGob, "Wb", FirstSide},
    {project::Field::SlabcutFirstGob, "Sl", FirstSide},
    {project::Field::ExtentSecondGob, "Es", SecondSide},
    {project::Field::AbutmentAngleSecondGob, "betaS", SecondSide},
    {project::Field::BarrierSecondGob, "Wb", SecondSide},
    {project::Field::SlabcutSecondGob, "Sl", SecondSide},
    {project::Field::WidthC, "Wr", FirstSide},
    {project::Field::WidthD, "Wr", SecondSide},
};

/// The numbers of a record under their symbols.
InputsOf<Traced> tracedInputs(const project::ProjectInput& in) {
    InputsOf<Traced> traced;
    for (const project::FieldId id : project::NumericInputs)
        for (const TracedInput& known : TracedInputs)
            if (known.field == id.field)
                *numberIn(traced, id) =
                    symbolOf(known.symbol, {0, known.side, id.index}, project::get(in, id));
    return traced;
}

bool isOneOf(std::string_view symbol, std::initializer_list<std::string_view> known) {
    return std::find(known.begin(), known.end(), symbol) != known.end();
}

/// A plain 0, whatever the inputs of the branch that was taken.
bool isPlainZero(const Traced& x) {
    NodePtr node = x.tree();
    while (node->op == Op::Choice)
        node = node->yes ? node->a : node->b;
    return node->op == Op::Literal && node->value == 0;
}

/// Quantities that have nothing to say in a case: volumes that the branch of the front abutment does
/// not have, sides that take no part, and the front abutment under development load.
auto idleIn(const Frame& f, const project::ProjectInput& in) {
    const bool front = f.AnalysisCase >= ActiveGob || in.ExtentActiveGob != 0;
    return [f, front](std::string_view symbol, const Where& at, const Traced& x) {
        if (at.side >= FirstSide && at.side > f.AnalysisCase)
            return symbol == "ts" || (isOneOf(symbol, {"sb", "Kb"}) && x.value == 0);
        if (isOneOf(symbol, {"z1", "P1", "P2", "P3", "P4"}) && isPlainZero(x)) return true;
        return !front && isOneOf(symbol, {"ta", "Lf", "Wl", "a", "z1", "z2", "P1", "P2", "P3", "P4",
                                          "Lv", "Laf"});
    };
}

/// The rows of the report that put results together.
void reportRows(Explaining& c, const Frame& f, const SymbolsOf<Traced>& s,
                const RunResultsOf<Traced>& run) {
    c.at({});
    rules::depthToPanelWidth(c, s.H, s.PanelWidth);
    const Traced& arch = run.panel.ArchFactor;
    for (int p = Development; p <= Retreat; ++p) {
        const PassResultsOf<Traced>& pass = run.pass[p];
        c.at({p});
        if (f.AnalysisCase >= ActiveGob) rules::loadingRow(c, "Qf", arch, pass.FrontLoadAMZ);
        for (const int k : f.sidesInUse()) {
            c.at({p, k});
            rules::loadingRow(c, "Qs", arch, run.panel.SideLoadAMZ[k]);
            rules::loadingRow(c, "Qr", arch, pass.LTRANSREM[k]);
            rules::barrierFrontAbutment(c, pass.BarrierFrontTransfer[k], pass.SlabCornerLoad[k]);
        }
    }
    for (const int row : {1, 2}) {
        if (!f.rowLeft(row)) continue;
        const int i = row == 1 ? 1 : f.NumberPillars;
        c.at({0, row, i});
        const Traced load = rules::outerRowLoad(c, s.Gamma, s.H, s.EntryCenter[i], s.Sc);
        rules::outerRowExcess(c, run.panel.PillarCapacity[i], load);
    }
    for (const int k : AllSides) {
        if (!f.rowLeft(k)) continue;
        c.at({0, k});
        rules::bleederRowExcess(c, k <= f.AnalysisCase, run.pass[Retreat].AbutmentHalfWidth,
                                run.panel.BleederExcess[k], s.Sc);
    }
}

/// What the limits of the warnings are compared with.
void warningFigures(Explaining& c, const Frame& f, const SymbolsOf<Traced>& s,
                    const RunResultsOf<Traced>& run, int mode, Extent extent) {
    criteria::FactorsOf<Traced> factors;
    bool anyBarrier = false;
    for (int p = Development; p <= Retreat; ++p) {
        factors.panel[p] = run.pass[p].TELVOSF;
        for (const int k : f.sidesInUse()) {
            factors.barrier[p][k] = run.pass[p].BarrierSF[k];
            anyBarrier = anyBarrier || s.BarrierWidth[k].value != 0;
        }
    }
    const double feet = s.H.value * (f.english() ? 1 : project::FeetPerMetre);
    const bool intermediate = feet > criteria::ShallowLimit && feet <= criteria::DeepLimit;
    const auto before = c.leftOut;
    if (extent == Extent::OfThisCase)
        c.leftOut = [&](std::string_view symbol, const Where&, const Traced&) {
            return (symbol == "SFmin" && !anyBarrier) ||
                   (isOneOf(symbol, {"Hft", "SFsug"}) && !intermediate);
        };
    else if (f.AnalysisCase < OneSideGob) // without a side gob there is no barrier to look at
        c.leftOut = [](std::string_view symbol, const Where&, const Traced&) {
            return symbol == "SFmin";
        };
    criteria::figures(c, f, s, factors, mode);
    c.leftOut = before;
}

} // namespace

Trace traceRun(const project::ProjectCase& current, int loadingCondition,
               const report::ReportOptions& options, Extent extent) {
    Trace trace;
    trace.frame = frameOf(current.Input, current.Units, loadingCondition);
    const Frame& f = trace.frame;
    const InputsOf<Traced> in = tracedInputs(current.Input);
    Explaining c;
    c.leftOut = [&f](std::string_view symbol, const Where& at, const Traced&) {
        return symbol == "ts" && at.side > f.AnalysisCase; // the gob of a side that takes no part
    };
    if (extent == Extent::OfThisCase) c.leftOut = idleIn(f, current.Input);
    SymbolsOf<Traced> s;
    RunResultsOf<Traced> run;
    rules::prepareSizes(c, f, in, s);
    rules::prepareAngles(c, in, s);
    rules::computeRun(c, f, s, run);
    rules::plotStresses(c, f, s, run.panel, run.pass[Retreat], run.stresses);
    reportRows(c, f, s, run);
    warningFigures(c, f, s, run, options.RoundTELVOSF, extent);
    trace.steps = std::move(c.steps);
    return trace;
}

} // namespace telvo::explain
