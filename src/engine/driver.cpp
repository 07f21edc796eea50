// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/driver.h"

#include "engine/diagnosis.h"
#include "engine/InputsOf.h"
#include "engine/quantities.h"
#include "engine/rules/pass.h"
#include "engine/rules/preparation.h"
#include "project/checks.h"

#include <cmath>
#include <limits>

namespace telvo::engine {

namespace {

// Copied as a whole, which is quicker than setting every number to 0.
constexpr RunResults NoRun{};
constexpr AnalysisResults NoResults{};

/// Whether every number that a run starts from is of a size from which only factors can leave the
/// range of their type: see engine::isTame().
bool startsTame(const WorkingInputs& in) {
    bool tame = true;
    const auto look = [&tame](auto... x) { tame = (tame & ... & isTame(x)); };
    look(in.h, in.H, in.Sc, in.SinTheta, in.Gamma, in.S1, in.We, in.B, in.ArchFactorInput);
    for (int i = 1; i <= in.NumberPillars; ++i)
        look(in.EntryCenter[i]);
    for (int gob = 1; gob <= 3; ++gob)
        look(in.GobExtent[gob], in.AbutmentTangent[gob]);
    for (const int k : AllSides)
        look(in.BarrierWidth[k], in.Slabcut[k], in.BleederWidth[k]);
    return tame;
}

/// Whether the stability factors fit single precision, in which they are shown.
bool factorsFit(const RunResults& run) {
    constexpr double most = std::numeric_limits<float>::max();
    bool fit = true;
    const auto look = [&fit](double factor) { fit = fit & (std::abs(factor) <= most); };
    for (const PassResults& pass : run.pass) {
        look(pass.TELVOSF);
        for (const int k : AllSides) {
            look(pass.BarrierSF[k]);
            look(pass.RemnantSF[k]);
        }
    }
    return fit;
}

/// The first quantity that left the range of its type; empty when there is none. Stability factors
/// have to fit single precision, in which they are shown.
std::string_view unboundedQuantity(const AnalysisResults& r) {
    bool bounded = true;
    std::string_view unbounded;
    visitQuantities(r, [&](const char* name, Kind kind, const auto& field) {
        using Value = std::remove_cvref_t<decltype(firstNumber(field))>;
        constexpr auto most = std::numeric_limits<Value>::max();
        const Value limit =
            kind == Kind::Factor ? static_cast<Value>(std::numeric_limits<float>::max()) : most;
        visitNumbers(field, [&](Value value) { bounded = bounded & (std::abs(value) <= limit); });
        if (!bounded && unbounded.empty()) unbounded = name;
    });
    return unbounded;
}

template <class C>
WorkingInputs preparedBy(C& calc, const project::ProjectInput& input, const Frame& frame) {
    WorkingInputs in;
    static_cast<Frame&>(in) = frame;
    in.Source = input;
    rules::prepareSizes(calc, in, input, in);
    rules::prepareAngles(calc, input, in);
    return in;
}

template <class C>
Stopped computedBy(C& calc, const WorkingInputs& in, RunResults& run, AnalysisResults& results) {
    rules::computeRun(calc, in, in, run);
    if (calc.stop != Stop::None) return {calc.stop, calc.stoppedAt};
    Scalar drawings; // what they decide is nothing that a factor follows from
    rules::plotStresses(drawings, in, in, run.panel, run.pass[Retreat], run.stresses);
    makeFlat(in, in, run, results);
    if (startsTame(in) && factorsFit(run)) return {};
    const std::string_view unbounded = unboundedQuantity(results);
    if (!unbounded.empty()) return {Stop::Unbounded, {}, unbounded};
    return {};
}

} // namespace

int analysisCase(int anal, int previousAnalysisCase) {
    if (anal == 4) return OneSideGob;
    return anal >= 0 && anal <= 3 ? anal + 1 : previousAnalysisCase;
}

Frame frameOf(const project::ProjectInput& input, std::int16_t units, int previousAnalysisCase) {
    Frame f;
    f.Units = units;
    f.AnalysisCase = analysisCase(input.Anal, previousAnalysisCase);
    f.NumberPillars = project::distanceCount(input);
    // Only 1 means that a row is left.
    const std::int16_t rows[] = {input.RowA, input.RowB, input.RowC, input.RowD};
    for (int row = 0; row < 4; ++row)
        f.RowLeft[row] = rows[row] == 1;
    f.ArchAutomatic = input.Arch != 0;
    return f;
}

WorkingInputs workingInputs(const project::ProjectInput& input, std::int16_t units,
                            int previousAnalysisCase) {
    Scalar calc;
    return preparedBy(calc, input, frameOf(input, units, previousAnalysisCase));
}

WorkingInputs workingInputs(Noting& calc, const project::ProjectInput& input, const Frame& frame) {
    return preparedBy(calc, input, frame);
}

std::variant<WorkingInputs, Refusal> PrepareAnalysis(const project::ProjectInput& input,
                                                     std::int16_t units, int previousAnalysisCase) {
    if (auto refused = project::checkBeforeAnalysis(input)) return *refused;
    return workingInputs(input, units, previousAnalysisCase);
}

Stopped computePasses(const WorkingInputs& in, RunResults& run, AnalysisResults& results) {
    Scalar calc;
    return computedBy(calc, in, run, results);
}

Stopped computeNoting(Noting& calc, const WorkingInputs& in, RunResults& run,
                      AnalysisResults& results) {
    return computedBy(calc, in, run, results);
}

Result<RunResults> computeRun(const WorkingInputs& prepared) {
    if (auto fault = impossibleInput(prepared)) return *fault;
    Result<RunResults> run{std::in_place, NoRun};
    AnalysisResults results = NoResults;
    if (const Stopped stopped = computePasses(prepared, run.value(), results);
        stopped.cause != Stop::None)
        run = faultOf(stopped, prepared);
    return run;
}

AnalysisResults flat(const WorkingInputs& prepared, const RunResults& run) {
    AnalysisResults results;
    makeFlat(prepared, prepared, run, results);
    return results;
}

AnalysisResults withStressesOf(const WorkingInputs& in, const RunResults& run, int pass) {
    RunResults shown = run;
    Scalar calc;
    rules::plotStresses(calc, in, in, run.panel, run.pass[pass], shown.stresses);
    return flat(in, shown);
}

float archFactorUsed(const WorkingInputs& prepared) {
    Scalar calc;
    return static_cast<float>(rules::pressureArchFactor(calc, prepared, prepared));
}

double archFactorUsed(const project::ProjectInput& input, const Frame& frame) {
    Scalar calc;
    SymbolsOf<double> symbols;
    rules::prepareSizes(calc, frame, input, symbols);
    return rules::pressureArchFactor(calc, frame, symbols);
}

Result<AnalysisResults> ComputeAnalysis(const WorkingInputs& prepared) {
    if (auto fault = impossibleInput(prepared)) return *fault;
    // The one that is returned, so never copied.
    Result<AnalysisResults> results{std::in_place, NoResults};
    RunResults run = NoRun;
    if (const Stopped stopped = computePasses(prepared, run, results.value());
        stopped.cause != Stop::None)
        results = faultOf(stopped, prepared);
    return results;
}

std::vector<std::string_view> analysisNotes(const AnalysisResults& results) {
    const auto anyNegative = [](const auto& field) {
        bool negative = false;
        visitNumbers(field, [&](double value) { negative = negative || value < 0; });
        return negative;
    };
    std::vector<std::string_view> notes;
    if (anyNegative(results.FrontOnRemnant))
        notes.push_back("Front abutment over the remnant is negative; check the slab cuts");
    // Slab cuts take from the front load of the AMZ what an active gob may never have brought.
    if (results.AbutmentLoadAMZ[Retreat][Front] < 0)
        notes.push_back(results.FrontAbutmentLoad > 0
                            ? "Front abutment load on the AMZ is negative; check the slab cuts and "
                              "the extent of the active gob"
                            : "Slab cuts without an active gob: no retreat factor is shown, yet "
                              "the warnings count it; check the extent of the active gob");
    if (anyNegative(results.SlabCornerLoad))
        notes.push_back("Front abutment over a slab cut is negative; check the slab cuts and the "
                        "abutment angle of the active gob");
    if (anyNegative(results.BleederStrength))
        notes.push_back("Strength of the bleeder pillars is negative; check the widths of rows C "
                        "and D");
    return notes;
}

} // namespace telvo::engine
