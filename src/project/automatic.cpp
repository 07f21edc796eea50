// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/automatic.h"

#include "base/numbers.h"
#include "project/automaticRules.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace telvo::project {

namespace {

/// " ft" or " m", as it stands behind a number in a sentence.
std::string_view lengthBehindNumber(std::int16_t units) {
    return units == English ? " ft" : " m";
}

} // namespace

std::optional<double> automaticAMZBreadth(double H, std::int16_t units) {
    if (H < 0) return std::nullopt;
    Plain<double> calc;
    const double breadth = automaticAMZBreadth(calc, units == English, H);
    if (!std::isfinite(breadth)) return std::nullopt;
    return breadth;
}

float formArchFactor(float W, float H, std::int16_t units) {
    Plain<double> calc;
    return static_cast<float>(formArchFactor(calc, units == English, W, H));
}

float automaticArchFactor(const ProjectInput& in, std::int16_t units) {
    constexpr double most = std::numeric_limits<float>::max();
    const auto single = [most](double x) { return static_cast<float>(std::clamp(x, -most, most)); };
    return formArchFactor(single(panelWidth(in)), single(in.DepthCover), units);
}

std::optional<double> automaticValue(const ProjectInput& in, std::int16_t units, Field field) {
    if (field == Field::BreadthAMZ) return automaticAMZBreadth(in.DepthCover, units);
    // A depth or width at the end of the number range has no factor in feet.
    const float factor = automaticArchFactor(in, units);
    if (!std::isfinite(factor)) return std::nullopt;
    return factor;
}

ProjectInput withAutomaticValues(ProjectInput in, std::int16_t units) {
    const bool marked[] = {in.AMZ == 1, in.Arch != 0};
    for (const Field field : {Field::BreadthAMZ, Field::ArchFactor})
        if (marked[field == Field::ArchFactor])
            if (const auto value = automaticValue(in, units, field)) set(in, field, *value);
    return in;
}

ProjectInput withVaried(ProjectInput in, std::int16_t units, FieldId id, double value) {
    set(in, id, value);
    const bool depth = id.field == Field::DepthCover;
    if (!depth && id.field != Field::XcutCenters) return in;
    const double breadth = in.BreadthAMZ;
    in = withAutomaticValues(in, units);
    if (!depth) in.BreadthAMZ = breadth; // which hangs on the depth alone
    return in;
}

std::vector<StaleAutomatic> staleAutomaticValues(const ProjectInput& in, std::int16_t units) {
    const ProjectInput fresh = withAutomaticValues(in, units);
    const std::string length(lengthBehindNumber(units));
    const std::string depth = "the depth of " + generalNumber(in.DepthCover, 10) + length;
    std::vector<StaleAutomatic> stale;
    const auto differs = [&](Field field) { // what is no number stayed as it was
        return get(fresh, field) != get(in, field) && !std::isnan(get(fresh, field));
    };
    if (differs(Field::BreadthAMZ))
        stale.push_back({Field::BreadthAMZ, in.BreadthAMZ, fresh.BreadthAMZ,
                         "Breadth of AMZ " + generalNumber(in.BreadthAMZ, 10) + length +
                             " is marked automatic; " + depth + " gives " +
                             generalNumber(fresh.BreadthAMZ) + length});
    if (differs(Field::ArchFactor))
        stale.push_back({Field::ArchFactor, in.ArchFactor, fresh.ArchFactor,
                         "Pressure Arch Factor " + generalNumber(in.ArchFactor) +
                             " is marked automatic; " + depth +
                             " and the distances of the entries give " +
                             generalNumber(fresh.ArchFactor)});
    return stale;
}

} // namespace telvo::project
