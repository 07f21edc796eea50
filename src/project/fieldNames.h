// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/inputFields.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace telvo::project {

/// An input as the screen calls it.
struct InputName {
    std::string label;   ///< "Abutment Angle, Active Gob"
    std::string unit;    ///< "ft"; empty where it has none
    std::string control; ///< of the parameter form: the one that takes the focus
};

/// The input of a key of the record: "DepthCover", "XcutCenters(3)", "XcutCenters" for all of them,
/// "RowA". Nothing for what is no input of the form, and for the two flags that make a value
/// automatic.
std::optional<InputName> inputNamed(std::string_view key, std::int16_t units);

/// A number of a case as its user reads it, with its unit: "150 (m)", "yes", the name of the loading
/// condition.
std::string valueText(const ProjectInput& in, FieldId id, std::int16_t units);

} // namespace telvo::project
