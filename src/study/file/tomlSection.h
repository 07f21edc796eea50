// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/numbers.h"
#include "base/text.h"
#include "study/file/Study.h"

// The parser asserts what some files break, such as "[: a]". Whether or not this is an optimized
// build, such a file is refused (this source is compiled without NDEBUG for that).
namespace telvo::study {
struct BrokenToml {};
[[noreturn]] static void refuseToml() {
    throw BrokenToml();
}
} // namespace telvo::study
#define TOML_ASSERT(expr) ((expr) ? void(0) : telvo::study::refuseToml())
#define TOML_HEADER_ONLY 1
#define TOML_EXCEPTIONS 1
#define TOML_UNRELEASED_FEATURES 0
#include <toml++/toml.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The tables of a study file, read key by key. For the one source that reads them: the parser is large.
namespace telvo::study {

/// The first fault of a file, by line.
class Faults {
  public:
    void add(std::size_t line, std::string message) {
        line = std::max(line, std::size_t{1});
        if (!m_message.empty() && line >= m_line) return;
        m_line = line;
        m_message = std::move(message);
    }
    bool any() const { return !m_message.empty(); }
    Fault first(const std::string& name) const {
        return {m_message, name + ", line " + std::to_string(m_line)};
    }

  private:
    std::size_t m_line = 0;
    std::string m_message;
};

inline std::size_t lineOf(const toml::node& node) {
    return node.source().begin.line;
}

/// One table of the file. What is asked for is known; the rest is unknown.
class Section {
  public:
    /// Given: name  of the table in messages; empty for the top of the file
    Section(const toml::table& table, std::string name, Faults& faults)
        : m_table(table), m_name(std::move(name)), m_faults(faults) {}

    const toml::node* node(std::string_view key, bool required = true) {
        m_known.emplace(key);
        const toml::node* found = m_table.get(key);
        if (!found && required)
            m_faults.add(lineOf(m_table),
                         (m_name.empty() ? "" : "[" + m_name + "] ") + "needs " + std::string(key));
        return found;
    }

