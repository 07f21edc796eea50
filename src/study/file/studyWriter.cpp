// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbers.h"
#include "study/file/Study.h"

#include <algorithm>
#include <array>
#include <utility>

namespace telvo::study {

namespace {

/// Fewer values than that are written one by one.
constexpr std::size_t FewestInSteps = 3;

std::string quotedToml(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string out = "\"";
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (code < 0x20 || code == 0x7F) {
            out += "\\u00";
            out += digits[code >> 4];
            out += digits[code & 15];
        } else {
            out += c;
        }
    }
    return out + '"';
}

std::string_view methodName(sampling::Method method) {
    switch (method) {
    case sampling::Method::LatinHypercube:
        return "latin-hypercube";
    case sampling::Method::MonteCarlo:
        return "monte-carlo";
    case sampling::Method::Sobol:
        break;
    }
    return "sobol";
}

/// The kinds in their order in a file.
constexpr std::string_view KindOrder[] = {"tornado",   "sweep",   "find",        "chart",
                                          "scenarios", "compare", "uncertainty", "fragility"};

/// Writes the studies of a file.
class StudyWriter {
  public:
    std::string take(const std::vector<Study>& all) {
        const Study& study = all.front();
        m_several = all.size() > 1;
        std::vector<const Study*> studies;
        for (const std::string_view kind : KindOrder)
            for (const Study& one : all)
                if (kindName(one.request) == kind) studies.push_back(&one);
        m_text = "# TELVO study " + std::to_string(StudyVersion) + "\n";
        for (const std::string& comment : study.comments)
            m_text += comment.empty() ? "#\n" : "# " + comment + "\n";
        m_text += "\n";
        if (m_several)
            list("kind", studies,
                 [](const Study* one) { return quotedToml(kindName(one->request)); });
        else
            text("kind", kindName(study.request));
        text("case", study.caseFile);
        text("units", study.units == project::English ? "english" : "metric");
        if (study.RoundTELVOSF != 0) number("round_sf", study.RoundTELVOSF);
        for (const Study* one : studies) {
            m_text += "\n";
            std::visit([&](const auto& request) { write(request, one->view); }, one->request);
        }
        return std::move(m_text);
    }

  private:
    void line(std::string_view key, std::string_view value) {
        m_text.append(key).append(" = ").append(value).append("\n");
    }
    void text(std::string_view key, std::string_view value) { line(key, quotedToml(value)); }
    void number(std::string_view key, double value) { line(key, generalNumber(value)); }
    void pair(std::string_view key, double low, double high) {
        line(key, "[" + generalNumber(low) + ", " + generalNumber(high) + "]");
    }
    template <typename List, typename Item>
    void list(std::string_view key, const List& values, Item&& item) {
        std::string out = "[";
        for (const auto& value : values) {
            if (out.size() > 1) out += ", ";
            out += item(value);
        }
        line(key, out + "]");
    }
    void outcomes(const std::vector<Outcome>& all) {
        if (!all.empty())
            list("outputs", all, [](const Outcome& one) { return quotedToml(one.name()); });
    }
    void values(const std::vector<double>& all) {
        if (const auto steps = stepsText(all)) return text("values", *steps);
        list("values", all, [](double value) { return generalNumber(value); });
    }
    void vary(std::string_view kind) {
        m_text.append("\n[[").append(m_several ? std::string(kind) + "." : "").append("vary]]\n");
    }
    static std::string targetOf(const std::optional<double>& target) {
        return target ? generalNumber(*target) : quotedToml("suggested");
    }
    static std::string_view senseKey(Criterion::Sense sense) {
        return sense == Criterion::Sense::AtLeast ? "at_least" : "at_most";
    }

    void write(const TornadoRequest& request, const StudyView& view) {
        m_text += "[tornado]\n";
        text("output", request.outcome.name());
        if (view.spider) text("picture", "spider");
        for (const RangedInput& input : request.inputs) {
            if (!input.edited) continue;
            vary("tornado");
            text("input", input.variable.name());
            const char* form = input.range.form == Range::Form::Percent  ? "percent"
                               : input.range.form == Range::Form::Offset ? "offset"
                                                                         : "range";
            pair(form, input.range.low, input.range.high);
        }
    }
    void write(const SweepRequest& request, const StudyView& view) {
        m_text += "[sweep]\n";
        outcomes(request.outcomes);
        if (request.linked) line("linked", "true");
        if (view.suggested || view.level)
            line("line_at", targetOf(view.suggested ? std::nullopt : view.level));
        for (const SweepAxis& axis : request.axes) {
            vary("sweep");
            text("input", axis.variable.name());
            values(axis.values);
        }
    }
    void write(const FindRequest& request, const StudyView&) {
        m_text += "[find]\n";
        text("input", request.variable.name());
        pair("in", request.in.low, request.in.high);
        number("step", request.step);
        text("output", request.criterion.outcome.name());
        line(senseKey(request.criterion.sense), targetOf(request.criterion.target));
    }
    void write(const DesignChartRequest& request, const StudyView&) {
        m_text += "[chart]\n";
        text("input", request.required.name());
        pair("in", request.in.low, request.in.high);
        number("step", request.step);
        text("over", request.over.name());
        values(request.values);
        text("output", request.outcome.name());
        list(senseKey(request.sense), request.targets, targetOf);
    }
    void write(const ScenarioSet& set, const StudyView& view) {
        m_text += "[scenarios]\n";
        outcomes(set.outcomes);
        if (!view.columns.empty())
            list("columns", view.columns,
                 [](project::FieldId id) { return quotedToml(project::nameOf(id)); });
        writeScenarios(set.list);
    }
    void write(const CompareSet& set, const StudyView&) {
        m_text += "[compare]\n";
        list("with", set.with, [](const std::string& file) { return quotedToml(file); });
        if (!set.base.empty()) text("base", set.base);
        if (set.scenarios) line("scenarios", "true");
        if (set.onlyDifferences) line("only_differences", "true");
        writeScenarios(set.list);
    }
    /// Scenarios stand once in a file, whoever uses them.
    void writeScenarios(const std::vector<Scenario>& all) {
        if (std::exchange(m_hasScenarios, true)) return;
        for (const Scenario& scenario : all) {
            m_text += "\n[[scenario]]\n";
            text("name", scenario.name);
            std::string inputs;
            for (const project::FieldId id : project::RecordNumbers) {
                const auto last = std::find_if(scenario.set.rbegin(), scenario.set.rend(),
                                               [&](const auto& one) { return one.first == id; });
                if (last == scenario.set.rend()) continue;
                const std::string name = project::nameOf(id);
                inputs += inputs.empty() ? " " : ", ";
                inputs += (name.find('.') == std::string::npos ? name : quotedToml(name)) + " = " +
                          generalNumber(last->second);
            }
            line("set", "{" + inputs + " }");
        }
    }

