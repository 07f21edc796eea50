// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/units.h"

#include "base/numbers.h"
#include "project/automatic.h"
#include "project/inputFields.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <string>

namespace telvo::project {

namespace {

// Row 7 pairs feet with centimetres and row 6 calls metric tons "tn"; both are meant so.
constexpr std::array<std::array<std::string_view, 15>, 2> UnitLabels = {
    {{" (ft)", " (psi)", " (pcf)", " (in)", " (psf)", " (lbs)", " (tons)", " (ft)", " (ksi)",
      " (tons)", " (tons/ft)", " (in)", " (tons)", " (tons/ft)", " (million psi)"},
     {" (m)", " (MPa)", " (kN/m3)", " (cm)", " (kPa)", " (kN)", " (tn)", " (cm)", " (MPa)", " (MN)",
      " (MN/m)", " (mm)", " (kN)", " (kN/m)", " (GPa)"}}};

/// What one metric unit of a field is in the English one; 1 where a conversion leaves it alone.
double conversionFactor(FieldKind kind) {
    switch (kind) {
    case FieldKind::Length:
        return FeetPerMetre;
    case FieldKind::Strength:
        return PsiPerMPa;
    case FieldKind::UnitWeight:
        return PcfPerKilonewtonPerCubicMetre;
    case FieldKind::Number:
    case FieldKind::Angle:
        break;
    }
    return 1;
}

/// The folder of a file name with its separator, empty where there is none.
std::string_view folderOf(std::string_view fileName) {
    return fileName.substr(0, fileName.find_last_of("/\\") + 1);
}

} // namespace

std::string_view unitLabel(std::int16_t units, Quantity quantity) {
    if (units != English && units != Metric) return {};
    return UnitLabels[static_cast<std::size_t>(units)][static_cast<std::size_t>(quantity)];
}

std::string_view unitSummary(std::int16_t units) {
    return units == English ? "ft, in, lbs, psi, pcf" : "m, cm, kN, MPa, kN/m3";
}

Status convertCase(ProjectCase& current) {
    const std::int16_t target = current.Units == English ? Metric : English;
    ProjectInput in = current.Input;
    std::optional<Field> failed;
    for (const FieldId id : RecordNumbers) {
        const double factor = conversionFactor(kindOf(id));
        if (factor == 1) continue;
        const double was = get(in, id);
        const bool inUse = id.index <= distanceCount(in);
        set(in, id, inUse ? roundHalfEven2(target == English ? was * factor : was / factor) : 0.0);
        if (!std::isfinite(get(in, id)) && !failed) failed = id.field;
    }
    if (failed)
        return Fault{"the value is too large to be converted", std::string(rowOf(*failed).name)};

    current.Input = in;
    current.Units = target;
    current.FileName = (target == English ? "English_" : "Metric_") +
                       current.FileName.substr(folderOf(current.FileName).size());
    return success();
}

Result<ProjectCase> convertedCase(const ProjectCase& current) {
    ProjectCase converted = current;
    if (const Status done = convertCase(converted); !done) return done.fault();
    converted.FileName.insert(0, folderOf(current.FileName));
    return converted;
}

const std::string_view ConversionRoundingNote =
    "Every converted value is rounded to two decimals. Converting the case back does not restore "
    "its exact values.";
const std::string_view ConversionUntouchedNote =
    "Angles, an entered pressure arch factor, the number of entries and all options stay as they "
    "are.";

std::optional<std::string> archFactorRemark(const ProjectCase& before, const ProjectCase& after) {
    if (before.Input.Arch == 0 || after.Input.Arch == 0) return std::nullopt;
    const float was = automaticArchFactor(before.Input, before.Units);
    const float is = automaticArchFactor(after.Input, after.Units);
    // A depth or width at the end of the number range has no factor in feet.
    if (was == is || !std::isfinite(was) || !std::isfinite(is)) return std::nullopt;
    return "The automatic pressure arch factor changes from " + generalNumber(was) + " to " +
           generalNumber(is) + " by the conversion";
}

} // namespace telvo::project
