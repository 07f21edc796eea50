// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/fieldNames.h"

#include "base/numbers.h"
#include "project/inputFields.h"

#include <algorithm>

namespace telvo::project {

std::optional<InputName> inputNamed(std::string_view key, std::int16_t units) {
    const bool distances = key == rowOf(Field::XcutCenters).name;
    const auto id = distances ? FieldId(Field::XcutCenters, 1) : fieldNamed(key);
    if (!id || controlOf(*id).empty()) return std::nullopt;
    // In a message "AMZ" is the zone and "Arch" the pressure arch, not the flag.
    if (id->field == Field::AMZ || id->field == Field::Arch) return std::nullopt;
    InputName name{fullLabelOf(*id), std::string(fieldUnit(kindOf(*id), units)), controlOf(*id)};
    if (distances) name.label = rowOf(Field::XcutCenters).group;
    if (id->field == Field::NumberEntries) name.control = "Combo1"; // its text box is only shown
    if (id->field == Field::Anal) name.control += "_0";
    return name;
}

std::string valueText(const ProjectInput& in, FieldId id, std::int16_t units) {
    const InputField& row = rowOf(id.field);
    if (row.role == FieldRole::Choice)
        return std::string(LoadingConditionNames[std::clamp<int>(in.Anal, 0, 3)]);
    if (row.isFlag()) return get(in, id) == 1 ? "yes" : "no";
    std::string text = generalNumber(shownValue(in, id), 10);
    if (const auto unit = fieldUnit(row.kind, units); !unit.empty())
        text.append(" (").append(unit).append(")");
    return text;
}

} // namespace telvo::project
