// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/keptItems.h"

#include "base/numbers.h"
#include "base/text.h"
#include "project/inputFields.h"
#include "project/parameterFields.h"
#include "project/units.h"

#include <algorithm>
#include <type_traits>

namespace telvo::project {

namespace {

constexpr std::pair<std::string_view, std::string_view> OtherLabels[] = {
    {"Units", "Units"},
    {"Title", "Title"},
    {"Description", "Description"},
    {"NumberEntries", "Number of Entries"},
    {"AMZ", "Breadth of AMZ set automatically"},
    {"Arch", "Pressure Arch Factor set automatically"},
    {"Anal", "Loading Condition"},
    {"RowA", "Leave pillar Row 'A' in place"},
    {"RowB", "Leave pillar Row 'B' in place"},
    {"RowC", "Leave pillar Row 'C' in place"},
    {"RowD", "Leave pillar Row 'D' in place"}};

constexpr std::string_view Distance = "XcutCenters(";

/// 1 to 9 for a center-to-center distance, else 0.
int distanceOf(std::string_view item) {
    return item.starts_with(Distance) ? leadingInteger(item.substr(Distance.size())) : 0;
}

std::string yesOrNo(double flag) {
    return flag == 1 ? " yes" : " no";
}

/// The value of an item with its unit, a blank in front.
std::string valueText(std::string_view item, const ProjectInput& in, std::int16_t units) {
    if (item == "Anal")
        return ' ' + std::string(LoadingConditionNames[std::clamp<int>(in.Anal, 0, 3)]);
    std::string text;
    visitInputFields(in, [&](std::string_view name, FieldKind kind, const auto& value) {
        const std::string_view unit = fieldUnit(kind, units);
        const auto withUnit = [&](double number) {
            text = ' ' + generalNumber(number, 10);
            if (!unit.empty()) text.append(" (").append(unit).append(")");
        };
        if constexpr (std::is_arithmetic_v<std::decay_t<decltype(value)>>) {
            if (name != item) return;
            if (name == "AMZ" || name == "Arch" || name.starts_with("Row"))
                text = yesOrNo(static_cast<double>(value));
            else if constexpr (std::is_same_v<std::decay_t<decltype(value)>, float>)
                withUnit(leadingValue(generalNumber(value))); // as typed, not as widened
            else
                withUnit(static_cast<double>(value));
        } else if (const int i = distanceOf(item); name == "XcutCenters" && i > 0) {
            withUnit(value[i]);
        }
    });
    return text;
}

std::vector<std::string> itemsInOrder(const ProjectInput& in) {
    std::vector<std::string> items = {"Units", "Title", "Description"};
    visitInputFields(in, [&](std::string_view name, FieldKind, const auto&) {
        if (name != "XcutCenters") {
            items.emplace_back(name);
            return;
        }
        for (int i = 1; i <= distanceCount(in); ++i)
            items.push_back(std::string(Distance) + std::to_string(i) + ')');
    });
    return items;
}

void joinItem(std::string& list, const std::string& text) {
    if (text.empty()) return;
    if (!list.empty()) list += ", ";
    list += text;
}

} // namespace

std::string itemControl(std::string_view item) {
    if (const int i = distanceOf(item)) return "txtXcutCenters_" + std::to_string(i);
    if (item == "Anal") return "optAnal";
    const bool check = item == "AMZ" || item == "Arch" || item.starts_with("Row");
    return (check ? "chk" : "txt") + std::string(item);
}

std::string itemLabel(std::string_view item) {
    if (const int i = distanceOf(item)) return "Center to Center Distance #" + std::to_string(i);
    for (const auto& [name, label] : OtherLabels)
        if (name == item) return std::string(label);
    for (const ParameterField& field : parameterFields()) {
        if (field.control.substr(3) != item) continue;
        std::string label(field.label);
        // Both gobs have an extent; rows C and D are named as they are.
        if (field.group.ends_with("Gob") && label.find("Row") == std::string::npos)
            label.append(" of ").append(field.group);
        return label;
    }
    return {};
}

std::string itemText(std::string_view item, const ProjectCase& current, std::int16_t units) {
    const std::string label = itemLabel(item);
    if (label.empty()) return {};
    if (item == "Units") return label + ' ' + (current.Units == English ? "English" : "metric");
    if (item == "Title") return label + " \"" + excerpt(current.Title) + '"';
    if (item == "Description") return label;
    return label + valueText(item, current.Input, units);
}

std::string givenItemsText(const KeptItems& kept, const ProjectCase& current) {
    std::string list;
    for (const std::string& item : itemsInOrder(current.Input))
        if (std::find(kept.items.begin(), kept.items.end(), item) == kept.items.end())
            joinItem(list, itemText(item, current, current.Units));
    return list;
}

std::string keptItemsText(const KeptItems& kept, const ProjectCase& current) {
    std::string list;
    for (const std::string& item : kept.items)
        joinItem(list, itemText(item, current, kept.units));
    return list;
}

std::string keptOrigin(const KeptItems& kept, const ProjectCase& current) {
    const std::string system = kept.units == English ? "English" : "metric";
    std::string text = kept.from.empty() ? "the defaults of a new case"
                                         : "the case before, " + withoutControls(kept.from);
    text += ", in " + system + " units";
    if (kept.units != current.Units)
        text += " (the numbers now count in " +
                std::string(current.Units == English ? "English" : "metric") +
                " units; nothing was converted)";
    return text;
}

} // namespace telvo::project
