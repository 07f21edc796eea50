// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/resultFormats.h"

#include "base/escapes.h"
#include "base/numbers.h"
#include "base/text.h"
#include "cli/resultNames.h"
#include "engine/quantities.h"
#include "project/inputFields.h"

#include <json-c/json.h>

#include <memory>

namespace telvo::cli {

namespace {

struct Release {
    void operator()(json_object* object) const { json_object_put(object); }
};
using Json = std::unique_ptr<json_object, Release>;

Json object() {
    return Json(json_object_new_object());
}

Json text(std::string_view value) {
    return Json(json_object_new_string_len(value.data(), static_cast<int>(value.size())));
}

/// A number with the text that the program shows for it; the library would format it its own way.
Json number(double value, const std::string& shown) {
    return Json(json_object_new_double_s(value, shown.c_str()));
}
Json number(double value) {
    return number(value, generalNumber(value));
}
Json number(std::int16_t value) {
    return Json(json_object_new_int(value));
}

/// Given: key  a literal, which is not copied, and new to the object
void add(const Json& parent, const char* key, Json value) {
    json_object_object_add_ex(parent.get(), key, value.release(),
                              JSON_C_OBJECT_ADD_KEY_IS_NEW | JSON_C_OBJECT_KEY_IS_CONSTANT);
}

void append(const Json& array, Json value) {
    json_object_array_add(array.get(), value.release());
}

/// A field with its indices as arrays (pillars) and objects (passes, sides, components).
template <typename Field>
Json fieldJson(const Field& field, int pillars) {
    if constexpr (isPerPillar<Field>) {
        Json array(json_object_new_array());
        for (int i = 1; i <= pillars; ++i)
            append(array, number(field[i]));
        return array;
    } else if constexpr (isIndexed<Field>) {
        Json named = object();
        visitNamed(field, [&](std::string_view name, const auto& element) {
            add(named, name.data(), fieldJson(element, pillars)); // names are literals
        });
        return named;
    } else {
        return number(field);
    }
}

Json inputsJson(const project::ProjectCase& current) {
    Json inputs = object();
    add(inputs, "Units", number(current.Units));
    add(inputs, "Title", text(current.Title));
    add(inputs, "Description", text(current.Description));
    add(inputs, "FileVersion", number(current.FileVersion));
    const int distances = project::distanceCount(current.Input);
    project::visitInputFields(
        current.Input, [&](const char* name, project::FieldKind, const auto& field) {
            using Field = std::remove_cvref_t<decltype(field)>;
            if constexpr (std::is_same_v<Field, float>)
                add(inputs, name, number(field, generalNumber(field))); // 0.82, not 0.819999993
            else
                add(inputs, name, fieldJson(field, distances));
        });
    return inputs;
}

Json resultsJson(const engine::AnalysisResults& results) {
    Json out = object();
    add(out, "AnalysisCase", number(static_cast<std::int16_t>(results.AnalysisCase)));
    engine::visitQuantities(results, [&](const char* name, engine::Kind, const auto& field) {
        add(out, name, fieldJson(field, results.NumberPillars));
    });
    return out;
}

Json warningsJson(const report::Warnings& warnings) {
    Json flags(json_object_new_array());
    for (std::size_t flag = 0; flag < warnings.WarningFlags.size(); ++flag)
        if (warnings.WarningFlags[flag]) append(flags, number(static_cast<std::int16_t>(flag)));
    Json out = object();
    add(out, "flags", std::move(flags));
    add(out, "summary", text(warnings.WarningSummary));
    return out;
}

/// The unit of every quantity that has one.
Json unitsJson(std::int16_t units) {
    Json inputs = object();
    const project::ProjectInput inputShape;
    project::visitInputFields(inputShape,
                              [&](const char* name, project::FieldKind kind, const auto&) {
                                  const auto unit = project::fieldUnit(kind, units);
                                  if (!unit.empty()) add(inputs, name, text(unit));
                              });
    Json results = object();
    const engine::AnalysisResults shape;
    engine::visitQuantities(shape, [&](const char* name, engine::Kind kind, const auto&) {
        const auto unit = engine::unitName(kind, units);
        if (!unit.empty()) add(results, name, text(unit));
    });
    Json out = object();
    add(out, "inputs", std::move(inputs));
    add(out, "results", std::move(results));
    return out;
}

} // namespace

ResultJson::ResultJson()
    : m_units{unitsJson(project::English).release(), unitsJson(project::Metric).release()} {}

ResultJson::~ResultJson() {
    for (json_object* units : m_units)
        json_object_put(units);
}

std::string ResultJson::of(const CaseOutcome& outcome) const {
    Json out = object();
    add(out, "file", text(withEscapedBytes(outcome.file)));
    add(out, "valid", Json(json_object_new_boolean(outcome.run.has_value())));
    add(out, "message", text(withEscapedBytes(outcome.message)));
    Json notes(json_object_new_array());
    for (const std::string& note : outcome.notes)
        append(notes, text(note));
    add(out, "notes", std::move(notes));
    add(out, "inputs", outcome.current ? inputsJson(*outcome.current) : nullptr);
    add(out, "results", outcome.run ? resultsJson(outcome.run->results) : nullptr);
    add(out, "warnings", outcome.run ? warningsJson(outcome.warnings) : nullptr);
    add(out, "units",
        outcome.current ? Json(json_object_get(m_units[outcome.current->Units == project::Metric]))
                        : nullptr);
    constexpr int style =
        JSON_C_TO_STRING_PRETTY | JSON_C_TO_STRING_SPACED | JSON_C_TO_STRING_NOSLASHESCAPE;
    std::size_t length = 0;
    const char* shown = json_object_to_json_string_length(out.get(), style, &length);
    return {shown, length};
}

} // namespace telvo::cli
