// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/faults.h"

#include "base/numbers.h"
#include "engine/driver.h"
#include "engine/geometry.h"
#include "engine/quantities.h"
#include "project/inputFields.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

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
    if (in.NumberEntries > project::MaxEntries)
        return cannotCompute("PanelWidth", "NumberEntries", "the panel has more than ten entries");
    const double length = pillarLength(in);
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

double commonValue(project::FieldKind kind) {
    switch (kind) {
    case project::FieldKind::Angle:
        return 45;
    case project::FieldKind::Number:
        return 1; // the arch factor
    default:
        return 30;
    }
}

/// Calls visit(name, common value, field) for every size of a record.
template <typename Input, typename Visit>
void visitSizes(Input& input, Visit&& visit) {
    project::visitInputFields(input, [&](const char* name, project::FieldKind kind, auto& field) {
        using Field = std::remove_cvref_t<decltype(field)>;
        if constexpr (std::is_floating_point_v<Field>) {
            visit(std::string(name), commonValue(kind), field);
        } else if constexpr (!std::is_integral_v<Field>) {
            for (int i = 1; i <= project::distanceCount(input); ++i)
                visit(std::string(name) + "(" + std::to_string(i) + ")", commonValue(kind),
                      field[i]);
        }
    });
}

double powersOfTenFrom(double value, double common) {
    return value == 0 ? 0 : std::abs(std::log10(std::abs(value) / common));
}

struct Candidate {
    std::string name;
    double value;
    double distance;
};

std::vector<Candidate> inputsByDistance(const project::ProjectInput& input) {
    std::vector<Candidate> candidates;
    visitSizes(input, [&](const std::string& name, double common, auto value) {
        candidates.push_back({name, value, powersOfTenFrom(value, common)});
    });
    std::stable_sort(
        candidates.begin(), candidates.end(),
        [](const Candidate& a, const Candidate& b) { return a.distance > b.distance; });
    return candidates;
}

/// Whether the stop goes away when one input has a common value.
bool curedBy(const Stop& stop, const WorkingInputs& in, const std::string& candidate) {
    project::ProjectInput changed = in.Source;
    visitSizes(changed, [&](const std::string& name, double common, auto& field) {
        if (name == candidate) field = static_cast<std::remove_cvref_t<decltype(field)>>(common);
    });
    AnalysisResults results;
    const auto again = computePasses(workingInputs(changed, in.Units, in.AnalysisCase), results);
    return !again || again->quantity != stop.quantity;
}

Candidate causeOf(const Stop& stop, const WorkingInputs& in) {
    const std::vector<Candidate> candidates = inputsByDistance(in.Source);
    for (const Candidate& candidate : candidates)
        if (stop.cause.empty() ? curedBy(stop, in, candidate.name) : candidate.name == stop.cause)
            return candidate;
    return candidates.front(); // no single input explains it
}

} // namespace

std::optional<Fault> impossibleInput(const WorkingInputs& prepared) {
    // The arch factor's panel width is held in single precision and goes into no result.
    if (prepared.ArchAutomatic && !std::isfinite(static_cast<float>(prepared.PanelWidth)))
        return cannotCompute("ArchFactor", "XcutCenters",
                             "the panel width is beyond single precision");
    if (auto fault = impossibleGeometry(prepared)) return fault;
    if (auto fault = impossibleGobs(prepared)) return fault;
    return impossibleRows(prepared);
}

std::optional<Stop> unboundedQuantity(const AnalysisResults& r) {
    const char* unbounded = nullptr;
    visitQuantities(r, [&](const char* name, Kind kind, const auto& field) {
        bool bounded = true;
        const double limit = static_cast<double>(std::numeric_limits<float>::max());
        if (kind == Kind::Factor)
            visitNumbers(field,
                         [&](double value) { bounded = bounded & (std::abs(value) <= limit); });
        else
            visitNumbers(field, [&](auto value) { bounded = bounded & std::isfinite(value); });
        if (!bounded && !unbounded) unbounded = name;
    });
    if (!unbounded) return std::nullopt;
    return Stop{unbounded, 0, 0, "its value is beyond the range of its type"};
}

Fault faultOf(const Stop& stop, const WorkingInputs& in) {
    std::string quantity = stop.quantity;
    if (stop.pass != 0) quantity += " (" + passName(stop.pass) + ")";
    if (stop.side != 0) quantity += " of the " + sideName(stop.side);
    const Candidate cause = causeOf(stop, in);
    return cannotCompute(quantity, cause.name,
                         stop.what + " with " + cause.name + " = " +
                             generalNumber(cause.value, 10));
}

} // namespace telvo::engine
