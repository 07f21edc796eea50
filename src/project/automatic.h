// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/ProjectInput.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace telvo::project {

/// Automatic breadth of the active mining zone: AMZ = 5 sqrt(H), H in feet. A metric depth is
/// turned into feet and the breadth back into metres.
/// Given:    H  depth of cover (ft | m)
/// Returned: the breadth as the whole number that the form shows and stores (158 for 1000 ft);
///           nothing for a negative depth.
std::optional<double> automaticAMZBreadth(double H, std::int16_t units);

/// Automatic pressure arch factor of the parameter form: Fpa = 1 - 0.28 ln(H / W), from 0.28 to 1,
/// 1 where the depth is not more than a margin above the panel width; two decimals.
/// Given:    W  panel width (ft | m)
///           H  depth of cover (ft | m)
/// Notes:    1) W and H are held in single precision.
///           2) the margin is 80 ft, and 80 m for a metric case although W and H are in feet by
///              then.
///           3) the analysis has a rule of its own, engine::pressureArchFactor(); the two are kept
///              different on purpose.
float formArchFactor(float W, float H, std::int16_t units);

/// The factor that the parameter form shows for a record, whatever the record stores.
float automaticArchFactor(const ProjectInput& in, std::int16_t units);

/// A value of a record that is marked automatic and is not the automatic one: the record was
/// changed outside the parameter form, which alone computes these values. The analysis takes the
/// record as it is, so that whoever reads its results has to know.
struct StaleAutomatic {
    std::string_view field; ///< "BreadthAMZ" or "ArchFactor"
    double stored = 0;      ///< ft | m, or fraction
    double automatic = 0;   ///< likewise
    std::string remark;     ///< one sentence without its full stop
};

/// The breadth of the AMZ is compared where `AMZ` is 1, the pressure arch factor where `Arch` is
/// not 0, as the analysis reads these flags.
/// Returned: empty for a record whose automatic values belong to it.
std::vector<StaleAutomatic> staleAutomaticValues(const ProjectInput& in, std::int16_t units);

/// Gives a record the automatic values of those that staleAutomaticValues() lists.
void renewAutomaticValues(ProjectInput& in, std::int16_t units);

} // namespace telvo::project
