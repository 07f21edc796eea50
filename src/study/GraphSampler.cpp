// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/GraphSampler.h"

#include "engine/driver.h"
#include "project/automatic.h"
#include "project/inputFields.h"
#include "report/sections.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace telvo::study {

using namespace engine;

namespace {

constexpr int Intervals = 100; // of the axis, so that there are 101 points
/// Width to which a switch is located, as a part of the axis. Finer than the position asks for, so
/// that the slope of a curve across it is nothing beside a jump.
constexpr double Resolution = 1e-8;
/// Smallest jump, as a part of the factor: well above the single precision of the cumulative loads,
/// far below what a report shows.
constexpr double SmallestJump = 1e-5;
/// More switches within one interval than any rounding makes at depths that are mined.
constexpr int MostSwitches = 64;

bool isBarrier(GraphKind kind) {
    return kind == GraphKind::FirstBarrier || kind == GraphKind::SecondBarrier;
}

int sideOf(GraphKind kind) {
    return kind == GraphKind::FirstBarrier ? FirstSide : SecondSide;
}

/// Bisects until left and right are as close as `resolution`; goesLeft(middle) tells whether the
/// middle takes the place of the left sample.
template <typename Sampler, typename GoesLeft>
void bisect(const Sampler& sampler, Sample& left, Sample& right, double resolution,
            GoesLeft goesLeft) {
    while (right.x - left.x > resolution) {
        const double x = left.x + (right.x - left.x) / 2;
        if (x <= left.x || x >= right.x) return;
        Sample middle = sampler.at(x);
        middle.located = true;
        (goesLeft(middle) ? left : right) = std::move(middle);
    }
}

} // namespace

namespace {

project::FieldId variedField(GraphKind kind) {
    using project::Field;
    switch (kind) {
    case GraphKind::EntryHeight:
        return Field::EntryHeight;
    case GraphKind::DepthCover:
        return Field::DepthCover;
    case GraphKind::XcutAngle:
        return Field::XcutAngle;
    case GraphKind::XcutSpacing:
        return Field::XcutSpacing;
    case GraphKind::FirstBarrier:
        return Field::BarrierFirstGob;
    case GraphKind::SecondBarrier:
        break;
    }
    return Field::BarrierSecondGob;
}

} // namespace

double parameterOf(const project::ProjectInput& input, GraphKind kind) {
    return get(input, variedField(kind));
}

project::ProjectInput variedInput(project::ProjectInput input, std::int16_t units, GraphKind kind,
                                  double x) {
    return withVaried(std::move(input), units, variedField(kind), x);
}

bool isJump(double before, double after) {
    return std::abs(after - before) > SmallestJump * std::max(std::abs(before), std::abs(after));
}

GraphSampler::GraphSampler(const project::ProjectCase& current, GraphKind kind)
    : m_input(current.Input), m_units(current.Units), m_kind(kind) {}

Sample GraphSampler::at(double x) const {
    // The analysis would take such pillars as having no strength; the parameter form refuses them.
    if (m_kind == GraphKind::XcutSpacing && x <= m_input.EntryWidth) {
        Sample sample;
        sample.x = x;
        sample.gap = "The crosscut spacing does not exceed the entry width";
        return sample;
    }
    return run(variedInput(m_input, m_units, m_kind, x), x);
}

Sample GraphSampler::own() const {
    return run(m_input, parameterOf(m_input, m_kind));
}

int GraphSampler::lastPass() const {
    project::ProjectCase current;
    current.Input = m_input;
    AnalysisResults results;
    results.AnalysisCase = analysisCase(m_input.Anal, DevelopmentLoad);
    return report::lastPass({current, results, {}, {}});
}

