// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/JsonWriter.h"
#include "study/file/Record.h"
#include "study/file/sha256.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <utility>

/// What records of runs and parts of them share: texts with their digits. For the sources that read
/// them: the parser is large.
namespace telvo::study {

using Json = nlohmann::json;

inline void writeText(JsonWriter& json, std::string_view name, const std::string& text) {
    json.member("name", name);
    json.member("sha256", sha256Of(text));
    json.member("text", text);
}

inline void writeStudy(JsonWriter& json, const RecordedStudy& study) {
    json.beginObject();
    writeText(json, study.name, study.text);
    json.key("cases");
    json.beginArray();
    for (const RecordedCase& one : study.cases) {
        json.beginObject();
        writeText(json, one.name, one.text);
        json.endObject();
    }
    json.endArray();
    json.endObject();
}

/// Reads members of an object, each of the type that it has to have.
class JsonMembers {
  public:
    JsonMembers(const Json& object, std::string path, std::optional<Fault>& fault)
        : m_object(object), m_path(std::move(path)), m_fault(fault) {
        if (!object.is_object()) wrong("");
    }

    std::string text(const char* key) const {
        const Json* found = member(key, &Json::is_string);
        return found ? found->get<std::string>() : std::string();
    }
    std::size_t count(const char* key) const {
        const Json* found = member(key, &Json::is_number_unsigned);
        return found ? found->get<std::size_t>() : 0;
    }
    /// Calls visit(members) for every object of a list.
    template <typename Visit>
    void each(const char* key, Visit&& visit) const {
        const Json* found = member(key, &Json::is_array);
        if (!found) return;
        for (std::size_t i = 0; i < found->size(); ++i)
            visit(JsonMembers((*found)[i], m_path + key + "[" + std::to_string(i) + "].", m_fault));
    }
    JsonMembers below(const char* key) const {
        static const Json nothing;
        const Json* found = member(key, &Json::is_object);
        return {found ? *found : nothing, m_path + key + ".", m_fault};
    }
    RecordedStudy recordedStudy() const {
        RecordedStudy study{text("name"), checkedText(), {}};
        each("cases", [&](const JsonMembers& of) {
            study.cases.push_back({of.text("name"), of.checkedText()});
        });
        return study;
    }
    /// A text whose digits have to be those that stand beside it.
    std::string checkedText() const {
        std::string own = text("text");
        if (!m_fault && sha256Of(own) != text("sha256"))
            m_fault = Fault{m_path + "text: was changed, its SHA-256 is another one", ""};
        return own;
    }

  private:
    const Json* member(const char* key, bool (Json::*is)() const noexcept) const {
        const auto found = m_object.is_object() ? m_object.find(key) : m_object.end();
        if (m_object.is_object() && found != m_object.end() && ((*found).*is)()) return &*found;
        wrong(key);
        return nullptr;
    }
    void wrong(const char* key) const {
        if (!m_fault) m_fault = Fault{m_path + key + ": is missing or of a wrong kind", ""};
    }

    const Json& m_object;
    std::string m_path;
    std::optional<Fault>& m_fault;
};

} // namespace telvo::study
