// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/outdated.h"

#include "base/files.h"
#include "base/numbers.h"
#include "base/text.h"
#include "project/inputFields.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace telvo::app {

namespace {

constexpr std::size_t MostNamed = 3; // changes that are told one by one

/// A number as the form shows it.
std::string textOf(const project::ProjectInput& in, project::FieldId id) {
    const project::InputField& row = project::rowOf(id.field);
    if (row.role == project::FieldRole::Choice)
        return std::string(project::LoadingConditionNames[std::clamp<int>(in.Anal, 0, 3)]);
    if (row.isFlag()) return project::get(in, id) == 1 ? "yes" : "no";
    return project::shownText(in, id);
}

struct FieldText {
    std::string label;
    std::string value; ///< with its unit; "" for a distance that the case does not use
};

/// The numbers of a case as its forms show them; those of two cases stand at the same places.
std::vector<FieldText> fieldTexts(const project::ProjectCase& shown) {
    std::vector<FieldText> texts;
    for (const project::FieldId id : project::RecordNumbers) {
        if (project::controlOf(id).empty()) continue; // nothing uses it
        FieldText text{project::fullLabelOf(id), {}};
        if (id.index <= project::distanceCount(shown.Input)) {
            text.value = textOf(shown.Input, id);
            const std::string_view unit = project::fieldUnit(project::kindOf(id), shown.Units);
            if (!unit.empty()) text.value.append(" ").append(unit);
        }
        texts.push_back(std::move(text));
    }
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
    return withoutControls(withoutFolder(one.FileName));
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
