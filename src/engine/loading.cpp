// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/loading.h"

#include "base/numbers.h"
#include "project/units.h"

#include <cmath>

namespace telvo::engine {

namespace {

double cube(double x) {
    return x * x * x;
}

} // namespace

float archPanelWidth(const WorkingInputs& in) {
    float sum = 0;
    for (int i = 1; i <= in.NumberPillars; ++i)
        sum = static_cast<float>(sum + in.EntryCenter[i]);
    return sum;
}

float pressureArchFactor(const WorkingInputs& in) {
    if (!in.ArchAutomatic) return in.ArchFactorInput;
    const double W = archPanelWidth(in);
    if (W == 0) return 1.0F;
    double F = 0;
    if (in.H > 25) F = 1 - 0.28 * std::log(in.H / W);
    if (in.H - 80 < W) F = 1.0;
    if (F < 0.28) F = 0.28;
    return static_cast<float>(roundHalfEven2(F));
}

double abutmentExtent(double H, std::int16_t units) {
    if (units != project::Metric) return 9.3 * std::sqrt(H);
    const auto Hf = static_cast<float>(H * project::FeetPerMetre);
    return 9.3 * std::sqrt(static_cast<double>(Hf)) / project::FeetPerMetre;
}

double rFactor(double D, double x) {
    const double R = 1 - cube((D - x) / D);
    return R > 1 ? 1 : R;
}

double abutmentLoad(double Gamma, double H, double E, double t) {
    const bool subcritical = E / 2 <= H * t;
    if (subcritical) return Gamma * (H * E / 2 - E * E / (8 * t));
    return Gamma * (H * H) * t / 2;
}

double loadedWidth(const WorkingInputs& in, double activeWidth) {
    switch (in.AnalysisCase) {
    case ActiveGob:
        return activeWidth;
    case OneSideGob:
        return activeWidth + in.Slabcut[FirstSide];
    case TwoSideGobs:
        return activeWidth + in.Slabcut[FirstSide] + in.Slabcut[SecondSide];
    default:
        return 0;
    }
}

FrontAbutment frontAbutmentOnAMZ(const WorkingInputs& in, double Wl, double R) {
    const double H = in.H;
    const double Gamma = in.Gamma;
    const double E = in.GobExtent[1];
    const double t = in.AbutmentTangent[1];
    const double HT = H * t;

    const bool fullHeight = Wl / 2 >= HT && E / 2 >= HT;
    if (fullHeight) {
        const double P2 = (Wl - 2 * HT) * H * HT / 2 * Gamma;
        const double P4 = HT * H * HT / 3 * Gamma;
        return {(2 * P4 + P2) * R, HT, false, true, 0, 0, 0, P2, 0, P4};
    }
    if (E <= Wl) {
        const double a = E / 2;
        const double z1 = H - a / t;
        const double z2 = a / t;
        const double P1 = (Wl - E) * z1 * a * Gamma;
        const double P2 = (Wl - E) * z2 * a / 2 * Gamma;
        const double P3 = a * z1 * a / 2 * Gamma;
        const double P4 = a * z2 * a / 3 * Gamma;
        return {(P1 + P2 + 2 * P3 + 2 * P4) * R, a, false, false, z1, z2, P1, P2, P3, P4};
    }
    const double a = Wl / 2;
    const double z1 = H - a / t;
    const double z2 = H - z1;
    const double P3 = a * z1 * a / 2 * Gamma;
    const double P4 = a * z2 * a / 3 * Gamma;
    return {(2 * P3 + 2 * P4) * R, a, true, false, z1, z2, 0, 0, P3, P4};
}

double slabCornerLoad(const WorkingInputs& in, int k, double R) {
    const double t = in.AbutmentTangent[1];
    const double a = in.Slabcut[k] / 2;
    const double z1 = in.H - a / t;
    const double z2 = in.H - z1;
    const double P3 = a * z1 * a / 2 * in.Gamma;
    const double P4 = a * z2 * a / 3 * in.Gamma;
    return (P3 + P4) * R;
}

double frontOnRemnant(double panelWidth, double frontAbutmentLoad, double R, double frontOnAMZ,
                      bool gobWiderThanLoaded) {
    if (gobWiderThanLoaded) return frontOnAMZ / 2;
    return (panelWidth * frontAbutmentLoad * R) / 2 - frontOnAMZ / 2;
}

double sideRFactor(const WorkingInputs& in, int k, double D) {
    if (in.BarrierWidth[k] == 0) return 0;
    return rFactor(D, in.We / 2 + in.BarrierWidth[k]);
}

void barrierLoads(const WorkingInputs& in, int k, AnalysisResults& r) {
    const int p = in.Pass;
    const double arch = 1 - static_cast<double>(r.ArchFactor);
    r.BarrierTributaryLoad[p][k] = in.Gamma * in.H * (in.We / 2 + in.BarrierWidth[k]) * in.B;
    r.BarrierSideAbutmentLoad[p][k] = r.SideAbutmentLoad[k] * r.RFactorSide[k] * in.B;
    r.BarrierArchLoad[p][k] = arch / 2 * (r.TributaryLoadAMZ + r.AbutmentLoadAMZ[p][Front]) +
                              arch * (r.LTRANSREM[p][k] + r.AbutmentLoadAMZ[p][k]);
    r.BarrierLoad[p][k] = r.BarrierTributaryLoad[p][k] + r.BarrierFrontTransfer[p][k] +
                          r.BarrierSideAbutmentLoad[p][k] + r.BarrierArchLoad[p][k] +
                          r.SlabCornerLoad[p][k];
}

void cumulativeAMZLoads(int p, AnalysisResults& r) {
    const double arch = r.ArchFactor;
    auto& load = r.AMZLoad[p];
    load[Tributary] = static_cast<float>(arch * r.TributaryLoadAMZ);
    load[Front] = static_cast<float>(arch * r.AbutmentLoadAMZ[p][Front] + load[Tributary]);
    for (const int k : {FirstSide, SecondSide})
        load[k] =
            (r.LTRANSREM[p][k] + r.AbutmentLoadAMZ[p][k]) * arch + load[k - 1] + r.LTRANSBAR[p][k];
}

} // namespace telvo::engine
