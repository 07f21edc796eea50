// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/diagnosis.h"

#include "base/numbers.h"
#include "engine/rules/feasibility.h"
#include "project/inputFields.h"

#include <algorithm>
#include <cmath>
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

double pillarLength(const WorkingInputs& in) {
    Scalar calc;
    return rules::pillarLength(calc, in.Sc, in.We, in.SinTheta);
}

/// The message of an input that leaves a quantity without a value.
Fault faultOfInput(rules::Impossible what, const Where& where, const WorkingInputs& in) {
    using rules::Impossible;
    const bool first = where.side == FirstSide;
    switch (what) {
    case Impossible::PanelTooWide:
        // The arch factor's panel width is held in single precision and goes into no result.
        return cannotCompute("ArchFactor", "XcutCenters",
                             "the panel width is beyond single precision");
    case Impossible::CrosscutAngle:
        return cannotCompute("PillarSkewWidth", "XcutAngle", "the crosscut angle is 0");
    case Impossible::NoPillar:
        return cannotCompute("ExtractionRatioAMZ", "NumberEntries",
                             "the panel has fewer than two entries");
    case Impossible::TooManyEntries:
        return cannotCompute("PanelWidth", "NumberEntries", "the panel has more than ten entries");
    case Impossible::PillarLength: {
        const double length = pillarLength(in);
        return {"Invalid Pillar Dimensions: PillarLength is " + generalNumber(length, 6) +
                    ", the crosscut spacing leaves no pillar beside the entry width",
                "XcutSpacing"};
    }
    case Impossible::PillarWidth: {
        const std::string pillar = std::to_string(where.pillar);
        return {"Invalid Pillar Dimensions: PillarGrossWidth of pillar " + pillar + " is " +
                    generalNumber(in.PillarGrossWidth[where.pillar], 6) +
                    ", the entry width exceeds the center-to-center distance",
                "XcutCenters(" + pillar + ")"};
    }
    case Impossible::ActiveGobAngle:
        return cannotCompute("FrontAbutmentLoad", "AbutmentAngleActiveGob",
                             "the abutment angle of the active gob is 0");
    case Impossible::SideGob:
        return cannotCompute("SideAbutmentLoad of the " + sideName(where.side),
                             first ? "AbutmentAngleFirstGob" : "AbutmentAngleSecondGob",
                             "the abutment angle and the extent of this side gob are both 0");
    case Impossible::OnlyPillarClaimedTwice:
        return cannotCompute("ActiveWidth", "RowA, RowB",
                             "rows A and B both claim the panel's only pillar");
    case Impossible::NoActivePillar:
        return cannotCompute("TELVOSF",
                             in.rowLeft(1) && in.rowLeft(2) ? "RowA, RowB"
                             : in.rowLeft(1)                ? "RowA"
                                                            : "RowB",
                             "the rows that are left leave no active pillar");
    case Impossible::BleederLength:
        break;
    }
    return cannotCompute(first ? "BleederStrength of row C" : "BleederStrength of row D",
                         "XcutSpacing", "the crosscut spacing equals the entry width");
}

/// A stop in words: the quantity that has no value, why, and the input that causes it where that
/// is known.
struct StopWords {
    std::string quantity;
    std::string what;
    std::string cause = {};
};

StopWords wordsOf(const Stopped& stopped, const WorkingInputs& in) {
    switch (stopped.cause) {
    case Stop::NoAbutmentExtent:
        return {"AbutmentExtent", "it is 0"};
    case Stop::NoBarrierLoad:
        return {"BarrierSF", "the load on the barrier is 0"};
    case Stop::NoAMZLoad:
        return {"TELVOSF", "the load on the AMZ is 0",
                !in.ArchAutomatic && in.ArchFactorInput == 0 ? "ArchFactor" : ""};
    default:
        return {std::string(stopped.quantity), "its value is beyond the range of its type"};
    }
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
bool curedBy(const Stopped& stopped, const WorkingInputs& in, const std::string& candidate) {
    project::ProjectInput changed = in.Source;
    visitSizes(changed, [&](const std::string& name, double common, auto& field) {
        if (name == candidate) field = static_cast<std::remove_cvref_t<decltype(field)>>(common);
    });
    RunResults run;
    AnalysisResults results;
    const Stopped again =
        computePasses(workingInputs(changed, in.Units, in.AnalysisCase), run, results);
    return again.cause == Stop::None ||
           wordsOf(again, in).quantity != wordsOf(stopped, in).quantity;
}

Candidate causeOf(const Stopped& stopped, const std::string& known, const WorkingInputs& in) {
    const std::vector<Candidate> candidates = inputsByDistance(in.Source);
    for (const Candidate& candidate : candidates)
        if (known.empty() ? curedBy(stopped, in, candidate.name) : candidate.name == known)
            return candidate;
    return candidates.front(); // no single input explains it
}

} // namespace

std::optional<Fault> impossibleInput(const WorkingInputs& in) {
    std::optional<Fault> fault;
    rules::visitImpossible<double>(in, in.Source.NumberEntries, in, pillarLength(in),
                                   [&](rules::Impossible what, const Where& where, bool holds) {
                                       if (holds && !fault) fault = faultOfInput(what, where, in);
                                   });
    return fault;
}

bool isImpossible(const WorkingInputs& in) {
    bool impossible = false;
    rules::visitImpossible<double>(
        in, in.Source.NumberEntries, in, pillarLength(in),
        [&](rules::Impossible, const Where&, bool holds) { impossible = impossible || holds; });
    return impossible;
}

Fault faultOf(const Stopped& stopped, const WorkingInputs& in) {
    const StopWords words = wordsOf(stopped, in);
    std::string quantity = words.quantity;
    if (stopped.where.pass != 0) quantity += " (" + passName(stopped.where.pass) + ")";
    if (stopped.where.side != 0) quantity += " of the " + sideName(stopped.where.side);
    const Candidate cause = causeOf(stopped, words.cause, in);
    return cannotCompute(quantity, cause.name,
                         words.what + " with " + cause.name + " = " +
                             generalNumber(cause.value, 10));
}

} // namespace telvo::engine
