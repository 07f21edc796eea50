// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/graph/GraphSampler.h"

#include "engine/questions.h"

#include <algorithm>
#include <cmath>

namespace telvo::study {

using namespace engine;

namespace {

constexpr int Intervals = 100; // of the axis, so that there are 101 points
/// Width to which a switch is located, as a part of the axis. Finer than the position asks for, so
/// that the slope of a curve across it is nothing beside a jump.
constexpr double Resolution = 1e-8;

std::vector<Outcome> factorsOf(int side) {
    return {Outcome::factor(Development, side), Outcome::factor(Retreat, side)};
}

} // namespace

GraphSampler::GraphSampler(const project::ProjectCase& current, GraphKind kind)
    : m_lastPass(engine::lastPass(analysisCase(current.Input.Anal, DevelopmentLoad),
                                  current.Input.ExtentActiveGob)),
      m_runner(current, rowOf(kind).varied, factorsOf(rowOf(kind).side), m_lastPass) {}

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
    return alongAxis(m_runner, grid, Resolution * width);
}

} // namespace telvo::study
