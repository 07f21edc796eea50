// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/file/runStudy.h"

#include "criteria/limits.h"
#include "engine/driver.h"
#include "study/output/factors.h"
#include "study/questions/compare.h"

#include <algorithm>
#include <utility>

namespace telvo::study {

namespace {

std::string unitsName(std::int16_t units) {
    return units == project::English ? "English" : "metric";
}

/// Runs each kind of study.
struct Running {
    const Study& study;
    std::span<const NamedCase> cases;
    unsigned threads;
    const Progress& progress;

    const project::ProjectCase& base() const { return cases.front().second; }

    Result<StudyOutput> operator()(const TornadoRequest& request) const {
        TornadoRequest whole{request.outcome, defaultRanges(base())};
        for (const RangedInput& own : request.inputs) {
            const auto known =
                std::find_if(whole.inputs.begin(), whole.inputs.end(),
                             [&](const RangedInput& one) { return one.variable == own.variable; });
            if (known != whole.inputs.end())
                *known = own;
            else
                whole.inputs.push_back(own);
        }
        auto made = tornado(base(), whole);
        if (!made) return made.fault();
        return outputOf(std::move(*made), whole, base());
    }
    Result<StudyOutput> operator()(const SweepRequest& request) const {
        SweepRequest whole = request;
        if (whole.outcomes.empty()) whole.outcomes = factorsOf(base());
        auto made = sweep(base(), whole, study.RoundTELVOSF, threads, {}, progress);
        if (!made) return made.fault();
        return outputOf(std::move(*made));
    }
    Result<StudyOutput> operator()(const FindRequest& request) const {
        auto made = find(base(), request, study.RoundTELVOSF);
        if (!made) return made.fault();
        return outputOf(std::move(*made), request, base());
    }
    Result<StudyOutput> operator()(const DesignChartRequest& request) const {
        auto made = designChart(base(), request, study.RoundTELVOSF);
        if (!made) return made.fault();
        return outputOf(std::move(*made), request, base());
    }
    Result<StudyOutput> operator()(const ScenarioSet& set) const {
        const auto outcomes = set.outcomes.empty() ? factorsOf(base()) : set.outcomes;
        auto made = scenarios(base(), set.list, outcomes, study.RoundTELVOSF);
        if (!made) return made.fault();
        return outputOf(std::move(*made), outcomes, base());
    }
    Result<StudyOutput> operator()(const CompareSet& set) const {
        std::vector<NamedCase> all = comparedCases(set, cases);
        const auto base = std::find_if(all.begin(), all.end(),
                                       [&](const NamedCase& one) { return one.first == set.base; });
        const auto which = base == all.end() ? 0 : base - all.begin();
        auto made = compare(std::move(all), static_cast<std::size_t>(which), study.RoundTELVOSF);
        if (!made) return made.fault();
        return outputOf(std::move(*made), set.onlyDifferences);
    }
    Result<StudyOutput> operator()(const AskedUncertainty& asked) const {
        const auto request = requestOf(asked, base());
        if (!request) return request.fault();
        auto samples = drawSamples(base(), *request, {}, study.RoundTELVOSF, threads);
        if (!samples) return samples.fault();
        return outputOfSamples(study, base(), std::move(*samples), threads);
    }
    Result<StudyOutput> operator()(const AskedFragility& asked) const {
        const auto request = requestOf(asked.scatter, base(), asked.over);
        if (!request) return request.fault();
        auto made = shareCurve(base(), *request, asked, study.RoundTELVOSF, threads);
        if (!made) return made.fault();
        return outputOf(ShareCurveAnswer{base(), *request, asked, std::move(*made)});
    }
};

/// What a beginner would look for: the barrier beside a gob, else the height of the entries.
Variable soughtOf(const engine::Frame& frame) {
    if (frame.AnalysisCase == engine::TwoSideGobs) return project::Field::BarrierSecondGob;
    if (frame.AnalysisCase == engine::OneSideGob) return project::Field::BarrierFirstGob;
    return project::Field::XcutSpacing;
}

Outcome judgedOf(const engine::Frame& frame, const project::ProjectCase& current) {
    std::vector<Outcome> factors = factorsOf(current);
    if (frame.AnalysisCase >= engine::OneSideGob) return factors.back();
    return defaultOutcome(current);
}

/// All that is usual, written down so that it can be changed.
AskedUncertainty usualScatterOf(const project::ProjectCase& current) {
    AskedUncertainty asked;
    asked.vary = usualInputs(current);
    for (ScatteredInput& input : asked.vary)
        input.scatter = usualScatter(input.variables.front(), current.Units);
    asked.limits = usualLimits(current);
    return asked;
}

AskedFragility usualFragility(const project::ProjectCase& current, const Variable& over,
                              const Span& range) {
    constexpr int values = 21;
    constexpr double share = 0.05;
    AskedFragility asked{usualScatterOf(current), over, {}, {}, share};
    std::erase_if(asked.scatter.vary,
                  [&](const ScatteredInput& input) { return input.variables.front() == over; });
    asked.scatter.limits = {
        {judgedOf(engine::frameOf(current.Input, current.Units, engine::DevelopmentLoad), current),
         Criterion::Sense::AtLeast, criteria::SuggestedSF}};
    // A tenth of the samples: they are run at each value.
    asked.scatter.plan.bits = 10;
    for (int i = 0; i < values; ++i)
        asked.values.push_back(range.low + (range.high - range.low) * i / (values - 1));
    return asked;
}

} // namespace

const AskedUncertainty* samplingOf(const Study& study) {
    if (const auto* fragility = std::get_if<AskedFragility>(&study.request))
        return &fragility->scatter;
    return std::get_if<AskedUncertainty>(&study.request);
}

AskedUncertainty* samplingOf(Study& study) {
    return const_cast<AskedUncertainty*>(samplingOf(std::as_const(study)));
}

Result<StudyOutput> outputOfSamples(const Study& study, const project::ProjectCase& base,
                                    Samples samples, unsigned threads) {
    constexpr int mostBitsOfIndices = 10;
    const AskedUncertainty& asked = std::get<AskedUncertainty>(study.request);
    const auto request = requestOf(asked, base);
    if (!request) return request.fault();
    auto assessed = assess(base, *request, std::move(samples), study.RoundTELVOSF);
    if (!assessed) return assessed.fault();
    UncertaintyResult result{std::make_shared<const UncertaintyAnswer>(
                                 UncertaintyAnswer{base, *request, std::move(*assessed)}),
                             {},
                             {},
                             {}};
    for (std::size_t c = 0; c < request->criteria.size(); ++c) {
        result.importance.push_back(importance(result.answer->made, c, *request));
        if (!asked.indices) continue;
        if (!request->correlated.empty()) {
            auto effects = shapleyStudy(base, *request, c, study.RoundTELVOSF, threads);
            if (!effects) return effects.fault();
            result.shapley.push_back(std::move(*effects));
            continue;
        }
        UncertaintyRequest fewer = *request;
        fewer.plan.bits = std::min(fewer.plan.bits, mostBitsOfIndices);
        auto indices = sobolStudy(base, fewer, c, study.RoundTELVOSF, threads);
        if (!indices) return indices.fault();
        result.indices.push_back(std::move(*indices));
    }
    return outputOf(std::move(result));
}

StudyLook lookOf(const StudyView& view) {
    StudyLook look;
    look.spider = view.spider;
    if (view.level && !view.suggested) look.lines = {view.level};
    return look;
}

std::vector<std::string> filesOf(const Study& study) {
    std::vector<std::string> files{study.caseFile};
    if (const auto* compare = std::get_if<CompareSet>(&study.request))
        files.insert(files.end(), compare->with.begin(), compare->with.end());
    return files;
}

std::vector<NamedCase> comparedCases(const CompareSet& set, std::span<const NamedCase> cases) {
    std::vector<NamedCase> all{cases.front()};
    for (const Scenario& scenario : set.list)
        all.emplace_back(scenario.name, withScenario(cases.front().second, scenario));
    all.insert(all.end(), cases.begin() + 1, cases.end());
    return all;
}

Result<StudyOutput> runStudy(const Study& study, std::span<const NamedCase> cases, unsigned threads,
                             const Progress& progress) {
    const std::int16_t units =
        cases.front().second.Units == project::English ? project::English : project::Metric;
    if (units != study.units)
        return Fault{"The study is in " + unitsName(study.units) + " units, the case in " +
                         unitsName(units),
                     cases.front().first};
    return std::visit(Running{study, cases, threads, progress}, study.request);
}

Result<Study> newStudy(std::string_view kind, const project::ProjectCase& current,
                       std::string caseFile) {
    const engine::Frame frame =
        engine::frameOf(current.Input, current.Units, engine::DevelopmentLoad);
    const Variable depth = project::Field::DepthCover;
    const Variable sought = soughtOf(frame);
    const Span range = defaultSearchRange(current, sought);
    const double step = defaultStep(sought, current.Units);
    const double depthStep = current.Units == project::English ? 50 : 20;
    const double own = depth.of(current.Input);
    const double first = depthStep * static_cast<double>(static_cast<int>(own * 0.75 / depthStep));
    std::vector<double> depths;
    for (int i = 0; i < 11; ++i)
        depths.push_back(std::max(first, depthStep) + i * depthStep);
    const Outcome outcome = judgedOf(frame, current);

    Study study;
    study.caseFile = std::move(caseFile);
    study.units = current.Units == project::English ? project::English : project::Metric;
    if (kind == "tornado")
        study.request = TornadoRequest{defaultOutcome(current), {}};
    else if (kind == "sweep")
        study.request = SweepRequest{{{depth, depths}}, false, {}};
    else if (kind == "find")
        study.request = FindRequest{
            sought, {outcome, Criterion::Sense::AtLeast, criteria::SuggestedSF}, range, step};
    else if (kind == "chart")
        study.request =
            DesignChartRequest{sought,
                               range,
                               step,
                               depth,
                               depths,
                               outcome,
                               Criterion::Sense::AtLeast,
                               {criteria::LeastSF, criteria::SuggestedSF, criteria::StrongSF}};
    else if (kind == "scenarios")
        study.request = ScenarioSet{{{"deeper", {{project::Field::DepthCover, own * 1.25}}}}, {}};
    else if (kind == "compare")
        study.request = CompareSet{{study.caseFile}};
    else if (kind == "uncertainty")
        study.request = usualScatterOf(current);
    else if (kind == "fragility")
        study.request = usualFragility(current, sought, range);
    else
        return Fault{"kind: tornado, sweep, find, chart, scenarios, compare, uncertainty or "
                     "fragility is wanted",
                     std::string(kind)};
    return study;
}

} // namespace telvo::study
