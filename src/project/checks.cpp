// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/checks.h"

#include "base/numbers.h"
#include "base/text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace telvo::project {

namespace {

constexpr std::string_view RangeError = "Range Error";
constexpr std::string_view LogicError = "Logic Error";

constexpr std::string_view SlabCutBesideRowA =
    "Cannot take slab cut from first side barrier when Row A pillars are left";
constexpr std::string_view SlabCutBesideRowB =
    "Cannot take slab cut from second side barrier when Row B pillars are left";

Refusal refusal(std::string_view message, std::string_view title, std::string_view control) {
    return {std::string(message), std::string(title), std::string(control)};
}

/// The values of the form's controls, read once.
struct FormValues {
    explicit FormValues(const ParameterTexts& form)
        : in(inputFromTexts({}, form)), archFactor(leadingValue(form.txtArchFactor)) {}
    ProjectInput in;
    double archFactor; // as typed, before it is narrowed to single precision

    bool firstGob() const { return in.Anal >= 2; }
    bool secondGob() const { return in.Anal == 3; }
};

bool outsideRightAngle(double angle) {
    return angle < 0 || angle > 90;
}

/// One row of a check; the rows are tried in order and the first refusal wins.
template <typename Values>
struct Row {
    std::string_view control;
    bool (*refused)(const Values&);
    std::string_view message;
    std::string_view title = RangeError;
};

template <typename Values, std::size_t Count>
std::optional<Refusal> firstRefusal(const std::array<Row<Values>, Count>& rows,
                                    const Values& values) {
    for (const auto& row : rows)
        if (row.refused(values)) return refusal(row.message, row.title, row.control);
    return std::nullopt;
}

/// Every refusal of a check; of several of one control the first.
void collect(std::vector<Refusal>& found, std::optional<Refusal> refused) {
    if (!refused) return;
    const bool known = std::any_of(found.begin(), found.end(), [&](const Refusal& other) {
        return other.control == refused->control;
    });
    if (!known) found.push_back(*std::move(refused));
}

template <typename Values, std::size_t Count>
void collectRefusals(std::vector<Refusal>& found, const std::array<Row<Values>, Count>& rows,
                     const Values& values) {
    for (const auto& row : rows)
        if (row.refused(values)) collect(found, refusal(row.message, row.title, row.control));
}

using F = const FormValues&;

constexpr std::array<Row<FormValues>, 2> AcceptanceBeforeAngle = {{
    {"txtEntryHeight", [](F f) { return !(f.in.EntryHeight > 0); }, "Invalid entry height"},
    {"txtDepthCover", [](F f) { return !(f.in.DepthCover > 0); }, "Invalid depth of cover"},
}};

constexpr std::array<Row<FormValues>, 20> AcceptanceAfterAngle = {{
    {"txtEntryWidth", [](F f) { return !(f.in.EntryWidth > 0); }, "Invalid entry width"},
    {"txtXcutSpacing",
     [](F f) { return !(f.in.XcutSpacing > 0) || !(f.in.XcutSpacing > f.in.EntryWidth); },
     "Invalid crosscut spacing"},
    {"txtCoalStrength", [](F f) { return !(f.in.CoalStrength > 0); },
     "Invalid in situ coal strength"},
    {"txtUnitWeight", [](F f) { return !(f.in.UnitWeight > 0); }, "Invalid overburden unit weight"},
    {"txtBreadthAMZ", [](F f) { return !(f.in.BreadthAMZ > 0); }, "Invalid breadth of AMZ"},
    {"txtArchFactor", [](F f) { return f.archFactor < 0.28 || f.archFactor > 1.0; },
     "Invalid Arch Factor"},
    {"txtWidthC", [](F f) { return f.in.RowC == 1 && !(f.in.WidthC > 0); },
     "Invalid Pillar Width for Row C"},
    {"txtWidthD", [](F f) { return f.in.RowD == 1 && !(f.in.WidthD > 0); },
     "Invalid Pillar Width for Row D"},
    {"txtSlabcutFirstGob",
     [](F f) { return f.firstGob() && f.in.RowA == 1 && f.in.SlabcutFirstGob > 0; },
     SlabCutBesideRowA, LogicError},
    // The second barrier's row hangs on the first side gob, as the first's does.
    {"txtSlabcutSecondGob",
     [](F f) { return f.firstGob() && f.in.RowB == 1 && f.in.SlabcutSecondGob > 0; },
     SlabCutBesideRowB, LogicError},
    {"txtExtentActiveGob", [](F f) { return f.in.ExtentActiveGob < 0; },
     "Invalid extent of active gob"},
    {"txtAbutmentAngleActiveGob",
     [](F f) { return outsideRightAngle(f.in.AbutmentAngleActiveGob); },
     "Invalid abutment angle of active gob"},
    {"txtExtentFirstGob", [](F f) { return f.firstGob() && f.in.ExtentFirstGob < 0; },
     "Invalid extent of first gob"},
    {"txtAbutmentAngleFirstGob",
     [](F f) { return f.firstGob() && outsideRightAngle(f.in.AbutmentAngleFirstGob); },
     "Invalid abutment angle of first gob"},
    {"txtBarrierFirstGob", [](F f) { return f.firstGob() && f.in.BarrierFirstGob < 0; },
     "Invalid extent of barrier of first gob"},
    {"txtSlabcutFirstGob",
     [](F f) {
         return f.firstGob() &&
                (f.in.SlabcutFirstGob < 0 || f.in.SlabcutFirstGob > f.in.BarrierFirstGob);
     },
     "Invalid extent of slab cut in barrier of first gob"},
    {"txtExtentSecondGob", [](F f) { return f.secondGob() && f.in.ExtentSecondGob < 0; },
     "Invalid extent of second gob"},
    {"txtAbutmentAngleSecondGob",
     [](F f) { return f.secondGob() && outsideRightAngle(f.in.AbutmentAngleSecondGob); },
     "Invalid abutment angle of second gob"},
    {"txtBarrierSecondGob", [](F f) { return f.secondGob() && f.in.BarrierSecondGob < 0; },
     "Invalid extent of barrier of second gob"},
    {"txtSlabcutSecondGob",
     [](F f) {
         return f.secondGob() &&
                (f.in.SlabcutSecondGob < 0 || f.in.SlabcutSecondGob > f.in.BarrierSecondGob);
     },
     "Invalid extent of slab cut in barrier of second gob"},
}};

using I = const ProjectInput&;

// Kept different from the acceptance check on purpose: angles down to 0, arch factors down to 0,
// other words for coal strength and unit weight, no comparison with the entry width, and the upper
// bound of the side gobs' angles and slab cuts whatever the loading condition.
constexpr std::array<Row<ProjectInput>, 23> BeforeAnalysis = {{
    {"txtEntryHeight", [](I in) { return !(in.EntryHeight > 0); }, "Invalid entry height"},
    {"txtDepthCover", [](I in) { return !(in.DepthCover > 0); }, "Invalid depth of cover"},
    {"txtXcutAngle", [](I in) { return outsideRightAngle(in.XcutAngle); },
     "Invalid crosscut angle"},
    {"txtEntryWidth", [](I in) { return !(in.EntryWidth > 0); }, "Invalid entry width"},
    {"txtXcutSpacing", [](I in) { return !(in.XcutSpacing > 0); }, "Invalid crosscut spacing"},
    {"txtCoalStrength", [](I in) { return !(in.CoalStrength > 0); }, "Invalid coal strength"},
    {"txtBreadthAMZ", [](I in) { return !(in.BreadthAMZ > 0); }, "Invalid breadth of AMZ"},
    {"txtUnitWeight", [](I in) { return !(in.UnitWeight > 0); }, "Invalid unit weight"},
    {"txtArchFactor", [](I in) { return in.ArchFactor < 0 || in.ArchFactor > 1; },
     "Invalid Arch Percent"},
    {"txtWidthC", [](I in) { return in.RowC == 1 && !(in.WidthC > 0); },
     "Invalid Pillar Width for Row C"},
    {"txtWidthD", [](I in) { return in.RowD == 1 && !(in.WidthD > 0); },
     "Invalid Pillar Width for Row D"},
    {"txtSlabcutFirstGob",
     [](I in) { return in.SlabcutFirstGob > 0 && in.Anal > 1 && in.RowA == 1; }, SlabCutBesideRowA,
     LogicError},
    {"txtSlabcutSecondGob",
     [](I in) { return in.SlabcutSecondGob > 0 && in.Anal > 1 && in.RowB == 1; }, SlabCutBesideRowB,
     LogicError},
    {"txtExtentActiveGob", [](I in) { return in.ExtentActiveGob < 0; },
     "Invalid extent of active gob"},
    {"txtAbutmentAngleActiveGob", [](I in) { return outsideRightAngle(in.AbutmentAngleActiveGob); },
     "Invalid abutment angle of active gob"},
    {"txtExtentFirstGob", [](I in) { return in.ExtentFirstGob < 0 && in.Anal > 1; },
     "Invalid extent of first gob"},
    {"txtAbutmentAngleFirstGob",
     [](I in) {
         return in.AbutmentAngleFirstGob > 90 || (in.AbutmentAngleFirstGob < 0 && in.Anal > 1);
     },
     "Invalid abutment angle of first gob"},
    {"txtBarrierFirstGob", [](I in) { return in.BarrierFirstGob < 0 && in.Anal > 1; },
     "Invalid extent of barrier of first gob"},
    {"txtSlabcutFirstGob",
     [](I in) {
         return (in.SlabcutFirstGob < 0 && in.Anal > 1) || in.SlabcutFirstGob > in.BarrierFirstGob;
     },
     "Invalid extent of slab cut in barrier of first gob"},
    {"txtExtentSecondGob", [](I in) { return in.ExtentSecondGob < 0 && in.Anal > 2; },
     "Invalid extent of second gob"},
    {"txtAbutmentAngleSecondGob",
     [](I in) {
         return in.AbutmentAngleSecondGob > 90 || (in.AbutmentAngleSecondGob < 0 && in.Anal > 2);
     },
     "Invalid abutment angle of second gob"},
    {"txtBarrierSecondGob", [](I in) { return in.BarrierSecondGob < 0 && in.Anal > 2; },
     "Invalid extent of barrier of second gob"},
    {"txtSlabcutSecondGob",
     [](I in) {
         return (in.SlabcutSecondGob < 0 && in.Anal > 2) ||
                in.SlabcutSecondGob > in.BarrierSecondGob;
     },
     "Invalid extent of slab cut in barrier of second gob"},
}};

std::string distanceControl(int i) {
    return "txtXcutCenters_" + std::to_string(i);
}

float singleValue(std::string_view text) {
    const double value = leadingValue(text);
    return std::abs(value) > static_cast<double>(std::numeric_limits<float>::max())
               ? 0.0F // out of range counts as no number, as it does for a double
               : static_cast<float>(value);
}

} // namespace