    std::string text(std::string_view key, bool required = true) {
        const toml::node* found = node(key, required);
        if (!found) return {};
        if (const auto value = found->value_exact<std::string>()) return *value;
        wrong(*found, key, "a text in quotes");
        return {};
    }
    bool flag(std::string_view key) {
        const toml::node* found = node(key, false);
        if (!found) return false;
        if (const auto value = found->value_exact<bool>()) return *value;
        wrong(*found, key, "true or false");
        return false;
    }
    double number(std::string_view key) {
        const toml::node* found = node(key);
        if (!found) return 0;
        if (const auto value = numberIn(*found)) return *value;
        wrong(*found, key, "a number");
        return 0;
    }
    std::optional<double> numberIfAny(std::string_view key) {
        if (!m_table.contains(key)) {
            m_known.emplace(key);
            return std::nullopt;
        }
        return number(key);
    }
    /// A whole number from `least` to `most`, or what it is where it is missing.
    std::uint64_t whole(std::string_view key, std::uint64_t missing, std::uint64_t least,
                        std::uint64_t most) {
        const toml::node* found = node(key, false);
        if (!found) return missing;
        const auto value = found->value_exact<std::int64_t>();
        if (value && *value >= 0 && static_cast<std::uint64_t>(*value) >= least &&
            static_cast<std::uint64_t>(*value) <= most)
            return static_cast<std::uint64_t>(*value);
        wrong(*found, key,
              "a whole number from " + std::to_string(least) + " to " + std::to_string(most));
        return missing;
    }
    /// A list of numbers, empty where it is missing.
    std::vector<double> numbersIfAny(std::string_view key) {
        std::vector<double> all;
        const toml::node* found = node(key, false);
        if (!found) return all;
        const toml::array* list = found->as_array();
        if (list)
            for (const toml::node& each : *list)
                if (const auto value = numberIn(each)) all.push_back(*value);
        if (!list || all.empty() || all.size() != list->size())
            wrong(*found, key, "a list of numbers such as [-0.5, 0, 2]");
        return all;
    }
    Span pair(std::string_view key) {
        const toml::node* found = node(key);
        if (!found) return {};
        if (const toml::array* list = found->as_array(); list && list->size() == 2) {
            const auto low = numberIn((*list)[0]), high = numberIn((*list)[1]);
            if (low && high) return {*low, *high};
        }
        wrong(*found, key, "two numbers such as [50, 300]");
        return {};
    }
    std::vector<std::string> texts(std::string_view key, bool required) {
        std::vector<std::string> all;
        const toml::node* found = node(key, required);
        if (!found) return all;
        const toml::array* list = found->as_array();
        if (!list) {
            wrong(*found, key, "a list of texts");
            return all;
        }
        for (const toml::node& each : *list) {
            if (const auto value = each.value_exact<std::string>())
                all.push_back(*value);
            else
                wrong(each, key, "a list of texts");
        }
        return all;
    }
    Outcome outcome(std::string_view key) {
        const std::string name = text(key);
        if (auto known = Outcome::named(name)) return std::move(*known);
        if (const toml::node* found = m_table.get(key); found && !name.empty())
            m_faults.add(lineOf(*found), std::string(key) + ": no quantity is called \"" +
                                             excerpt(asUtf8(name)) + "\"");
        else if (found)
            wrong(*found, key, "the name of a quantity");
        return Outcome::factor(engine::Development, 0);
    }
    std::vector<Outcome> outcomes() {
        std::vector<Outcome> all;
        const std::vector<std::string> names = texts("outputs", false);
        for (const std::string& name : names) {
            if (auto known = Outcome::named(name))
                all.push_back(std::move(*known));
            else
                m_faults.add(lineOf(*m_table.get("outputs")),
                             "outputs: no quantity is called \"" + excerpt(asUtf8(name)) + "\"");
        }
        return all;
    }
    Variable variable(std::string_view key) { return variableOf(key, text(key)); }
    /// Of a name that stands under a key.
    Variable variableOf(std::string_view key, const std::string& name) {
        if (const auto known = variableNamed(name)) return *known;
        if (const toml::node* found = m_table.get(key))
            m_faults.add(lineOf(*found), std::string(key) +
                                             ": no input that can be varied is called \"" +
                                             excerpt(asUtf8(name)) + "\"");
        return project::Field::DepthCover;
    }
    /// "DepthCover" or a list of inputs.
    std::vector<Variable> variables(std::string_view key) {
        if (const toml::node* found = m_table.get(key); !found || !found->is_array())
            return {variable(key)};
        std::vector<Variable> all;
        for (const std::string& name : texts(key, true))
            all.push_back(variableOf(key, name));
        if (all.empty()) wrong(*m_table.get(key), key, "at least one input");
        return all;
    }
    /// "600:1200:50" or a list of numbers.
    std::vector<double> values() {
        const toml::node* found = node("values");
        if (!found) return {};
        if (const auto text = found->value_exact<std::string>()) {
            auto read = parseValues(*text);
            if (read) return std::move(*read);
            m_faults.add(lineOf(*found), "values: " + excerpt(asUtf8(read.fault().message), 80));
            return {};
        }
        std::vector<double> all;
        if (const toml::array* list = found->as_array())
            for (const toml::node& each : *list) {
                const auto value = numberIn(each);
                if (!value) break;
                all.push_back(*value);
            }
        if (!found->as_array() || all.empty() || all.size() != found->as_array()->size())
            wrong(*found, "values", "numbers such as [6, 8, 10] or steps such as \"600:1200:50\"");
        return all;
    }
    /// at_least or at_most, a number or "suggested"; a list of them where `several`.
    struct Targets {
        Criterion::Sense sense = Criterion::Sense::AtLeast;
        std::vector<std::optional<double>> values;
    };
    Targets targets(const Outcome& outcome, bool several) {
        Targets targets;
        const toml::node* least = node("at_least", false);
        const toml::node* most = node("at_most", false);
        if (!least == !most) {
            m_faults.add(lineOf(m_table), "[" + m_name + "] needs either at_least or at_most");
            return targets;
        }
        const std::string_view key = least ? "at_least" : "at_most";
        if (most) targets.sense = Criterion::Sense::AtMost;
        const toml::node& found = least ? *least : *most;
        const auto add = [&](const toml::node& one) {
            if (const auto number = numberIn(one))
                targets.values.emplace_back(*number);
            else if (one.value_exact<std::string>() == "suggested" && outcome.marginToSuggested())
                targets.values.emplace_back();
            else
                wrong(one, key,
                      outcome.marginToSuggested() ? "a number or \"suggested\"" : "a number");
        };
        const toml::array* list = found.as_array();
        if (list && several)
            for (const toml::node& one : *list)
                add(one);
        else
            add(found);
        if (targets.values.empty()) wrong(found, key, "at least one number");
        return targets;
    }

    void wrong(const toml::node& found, std::string_view key, const std::string& wanted) {
        m_faults.add(lineOf(found), std::string(key) + ": " + wanted + " is wanted");
    }

    /// Refuses every key that nothing asked for.
    void finish() {
        for (const auto& [key, value] : m_table)
            if (!m_known.contains(key.str()))
                m_faults.add(key.source().begin.line,
                             "unknown key " + excerpt(asUtf8(key.str())) +
                                 (m_name.empty() ? "" : " in [" + m_name + "]"));
    }

    /// What stands before the name of a table that lies in it.
    std::string below() const { return m_name.empty() ? "" : m_name + "."; }

    static std::optional<double> numberIn(const toml::node& found) {
        std::optional<double> value;
        if (const auto whole = found.value_exact<std::int64_t>())
            value = static_cast<double>(*whole);
        else
            value = found.value_exact<double>();
        if (value && !std::isfinite(*value)) return std::nullopt;
        return value;
    }

  private:
    const toml::table& m_table;
    std::string m_name;
    Faults& m_faults;
    std::set<std::string, std::less<>> m_known;
};

} // namespace telvo::study
