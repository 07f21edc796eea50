// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/transfer.h"

#include "engine/loading.h"
#include "engine/strength.h"

#include <algorithm>
#include <cmath>

namespace telvo::engine {

namespace {

constexpr double TransferShare = 0.67;

double quotient(double dividend, double divisor) {
    return divisor == 0 ? 0 : dividend / divisor;
}

void barrierStresses(const WorkingInputs& in, int k, AnalysisResults& r) {
    if (!(in.BarrierWidth[k] > 0)) return;
    const int p = in.Pass;
    const double A = in.B * in.BarrierWidth[k];
    const double tributary = r.BarrierTributaryLoad[p][k];
    const double front = r.BarrierFrontTransfer[p][k];
    const double side = r.BarrierSideAbutmentLoad[p][k];
    r.BarrierTributaryStress[k] = quotient(tributary, A);
    r.BarrierFrontStress[k] = quotient(front, A);
    r.BarrierSideStress[k] = quotient(side, A);
    r.BarrierTotalStress[k] = quotient(tributary + front + side, A);
}

void sideStresses(const WorkingInputs& in, int k, AnalysisResults& r) {
    constexpr int reach = 3; // pillars next to the gob that its abutment is followed over
    constexpr double almostOne = 0.999;
    if (r.RFactorSide[k] == 1) r.RFactorSide[k] = almostOne;

    const double load = quotient(r.LTRANSBAR[in.Pass][k] + r.AbutmentLoadAMZ[in.Pass][k], in.B);
    double x = in.BarrierWidth[k];
    double share = r.RFactorSide[k];
    for (int step = 1; step <= std::min(reach, in.NumberPillars); ++step) {
        const int i = k == FirstSide ? step : in.NumberPillars + 1 - step;
        x += in.EntryCenter[i];
        const double shareBefore = share;
        share = rFactor(r.AbutmentExtent, x);
        r.SideShare[k][i] = quotient(share - shareBefore, 1 - r.RFactorSide[k]);
        r.PillarSideStress[k][i] = quotient(load * r.SideShare[k][i] * in.Sc, r.PillarArea[i]);
    }
}

} // namespace

void remnantBarrier(const WorkingInputs& in, int k, AnalysisResults& r) {
    const double length = r.AbutmentHalfWidth;
    const double width = in.BarrierWidth[k] - in.Slabcut[k];
    double& load = r.LFBAR[in.Pass][k];
    r.RemnantWidth[k] = width;
    if (length != 0 && width != 0)
        load = in.Gamma * in.H * width * length + length * r.SideAbutmentLoad[k] +
               r.FrontOnRemnant[in.Pass][k];
    r.RemnantStrength[k] = barrierStrength(in.S1, width, in.h);
    r.RemnantCapacity[k] = length * r.RemnantStrength[k] * width;
    r.RemnantTotalCapacity[k] = r.RemnantCapacity[k] + length * r.BleederExcess[k] / in.Sc;
    if (load != 0) r.RemnantSF[k] = r.RemnantTotalCapacity[k] / load;
    if (width <= 0) r.RemnantSF[k] = 0;
}

double remnantTransfer(double width, double SF, double X) {
    double transfer = 0;
    if (width <= 0)
        transfer = X;
    else if (SF <= TransferThreshold)
        transfer = (TransferThreshold - SF) * TransferShare * X;
    return std::min(transfer, X);
}

double frontTransferBase(const WorkingInputs& in, int k, const AnalysisResults& r) {
    if (in.BarrierWidth[k] == 0) return 0;
    return (in.We / 2 + in.BarrierWidth[k]) * r.FrontAbutmentLoad * r.RFactorFront -
           r.SlabCornerLoad[in.Pass][k];
}

double frontTransfer(double SF, double X) {
    if (!(SF < TransferThreshold)) return 0;
    return (TransferThreshold - SF) * TransferShare * X;
}

double barrierTransfer(double SF, double X) {
    if (SF > TransferThreshold) return 0;
    if (SF < 0.5) return X;
    return (TransferThreshold - SF) * X;
}

void plotStresses(const WorkingInputs& in, AnalysisResults& r) {
    for (const int k : {FirstSide, SecondSide})
        barrierStresses(in, k, r);
    r.TributaryStress = static_cast<float>(quotient(in.Gamma * in.H, 1 - r.ExtractionRatioAMZ));
    for (int k = FirstSide; k <= in.AnalysisCase; ++k)
        sideStresses(in, k, r);
}

} // namespace telvo::engine
