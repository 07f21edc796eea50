// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbers.h"
#include "base/text.h"
#include "study/file/asciiToml.h"
#include "study/file/Study.h"
#include "study/file/tomlSection.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <limits>

namespace telvo::study {

namespace {

constexpr std::string_view StudyTag = "# TELVO study ";
constexpr std::size_t MostScenarios = 10'000;
constexpr auto KindsWanted = "\"tornado\", \"sweep\", \"find\", \"chart\", \"scenarios\", "
                             "\"compare\", \"uncertainty\" or \"fragility\"";

bool isRelative(std::string_view file) {
    return !file.empty() && file.front() != '/' && file.front() != '\\' &&
           !(file.size() > 1 && file[1] == ':') && file.find('\0') == std::string_view::npos;
}

/// Reads what is below the version line.
class StudyReader {
  public:
    StudyReader(const toml::table& root, Faults& faults)
        : m_root(root, "", faults), m_faults(faults) {}

    std::optional<std::vector<Study>> read() {
        Study study;
        const std::vector<std::string> kinds = readKinds();
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
        std::vector<Study> studies;
        for (const std::string& kind : kinds) {
            study.view = {};
            if (!readRequest(kind, study)) continue;
            studies.push_back(study);
        }
        const std::vector<Scenario> list = scenarioList(kinds);
        bool used = list.empty();
        for (Study& one : studies) {
            auto* own = std::get_if<ScenarioSet>(&one.request);
            auto* compared = std::get_if<CompareSet>(&one.request);
            if (own) own->list = list;
            if (compared && compared->scenarios) compared->list = list;
            used = used || own || (compared && compared->scenarios);
        }
        if (const toml::node* found = used ? nullptr : m_root.node("scenario", false))
            m_faults.add(lineOf(*found), "[compare] needs scenarios = true to take them");
        m_root.finish();
        if (m_faults.any()) return std::nullopt;
        return studies;
    }

  private:
    /// One kind, or a list of them.
    std::vector<std::string> readKinds() {
        std::vector<std::string> kinds;
        const toml::node* found = m_root.node("kind");
        if (!found) return kinds;
        const auto add = [&](const toml::node& one) {
            const auto kind = one.value_exact<std::string>();
            if (!kind)
                m_root.wrong(one, "kind", KindsWanted);
            else if (std::find(kinds.begin(), kinds.end(), *kind) != kinds.end())
                m_faults.add(lineOf(one), "kind: \"" + excerpt(asUtf8(*kind)) + "\" comes twice");
            else
                kinds.push_back(*kind);
        };
        if (const toml::array* list = found->as_array()) {
            m_several = list->size() > 1;
            for (const toml::node& one : *list)
                add(one);
            if (list->empty()) m_root.wrong(*found, "kind", KindsWanted);
        } else {
            add(*found);
        }
        return kinds;
    }
    /// Fills request and view. Returned: whether there is such a kind.
    bool readRequest(const std::string& kind, Study& study) {
        if (kind == "tornado")
            study.request = tornado(study.view);
        else if (kind == "sweep")
            study.request = sweep(study.view);
        else if (kind == "find")
            study.request = find();
        else if (kind == "uncertainty")
            study.request = m_several ? uncertainty() : scattering(m_root);
        else if (kind == "fragility")
            study.request = fragility();
        else if (kind == "chart")
            study.request = chart();
        else if (kind == "scenarios")
            study.request = scenarios(study.view);
        else if (kind == "compare")
            study.request = compare();
        else {
            if (const toml::node* found = m_root.node("kind", false))
                m_root.wrong(*found, "kind", KindsWanted);
            return false;
        }
        return true;
    }
    std::string file(Section& section, std::string_view key, std::string name) {
        if (const toml::node* found = section.node(key, false); found && !isRelative(name))
            section.wrong(*found, key, "a file name relative to the study, with \"/\",");
        return name;
    }

    /// The table of the kind; an empty one, after a fault, where it is missing.
    Section section(const char* name) { return sectionIn(m_root, name); }
    Section sectionIn(Section& in, const char* name) {
        static const toml::table none;
        const toml::node* found = in.node(name);
        if (found && !found->is_table()) in.wrong(*found, name, "a table");
        return {found && found->is_table() ? *found->as_table() : none, name, m_faults};
    }

    /// Calls visit(section) for every table of a list of them.
    template <typename Visit>
    void each(Section& in, const char* name, bool required, Visit&& visit) {
        const toml::node* found = in.node(name, required);
        if (!found) return;
        const toml::array* list = found->as_array();
        if (!list || !list->is_array_of_tables())
            return in.wrong(*found, name, "[[" + in.below() + name + "]]");
        for (const toml::node& one : *list) {
            Section section(*one.as_table(), name, m_faults);
            visit(section);
            section.finish();
        }
    }

