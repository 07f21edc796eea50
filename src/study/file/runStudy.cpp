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
        return outputOf(std::move(*made), whole, base().Units);
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
        return outputOf(std::move(*made), request, base().Units);
    }
    Result<StudyOutput> operator()(const DesignChartRequest& request) const {
        auto made = designChart(base(), request, study.RoundTELVOSF);
        if (!made) return made.fault();
        return outputOf(std::move(*made), request, base().Units);
    }
    Result<StudyOutput> operator()(const ScenarioSet& set) const {
        const auto outcomes = set.outcomes.empty() ? factorsOf(base()) : set.outcomes;
        auto made = scenarios(base(), set.list, outcomes, study.RoundTELVOSF);
        if (!made) return made.fault();
        return outputOf(std::move(*made), outcomes, base().Units);
    }
    Result<StudyOutput> operator()(const CompareSet& set) const {
        auto made = compare({cases.begin(), cases.end()}, 0, study.RoundTELVOSF);
        if (!made) return made.fault();
        return outputOf(std::move(*made), set.onlyDifferences);
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

} // namespace

std::vector<std::string> filesOf(const Study& study) {
    std::vector<std::string> files{study.caseFile};
    if (const auto* compare = std::get_if<CompareSet>(&study.request))
        files.insert(files.end(), compare->with.begin(), compare->with.end());
    return files;
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
        study.request = CompareSet{{study.caseFile}, false};
    else
        return Fault{"kind: tornado, sweep, find, chart, scenarios or compare is wanted",
                     std::string(kind)};
    return study;
}

} // namespace telvo::study
