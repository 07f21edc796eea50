// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbers.h"
#include "base/text.h"
#include "study/file/asciiToml.h"
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
#include <charconv>
#include <cmath>
#include <set>

namespace telvo::study {

namespace {

constexpr std::string_view StudyTag = "# TELVO study ";
constexpr std::size_t MostScenarios = 10'000;

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

std::size_t lineOf(const toml::node& node) {
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
    Variable variable(std::string_view key) {
        const std::string name = text(key);
        if (const auto known = variableNamed(name)) return *known;
        if (const toml::node* found = m_table.get(key))
            m_faults.add(lineOf(*found), std::string(key) +
                                             ": no input that can be varied is called \"" +
                                             excerpt(asUtf8(name)) + "\"");
        return project::Field::DepthCover;
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

bool isRelative(std::string_view file) {
    return !file.empty() && file.front() != '/' && file.front() != '\\' &&
           !(file.size() > 1 && file[1] == ':') && file.find('\0') == std::string_view::npos;
}

/// Reads what is below the version line.
class StudyReader {
  public:
    StudyReader(const toml::table& root, Faults& faults)
        : m_root(root, "", faults), m_faults(faults) {}

    std::optional<Study> read() {
        Study study;
        const std::string kind = m_root.text("kind");
        study.caseFile = file(m_root, "case", m_root.text("case"));
        const std::string units = m_root.text("units");
        if (units == "metric")
            study.units = project::Metric;
        else if (const toml::node* found = m_root.node("units", false); found && units != "english")
            m_root.wrong(*found, "units", "\"english\" or \"metric\"");
        if (const toml::node* found = m_root.node("round_sf", false)) {
            const auto mode = found->value_exact<std::int64_t>();
            if (mode && *mode >= 0 && *mode <= 2)
                study.RoundTELVOSF = static_cast<int>(*mode);
            else
                m_root.wrong(*found, "round_sf", "0, 1 or 2");
        }
        if (kind == "tornado")
            study.request = tornado();
        else if (kind == "sweep")
            study.request = sweep();
        else if (kind == "find")
            study.request = find();
        else if (kind == "chart")
            study.request = chart();
        else if (kind == "scenarios")
            study.request = scenarios();
        else if (kind == "compare")
            study.request = compare();
        else if (const toml::node* found = m_root.node("kind", false))
            m_root.wrong(*found, "kind",
                         "\"tornado\", \"sweep\", \"find\", \"chart\", \"scenarios\" or "
                         "\"compare\"");
        m_root.finish();
        if (m_faults.any()) return std::nullopt;
        return study;
    }

  private:
    std::string file(Section& section, std::string_view key, std::string name) {
        if (const toml::node* found = section.node(key, false); found && !isRelative(name))
            section.wrong(*found, key, "a file name relative to the study, with \"/\",");
        return name;
    }

    /// The table of the kind; an empty one, after a fault, where it is missing.
    Section section(const char* name) {
        static const toml::table none;
        const toml::node* found = m_root.node(name);
        if (found && !found->is_table()) m_root.wrong(*found, name, "a table");
        return {found && found->is_table() ? *found->as_table() : none, name, m_faults};
    }

    /// Calls visit(section) for every table of a list of them.
    template <typename Visit>
    void each(const char* name, bool required, Visit&& visit) {
        const toml::node* found = m_root.node(name, required);
        if (!found) return;
        const toml::array* list = found->as_array();
        if (!list || !list->is_array_of_tables())
            return m_root.wrong(*found, name, std::string("[[") + name + "]]");
        for (const toml::node& one : *list) {
            Section section(*one.as_table(), name, m_faults);
            visit(section);
            section.finish();
        }
    }

    TornadoRequest tornado() {
        Section own = section("tornado");
        TornadoRequest request{own.outcome("output"), {}};
        own.finish();
        each("vary", false, [&](Section& vary) {
            RangedInput input{vary.variable("input"), {}, true};
            int forms = 0;
            for (const auto& [key, form] : {std::pair("percent", Range::Form::Percent),
                                            std::pair("offset", Range::Form::Offset),
                                            std::pair("range", Range::Form::Absolute)}) {
                const toml::node* found = vary.node(key, false);
                if (!found) continue;
                const Span span = vary.pair(key);
                if (!(span.low < span.high)) vary.wrong(*found, key, "a range that rises");
                input.range = {form, span.low, span.high};
                ++forms;
            }
            if (forms != 1) {
                const toml::node* found = vary.node("input", false);
                m_faults.add(found ? lineOf(*found) : 1,
                             "[vary] needs one of percent, offset and range");
            }
            request.inputs.push_back(input);
        });
        return request;
    }
    SweepRequest sweep() {
        Section own = section("sweep");
        SweepRequest request;
        request.outcomes = own.outcomes();
        request.linked = own.flag("linked");
        own.finish();
        each("vary", true, [&](Section& vary) {
            const Variable variable = vary.variable("input");
            request.axes.push_back({variable, vary.values()});
        });
        return request;
    }
    FindRequest find() {
        Section own = section("find");
        const Variable variable = own.variable("input");
        const Span in = own.pair("in");
        const double step = own.number("step");
        const Outcome outcome = own.outcome("output");
        const auto targets = own.targets(outcome, false);
        own.finish();
        const auto target = targets.values.empty() ? std::nullopt : targets.values.front();
        return {variable, {outcome, targets.sense, target}, in, step};
    }
    DesignChartRequest chart() {
        Section own = section("chart");
        const Variable required = own.variable("input");
        const Span in = own.pair("in");
        const double step = own.number("step");
        const Variable over = own.variable("over");
        std::vector<double> values = own.values();
        const Outcome outcome = own.outcome("output");
        auto targets = own.targets(outcome, true);
        own.finish();
        return {required,          in,      step,          over,
                std::move(values), outcome, targets.sense, std::move(targets.values)};
    }
    ScenarioSet scenarios() {
        Section own = section("scenarios");
        ScenarioSet set;
        set.outcomes = own.outcomes();
        own.finish();
        each("scenario", true, [&](Section& one) {
            Scenario scenario;
            scenario.name = one.text("name");
            const toml::node* inputs = one.node("set");
            const toml::table* table = inputs ? inputs->as_table() : nullptr;
            if (inputs && !table) one.wrong(*inputs, "set", "{ DepthCover = 1000 }");
            if (table)
                for (const auto& [key, value] : *table) {
                    const auto id = project::fieldNamed(key.str());
                    const auto number = Section::numberIn(value);
                    if (!id || project::nameOf(*id) != key.str())
                        m_faults.add(key.source().begin.line, "set: no input is called \"" +
                                                                  excerpt(asUtf8(key.str())) +
                                                                  "\"");
                    else if (!number)
                        one.wrong(value, key.str(), "a number");
                    else
                        scenario.set.emplace_back(*id, *number);
                }
            std::sort(scenario.set.begin(), scenario.set.end(), [](const auto& a, const auto& b) {
                return project::placeOf(a.first) < project::placeOf(b.first);
            });
            if (set.list.size() < MostScenarios)
                set.list.push_back(std::move(scenario));
            else if (const toml::node* found = m_root.node("scenario", false))
                m_root.wrong(*found, "scenario", "no more than 10,000 of them");
        });
        return set;
    }
    CompareSet compare() {
        Section own = section("compare");
        CompareSet set;
        set.with = own.texts("with", true);
        for (const std::string& name : set.with)
            file(own, "with", name);
        set.onlyDifferences = own.flag("only_differences");
        own.finish();
        return set;
    }

    Section m_root;
    Faults& m_faults;
};

std::string_view firstLine(std::string_view bytes) {
    std::string_view line = bytes.substr(0, bytes.find('\n'));
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

/// The line of a heading that begins with what is no name.
std::size_t brokenLine(const std::vector<std::string_view>& lines) {
    for (std::size_t i = 0; i < lines.size(); ++i) {
        std::string_view line = trimmed(lines[i]);
        if (!line.starts_with('[')) continue;
        line.remove_prefix(std::min(line.find_first_not_of("[ \t"), line.size()));
        const char c = line.empty() ? '\0' : line.front();
        const bool isName = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                            (c >= '0' && c <= '9') || c == '_' || c == '-' || c == '"' || c == '\'';
        if (!isName) return i + 1;
    }
    return 1;
}

} // namespace

Result<Study> readStudyText(std::string_view bytes, const std::string& name) {
    if (bytes.size() > MaxStudyBytes)
        return Fault{"is larger than " + std::to_string(MaxStudyBytes >> 20) + " MB", name};
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    const std::string where = name + ", line 1";
    std::string_view tag = firstLine(bytes);
    if (!tag.starts_with(StudyTag))
        return Fault{"is no study; the first line of one is \"# TELVO study 1\"", where};
    tag.remove_prefix(StudyTag.size());
    int version = 0;
    const auto [end, error] = std::from_chars(tag.data(), tag.data() + tag.size(), version);
    if (error != std::errc() || end != tag.data() + tag.size() || version < 1)
        return Fault{"is no study; the first line of one is \"# TELVO study 1\"", where};
    if (version > StudyVersion)
        return Fault{"is a study of version " + std::to_string(version) +
                         ", which a newer program wrote; this one reads version " +
                         std::to_string(StudyVersion),
                     where};
    const auto lines = splitLines(bytes);
    for (std::size_t i = 0; i < lines.size(); ++i)
        if (!isValidUtf8(lines[i]))
            return Fault{"is not text in UTF-8", name + ", line " + std::to_string(i + 1)};
    const AsciiToml ascii = asciiToml(bytes);
    if (ascii.brokenLine > 0)
        return Fault{"has a letter beyond ASCII that is not in double quotes",
                     name + ", line " + std::to_string(ascii.brokenLine)};
    Faults faults;
    std::optional<Study> study;
    try {
        const toml::table root = toml::parse(ascii.text);
        study = StudyReader(root, faults).read();
    } catch (const toml::parse_error& fault) {
        return Fault{excerpt(asUtf8(fault.description()), 160),
                     name + ", line " + std::to_string(fault.source().begin.line)};
    } catch (const BrokenToml&) {
        return Fault{"is no name of a table or a key",
                     name + ", line " + std::to_string(brokenLine(lines))};
    }
    if (!study) return faults.first(name);
    for (std::size_t i = 1; i < lines.size() && lines[i].starts_with('#'); ++i) {
        std::string_view comment = lines[i].substr(1);
        if (comment.starts_with(' ')) comment.remove_prefix(1);
        while (comment.ends_with(' ') || comment.ends_with('\t'))
            comment.remove_suffix(1);
        study->comments.emplace_back(comment);
    }
    return std::move(*study);
}

} // namespace telvo::study