Sample GraphSampler::run(const project::ProjectInput& input, double x) const {
    Sample sample;
    sample.x = x;
    if (isBarrier(m_kind) && parameterOf(input, m_kind) == 0) {
        sample.gap = "There is no barrier";
        return sample;
    }
    const auto prepared = PrepareAnalysis(input, m_units);
    if (const auto* refusal = std::get_if<Refusal>(&prepared)) {
        sample.gap = refusal->message;
        return sample;
    }
    const auto& in = std::get<WorkingInputs>(prepared);
    const auto results = ComputeAnalysis(in);
    if (!results) {
        sample.gap = faultText(results.fault());
        return sample;
    }
    sample.factors.emplace();
    for (const int p : {Development, Retreat})
        (*sample.factors)[p] =
            isBarrier(m_kind) ? results->BarrierSF[p][sideOf(m_kind)] : results->TELVOSF[p];
    sample.regime = Regime(in, *results);
    return sample;
}

/// Appends what lies between the last sample and `right`, where their regimes differ, and `right`.
void GraphSampler::walkSwitches(std::vector<Sample>& samples, Sample right,
                                double resolution) const {
    for (int n = 0; n < MostSwitches && samples.back().regime != right.regime; ++n) {
        Sample before = samples.back();
        Sample after = right;
        bisect(*this, before, after, resolution,
               [&](const Sample& middle) { return middle.regime == before.regime; });
        if (before.x > samples.back().x) samples.push_back(std::move(before));
        samples.back().switchesAfter = true;
        if (after.x >= right.x) break;
        samples.push_back(std::move(after));
    }
    samples.push_back(std::move(right));
}

/// Appends both sides of a jump that no switch explains between the last sample and `right`.
/// A jump lies between the middle and one of the ends, and so makes one half of the interval far
/// steeper than the other; a smooth curve does that only where it is nearly level.
void GraphSampler::findHiddenJump(std::vector<Sample>& samples, const Sample& right,
                                  double resolution) const {
    if (right.x - samples.back().x <= resolution) return;
    const Sample& left = samples.back();
    const Sample middle = at(left.x + (right.x - left.x) / 2);
    if (!middle.factors) return;
    for (const int p : {Development, Retreat}) {
        const double y = (*left.factors)[p];
        const double rise = (*right.factors)[p] - y;
        const double bow = (*middle.factors)[p] - (y + rise / 2);
        constexpr double noticeable = 10 * SmallestJump;
        if (!(std::abs(rise) > noticeable * std::abs(y)) || std::abs(bow) < std::abs(rise) / 4)
            continue;
        Sample before = left, after = right;
        bisect(*this, before, after, resolution, [&](const Sample& s) {
            if (!s.factors) return true;
            return std::abs((*after.factors)[p] - (*s.factors)[p]) >
                   std::abs((*s.factors)[p] - (*before.factors)[p]);
        });
        if (!before.factors || !isJump((*before.factors)[p], (*after.factors)[p])) continue;
        before.switchesAfter = true;
        if (before.x > samples.back().x)
            samples.push_back(std::move(before));
        else
            samples.back().switchesAfter = true;
        if (after.x < right.x) samples.push_back(std::move(after));
        return;
    }
}

std::vector<Sample> GraphSampler::along(double low, double high) const {
    const double own = parameterOf(m_input, m_kind);
    const double width = high - low;
    std::vector<double> grid;
    for (int i = 0; i <= Intervals; ++i)
        grid.push_back(i == Intervals ? high : low + width * i / Intervals);
    // A height or a depth of 0 has no factor, and those next to it have one without bound.
    if (!(low > 0) && (m_kind == GraphKind::EntryHeight || m_kind == GraphKind::DepthCover))
        grid.front() = low + width / Intervals / 2;
    if (own >= low && own <= high) {
        // A grid point that differs by rounding alone gives way to the case's own value.
        std::erase_if(grid, [&](double x) { return std::abs(x - own) < Resolution * width; });
        grid.insert(std::lower_bound(grid.begin(), grid.end(), own), own);
    }

    std::vector<Sample> samples{at(grid.front())};
    for (std::size_t i = 1; i < grid.size(); ++i)
        walkSwitches(samples, at(grid[i]), Resolution * width);

    std::vector<Sample> complete{samples.front()};
    for (std::size_t i = 1; i < samples.size(); ++i) {
        if (!complete.back().switchesAfter && complete.back().factors && samples[i].factors)
            findHiddenJump(complete, samples[i], Resolution * width);
        complete.push_back(std::move(samples[i]));
    }
    return complete;
}

} // namespace telvo::study
