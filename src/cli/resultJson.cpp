// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/escapes.h"
#include "base/numbers.h"
#include "cli/resultFormats.h"
#include "cli/resultNames.h"
#include "engine/quantities.h"
#include "project/inputFields.h"

#include <type_traits>

namespace telvo::cli {

namespace {

/// Writes JSON as it comes, a value to a line, without a tree of it in the memory.
class JsonWriter {
  public:
    explicit JsonWriter(std::string& out) : m_out(out) {}

    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    void beginArray() { begin('['); }
    void endArray() { end(']'); }

    void key(std::string_view name) {
        next();
        quoted(name);
        m_out += ": ";
        m_afterKey = true;
    }
    void text(std::string_view value) {
        next();
        quoted(value);
    }
    void number(double value) {
        next();
        appendGeneralNumber(m_out, value);
    }
    void number(float value) { // 0.82, not 0.819999993
        next();
        m_out += generalNumber(value);
    }
    void number(int value) {
        next();
        m_out += std::to_string(value);
    }
    void boolean(bool value) {
        next();
        m_out += value ? "true" : "false";
    }
    void null() {
        next();
        m_out += "null";
    }

  private:
    static constexpr std::size_t Indent = 2;

    void begin(char bracket) {
        next();
        m_out += bracket;
        ++m_depth;
        m_empty = true;
    }
    void end(char bracket) {
        --m_depth;
        newLine(); // of an empty array, too
        m_empty = false;
        m_out += bracket;
    }
    /// What stands between the value before and the one that follows.
    void next() {
        if (m_afterKey) {
            m_afterKey = false;
            return;
        }
        if (m_depth == 0) return;
        if (!m_empty) m_out += ',';
        m_empty = false;
        newLine();
    }
    void newLine() {
        m_out += '\n';
        m_out.append(Indent * m_depth, ' ');
    }
    void quoted(std::string_view value) {
        constexpr std::string_view digits = "0123456789abcdef";
        m_out += '"';
        for (const char c : value) {
            const auto code = static_cast<unsigned char>(c);
            switch (c) {
            case '"':
                m_out += "\\\"";
                break;
            case '\\':
                m_out += "\\\\";
                break;
            case '\b':
                m_out += "\\b";
                break;
            case '\f':
                m_out += "\\f";
                break;
            case '\n':
                m_out += "\\n";
                break;
            case '\r':
                m_out += "\\r";
                break;
            case '\t':
                m_out += "\\t";
                break;
            default:
                if (code < 0x20) {
                    m_out += "\\u00";
                    m_out += digits[code >> 4];
                    m_out += digits[code & 15];
                } else {
                    m_out += c;
                }
            }
        }
        m_out += '"';
    }

    std::string& m_out;
    std::size_t m_depth = 0;
    bool m_empty = true; ///< the innermost bracket holds nothing yet
    bool m_afterKey = false;
};

/// A field with its indices as arrays (pillars) and objects (passes, sides, components).
template <typename Field>
void writeField(JsonWriter& json, const Field& field, int pillars) {
    if constexpr (isPerPillar<Field>) {
        json.beginArray();
        for (int i = 1; i <= pillars; ++i)
            json.number(field[i]);
        json.endArray();
    } else if constexpr (isIndexed<Field>) {
        json.beginObject();
        visitNamed(field, [&](std::string_view name, const auto& element) {
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

void writeWarnings(JsonWriter& json, const report::Warnings& warnings) {
    json.beginObject();
    json.key("flags");
    json.beginArray();
    for (std::size_t flag = 0; flag < warnings.WarningFlags.size(); ++flag)
        if (warnings.WarningFlags[flag]) json.number(static_cast<int>(flag));
    json.endArray();
    json.key("summary");
    json.text(warnings.WarningSummary);
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

std::string resultJson(const CaseOutcome& outcome) {
    std::string out;
    out.reserve(16384);
    JsonWriter json(out);
    json.beginObject();
    json.key("file");
    json.text(withEscapedBytes(outcome.file));
    json.key("valid");
    json.boolean(outcome.run.has_value());
    json.key("message");
    json.text(withEscapedBytes(outcome.message));
    json.key("notes");
    json.beginArray();
    for (const std::string& note : outcome.notes)
        json.text(note);
    json.endArray();
    json.key("inputs");
    outcome.current ? writeInputs(json, *outcome.current) : json.null();
    json.key("results");
    outcome.run ? writeResults(json, outcome.run->results) : json.null();
    json.key("warnings");
    outcome.run ? writeWarnings(json, outcome.warnings) : json.null();
    json.key("units");
    outcome.current ? writeUnits(json, outcome.current->Units == project::Metric ? project::Metric
                                                                                 : project::English)
                    : json.null();
    json.endObject();
    return out;
}

} // namespace telvo::cli
