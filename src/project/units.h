// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "project/ProjectInput.h"
#include "project/unitFactors.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace telvo::project {

/// Quantities of the label table, by their row.
enum class Quantity {
    Length = 0,            // ft | m
    Strength = 1,          // psi | MPa
    UnitWeight = 2,        // pcf | kN/m3
    SmallLength = 3,       // in | cm
    Stress = 4,            // psf | kPa
    Force = 5,             // lbs | kN
    Tons = 6,              // tons | tn
    FeetOrCentimetres = 7, // ft | cm
    KiloStress = 8,        // ksi | MPa
    TonsOrMeganewtons = 9, // tons | MN
    TonsPerFootOrMeganewtonsPerMetre = 10,
    Deformation = 11, // in | mm
    TonsOrKilonewtons = 12,
    TonsPerFootOrKilonewtonsPerMetre = 13,
    Modulus = 14, // million psi | GPa
};

/// Unit label of a quantity, with its leading blank and parentheses, such as " (ft)" and " (m)".
/// `units` 0 is English, 1 metric; other systems have empty labels.
std::string_view unitLabel(std::int16_t units, Quantity quantity);

/// The units in force in one line: "ft, in, lbs, psi, pcf" or "m, cm, kN, MPa, kN/m3".
std::string_view unitSummary(std::int16_t units);

/// Converts a case to the other unit system, in place: lengths, coal strength and unit weight are
/// converted and rounded to two decimals (half to even), distances beyond the last entry become 0,
/// angles, the arch factor, counts and flags stay. The file name becomes "English_" or "Metric_"
/// followed by the name without its folder.
/// Faults: a value that leaves the range of its type; the case is then unchanged.
Status convertCase(ProjectCase& current);

/// The case in the other unit system, to lie beside the original: what convertCase() makes of a
/// copy, in the folder of the case.
Result<ProjectCase> convertedCase(const ProjectCase& current);

/// What a user has to know before a conversion.
extern const std::string_view ConversionRoundingNote;
extern const std::string_view ConversionUntouchedNote;

/// Tells of an automatic pressure arch factor that is another one after a conversion, mostly
/// because its margin between depth and panel width is 80 ft or 80 m; nothing where it stays or is
/// entered.
/// Notes: the factor is that of the parameter form. The rule of the analysis has the same margins
///        and departs from it only where single precision tips a rounding.
std::optional<std::string> archFactorRemark(const ProjectCase& before, const ProjectCase& after);

} // namespace telvo::project