    /// What varies stands below the kind in a file of several, else at its top.
    Section& varying(Section& own) { return m_several ? own : m_root; }

    TornadoRequest tornado(StudyView& view) {
        Section own = section("tornado");
        TornadoRequest request{own.outcome("output"), {}};
        const std::string picture = own.text("picture", false);
        view.spider = picture == "spider";
        if (const toml::node* found = own.node("picture", false);
            found && !view.spider && picture != "tornado")
            own.wrong(*found, "picture", "\"tornado\" or \"spider\"");
        each(varying(own), "vary", false, [&](Section& vary) {
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
        own.finish();
        return request;
    }
    SweepRequest sweep(StudyView& view) {
        Section own = section("sweep");
        SweepRequest request;
        request.outcomes = own.outcomes();
        request.linked = own.flag("linked");
        if (const toml::node* found = own.node("line_at", false)) {
            view.level = Section::numberIn(*found);
            view.suggested = found->value_exact<std::string>() == "suggested";
            if (!view.level && !view.suggested)
                own.wrong(*found, "line_at", "a number or \"suggested\"");
        }
        each(varying(own), "vary", true, [&](Section& vary) {
            const Variable variable = vary.variable("input");
            request.axes.push_back({variable, vary.values()});
        });
        own.finish();
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
    ScenarioSet scenarios(StudyView& view) {
        Section own = section("scenarios");
        ScenarioSet set;
        set.outcomes = own.outcomes();
        for (const std::string& name : own.texts("columns", false)) {
            const auto id = project::fieldNamed(name);
            if (id && project::nameOf(*id) == name)
                view.columns.push_back(*id);
            else
                own.wrong(*own.node("columns", false), "columns", "names of inputs");
        }
        own.finish();
        return set;
    }
    std::vector<Scenario> scenarioList(const std::vector<std::string>& kinds) {
        const auto has = [&](std::string_view kind) {
            return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
        };
        std::vector<Scenario> all;
        if (!has("scenarios") && !has("compare")) return all;
        each(m_root, "scenario", !has("compare"), [&](Section& one) {
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
            if (all.size() < MostScenarios)
                all.push_back(std::move(scenario));
            else if (const toml::node* found = m_root.node("scenario", false))
                m_root.wrong(*found, "scenario", "no more than 10,000 of them");
        });
        return all;
    }
    CompareSet compare() {
        Section own = section("compare");
        CompareSet set;
        set.with = own.texts("with", true);
        for (const std::string& name : set.with)
            file(own, "with", name);
        set.onlyDifferences = own.flag("only_differences");
        set.base = own.text("base", false);
        set.scenarios = own.flag("scenarios");
        own.finish();
        return set;
    }

    /// How the inputs of a table scatter; nothing where it says no more than which.
    std::optional<Scatter> scatter(Section& vary) {
        Scatter scatter;
        const std::string shape = vary.text("shape", false);
        if (const auto known = shapeNamed(shape))
            scatter.shape = *known;
        else if (const toml::node* found = vary.node("shape", false)) {
            std::string names;
            for (const std::string_view name : shapeNames())
                names.append(names.empty() ? "" : ", ").append(name);
            vary.wrong(*found, "shape", "one of " + names);
        }
        scatter.mean = vary.numberIfAny("mean");
        scatter.sd = vary.numberIfAny("sd");
        scatter.cov = vary.numberIfAny("cov");
        for (const auto& [key, form] : {std::pair("values", Scatter::Points::Values),
                                        std::pair("relative", Scatter::Points::Offsets),
                                        std::pair("percent", Scatter::Points::Percent)}) {
            std::vector<double> points = vary.numbersIfAny(key);
            if (points.empty()) continue;
            if (!scatter.points.empty())
                vary.wrong(*vary.node(key), key, "only one of values, relative and percent");
            scatter.points = std::move(points);
            scatter.pointsAre = form;
        }
        scatter.weights = vary.numbersIfAny("weights");
        scatter.shapes = vary.numbersIfAny("shapes");
        scatter.scale = vary.numberIfAny("scale");
        scatter.low = vary.numberIfAny("low");
        scatter.high = vary.numberIfAny("high");
        scatter.cutSd = vary.numberIfAny("cut_sd");
        if (!shape.empty()) return scatter;
        if (const toml::node* found = vary.node("input", false); found && scatter != Scatter())
            vary.wrong(*found, "input", "a shape for its numbers");
        return std::nullopt;
    }
    AskedUncertainty uncertainty() {
        Section own = section("uncertainty");
        AskedUncertainty asked = scattering(own);
        own.finish();
        return asked;
    }
    AskedUncertainty scattering(Section& own) {
        AskedUncertainty asked;
        each(own, "vary", false, [&](Section& vary) {
            ScatteredInput input{vary.variables("input"), {}, vary.flag("shared")};
            input.scatter = scatter(vary);
            asked.vary.push_back(std::move(input));
        });
        each(own, "correlate", false, [&](Section& pair) {
            const std::vector<std::string> names = pair.texts("inputs", true);
            const double rank = pair.number("rank");
            if (names.size() == 2)
                asked.correlated.push_back({pair.variableOf("inputs", names[0]),
                                            pair.variableOf("inputs", names[1]), rank});
            else if (const toml::node* found = pair.node("inputs", false))
                pair.wrong(*found, "inputs", "two inputs");
        });
        each(own, "limit", false, [&](Section& limit) {
            const Outcome outcome = limit.outcome("output");
            const auto targets = limit.targets(outcome, false);
            if (!targets.values.empty())
                asked.limits.push_back({outcome, targets.sense, targets.values.front()});
        });
        if (!own.node("sampling", false)) return asked;
        Section sampling = sectionIn(own, "sampling");
        const std::string method = sampling.text("method", false);
        const toml::node* named = sampling.node("method", false);
        if (method == "latin-hypercube")
            asked.plan.method = sampling::Method::LatinHypercube;
        else if (method == "monte-carlo")
            asked.plan.method = sampling::Method::MonteCarlo;
        else if (named && method != "sobol")
            sampling.wrong(*named, "method", "\"sobol\", \"latin-hypercube\" or \"monte-carlo\"");
        asked.plan.replicates = sampling.whole("replicates", asked.plan.replicates, 1, 1024);
        const std::uint64_t per = sampling.whole("per_replicate", asked.plan.perReplicate(), 1,
                                                 std::uint64_t{1} << sampling::MostSobolBits);
        asked.plan.bits = std::countr_zero(per);
        if (!std::has_single_bit(per))
            sampling.wrong(*sampling.node("per_replicate"), "per_replicate",
                           "a power of 2 such as 8192");
        asked.halfWidth = sampling.numberIfAny("stop_at_half_width");
        asked.indices = sampling.flag("indices");
        asked.plan.seed =
            sampling.whole("seed", asked.plan.seed, 0, std::numeric_limits<std::int64_t>::max());
        sampling.finish();
        return asked;
    }
    AskedFragility fragility() {
        Section own = section("fragility");
        AskedFragility asked{{}, own.variable("over"), own.values(), {}, {}};
        asked.weights = own.numbersIfAny("weights");
        asked.share = own.numberIfAny("share");
        asked.scatter = scattering(varying(own));
        own.finish();
        return asked;
    }

    Section m_root;
    Faults& m_faults;
    bool m_several = false;
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

Result<std::vector<Study>> readStudies(std::string_view bytes, const std::string& name) {
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
    std::optional<std::vector<Study>> studies;
    try {
        const toml::table root = toml::parse(ascii.text);
        studies = StudyReader(root, faults).read();
    } catch (const toml::parse_error& fault) {
        return Fault{excerpt(asUtf8(fault.description()), 160),
                     name + ", line " + std::to_string(fault.source().begin.line)};
    } catch (const BrokenToml&) {
        return Fault{"is no name of a table or a key",
                     name + ", line " + std::to_string(brokenLine(lines))};
    }
    if (!studies) return faults.first(name);
    std::vector<std::string> comments;
    for (std::size_t i = 1; i < lines.size() && lines[i].starts_with('#'); ++i) {
        std::string_view comment = lines[i].substr(1);
        if (comment.starts_with(' ')) comment.remove_prefix(1);
        while (comment.ends_with(' ') || comment.ends_with('\t'))
            comment.remove_suffix(1);
        comments.emplace_back(comment);
    }
    for (Study& study : *studies)
        study.comments = comments;
    return std::move(*studies);
}

Result<Study> readStudyText(std::string_view bytes, const std::string& name) {
    auto studies = readStudies(bytes, name);
    if (!studies) return studies.fault();
    if (studies->size() > 1)
        return Fault{"has " + std::to_string(studies->size()) + " studies; one is wanted here",
                     name};
    return std::move(studies->front());
}

} // namespace telvo::study
