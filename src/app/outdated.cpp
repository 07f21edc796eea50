// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/outdated.h"

#include "base/numbers.h"
#include "base/text.h"
#include "project/inputFields.h"
#include "project/parameterFields.h"

#include <algorithm>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace telvo::app {

namespace {

constexpr std::size_t MostNamed = 3; // changes that are told one by one

/// What the parameter form calls a field.
std::string labelOf(std::string_view name) {
    constexpr std::pair<std::string_view, std::string_view> choices[] = {
        {"NumberEntries", "Number of Entries"},
        {"XcutCenters", "Center to Center Distance"},
        {"Anal", "Loading Condition"},
        {"AMZ", "automatic Breadth of AMZ"},
        {"Arch", "automatic Pressure Arch Factor"},
        {"RowA", "Row 'A' left in place"},
        {"RowB", "Row 'B' left in place"},
        {"RowC", "Row 'C' left in place"},
        {"RowD", "Row 'D' left in place"}};
    for (const auto& [field, label] : choices)
        if (field == name) return std::string(label);
    for (const project::ParameterField& field : project::parameterFields())
        if (field.control.substr(3) == name) {
            // "Extent" alone would not say of what.
            const bool ofGob = field.tab == project::ParameterTab::RetreatMining;
            return (ofGob ? std::string(field.group) + ", " : std::string()).append(field.label);
        }
    return std::string(name);
}

std::string textOf(std::string_view, double value) {
    return generalNumber(value);
}
std::string textOf(std::string_view, float value) {
    return generalNumber(value);
}
std::string textOf(std::string_view name, std::int16_t value) {
    if (name == "Anal")
        return std::string(project::LoadingConditionNames[std::clamp<int>(value, 0, 3)]);
    if (name == "NumberEntries") return generalNumber(static_cast<int>(value));
    return value == 1 ? "yes" : "no";
}

struct FieldText {
    std::string label;
    std::string value; ///< with its unit; "" for a distance that the case does not use
};

/// The fields of a case as its forms show them; those of two cases stand at the same places.
std::vector<FieldText> fieldTexts(const project::ProjectCase& shown) {
    std::vector<FieldText> texts;
    project::visitInputFields(
        shown.Input, [&](std::string_view name, project::FieldKind kind, const auto& field) {
            const std::string_view unit = project::fieldUnit(kind, shown.Units);
            const auto add = [&](const std::string& label, std::string value) {
                if (!value.empty() && !unit.empty()) value.append(" ").append(unit);
                texts.push_back({label, std::move(value)});
            };
            if (name == "Reserved") return; // nothing uses it
            if constexpr (std::is_arithmetic_v<std::remove_cvref_t<decltype(field)>>)
                add(labelOf(name), textOf(name, field));
            else
                for (int i = field.first; i <= field.last; ++i)
                    add(labelOf(name) + " #" + generalNumber(i),
                        i <= project::distanceCount(shown.Input) ? textOf(name, field[i])
                                                                 : std::string());
        });
    return texts;
}

/// "label 800 ft, now 1200 ft" for the fields that differ; "" when none does.
std::string changedFields(const project::ProjectCase& before, const project::ProjectCase& now) {
    const std::vector<FieldText> was = fieldTexts(before);
    const std::vector<FieldText> is = fieldTexts(now);
    std::string told;
    std::size_t changes = 0;
    for (std::size_t i = 0; i < is.size(); ++i) {
        if (was[i].value == is[i].value || ++changes > MostNamed) continue;
        const auto shown = [](const std::string& value) {
            return value.empty() ? std::string("none") : value;
        };
        told.append(told.empty() ? "" : "; ").append(is[i].label).append(" ");
        told.append(shown(was[i].value)).append(", now ").append(shown(is[i].value));
    }
    if (changes > MostNamed)
        told += "; and " + generalNumber(static_cast<int>(changes - MostNamed)) + " more";
    return told;
}

bool isMetric(const project::ProjectCase& one) {
    return one.Units != project::English;
}

std::string nameOf(const project::ProjectCase& one) {
    return withoutControls(one.FileName.substr(one.FileName.find_last_of("/\\") + 1));
}

bool sameTexts(const project::ProjectCase& a, const project::ProjectCase& b) {
    return a.Title == b.Title && a.Description == b.Description;
}

} // namespace

std::string outdatedBecause(const ShownCase& shown, const ShownCase& onScreen) {
    const project::ProjectCase& was = shown.current;
    const project::ProjectCase& is = onScreen.current;
    const bool units = isMetric(was) != isMetric(is);
    const std::string changes = units ? std::string() : changedFields(was, is);
    if (units || !changes.empty() || !sameTexts(was, is)) {
        if (nameOf(was) != nameOf(is))
            return "This belongs to " + nameOf(was) + ", not to " + nameOf(is) +
                   ", the case on screen.";
        if (units)
            return std::string("The case on screen is in ") +
                   (isMetric(is) ? "metric" : "English") + " units; this is of before.";
        if (!changes.empty()) return "The case was changed since: " + changes + '.';
        return "Title or description of the case were changed since.";
    }
    if (shown.options != onScreen.options)
        return "The options of the output (rounding of stability factors, units of forces or "
               "stresses) were changed since.";
    return {};
}

} // namespace telvo::app
