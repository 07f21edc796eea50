// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/number.h"
#include "project/ProjectInput.h"

#include <cstdint>
#include <optional>
#include <string_view>

/// Departures from the calibration of the case-history data base. The texts are the system's own,
/// odd spacing included; the parameter form and the report share them.
namespace telvo::project {

extern const std::string_view CoalStrengthAdvisory;
extern const std::string_view UnitWeightAdvisory;
extern const std::string_view AbutmentAngleAdvisory;
extern const std::string_view AMZAdvisory;
extern const std::string_view ArchAdvisory;
extern const std::string_view TwoSideGobsAdvisory;

// Values of the data base. The metric ones are rounded figures and differ from the metric defaults
// of a new case on purpose; comparisons are exact.
inline constexpr double CalibratedCoalStrengthPsi = 900;
inline constexpr double CalibratedCoalStrengthMPa = 6.21;
inline constexpr double CalibratedUnitWeightPcf = 162;
inline constexpr double CalibratedUnitWeightKilonewtons = 25.45;
inline constexpr double CalibratedAbutmentAngle = 21;

/// Whether a coal strength (psi | MPa) or a unit weight (pcf | kN/m3) is that of the data base.
/// A unit system other than English and metric has no such value and never departs.
template <class N>
TELVO_INLINE TruthOf<N> isCalibratedCoalStrength(const N& value, std::int16_t units) {
    if (units == English) return value == CalibratedCoalStrengthPsi;
    return units != Metric || value == CalibratedCoalStrengthMPa;
}
template <class N>
TELVO_INLINE TruthOf<N> isCalibratedUnitWeight(const N& value, std::int16_t units) {
    if (units == English) return value == CalibratedUnitWeightPcf;
    return units != Metric || value == CalibratedUnitWeightKilonewtons;
}

/// What makes the form give an advisory.
enum class AdvisoryTrigger {
    FocusLeft,   // a text box loses the focus
    Cleared,     // a check box is cleared
    AnalSelected // a loading condition is selected
};

/// The advisory due at an event of the form; nothing where the value agrees with the data base.
/// Given: control  the control's name, such as "txtCoalStrength"
///        value    the leading number of its text, or the selected loading condition (0 to 3)
std::optional<std::string_view> advisory(AdvisoryTrigger trigger, std::string_view control,
                                         double value, std::int16_t units);

} // namespace telvo::project
