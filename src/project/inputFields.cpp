// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/inputFields.h"

#include "base/numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace telvo::project {

namespace {

/// Calls use(number) for one number of a record, in the type of the record.
template <typename Input, typename Use>
decltype(auto) withNumber(Input& in, FieldId id, Use&& use) {
    return std::visit(
        [&](auto member) -> decltype(auto) {
            auto& field = in.*member;
            if constexpr (requires { field[1]; })
                return use(field[std::max(id.index, 1)]); // g++ 12 takes it for 0 as well
            else
                return use(field);
        },
        rowOf(id.field).member);
}

void narrow(double value, double& into) {
    into = value;
}

void narrow(double value, float& into) {
    constexpr float most = std::numeric_limits<float>::max();
    constexpr float endless = std::numeric_limits<float>::infinity();
    if (value > double{most})
        into = endless;
    else if (value < -double{most})
        into = -endless;
    else
        into = static_cast<float>(value);
}

void narrow(double value, std::int16_t& into) {
    constexpr double low = std::numeric_limits<std::int16_t>::min();
    constexpr double high = std::numeric_limits<std::int16_t>::max();
    into = std::isnan(value)
               ? std::int16_t{0}
               : static_cast<std::int16_t>(std::clamp(std::nearbyint(value), low, high));
}

} // namespace

double get(const ProjectInput& in, FieldId id) {
    return withNumber(in, id, [](auto number) { return static_cast<double>(number); });
}

void set(ProjectInput& in, FieldId id, double value) {
    withNumber(in, id, [value](auto& number) { narrow(value, number); });
}

double shownValue(const ProjectInput& in, FieldId id) {
    return rowOf(id.field).isSingle() ? leadingValue(shownText(in, id)) : get(in, id);
}

std::string shownText(const ProjectInput& in, FieldId id) {
    return withNumber(in, id, [](auto number) { return generalNumber(number); });
}

std::string nameOf(FieldId id) {
    std::string name(rowOf(id.field).name);
    if (id.index > 0) name += '.' + std::to_string(id.index);
    return name;
}

std::string itemNameOf(FieldId id) {
    std::string name(rowOf(id.field).name);
    if (id.index > 0) name += '(' + std::to_string(id.index) + ')';
    return name;
}

std::string controlOf(FieldId id) {
    std::string name(rowOf(id.field).control);
    if (id.index > 0) name += '_' + std::to_string(id.index);
    return name;
}

std::string fullLabelOf(FieldId id) {
    const InputField& row = rowOf(id.field);
    std::string label(row.label);
    if (id.index > 0) label += " #" + std::to_string(id.index);
    // The frames of the three gobs have the same boxes.
    if (row.tab == ParameterTab::RetreatMining && row.role == FieldRole::Value)
        label.append(", ").append(row.group);
    return label;
}

std::optional<FieldId> fieldNamed(std::string_view name) {
    for (const InputField& row : InputFields) {
        if (!name.starts_with(row.name)) continue;
        const std::string_view rest = name.substr(row.name.size());
        if (!row.isDistances()) {
            if (rest.empty()) return row.id;
            continue; // "Arch" begins "ArchFactor"
        }
        const bool item = rest.size() == 3 && rest[0] == '(' && rest[2] == ')';
        if (!item && !(rest.size() == 2 && rest[0] == '.')) continue;
        const int i = rest[1] - '0';
        if (i >= 1 && i < MaxEntries) return FieldId(row.id, i);
    }
    return std::nullopt;
}

} // namespace telvo::project
