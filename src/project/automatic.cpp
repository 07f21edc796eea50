// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/automatic.h"

#include "base/numbers.h"
#include "project/units.h"

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
    const double breadth =
        units == English ? 5 * std::sqrt(H) : 5 * std::sqrt(H * FeetPerMetre) / FeetPerMetre;
    if (!std::isfinite(breadth)) return std::nullopt;
    return leadingValue(formatPattern(breadth, "0"));
}

float formArchFactor(float W, float H, std::int16_t units) {
    // A panel width of 0 gives 1; a negative one, half-typed in the form, has no logarithm either.
    if (!(W > 0)) return 1.0F;
    double margin = 80;
    if (units != English) {
        H = static_cast<float>(H * FeetPerMetre);
        W = static_cast<float>(W * FeetPerMetre);
        margin = 262.4671916010498;
    }
    const double h = H;
    const double w = W;
    double F = 0;
    if (h >= 25) F = 1 - 0.28 * std::log(h / w);
    if (h - margin < w) F = 1.0;
    if (F < 0.28) F = 0.28;
    return static_cast<float>(roundHalfEven2(F));
}

float automaticArchFactor(const ProjectInput& in, std::int16_t units) {
    double width = 0;
    for (int i = 1; i <= distanceCount(in); ++i)
        width += in.XcutCenters[i];
    constexpr double most = std::numeric_limits<float>::max();
    const auto single = [most](double x) { return static_cast<float>(std::clamp(x, -most, most)); };
    return formArchFactor(single(width), single(in.DepthCover), units);
}

std::vector<StaleAutomatic> staleAutomaticValues(const ProjectInput& in, std::int16_t units) {
    std::vector<StaleAutomatic> stale;
    const std::string length(lengthBehindNumber(units));
    const auto depth = [&] { return "the depth of " + generalNumber(in.DepthCover, 10) + length; };
    if (in.AMZ == 1) {
        const auto breadth = automaticAMZBreadth(in.DepthCover, units);
        if (breadth && *breadth != in.BreadthAMZ)
            stale.push_back({"BreadthAMZ", in.BreadthAMZ, *breadth,
                             "Breadth of AMZ " + generalNumber(in.BreadthAMZ, 10) + length +
                                 " is marked automatic; " + depth() + " gives " +
                                 generalNumber(*breadth) + length});
    }
    if (in.Arch != 0) {
        const float factor = automaticArchFactor(in, units);
        // A depth or width at the end of the number range has no factor in feet.
        if (std::isfinite(factor) && factor != in.ArchFactor)
            stale.push_back(
                {"ArchFactor", in.ArchFactor, factor,
                 "Pressure Arch Factor " + generalNumber(in.ArchFactor) + " is marked automatic; " +
                     depth() + " and the distances of the entries give " + generalNumber(factor)});
    }
    return stale;
}

void renewAutomaticValues(ProjectInput& in, std::int16_t units) {
    for (const StaleAutomatic& value : staleAutomaticValues(in, units)) {
        if (value.field == "BreadthAMZ")
            in.BreadthAMZ = value.automatic;
        else
            in.ArchFactor = static_cast<float>(value.automatic);
    }
}

} // namespace telvo::project
