// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/strength.h"

namespace telvo::engine {

double pillarStrength(double S1, double w, double L, double h) {
    return S1 * (0.64 + 0.54 * w / h - 0.18 * (w * w) / (h * L));
}

double barrierStrength(double S1, double w, double h) {
    if (w < h) return 0;
    return S1 * (0.64 + 0.54 * w / h);
}

void pillarCapacities(const WorkingInputs& in, AnalysisResults& r) {
    double capacities = 0;
    for (int i = 1; i <= in.NumberPillars; ++i) {
        const double w = r.MinDimension[i];
        const double L = r.MaxDimension[i];
        r.PillarStrength[i] = w == 0 ? 0 : pillarStrength(in.S1, w, L, in.h);
        r.PillarCapacity[i] = r.PillarStrength[i] * r.PillarArea[i];
        capacities += r.PillarCapacity[i];
    }
    r.TotalCapacityAMZ = capacities * in.B / in.Sc;
}

void activeCapacity(const WorkingInputs& in, const ActiveRows& rows, AnalysisResults& r) {
    r.ActiveWidth = rows.width;
    r.ActiveArea = rows.width * in.B;
    double capacities = 0;
    for (int i = rows.first; i <= rows.last; ++i)
        capacities += r.PillarCapacity[i];
    r.ActiveCapacityAMZ = capacities * in.B / in.Sc;
}

void bleederRow(const WorkingInputs& in, int k, AnalysisResults& r) {
    r.BleederStrength[k] = r.BleederCapacity[k] = r.BleederLoad[k] = 0;
    if (in.rowLeft(k)) {
        const double W = in.BleederWidth[k];
        r.BleederStrength[k] = pillarStrength(in.S1, W, in.PillarLengthAlong, in.h);
        r.BleederCapacity[k] = W * r.BleederStrength[k] * in.PillarLengthAlong;
        r.BleederLoad[k] = (in.We + W) * in.Sc * in.H * in.Gamma;
    }
    constexpr double negligible = 0.01;
    const double excess = (r.BleederCapacity[k] - r.BleederLoad[k]) * in.B / in.Sc;
    r.BleederExcess[k] = excess < negligible ? 0 : excess;
}

void barrierCapacity(const WorkingInputs& in, int k, AnalysisResults& r) {
    r.BarrierStrength[k] = barrierStrength(in.S1, in.BarrierWidth[k], in.h);
    r.BarrierCapacity[k] = in.BarrierWidth[k] * r.BarrierStrength[k] * in.B + r.BleederExcess[k];
}

double panelStabilityFactor(const AnalysisResults& r, int pass) {
    const double load = r.AMZLoad[pass][r.AnalysisCase];
    const double capacity = r.AnalysisCase == ActiveGob ? r.ActiveCapacityAMZ : r.TotalCapacityAMZ;
    return capacity / load;
}

} // namespace telvo::engine
