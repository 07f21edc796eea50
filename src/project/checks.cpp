// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/checks.h"

#include "base/numbers.h"
#include "base/text.h"

#include <algorithm>
#include <array>

namespace telvo::project {

namespace {

constexpr std::string_view RangeError = "Range Error";
constexpr std::string_view LogicError = "Logic Error";

constexpr std::string_view SlabCutBesideRowA =
    "Cannot take slab cut from first side barrier when Row A pillars are left";
constexpr std::string_view SlabCutBesideRowB =
    "Cannot take slab cut from second side barrier when Row B pillars are left";

constexpr Bound above(double limit) {
    return {.low = limit, .open = true};
}
constexpr Bound above(Field other) {
    return {.above = other};
}
constexpr Bound atLeast(double limit) {
    return {.low = limit};
}
constexpr Bound atMost(double limit) {
    return {.high = limit};
}
constexpr Bound atMost(Field other) {
    return {.upTo = other};
}
constexpr Bound within(double low, double high) {
    return {.low = low, .high = high};
}

using enum Field;
using enum Use;

constexpr auto Acceptance = std::to_array<Requirement>({
    {EntryHeight, above(0), "Invalid entry height"},
    {DepthCover, above(0), "Invalid depth of cover"},
    {XcutAngle, within(30, 90), {}},
    {EntryWidth, above(0), "Invalid entry width"},
    {XcutSpacing, above(0), "Invalid crosscut spacing"},
    {XcutSpacing, above(EntryWidth), "Invalid crosscut spacing"},
    {CoalStrength, above(0), "Invalid in situ coal strength"},
    {UnitWeight, above(0), "Invalid overburden unit weight"},
    {BreadthAMZ, above(0), "Invalid breadth of AMZ"},
    {ArchFactor, within(0.28, 1), "Invalid Arch Factor"},
    {WidthC, above(0), "Invalid Pillar Width for Row C", RowCLeft},
    {WidthD, above(0), "Invalid Pillar Width for Row D", RowDLeft},
    {SlabcutFirstGob, atMost(0), SlabCutBesideRowA, RowABesideGob, LogicError},
    {SlabcutSecondGob, atMost(0), SlabCutBesideRowB, RowBBesideGob, LogicError},
    {ExtentActiveGob, atLeast(0), "Invalid extent of active gob"},
    {AbutmentAngleActiveGob, within(0, 90), "Invalid abutment angle of active gob"},
    {ExtentFirstGob, atLeast(0), "Invalid extent of first gob", FirstSideGob},
    {AbutmentAngleFirstGob, within(0, 90), "Invalid abutment angle of first gob", FirstSideGob},
    {BarrierFirstGob, atLeast(0), "Invalid extent of barrier of first gob", FirstSideGob},
    {SlabcutFirstGob, atLeast(0), "Invalid extent of slab cut in barrier of first gob",
     FirstSideGob},
    {SlabcutFirstGob, atMost(BarrierFirstGob), "Invalid extent of slab cut in barrier of first gob",
     FirstSideGob},
    {ExtentSecondGob, atLeast(0), "Invalid extent of second gob", SecondSideGob},
    {AbutmentAngleSecondGob, within(0, 90), "Invalid abutment angle of second gob", SecondSideGob},
    {BarrierSecondGob, atLeast(0), "Invalid extent of barrier of second gob", SecondSideGob},
    {SlabcutSecondGob, atLeast(0), "Invalid extent of slab cut in barrier of second gob",
     SecondSideGob},
    {SlabcutSecondGob, atMost(BarrierSecondGob),
     "Invalid extent of slab cut in barrier of second gob", SecondSideGob},
    {XcutCenters, above(0), "Invalid entry spacing"},
    {XcutCenters, above(EntryWidth), "Entry spacing should be more than Entry Width", Always,
     LogicError},
});

constexpr auto BeforeAnalysis = std::to_array<Requirement>({
    {EntryHeight, above(0), "Invalid entry height"},
    {DepthCover, above(0), "Invalid depth of cover"},
    {XcutAngle, within(0, 90), "Invalid crosscut angle"},
    {EntryWidth, above(0), "Invalid entry width"},
    {XcutSpacing, above(0), "Invalid crosscut spacing"},
    {CoalStrength, above(0), "Invalid coal strength"},
    {BreadthAMZ, above(0), "Invalid breadth of AMZ"},
    {UnitWeight, above(0), "Invalid unit weight"},
    {ArchFactor, within(0, 1), "Invalid Arch Percent"},
    {WidthC, above(0), "Invalid Pillar Width for Row C", RowCLeft},
    {WidthD, above(0), "Invalid Pillar Width for Row D", RowDLeft},
    {SlabcutFirstGob, atMost(0), SlabCutBesideRowA, RowABesideGob, LogicError},
    {SlabcutSecondGob, atMost(0), SlabCutBesideRowB, RowBBesideGob, LogicError},
    {ExtentActiveGob, atLeast(0), "Invalid extent of active gob"},
    {AbutmentAngleActiveGob, within(0, 90), "Invalid abutment angle of active gob"},
    {ExtentFirstGob, atLeast(0), "Invalid extent of first gob", FirstSideGob},
    {AbutmentAngleFirstGob, atMost(90), "Invalid abutment angle of first gob"},
    {AbutmentAngleFirstGob, atLeast(0), "Invalid abutment angle of first gob", FirstSideGob},
    {BarrierFirstGob, atLeast(0), "Invalid extent of barrier of first gob", FirstSideGob},
    {SlabcutFirstGob, atLeast(0), "Invalid extent of slab cut in barrier of first gob",
     FirstSideGob},
    {SlabcutFirstGob, atMost(BarrierFirstGob),
     "Invalid extent of slab cut in barrier of first gob"},
    {ExtentSecondGob, atLeast(0), "Invalid extent of second gob", SecondSideGob},
    {AbutmentAngleSecondGob, atMost(90), "Invalid abutment angle of second gob"},
    {AbutmentAngleSecondGob, atLeast(0), "Invalid abutment angle of second gob", SecondSideGob},
    {BarrierSecondGob, atLeast(0), "Invalid extent of barrier of second gob", SecondSideGob},
    {SlabcutSecondGob, atLeast(0), "Invalid extent of slab cut in barrier of second gob",
     SecondSideGob},
    {SlabcutSecondGob, atMost(BarrierSecondGob),
     "Invalid extent of slab cut in barrier of second gob"},
    {XcutCenters, above(0), "Invalid center-to-center distance #"},
});

Refusal refusal(std::string_view message, std::string_view title, std::string_view control) {
    return {std::string(message), std::string(title), std::string(control)};
}

Refusal refusalOf(const Requirement& row, FieldId id) {
    std::string message(row.message);
    if (message.ends_with('#')) message += std::to_string(id.index);
    return {std::move(message), std::string(row.title), controlOf(id)};
}

/// Calls refused(row, id) for the requirements in their order, until stop(row, id) is true.
template <typename Stop>
void tryInOrder(std::span<const Requirement> rows, const ProjectInput& in, Stop stop) {
    for (const Requirement& row : rows)
        if (row.field != XcutCenters && counts(row.use, in) && stop(row, FieldId(row.field)))
            return;
    for (int i = 1; i <= distanceCount(in); ++i)
        for (const Requirement& row : rows)
            if (row.field == XcutCenters && counts(row.use, in) && stop(row, FieldId(row.field, i)))
                return;
}

/// Whether a record misses a requirement.
/// Given: x  its number
bool isMissed(const Requirement& row, const ProjectInput& in, double x) {
    const auto other = row.bound.other();
    return row.bound.refuses(x, other ? get(in, *other) : 0.0);
}

/// A number of a field that the compiler knows.
template <Field F>
double number(const ProjectInput& in, int i) {
    constexpr const auto& member = rowOf(F).member;
    const auto& field = in.*std::get<member.index()>(member);
    if constexpr (F == XcutCenters)
        return field[i];
    else
        return static_cast<double>(field);
}

template <std::size_t R>
bool misses(const ProjectInput& in) {
    constexpr const Requirement& row = BeforeAnalysis[R];
    if (!counts(row.use, in)) return false;
    const auto missed = [&](int i) {
        double other = 0;
        if constexpr (row.bound.other().has_value()) other = number<*row.bound.other()>(in, i);
        return row.bound.refuses(number<row.field>(in, i), other);
    };
    if constexpr (row.field != XcutCenters) return missed(0);
    bool any = false;
    for (int i = 1; i <= distanceCount(in); ++i)
        any = any || missed(i);
    return any;
}

/// The refusals of the form's check in order, until take(refusal) is false.
template <typename Take>
void acceptanceCheck(const ParameterTexts& texts, Take take) {
    const ProjectInput in = inputFromTexts({}, texts);
    tryInOrder(Acceptance, in, [&](const Requirement& row, FieldId id) {
        if (row.message.empty()) {
            const auto refused = checkRange(texts[id], row.bound.low, row.bound.high,
                                            rowOf(id.field).label, controlOf(id));
            return refused && !take(*refused);
        }
        // The arch factor counts as typed, before it is narrowed to single precision.
        const double x = row.field == ArchFactor ? leadingValue(texts[id]) : get(in, id);
        return isMissed(row, in, x) && !take(refusalOf(row, id));
    });
}

} // namespace

bool counts(Use use, const ProjectInput& in) {
    const bool sideGob = in.Anal >= 2;
    switch (use) {
    case Always:
        break;
    case FirstSideGob:
        return sideGob;
    case SecondSideGob:
        return in.Anal >= 3;
    case RowCLeft:
        return in.RowC == 1;
    case RowDLeft:
        return in.RowD == 1;
    case RowABesideGob:
        return sideGob && in.RowA == 1;
    case RowBBesideGob:
        return sideGob && in.RowB == 1;
    }
    return true;
}

std::span<const Requirement> acceptanceRequirements() {
    return Acceptance;
}

std::span<const Requirement> analysisRequirements() {
    return BeforeAnalysis;
}

Span validSpan(std::span<const Requirement> requirements, const ProjectInput& in, FieldId id) {
    Span span;
    const auto raiseLow = [&](double low, bool open) {
        if (low < span.low || (low == span.low && !open)) return;
        span.low = low;
        span.lowOpen = open;
    };
    const auto lowerHigh = [&](double high, bool open) {
        if (high > span.high || (high == span.high && !open)) return;
        span.high = high;
        span.highOpen = open;
    };
    for (const Requirement& row : requirements) {
        if (!counts(row.use, in)) continue;
        const Bound& bound = row.bound;
        const auto other = bound.other();
        if (row.field == id.field) {
            if (bound.above)
                raiseLow(get(in, *other), true);
            else if (bound.upTo)
                lowerHigh(get(in, *other), false);
            raiseLow(bound.low, bound.open);
            lowerHigh(bound.high, false);
        } else if (other == id.field) {
            // What the other field needs of this one; each distance in use for itself.
            const bool each = row.field == XcutCenters;
            for (int i = 1; i <= (each ? distanceCount(in) : 1); ++i) {
                const double needs = get(in, {row.field, each ? i : 0});
                if (bound.above)
                    lowerHigh(needs, true);
                else
                    raiseLow(needs, false);
            }
        }
    }
    return span;
}

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

std::optional<Refusal> checkAcceptance(const ParameterTexts& texts) {
    std::optional<Refusal> first;
    acceptanceCheck(texts, [&](const Refusal& refused) {
        first = refused;
        return false;
    });
    return first;
}

std::vector<Refusal> acceptanceRefusals(const ParameterTexts& texts) {
    std::vector<Refusal> found;
    acceptanceCheck(texts, [&](const Refusal& refused) {
        const bool known = std::any_of(found.begin(), found.end(), [&](const Refusal& other) {
            return other.control == refused.control;
        });
        if (!known) found.push_back(refused);
        return true;
    });
    return found;
}

std::optional<Refusal> checkLeavingRow(const ParameterTexts& texts, Field row) {
    if (row == RowA && leadingValue(texts[SlabcutFirstGob]) > 0)
        return refusal("Cannot leave Row A pillars when a slab cut is taken from the first side "
                       "barrier",
                       LogicError, controlOf(row));
    if (row == RowB && leadingValue(texts[SlabcutSecondGob]) > 0)
        return refusal("Cannot leave Row B pillars when a slab cut is taken from the second side "
                       "barrier",
                       LogicError, controlOf(row));
    return std::nullopt;
}

bool isRefusedBeforeAnalysis(const ProjectInput& input) {
    // The rows are constants here, and nothing is looked up: a run in a million asks this.
    return [&]<std::size_t... R>(std::index_sequence<R...>) {
        return (misses<R>(input) || ...);
    }
    (std::make_index_sequence<BeforeAnalysis.size()>());
}

std::optional<Refusal> checkBeforeAnalysis(const ProjectInput& input) {
    if (!isRefusedBeforeAnalysis(input)) return std::nullopt;
    std::optional<Refusal> first;
    tryInOrder(BeforeAnalysis, input, [&](const Requirement& row, FieldId id) {
        if (!isMissed(row, input, get(input, id))) return false;
        first = refusalOf(row, id);
        return true;
    });
    return first;
}

} // namespace telvo::project
