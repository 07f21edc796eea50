// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/inputFields.h"
#include "project/ProjectInput.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace telvo::project {

/// The automatic breadth of the AMZ of a depth of cover (ft | m); nothing for a negative depth and
/// one beyond the range of numbers. The rules are in automaticRules.h.
std::optional<double> automaticAMZBreadth(double H, std::int16_t units);

/// The automatic pressure arch factor of the form.
/// Given: W  panel width   H  depth of cover (ft | m)
float formArchFactor(float W, float H, std::int16_t units);

/// The factor that the parameter form shows for a record, whatever the record stores.
float automaticArchFactor(const ProjectInput& in, std::int16_t units);

/// The automatic value of a field for a record, whatever its flag says; nothing where there is
/// none.
/// Given: field  BreadthAMZ or ArchFactor
std::optional<double> automaticValue(const ProjectInput& in, std::int16_t units, Field field);

/// The flag that makes a value automatic.
constexpr Field flagOfAutomatic(Field field) {
    return field == Field::BreadthAMZ ? Field::AMZ : Field::Arch;
}

/// A record with the automatic values that belong to it: the breadth of the AMZ where `AMZ` is 1,
/// the pressure arch factor of the form where `Arch` is not 0, as the analysis reads these flags. A
/// value that does not exist, as the breadth of a negative depth, stays as it is.
ProjectInput withAutomaticValues(ProjectInput in, std::int16_t units);

/// A record with one number varied and the automatic values that depend on that number renewed:
/// those of the depth of cover and of the center-to-center distances. Others stay, so that an
/// analysis of the result differs from that of the record by this number alone.
ProjectInput withVaried(ProjectInput in, std::int16_t units, FieldId id, double value);

/// A value of a record that is marked automatic and is not the automatic one: the record was
/// changed outside the parameter form, which alone computes these values. The analysis takes the
/// record as it is, so that whoever reads its results has to know.
struct StaleAutomatic {
    Field field = Field::BreadthAMZ; ///< or ArchFactor
    double stored = 0;               ///< ft | m, or fraction
    double automatic = 0;            ///< likewise
    std::string remark;              ///< one sentence without its full stop
};

/// What withAutomaticValues() would change.
/// Returned: empty for a record whose automatic values belong to it.
std::vector<StaleAutomatic> staleAutomaticValues(const ProjectInput& in, std::int16_t units);

} // namespace telvo::project