    void numbers(std::string_view key, const std::vector<double>& all) {
        if (!all.empty()) list(key, all, [](double value) { return generalNumber(value); });
    }
    void numberIfAny(std::string_view key, const std::optional<double>& value) {
        if (value) number(key, *value);
    }
    void write(const Scatter& scatter) {
        text("shape", shapeName(scatter.shape));
        numberIfAny("mean", scatter.mean);
        numberIfAny("sd", scatter.sd);
        numberIfAny("cov", scatter.cov);
        numbers(scatter.pointsAre == Scatter::Points::Values    ? "values"
                : scatter.pointsAre == Scatter::Points::Offsets ? "relative"
                                                                : "percent",
                scatter.points);
        numbers("weights", scatter.weights);
        numbers("shapes", scatter.shapes);
        numberIfAny("scale", scatter.scale);
        numberIfAny("low", scatter.low);
        numberIfAny("high", scatter.high);
        numberIfAny("cut_sd", scatter.cutSd);
    }
    /// Each of its parts begins with a blank line, but for the first one of a study.
    void write(const AskedUncertainty& asked, const StudyView&) {
        writeScatter(asked, "uncertainty", true);
    }
    void writeScatter(const AskedUncertainty& asked, std::string_view kind, bool first) {
        const auto begin = [&](std::string_view brackets, std::string_view name) {
            m_text.append(first ? "" : "\n").append(brackets.substr(0, brackets.size() / 2));
            if (m_several) m_text.append(kind).append(".");
            m_text.append(name).append(brackets.substr(brackets.size() / 2)).append("\n");
            first = false;
        };
        const auto names = [](const Variable& variable) { return quotedToml(variable.name()); };
        for (const ScatteredInput& input : asked.vary) {
            begin("[[]]", "vary");
            if (input.variables.size() == 1)
                text("input", input.variables.front().name());
            else
                list("input", input.variables, names);
            if (input.shared) line("shared", "true");
            if (input.scatter) write(*input.scatter);
        }
        for (const AskedUncertainty::Together& pair : asked.correlated) {
            begin("[[]]", "correlate");
            list("inputs", std::array{pair.first, pair.second}, names);
            number("rank", pair.rank);
        }
        for (const Criterion& limit : asked.limits) {
            begin("[[]]", "limit");
            text("output", limit.outcome.name());
            line(senseKey(limit.sense), targetOf(limit.target));
        }
        begin("[]", "sampling");
        text("method", methodName(asked.plan.method));
        number("replicates", static_cast<double>(asked.plan.replicates));
        number("per_replicate", static_cast<double>(asked.plan.perReplicate()));
        numberIfAny("stop_at_half_width", asked.halfWidth);
        if (asked.indices) line("indices", "true");
        line("seed", std::to_string(asked.plan.seed));
    }
    void write(const AskedFragility& asked, const StudyView&) {
        m_text += "[fragility]\n";
        text("over", asked.over.name());
        values(asked.values);
        numbers("weights", asked.weights);
        numberIfAny("share", asked.share);
        writeScatter(asked.scatter, "fragility", false);
    }

    bool m_several = false;
    bool m_hasScenarios = false;
    std::string m_text;
};

} // namespace

std::string_view kindName(const Study::Request& request) {
    return kindNames()[request.index()];
}

std::span<const std::string_view> kindNames() {
    static constexpr std::string_view names[] = {
        "sweep", "tornado", "find", "chart", "scenarios", "compare", "uncertainty", "fragility"};
    static_assert(std::size(names) == std::variant_size_v<Study::Request>);
    return names;
}

std::optional<std::string> stepsText(const std::vector<double>& all) {
    if (all.size() < FewestInSteps) return std::nullopt;
    // The step as it was given is among the differences of neighbors or a short text of them.
    const double step = (all.back() - all.front()) / static_cast<double>(all.size() - 1);
    for (const double each : {step, all[1] - all[0], *numberOf(generalNumber(step, 12))}) {
        std::string steps = generalNumber(all.front()) + ":" + generalNumber(all.back()) + ":" +
                            generalNumber(each);
        if (const auto read = parseValues(steps); read && *read == all) return steps;
    }
    return std::nullopt;
}

std::string studyText(const Study& study) {
    return StudyWriter().take({study});
}

std::string studiesText(const std::vector<Study>& studies) {
    return StudyWriter().take(studies);
}

bool sameStudy(const Study& a, const Study& b) {
    return studyText(a) == studyText(b);
}

} // namespace telvo::study
