// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/checks.h"
#include "project/inputFields.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace telvo::project {

/// One numeric text box of the parameter form.
struct ParameterField {
    std::string_view control; ///< its name
    std::string ParameterTexts::*text;
    ParameterTab tab;
    std::string_view group; ///< frame on that tab
    std::string_view label;
    FieldKind kind;
    std::string_view valid; ///< what the acceptance check wants
};

/// The text boxes in tab order, apart from the number of entries and the distances.
std::span<const ParameterField> parameterFields();

/// An input as the screen calls it.
struct InputName {
    std::string label;   ///< "Abutment Angle, Active Gob"
    std::string unit;    ///< "ft"; empty where it has none
    std::string control; ///< of the parameter form
};

/// The input of a key of the record: "DepthCover", "XcutCenters(3)", "RowA". Nothing for what is no
/// input of the form.
std::optional<InputName> inputNamed(std::string_view key, std::int16_t units);

/// What the acceptance check wants of a center-to-center distance.
inline constexpr std::string_view DistanceValid = "above the entry width";

} // namespace telvo::project