std::optional<Refusal> checkRange(std::string_view text, double low, double high,
                                  std::string_view label, std::string_view control) {
    const std::string prefix = label.empty() ? std::string() : std::string(label) + ": ";
    const auto field = trimmed(text);
    if (field.empty()) return refusal(prefix + "Blank field not allowed", RangeError, control);
    const double value = leadingValue(field);
    if (value >= low && value <= high) return std::nullopt;
    return refusal(prefix + "Value '" + std::string(field) + "' is outside input range\n" +
                       "Valid range is: " + generalNumber(low) + "-" + generalNumber(high),
                   RangeError, control);
}

ParameterTexts textsFromInput(const ProjectInput& in) {
    ParameterTexts texts;
    texts.txtEntryHeight = generalNumber(in.EntryHeight);
    texts.txtDepthCover = generalNumber(in.DepthCover);
    texts.txtXcutAngle = generalNumber(in.XcutAngle);
    texts.txtEntryWidth = generalNumber(in.EntryWidth);
    texts.txtXcutSpacing = generalNumber(in.XcutSpacing);
    texts.txtNumberEntries = generalNumber(in.NumberEntries);
    for (int i = 1; i <= 9; ++i)
        texts.txtXcutCenters[i] = generalNumber(in.XcutCenters[i]);
    texts.txtCoalStrength = generalNumber(in.CoalStrength);
    texts.txtUnitWeight = generalNumber(in.UnitWeight);
    texts.txtBreadthAMZ = generalNumber(in.BreadthAMZ);
    texts.txtArchFactor = generalNumber(in.ArchFactor);
    texts.chkAMZ = in.AMZ == 1;
    texts.chkArch = in.Arch == 1;
    texts.optAnal = std::clamp<std::int16_t>(in.Anal, 0, 3);
    texts.txtExtentActiveGob = generalNumber(in.ExtentActiveGob);
    texts.txtAbutmentAngleActiveGob = generalNumber(in.AbutmentAngleActiveGob);
    texts.txtExtentFirstGob = generalNumber(in.ExtentFirstGob);
    texts.txtAbutmentAngleFirstGob = generalNumber(in.AbutmentAngleFirstGob);
    texts.txtBarrierFirstGob = generalNumber(in.BarrierFirstGob);
    texts.txtSlabcutFirstGob = generalNumber(in.SlabcutFirstGob);
    texts.txtExtentSecondGob = generalNumber(in.ExtentSecondGob);
    texts.txtAbutmentAngleSecondGob = generalNumber(in.AbutmentAngleSecondGob);
    texts.txtBarrierSecondGob = generalNumber(in.BarrierSecondGob);
    texts.txtSlabcutSecondGob = generalNumber(in.SlabcutSecondGob);
    texts.chkRowA = in.RowA == 1;
    texts.chkRowB = in.RowB == 1;
    texts.chkRowC = in.RowC == 1;
    texts.chkRowD = in.RowD == 1;
    texts.txtWidthC = generalNumber(in.WidthC);
    texts.txtWidthD = generalNumber(in.WidthD);
    return texts;
}

