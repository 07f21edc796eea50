// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/driver.h"
#include "engine/rules/pass.h"

/// Single rules for readers that have not moved to the templates yet. To be removed with them.
namespace telvo::engine {

using rules::TransferThreshold;

struct ActiveRows {
    int first = 1, last = 0;
};
inline ActiveRows activeRows(const WorkingInputs& in) {
    return {in.firstActivePillar(), in.lastActivePillar()};
}

/// The inputs of one pass: development knows no active gob and no slab cuts.
inline WorkingInputs forPass(const WorkingInputs& prepared, int pass) {
    WorkingInputs in = prepared;
    if (pass == Development) {
        in.GobExtent[1] = 0;
        in.Slabcut = {};
    }
    return in;
}

/// The results as the development pass leaves them.
inline AnalysisResults afterDevelopment(const WorkingInputs& prepared) {
    const WorkingInputs in = forPass(prepared, Development);
    RunResults run;
    Scalar calc;
    rules::computeRun(calc, in, in, run);
    run.stresses.ShownRFactorSide = run.panel.RFactorSide;
    run.pass[Development] = run.pass[Retreat];
    return flat(in, run);
}

inline double archPanelWidth(const WorkingInputs& in) {
    double sum = 0;
    for (int i = 1; i <= in.NumberPillars; ++i)
        sum = toSingle(sum + in.EntryCenter[i]);
    return sum;
}

inline double rFactor(double D, double x) {
    Scalar calc;
    return rules::rFactor(calc, D, x);
}

struct FrontVolumes {
    double load = 0;
    bool gobWiderThanLoaded = false, fullHeight = false;
    double z1 = 0, z2 = 0, P1 = 0, P2 = 0, P3 = 0, P4 = 0;
};
/// Catches the named steps of the front abutment.
struct NamingScalar : Scalar {
    FrontVolumes* volumes = nullptr;
    double named(const char* symbol, double x) {
        const std::string_view name = symbol;
        for (const auto& [known, place] : {std::pair{"z1", &volumes->z1},
                                           {"z2", &volumes->z2},
                                           {"P1", &volumes->P1},
                                           {"P2", &volumes->P2},
                                           {"P3", &volumes->P3},
                                           {"P4", &volumes->P4}})
            if (name == known) *place = x;
        return x;
    }
};
inline FrontVolumes frontAbutmentOnAMZ(const WorkingInputs& in, double Wl, double R) {
    FrontVolumes volumes;
    NamingScalar calc;
    calc.volumes = &volumes;
    const auto front = rules::frontAbutmentOnAMZ<NamingScalar>(calc, in, in.GobExtent[1], Wl, R);
    volumes.load = front.load;
    volumes.gobWiderThanLoaded = front.gobWiderThanLoaded;
    volumes.fullHeight = lesser(in.GobExtent[1], Wl) / 2 >= in.H * in.AbutmentTangent[1];
    return volumes;
}

/// Front abutment over barrier k and half an entry, less the slab corner; 0 without a barrier.
inline double frontTransferBase(const WorkingInputs& in, int pass, int k,
                                const AnalysisResults& r) {
    PassResults of;
    of.FrontAbutmentLoad = r.FrontAbutmentLoad;
    of.SlabCornerLoad = r.SlabCornerLoad[pass];
    Scalar calc;
    return rules::frontTransferBase<Scalar>(calc, in, r.RFactorFront, of, k);
}

} // namespace telvo::engine
