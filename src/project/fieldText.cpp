// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/fieldText.h"

#include "base/numbers.h"
#include "base/text.h"
#include "base/writtenNumber.h"
#include "project/units.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace telvo::project {

namespace {

constexpr int ConvertedDigits = 7;

/// A unit as people write it; sizes are in the English unit of the field.
struct FieldUnit {
    std::string_view symbol;
    double size;
};

constexpr auto LengthUnits = std::to_array<FieldUnit>({
    {"ft", 1},
    {"feet", 1},
    {"foot", 1},
    {"in", 1.0 / 12},
    {"inch", 1.0 / 12},
    {"inches", 1.0 / 12},
    {"m", FeetPerMetre},
    {"meter", FeetPerMetre},
    {"meters", FeetPerMetre},
    {"metre", FeetPerMetre},
    {"metres", FeetPerMetre},
    {"cm", FeetPerMetre / 100},
    {"mm", FeetPerMetre / 1000},
});
constexpr auto StrengthUnits = std::to_array<FieldUnit>({
    {"psi", 1},
    {"psf", 1.0 / 144},
    {"ksi", 1000},
    {"mpa", PsiPerMPa},
    {"kpa", PsiPerMPa / 1000},
});
constexpr auto UnitWeightUnits = std::to_array<FieldUnit>({
    {"pcf", 1},
    {"lb/ft3", 1},
    {"lbs/ft3", 1},
    {"kn/m3", PcfPerKilonewtonPerCubicMetre},
});
constexpr auto AngleUnits =
    std::to_array<FieldUnit>({{"deg", 1}, {"degree", 1}, {"degrees", 1}, {"\u00B0", 1}});

std::span<const FieldUnit> unitsOf(FieldKind kind) {
    switch (kind) {
    case FieldKind::Length:
        return LengthUnits;
    case FieldKind::Angle:
        return AngleUnits;
    case FieldKind::Strength:
        return StrengthUnits;
    case FieldKind::UnitWeight:
        return UnitWeightUnits;
    case FieldKind::Number:
        break;
    }
    return {};
}

/// Small letters, "3" for a raised one, without parentheses, "^" and a last point.
std::string plainUnit(std::string_view written) {
    std::string unit(written);
    if (const auto raised = unit.find("\u00B3"); raised != std::string::npos)
        unit.replace(raised, std::string_view("\u00B3").size(), "3");
    std::erase_if(unit, [](char c) { return c == '(' || c == ')' || c == '^' || c == ' '; });
    for (char& c : unit)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return unit;
}

const FieldUnit* findUnit(std::span<const FieldUnit> units, std::string_view symbol) {
    const auto found = std::find_if(units.begin(), units.end(),
                                    [&](const FieldUnit& unit) { return unit.symbol == symbol; });
    return found == units.end() ? nullptr : &*found;
}

} // namespace

FieldText readFieldText(std::string_view text, FieldKind kind, std::int16_t units) {
    const std::string quoted = '\'' + excerpt(trimmed(withoutControls(text))) + "' is not taken: ";
    const WrittenNumber read = readWrittenNumber(text);
    if (!read.why.empty()) return {.refusal = quoted + read.why + '.'};
    if (read.unit.empty()) return {.number = read.number};

    const std::string own(fieldUnit(kind, units));
    const FieldUnit* from = findUnit(unitsOf(kind), plainUnit(read.unit));
    const FieldUnit* to = findUnit(unitsOf(kind), plainUnit(own));
    if (!from || !to)
        return {.refusal = quoted + '\'' + excerpt(read.unit) + "' is no unit of this field" +
                           (own.empty() ? "." : ", which is in " + own + '.')};
    if (from->size == to->size) return {.number = read.number};
    const double value = leadingValue(read.number) * (from->size / to->size);
    if (!std::isfinite(value)) return {.refusal = quoted + "it is too large a number."};
    const std::string number = generalNumber(value, ConvertedDigits);
    return {.number = number,
            .remark = read.number + ' ' + read.unit + " is " + number + ' ' + own};
}

} // namespace telvo::project