ProjectInput inputFromTexts(const ProjectInput& base, const ParameterTexts& texts) {
    ProjectInput in = base;
    in.EntryHeight = leadingValue(texts.txtEntryHeight);
    in.DepthCover = leadingValue(texts.txtDepthCover);
    in.XcutAngle = leadingValue(texts.txtXcutAngle);
    in.EntryWidth = leadingValue(texts.txtEntryWidth);
    in.XcutSpacing = leadingValue(texts.txtXcutSpacing);
    in.NumberEntries = leadingInteger(texts.txtNumberEntries);
    for (int i = 1; i <= distanceCount(in); ++i)
        in.XcutCenters[i] = leadingValue(texts.txtXcutCenters[i]);
    in.CoalStrength = leadingValue(texts.txtCoalStrength);
    in.UnitWeight = leadingValue(texts.txtUnitWeight);
    in.BreadthAMZ = leadingValue(texts.txtBreadthAMZ);
    in.Anal = texts.optAnal;
    in.AMZ = texts.chkAMZ ? 1 : 0;
    in.ArchFactor = singleValue(texts.txtArchFactor);
    in.Arch = texts.chkArch ? 1 : 0;
    in.ExtentActiveGob = leadingValue(texts.txtExtentActiveGob);
    in.AbutmentAngleActiveGob = leadingValue(texts.txtAbutmentAngleActiveGob);
    in.ExtentFirstGob = leadingValue(texts.txtExtentFirstGob);
    in.AbutmentAngleFirstGob = leadingValue(texts.txtAbutmentAngleFirstGob);
    in.BarrierFirstGob = leadingValue(texts.txtBarrierFirstGob);
    in.SlabcutFirstGob = leadingValue(texts.txtSlabcutFirstGob);
    in.ExtentSecondGob = leadingValue(texts.txtExtentSecondGob);
    in.AbutmentAngleSecondGob = leadingValue(texts.txtAbutmentAngleSecondGob);
    in.BarrierSecondGob = leadingValue(texts.txtBarrierSecondGob);
    in.SlabcutSecondGob = leadingValue(texts.txtSlabcutSecondGob);
    in.RowA = texts.chkRowA ? 1 : 0;
    in.RowB = texts.chkRowB ? 1 : 0;
    in.RowC = texts.chkRowC ? 1 : 0;
    in.RowD = texts.chkRowD ? 1 : 0;
    in.WidthC = singleValue(texts.txtWidthC);
    in.WidthD = singleValue(texts.txtWidthD);
    return in;
}

