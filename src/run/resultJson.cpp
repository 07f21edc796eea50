// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/escapes.h"
#include "base/JsonWriter.h"
#include "engine/quantities.h"
#include "engine/quantityNames.h"
#include "project/inputFields.h"
#include "run/resultTexts.h"

#include <type_traits>

namespace telvo::run {

namespace {

/// A field with its indices as arrays (pillars) and objects (passes, sides, components).
template <typename Field>
void writeField(JsonWriter& json, const Field& field, int pillars) {
    if constexpr (engine::isPerPillar<Field>) {
        json.beginArray();
        for (int i = 1; i <= pillars; ++i)
            json.number(field[i]);
        json.endArray();
    } else if constexpr (engine::isIndexed<Field>) {
        json.beginObject();
        engine::visitNamed(field, [&](std::string_view name, const auto& element) {
            json.key(name);
            writeField(json, element, pillars);
        });
        json.endObject();
    } else {
        json.number(field);
    }
}

void writeInputs(JsonWriter& json, const project::ProjectCase& current) {
    json.beginObject();
    json.key("Units");
    json.number(current.Units);
    json.key("Title");
    json.text(current.Title);
    json.key("Description");
    json.text(current.Description);
    json.key("FileVersion");
    json.number(current.FileVersion);
    const int distances = project::distanceCount(current.Input);
    project::visitInputFields(current.Input,
                              [&](const char* name, project::FieldKind, const auto& field) {
                                  json.key(name);
                                  writeField(json, field, distances);
                              });
    json.endObject();
}

void writeResults(JsonWriter& json, const engine::AnalysisResults& results) {
    json.beginObject();
    json.key("AnalysisCase");
    json.number(results.AnalysisCase);
    engine::visitQuantities(results, [&](const char* name, engine::Kind, const auto& field) {
        json.key(name);
        using Field = std::remove_cvref_t<decltype(field)>;
        if constexpr (std::is_same_v<Field, float>)
            json.number(static_cast<double>(field)); // the exact value that it is
        else
            writeField(json, field, results.NumberPillars);
    });
    json.endObject();
}

void writeWarnings(JsonWriter& json, const CaseResult& result) {
    json.beginObject();
    json.key("flags");
    json.beginArray();
    for (int flag = 0; flag < CaseResult::flagCount; ++flag)
        if (result.flag(flag)) json.number(flag);
    json.endArray();
    json.key("summary");
    json.text(result.warnings);
    json.endObject();
}

/// The unit of every quantity that has one.
void writeUnits(JsonWriter& json, std::int16_t units) {
    const auto unit = [&](const char* name, std::string_view text) {
        if (text.empty()) return;
        json.key(name);
        json.text(text);
    };
    json.beginObject();
    json.key("inputs");
    json.beginObject();
    const project::ProjectInput inputs;
    project::visitInputFields(inputs, [&](const char* name, project::FieldKind kind, const auto&) {
        unit(name, project::fieldUnit(kind, units));
    });
    json.endObject();
    json.key("results");
    json.beginObject();
    const engine::AnalysisResults results;
    engine::visitQuantities(results, [&](const char* name, engine::Kind kind, const auto&) {
        unit(name, engine::unitName(kind, units));
    });
    json.endObject();
    json.endObject();
}

} // namespace

std::string resultJson(const CaseResult& result) {
    std::string out;
    out.reserve(16384);
    JsonWriter json(out);
    json.beginObject();
    json.key("file");
    json.text(withEscapedBytes(result.name));
    json.key("valid");
    json.boolean(result.run != nullptr);
    json.key("message");
    json.text(withEscapedBytes(result.message));
    json.key("notes");
    json.beginArray();
    for (const std::string& note : result.notes)
        json.text(note);
    json.endArray();
    json.key("inputs");
    result.current ? writeInputs(json, *result.current) : json.null();
    json.key("results");
    result.run ? writeResults(json, result.run->results) : json.null();
    json.key("warnings");
    result.run ? writeWarnings(json, result) : json.null();
    json.key("units");
    result.current ? writeUnits(json, result.current->Units == project::Metric ? project::Metric
                                                                               : project::English)
                   : json.null();
    json.endObject();
    return out;
}

} // namespace telvo::run
