// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/file/StudySettings.h"

#include "base/files.h"
#include "base/numbers.h"
#include "project/units.h"
#include "study/output/factors.h"
#include "study/questions/compare.h"

#include <algorithm>
#include <filesystem>

namespace telvo::study {

namespace {

std::string relativeTo(const std::string& folder, const std::string& path) {
    const auto relative = pathFromUtf8(path).lexically_normal().lexically_relative(
        pathFromUtf8(folder).lexically_normal());
    return relative.empty() ? path : utf8FromPath(relative.generic_string());
}

std::vector<Outcome> outcomesNamed(const std::vector<std::string>& names) {
    std::vector<Outcome> all;
    for (const std::string& name : names)
        if (auto outcome = Outcome::named(name)) all.push_back(std::move(*outcome));
    return all;
}

std::string valuesText(const std::vector<double>& values) {
    if (auto steps = stepsText(values)) return *steps;
    std::string text;
    for (const double value : values)
        text += (text.empty() ? "" : ", ") + generalNumber(value);
    return text;
}

/// Asks for what the scenarios page shows: the factors of the case, then what the user added.
std::vector<Outcome> shownOutcomes(const std::vector<std::string>& added,
                                   const project::ProjectCase& base) {
    if (added.empty()) return {};
    std::vector<Outcome> all = factorsOf(base);
    for (Outcome& one : outcomesNamed(added))
        if (std::none_of(all.begin(), all.end(),
                         [&](const Outcome& known) { return known.name() == one.name(); }))
            all.push_back(std::move(one));
    return all;
}

/// Numbers of settings on their way to the other unit system.
class Conversion {
  public:
    explicit Conversion(std::int16_t units) : m_toEnglish(units != project::English) {}

    double value(const Variable& variable, double x) const { return value(variable.kind(), x); }
    double value(project::FieldKind kind, double x) const {
        const double factor = englishOf(kind);
        return factor == 1 ? x : roundHalfEven2(m_toEnglish ? x * factor : x / factor);
    }
    /// To more digits: of results, and of what two decimals would take away.
    template <typename Kind>
    double finely(Kind kind, double x) const {
        const double factor = englishOf(kind);
        return factor == 1 ? x : rounded(m_toEnglish ? x * factor : x / factor);
    }
    double value(const Outcome& outcome, double x) const { return finely(outcome.kind(), x); }
    double step(const Variable& variable, double x) const {
        const double coarse = value(variable, x);
        return coarse != 0 ? coarse : finely(variable.kind(), x);
    }
    Span span(const Variable& variable, const Span& in) const {
        return {value(variable, in.low), value(variable, in.high)};
    }
    std::vector<double> values(const Variable& variable, const std::vector<double>& all) const {
        if (all.size() > 2 && stepsText(all)) {
            const double low = value(variable, all.front());
            const double by = step(variable, all[1] - all[0]);
            const double high = rounded(low + static_cast<double>(all.size() - 1) * by);
            const auto steps = parseValues(generalNumber(low) + ":" + generalNumber(high) + ":" +
                                           generalNumber(by));
            if (steps && steps->size() == all.size()) return *steps;
        }
        std::vector<double> made;
        for (const double x : all)
            made.push_back(value(variable, x));
        return made;
    }

    /// Numbers with a unit of every distribution and limit; shares and ratios stay.
    void scatter(AskedUncertainty& asked) const {
        for (ScatteredInput& input : asked.vary) {
            if (!input.scatter) continue;
            Scatter& scatter = *input.scatter;
            const auto kind = input.variables.front().kind();
            for (std::optional<double>* one :
                 {&scatter.mean, &scatter.sd, &scatter.scale, &scatter.low, &scatter.high})
                if (*one) **one = finely(kind, **one);
            if (scatter.pointsAre == Scatter::Points::Percent) continue;
            for (double& point : scatter.points)
                point = finely(kind, point);
        }
        for (Criterion& limit : asked.limits)
            if (limit.target) limit.target = value(limit.outcome, *limit.target);
    }

