// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/keptItems.h"

#include "base/text.h"
#include "project/fieldNames.h"
#include "project/inputFields.h"
#include "project/units.h"

#include <algorithm>
#include <iterator>

namespace telvo::project {

namespace {

// Items that are no number of the record.
constexpr std::string_view CaseItems[] = {"Units", "Title", "Description"};

bool isCaseItem(std::string_view item) {
    return std::find(std::begin(CaseItems), std::end(CaseItems), item) != std::end(CaseItems);
}

std::vector<std::string> itemsInOrder(const ProjectInput& in) {
    std::vector<std::string> items(std::begin(CaseItems), std::end(CaseItems));
    for (const FieldId id : RecordNumbers)
        if (id.index <= distanceCount(in)) items.push_back(itemNameOf(id));
    return items;
}

void joinItem(std::string& list, const std::string& text) {
    if (text.empty()) return;
    if (!list.empty()) list += ", ";
    list += text;
}

} // namespace

std::string itemControl(std::string_view item) {
    const auto id = fieldNamed(item);
    return id ? controlOf(*id) : "txt" + std::string(item);
}

std::string itemLabel(std::string_view item) {
    if (isCaseItem(item)) return std::string(item);
    const auto id = fieldNamed(item);
    if (!id) return {};
    std::string label(rowOf(id->field).echoLabel());
    if (id->index > 0) label += " #" + std::to_string(id->index);
    return label;
}

std::string itemText(std::string_view item, const ProjectCase& current, std::int16_t units) {
    const std::string label = itemLabel(item);
    if (label.empty()) return {};
    if (item == "Units") return label + ' ' + (current.Units == English ? "English" : "metric");
    if (item == "Title") return label + " \"" + excerpt(current.Title) + '"';
    if (item == "Description") return label;
    return label + ' ' + valueText(current.Input, *fieldNamed(item), units);
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