namespace {

std::optional<Refusal> checkAngle(const ParameterTexts& texts) {
    return checkRange(texts.txtXcutAngle, 30, 90, "Crosscut Angle", "txtXcutAngle");
}

std::optional<Refusal> checkDistance(const ProjectInput& in, int i) {
    if (!(in.XcutCenters[i] > 0))
        return refusal("Invalid entry spacing", RangeError, distanceControl(i));
    if (!(in.XcutCenters[i] > in.EntryWidth))
        return refusal("Entry spacing should be more than Entry Width", LogicError,
                       distanceControl(i));
    return std::nullopt;
}

} // namespace

std::optional<Refusal> checkAcceptance(const ParameterTexts& texts) {
    const FormValues values(texts);
    if (auto refused = firstRefusal(AcceptanceBeforeAngle, values)) return refused;
    if (auto refused = checkAngle(texts)) return refused;
    if (auto refused = firstRefusal(AcceptanceAfterAngle, values)) return refused;
    for (int i = 1; i <= distanceCount(values.in); ++i)
        if (auto refused = checkDistance(values.in, i)) return refused;
    return std::nullopt;
}

std::vector<Refusal> acceptanceRefusals(const ParameterTexts& texts) {
    const FormValues values(texts);
    std::vector<Refusal> found;
    collectRefusals(found, AcceptanceBeforeAngle, values);
    collect(found, checkAngle(texts));
    collectRefusals(found, AcceptanceAfterAngle, values);
    for (int i = 1; i <= distanceCount(values.in); ++i)
        collect(found, checkDistance(values.in, i));
    return found;
}

std::optional<Refusal> checkLeavingRow(const ParameterTexts& texts, std::string_view control) {
    if (control == "chkRowA" && leadingValue(texts.txtSlabcutFirstGob) > 0)
        return refusal("Cannot leave Row A pillars when a slab cut is taken from the first side "
                       "barrier",
                       LogicError, control);
    if (control == "chkRowB" && leadingValue(texts.txtSlabcutSecondGob) > 0)
        return refusal("Cannot leave Row B pillars when a slab cut is taken from the second side "
                       "barrier",
                       LogicError, control);
    return std::nullopt;
}

std::optional<Refusal> checkBeforeAnalysis(const ProjectInput& input) {
    if (auto refused = firstRefusal(BeforeAnalysis, input)) return refused;
    for (int i = 1; i <= distanceCount(input); ++i)
        if (!(input.XcutCenters[i] > 0))
            return refusal("Invalid center-to-center distance #" + std::to_string(i), RangeError,
                           distanceControl(i));
    return std::nullopt;
}

} // namespace telvo::project
