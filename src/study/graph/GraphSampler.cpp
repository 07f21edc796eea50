// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/graph/GraphSampler.h"

#include "engine/questions.h"

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

std::vector<Outcome> factorsOf(int side) {
    return {Outcome::factor(Development, side), Outcome::factor(Retreat, side)};
}

/// Halves a stretch until its ends are as close as `resolution`; goesLeft(x) tells whether the
/// middle takes the place of the left end.
template <typename GoesLeft>
void bisect(double left, double right, double resolution, GoesLeft goesLeft) {
    while (right - left > resolution) {
        const double x = left + (right - left) / 2;
        if (x <= left || x >= right) return;
        (goesLeft(x) ? left : right) = x;
    }
}

} // namespace

bool isJump(double before, double after) {
    return std::abs(after - before) > SmallestJump * std::max(std::abs(before), std::abs(after));
}

GraphSampler::GraphSampler(const project::ProjectCase& current, GraphKind kind)
    : m_lastPass(engine::lastPass(analysisCase(current.Input.Anal, DevelopmentLoad),
                                  current.Input.ExtentActiveGob)),
      m_runner(current, rowOf(kind).varied, factorsOf(rowOf(kind).side), m_lastPass) {}

/// Brings both samples next to the first step of a rounding between them, at a small part of the
/// cost of runs; where another rule switches before that step, `after` goes only as far as there.
void GraphSampler::towardsStep(AxisSample& before, AxisSample& after, double resolution) const {
    double low = before.x, high = after.x;
    for (const auto rounded : {&Runner::breadthAt, &Runner::archFactorAt}) {
        const double value = (m_runner.*rounded)(before.x);
        if ((m_runner.*rounded)(high) == value) continue;
        low = before.x;
        bisect(low, high, resolution, [&](double x) {
            const bool left = (m_runner.*rounded)(x) == value;
            (left ? low : high) = x;
            return left;
        });
    }
    if (high == after.x && low == before.x) return; // no step, or nothing between
    const auto located = [&](double x, const AxisSample& known) {
        if (x == known.x) return known;
        AxisSample sample = at(x);
        sample.located = true;
        return sample;
    };
    const AxisSample left = located(low, before);
    if (m_runner.differ(before, left)) {
        after = left;
    } else {
        after = located(high, after);
        before = left;
    }
}

/// Appends what lies between the last sample and `right`, where a rule switches, and `right`.
void GraphSampler::walkSwitches(std::vector<AxisSample>& samples, const AxisSample& right,
                                double resolution) const {
    for (int n = 0; n < MostSwitches && m_runner.differ(samples.back(), right); ++n) {
        AxisSample before = samples.back();
        AxisSample after = right;
        towardsStep(before, after, resolution);
        bisect(before.x, after.x, resolution, [&](double x) {
            AxisSample middle = at(x);
            middle.located = true;
            const bool left = !m_runner.differ(middle, before);
            (left ? before : after) = middle;
            return left;
        });
        if (before.x > samples.back().x) samples.push_back(before);
        samples.back().switchesAfter = true;
        if (after.x >= right.x) break;
        samples.push_back(after);
    }
    samples.push_back(right);
}

std::vector<AxisSample> GraphSampler::along(double low, double high) const {
    const double own = m_runner.ownValue();
    const double width = high - low;
    std::vector<double> grid;
    for (int i = 0; i <= Intervals; ++i)
        grid.push_back(i == Intervals ? high : low + width * i / Intervals);
    // A height or a depth of 0 has no factor, and those next to it have one without bound.
    if (!(low > 0) && m_runner.variable().leavesZeroOut())
        grid.front() = low + width / Intervals / 2;
    if (own >= low && own <= high) {
        // A grid point that differs by rounding alone gives way to the case's own value.
        std::erase_if(grid, [&](double x) { return std::abs(x - own) < Resolution * width; });
        grid.insert(std::lower_bound(grid.begin(), grid.end(), own), own);
    }

    std::vector<AxisSample> samples{at(grid.front())};
    samples.reserve(4 * grid.size());
    for (std::size_t i = 1; i < grid.size(); ++i)
        walkSwitches(samples, at(grid[i]), Resolution * width);
    return samples;
}

} // namespace telvo::study
