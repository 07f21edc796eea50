// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/unitCalculator.h"

#include "base/numbers.h"
#include "base/text.h"
#include "project/unitFactors.h"
#include "project/units.h"

#include <array>
#include <cmath>
#include <optional>

namespace telvo::project {

namespace {

constexpr double InchesPerFoot = 12;
constexpr double CentimetresPerInch = 2.54;
constexpr double CentimetresPerMetre = 100;
constexpr double NewtonsPerPound = 4.448220489393218;
constexpr double KilonewtonsPerTon = 8.896440978786435;
constexpr double KilonewtonsPerMetreOfPoundPerFoot = 0.01459389924341607;
constexpr double PascalsPerPsi = 6894.757293;
constexpr double PascalsPerMetreOfPsiPerInch = 271447.137519685;
constexpr double Twelfth = 0.08333333333333333; // per foot in terms of per inch
constexpr double Thousand = 1000;

// A load in tons is reached from pounds and from kilonewtons alike.
static_assert(PoundsPerTon * NewtonsPerPound / Thousand - KilonewtonsPerTon < 1e-14 &&
              KilonewtonsPerTon - PoundsPerTon * NewtonsPerPound / Thousand < 1e-14);

constexpr std::array<CalculatorUnit, 4> Lengths = {
    {{"ft", "feet", InchesPerFoot},
     {"in", "inches", 1},
     {"cm", "centimeters", 1 / CentimetresPerInch},
     {"m", "meters", CentimetresPerMetre / CentimetresPerInch}}};

constexpr std::array<CalculatorUnit, 6> Loads = {
    {{"lb", "pounds", 1},
     {"kip", "thousand pounds", Thousand},
     {"ton", "short tons", PoundsPerTon},
     {"N", "newtons", 1 / NewtonsPerPound},
     {"kN", "kilonewtons", Thousand / NewtonsPerPound},
     {"MN", "meganewtons", Thousand* Thousand / NewtonsPerPound}}};

constexpr std::array<CalculatorUnit, 7> LoadGradients = {
    {{"lb/ft", "pounds per foot", 1},
     {"lb/in", "pounds per inch", 1 / Twelfth},
     {"kip/ft", "thousand pounds per foot", Thousand},
     {"ton/ft", "short tons per foot", PoundsPerTon},
     {"N/m", "newtons per meter", 1 / (Thousand * KilonewtonsPerMetreOfPoundPerFoot)},
     {"kN/m", "kilonewtons per meter", 1 / KilonewtonsPerMetreOfPoundPerFoot},
     {"MN/m", "meganewtons per meter", Thousand / KilonewtonsPerMetreOfPoundPerFoot}}};

constexpr std::array<CalculatorUnit, 6> Stresses = {
    {{"psi", "pounds per square inch", 1},
     {"psf", "pounds per square foot", PsiPerPsf},
     {"ksi", "thousand pounds per square inch", Thousand},
     {"Pa", "pascals", 1 / PascalsPerPsi},
     {"kPa", "kilopascals", Thousand / PascalsPerPsi},
     {"MPa", "megapascals", Thousand* Thousand / PascalsPerPsi}}};

constexpr std::array<CalculatorUnit, 5> StressGradients = {
    {{"psi/ft", "pounds per square inch per foot", Twelfth},
     {"psi/in", "pounds per square inch per inch", 1},
     {"Pa/m", "pascals per meter", 1 / PascalsPerMetreOfPsiPerInch},
     {"kPa/m", "kilopascals per meter", Thousand / PascalsPerMetreOfPsiPerInch},
     {"MPa/m", "megapascals per meter", Thousand* Thousand / PascalsPerMetreOfPsiPerInch}}};

constexpr std::array<CalculatorUnit, 2> UnitWeights = {
    {{"pcf", "pounds per cubic foot", 1},
     {"kN/m3", "kilonewtons per cubic meter", PcfPerKilonewtonPerCubicMetre}}};

constexpr std::array<CalculatorQuantity, 6> Quantities = {
    {{"Length", "txtLength", Lengths},
     {"Load", "txtLoad", Loads},
     {"Load Gradient", "txtLoadGrad", LoadGradients},
     {"Stress", "txtStress", Stresses},
     {"Stress Gradient", "txtStressGrad", StressGradients},
     {"Unit Weight", "txtUnitWeight", UnitWeights}}};

constexpr int ShownDigits = 10;

/// The number of an entry that is one from end to end: "1-2" is half typed, not 1.
std::optional<double> wholeNumber(std::string_view entry) {
    const auto number = leadingNumber(entry);
    if (!number || !trimmed(entry.substr(number->length)).empty()) return std::nullopt;
    return number->value;
}

} // namespace

std::span<const CalculatorQuantity> calculatorQuantities() {
    return Quantities;
}

Conversions convertEntry(std::string_view entry, const CalculatorQuantity& quantity,
                         std::size_t from) {
    Conversions made{std::vector<std::string>(quantity.units.size()), {}};
    if (trimmed(entry).empty()) return made;
    const auto value = wholeNumber(entry);
    if (!value) {
        made.note = "The entry is not a number that can be converted.";
        return made;
    }
    for (std::size_t to = 0; to < quantity.units.size(); ++to) {
        // The ratio comes first, so that only a result can overflow; 0 is added to lose the sign of
        // a negative zero.
        const double ratio = quantity.units[from].size / quantity.units[to].size;
        const double result = *value * ratio + 0.0;
        if (std::isfinite(result))
            made.results[to] = generalNumber(result, ShownDigits);
        else
            made.note = "A result without a value is too large a number.";
    }
    return made;
}

} // namespace telvo::project