  private:
    static double rounded(double x) { return leadingValue(generalNumber(x, 8)); }
    bool m_toEnglish;
};

} // namespace

std::vector<Study> studiesOf(const StudySettings& settings, const StudyPlace& place) {
    std::vector<Study> studies;
    const auto add = [&](Study::Request request, StudyView view = {}) {
        studies.push_back(
            {{},
             place.caseFile,
             place.base.Units == project::English ? project::English : project::Metric,
             place.RoundTELVOSF,
             std::move(request),
             std::move(view)});
    };
    if (!settings.ranges.empty() || settings.tornadoOutcome || settings.spider) {
        const auto chosen =
            settings.tornadoOutcome ? Outcome::named(*settings.tornadoOutcome) : std::nullopt;
        add(TornadoRequest{chosen.value_or(defaultOutcome(place.base)), settings.ranges},
            {.spider = settings.spider});
    }
    if (settings.table) {
        SweepRequest request{{}, settings.table->linked, outcomesNamed(settings.table->outcomes)};
        for (const TableRequest::Axis& axis : settings.table->axes)
            if (auto values = parseValues(axis.values))
                request.axes.push_back({axis.variable, std::move(*values)});
        if (request.axes.size() == settings.table->axes.size())
            add(std::move(request),
                {.level = settings.table->level, .suggested = settings.table->suggested});
    }
    if (settings.find) add(*settings.find);
    if (settings.chart) add(*settings.chart);
    if (!settings.scenarios.empty())
        add(ScenarioSet{settings.scenarios, shownOutcomes(settings.scenarioOutcomes, place.base)},
            {.columns = settings.scenarioInputs});
    if (!settings.compareFiles.empty() || settings.compareAll || !settings.compareScenarios ||
        !settings.compareBase.empty()) {
        CompareSet set{{},
                       !settings.compareAll,
                       settings.compareBase,
                       settings.compareScenarios,
                       settings.compareScenarios ? settings.scenarios : std::vector<Scenario>()};
        for (const std::string& path : settings.compareFiles)
            set.with.push_back(relativeTo(place.folder, path));
        add(std::move(set));
    }
    if (settings.uncertainty) add(*settings.uncertainty);
    if (settings.shareCurve) {
        AskedFragility asked = *settings.shareCurve;
        const AskedUncertainty whole = settings.uncertainty.value_or(asked.scatter);
        asked.scatter = scatterWithout(whole, asked.over);
        asked.scatter.plan.bits = std::min(asked.scatter.plan.bits, MostShareCurveBits);
        // Without any input left it would ask for the usual ones, which nobody did.
        if (whole.vary.empty() || !asked.scatter.vary.empty()) add(std::move(asked));
    }
    return studies;
}

AskedUncertainty scatterWithout(AskedUncertainty asked, const Variable& over) {
    std::erase_if(asked.vary, [&](const ScatteredInput& input) {
        return std::find(input.variables.begin(), input.variables.end(), over) !=
               input.variables.end();
    });
    std::erase_if(asked.correlated, [&](const AskedUncertainty::Together& pair) {
        return pair.first == over || pair.second == over;
    });
    return asked;
}

void takeStudy(StudySettings& settings, const Study& study, const std::string& folder) {
    if (const auto* tornado = std::get_if<TornadoRequest>(&study.request)) {
        settings.ranges = tornado->inputs;
        settings.tornadoOutcome = tornado->outcome.name();
        settings.spider = study.view.spider;
    } else if (const auto* sweep = std::get_if<SweepRequest>(&study.request)) {
        TableRequest table{{}, sweep->linked, {}, study.view.level, study.view.suggested};
        for (const SweepAxis& axis : sweep->axes)
            table.axes.push_back({axis.variable, valuesText(axis.values)});
        for (const Outcome& outcome : sweep->outcomes)
            table.outcomes.push_back(outcome.name());
        settings.table = std::move(table);
    } else if (const auto* find = std::get_if<FindRequest>(&study.request)) {
        settings.find = *find;
    } else if (const auto* chart = std::get_if<DesignChartRequest>(&study.request)) {
        settings.chart = *chart;
    } else if (const auto* set = std::get_if<ScenarioSet>(&study.request)) {
        settings.scenarios = set->list;
        settings.scenarioInputs = study.view.columns;
        settings.scenarioOutcomes.clear();
        for (const Outcome& outcome : set->outcomes)
            settings.scenarioOutcomes.push_back(outcome.name());
    } else if (const auto* compare = std::get_if<CompareSet>(&study.request)) {
        settings.compareFiles.clear();
        for (const std::string& file : compare->with)
            settings.compareFiles.push_back(
                utf8FromPath((pathFromUtf8(folder) / pathFromUtf8(file)).lexically_normal()));
        settings.compareBase = compare->base;
        settings.compareScenarios = compare->scenarios;
        settings.compareAll = !compare->onlyDifferences;
        if (compare->scenarios) settings.scenarios = compare->list;
    } else if (const auto* uncertainty = std::get_if<AskedUncertainty>(&study.request)) {
        settings.uncertainty = *uncertainty;
    } else if (const auto* curve = std::get_if<AskedFragility>(&study.request)) {
        settings.shareCurve = *curve;
    }
}

StudySettings convertedSettings(const StudySettings& settings, std::int16_t units) {
    const Conversion to(units);
    StudySettings made = settings;
    for (RangedInput& one : made.ranges) {
        if (one.range.form == Range::Form::Percent) continue;
        const Span fine{to.finely(one.variable.kind(), one.range.low),
                        to.finely(one.variable.kind(), one.range.high)};
        const Span coarse = to.span(one.variable, {one.range.low, one.range.high});
        const Span& taken = coarse.low < coarse.high ? coarse : fine;
        one.range.low = taken.low;
        one.range.high = taken.high;
    }
    for (Scenario& scenario : made.scenarios)
        for (auto& [id, value] : scenario.set)
            value = to.value(project::kindOf(id), value);
    if (made.find) {
        FindRequest& find = *made.find;
        find.in = to.span(find.variable, find.in);
        find.step = to.step(find.variable, find.step);
        if (find.criterion.target)
            find.criterion.target = to.value(find.criterion.outcome, *find.criterion.target);
    }
    if (made.table) {
        for (TableRequest::Axis& axis : made.table->axes)
            if (const auto values = parseValues(axis.values))
                axis.values = valuesText(to.values(axis.variable, *values));
        const auto first = outcomesNamed(made.table->outcomes);
        if (made.table->level && !first.empty())
            made.table->level = to.value(first.front(), *made.table->level);
    }
    if (made.chart) {
        DesignChartRequest& chart = *made.chart;
        chart.in = to.span(chart.required, chart.in);
        chart.step = to.step(chart.required, chart.step);
        chart.values = to.values(chart.over, chart.values);
        for (auto& target : chart.targets)
            if (target) target = to.value(chart.outcome, *target);
    }
    if (made.uncertainty) to.scatter(*made.uncertainty);
    if (made.shareCurve) {
        made.shareCurve->values = to.values(made.shareCurve->over, made.shareCurve->values);
        to.scatter(made.shareCurve->scatter);
    }
    return made;
}

} // namespace telvo::study
