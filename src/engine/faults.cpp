// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/faults.h"

#include "base/numbers.h"
#include "engine/geometry.h"
#include "engine/quantities.h"

#include <array>
#include <cmath>
#include <string>

namespace telvo::engine {

namespace {

Fault cannotCompute(const std::string& quantity, const std::string& input,
                    const std::string& because) {
    return {quantity + " cannot be computed: " + because, input};
}

std::string passName(int pass) {
    return pass == Development ? "development" : "retreat";
}

std::string sideName(int k) {
    return k == FirstSide ? "first side" : "second side";
}

std::optional<Fault> impossibleGeometry(const WorkingInputs& in) {
    if (in.SinTheta == 0)
        return cannotCompute("PillarSkewWidth", "XcutAngle", "the crosscut angle is 0");
    if (in.NumberPillars < 1)
        return cannotCompute("ExtractionRatioAMZ", "NumberEntries",
                             "the panel has fewer than two entries");
    const double sine = in.SinTheta;
    const double length = (in.Sc - in.We / sine) * sine;
    if (length < 0)
        return Fault{"Invalid Pillar Dimensions: PillarLength is " + generalNumber(length, 6) +
                         ", the crosscut spacing leaves no pillar beside the entry width",
                     "XcutSpacing"};
    for (int i = 1; i <= in.NumberPillars; ++i)
        if (in.PillarGrossWidth[i] < 0)
            return Fault{"Invalid Pillar Dimensions: PillarGrossWidth of pillar " +
                             std::to_string(i) + " is " + generalNumber(in.PillarGrossWidth[i], 6) +
                             ", the entry width exceeds the center-to-center distance",
                         "XcutCenters(" + std::to_string(i) + ")"};
    return std::nullopt;
}

std::optional<Fault> impossibleRows(const WorkingInputs& in) {
    const ActiveRows rows = activeRows(in);
    const bool bothClaimOne = in.NumberPillars == 1 && in.rowLeft(1) && in.rowLeft(2);
    if (in.AnalysisCase >= ActiveGob && bothClaimOne)
        return cannotCompute("ActiveWidth", "RowA, RowB",
                             "rows A and B both claim the panel's only pillar");
    if (in.AnalysisCase == ActiveGob && rows.first > rows.last)
        return cannotCompute("TELVOSF",
                             in.rowLeft(1) && in.rowLeft(2) ? "RowA, RowB"
                             : in.rowLeft(1)                ? "RowA"
                                                            : "RowB",
                             "the rows that are left leave no active pillar");
    for (const int k : {FirstSide, SecondSide})
        if (in.rowLeft(k) && in.PillarLengthAlong == 0)
            return cannotCompute(k == FirstSide ? "BleederStrength of row C"
                                                : "BleederStrength of row D",
                                 "XcutSpacing", "the crosscut spacing equals the entry width");
    return std::nullopt;
}

std::optional<Fault> impossibleGobs(const WorkingInputs& in) {
    // The development pass has an active gob of extent 0, whatever the input says.
    if (in.AbutmentAngle[1] == 0)
        return cannotCompute("FrontAbutmentLoad", "AbutmentAngleActiveGob",
                             "the abutment angle of the active gob is 0");
    for (int k = FirstSide; k <= in.AnalysisCase; ++k) {
        const int gob = WorkingInputs::gobOfSide(k);
        if (in.AbutmentAngle[gob] == 0 && in.GobExtent[gob] == 0)
            return cannotCompute("SideAbutmentLoad of the " + sideName(k),
                                 k == FirstSide ? "AbutmentAngleFirstGob"
                                                : "AbutmentAngleSecondGob",
                                 "the abutment angle and the extent of this side gob are both 0");
    }
    return std::nullopt;
}

struct NamedInput {
    const char* name;
    double value;
};

/// The input farthest from the sizes that panels have, by powers of ten; it is what drives a
/// quantity out of its range.
NamedInput mostExtremeInput(const WorkingInputs& in) {
    const project::ProjectInput& s = in.Source;
    const std::array<NamedInput, 18> inputs = {
        {{"EntryHeight", s.EntryHeight},
         {"DepthCover", s.DepthCover},
         {"EntryWidth", s.EntryWidth},
         {"XcutSpacing", s.XcutSpacing},
         {"XcutAngle", s.XcutAngle},
         {"XcutCenters", in.PanelWidth},
         {"CoalStrength", s.CoalStrength},
         {"UnitWeight", s.UnitWeight},
         {"BreadthAMZ", s.BreadthAMZ},
         {"ExtentActiveGob", s.ExtentActiveGob},
         {"ExtentFirstGob", s.ExtentFirstGob},
         {"BarrierFirstGob", s.BarrierFirstGob},
         {"ExtentSecondGob", s.ExtentSecondGob},
         {"BarrierSecondGob", s.BarrierSecondGob},
         {"AbutmentAngleActiveGob", s.AbutmentAngleActiveGob},
         {"WidthC", s.WidthC},
         {"WidthD", s.WidthD},
         {"ArchFactor", s.ArchFactor}}};
    const auto distance = [](double value) {
        return value == 0 ? 0 : std::abs(std::log10(std::abs(value) / 30));
    };
    NamedInput farthest = inputs.front();
    for (const NamedInput& input : inputs)
        if (distance(input.value) > distance(farthest.value)) farthest = input;
    return farthest;
}

Fault outOfRange(const WorkingInputs& in, const std::string& quantity, const std::string& what) {
    const NamedInput input = mostExtremeInput(in);
    return cannotCompute(quantity, input.name,
                         what + " with " + input.name + " = " + generalNumber(input.value, 10));
}

} // namespace

std::optional<Fault> impossibleInput(const WorkingInputs& prepared) {
    // The arch factor's panel width is held in single precision and goes into no result.
    if (prepared.ArchAutomatic && !std::isfinite(static_cast<float>(prepared.PanelWidth)))
        return outOfRange(prepared, "ArchFactor", "the panel width is beyond single precision");
    if (auto fault = impossibleGeometry(prepared)) return fault;
    if (auto fault = impossibleGobs(prepared)) return fault;
    return impossibleRows(prepared);
}

Fault zeroAMZLoad(const WorkingInputs& in) {
    const std::string quantity = "TELVOSF (" + passName(in.Pass) + ")";
    if (!in.ArchAutomatic && in.ArchFactorInput == 0)
        return cannotCompute(quantity, "ArchFactor",
                             "the load on the AMZ is 0 with a pressure arch factor of 0");
    return outOfRange(in, quantity, "the load on the AMZ is 0");
}

Fault zeroBarrierLoad(const WorkingInputs& in, int k) {
    return outOfRange(in, "BarrierSF (" + passName(in.Pass) + ", " + sideName(k) + ")",
                      "the load on the barrier is 0");
}

std::optional<Fault> unboundedQuantity(const WorkingInputs& in, const AnalysisResults& r) {
    const char* unbounded = nullptr;
    visitQuantities(r, [&](const char* name, Kind, const auto& field) {
        bool finite = true;
        visitNumbers(field, [&](const auto& value) { finite = finite & std::isfinite(value); });
        if (!finite && !unbounded) unbounded = name;
    });
    if (!unbounded) return std::nullopt;
    return outOfRange(in, unbounded, "its value is beyond the range of its type");
}

} // namespace telvo::engine
