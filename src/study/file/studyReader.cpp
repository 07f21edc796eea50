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
        else if (kind == "uncertainty")
            study.request = uncertainty();
        else if (kind == "fragility")
            study.request = fragility();
        else if (kind == "chart")
            study.request = chart();
        else if (kind == "scenarios")
            study.request = scenarios();
        else if (kind == "compare")
            study.request = compare();
        else if (const toml::node* found = m_root.node("kind", false))
            m_root.wrong(*found, "kind",
                         "\"tornado\", \"sweep\", \"find\", \"chart\", \"scenarios\", \"compare\", "
                         "\"uncertainty\" or \"fragility\"");
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
        AskedUncertainty asked;
        each("vary", false, [&](Section& vary) {
            ScatteredInput input{vary.variables("input"), {}, vary.flag("shared")};
            input.scatter = scatter(vary);
            asked.vary.push_back(std::move(input));
        });
        each("correlate", false, [&](Section& pair) {
            const std::vector<std::string> names = pair.texts("inputs", true);
            const double rank = pair.number("rank");
            if (names.size() == 2)
                asked.correlated.push_back({pair.variableOf("inputs", names[0]),
                                            pair.variableOf("inputs", names[1]), rank});
            else if (const toml::node* found = pair.node("inputs", false))
                pair.wrong(*found, "inputs", "two inputs");
        });
        each("limit", false, [&](Section& limit) {
            const Outcome outcome = limit.outcome("output");
            const auto targets = limit.targets(outcome, false);
            if (!targets.values.empty())
                asked.limits.push_back({outcome, targets.sense, targets.values.front()});
        });
        if (!m_root.node("sampling", false)) return asked;
        Section sampling = section("sampling");
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
        own.finish();
        asked.scatter = uncertainty();
        return asked;
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
