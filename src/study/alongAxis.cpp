// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/alongAxis.h"

#include <algorithm>
#include <cmath>

namespace telvo::study {

namespace {

/// Smallest jump, as a part of the value: well above the single precision of the cumulative loads,
/// far below what a report shows.
constexpr double SmallestJump = 1e-5;
/// More switches within one interval than any rounding makes at depths that are mined.
constexpr int MostSwitches = 64;

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

AxisSample locatedAt(const Response& response, double x) {
    return {response.at(x), false, true};
}

/// Brings both samples next to the first step of a rounding between them, at a small part of the
/// cost of runs; where another rule switches before that step, `after` goes only as far as there.
void towardsStep(const Response& response, AxisSample& before, AxisSample& after,
                 double resolution) {
    double low = before.x, high = after.x;
    for (std::size_t rounding = 0; rounding < Response::Roundings; ++rounding) {
        const double value = response.rounded(rounding, before.x);
        if (response.rounded(rounding, high) == value) continue;
        low = before.x;
        bisect(low, high, resolution, [&](double x) {
            const bool left = response.rounded(rounding, x) == value;
            (left ? low : high) = x;
            return left;
        });
    }
    if (high == after.x && low == before.x) return; // no step, or nothing between
    const auto located = [&](double x, const AxisSample& known) {
        return x == known.x ? known : locatedAt(response, x);
    };
    const AxisSample left = located(low, before);
    if (response.differ(before, left)) {
        after = left;
    } else {
        after = located(high, after);
        before = left;
    }
}

/// Appends what lies between the last sample and `right`, where a rule switches, and `right`.
void walkSwitches(const Response& response, std::vector<AxisSample>& samples,
                  const AxisSample& right, double resolution) {
    for (int n = 0; n < MostSwitches && response.differ(samples.back(), right); ++n) {
        AxisSample before = samples.back();
        AxisSample after = right;
        towardsStep(response, before, after, resolution);
        bisect(before.x, after.x, resolution, [&](double x) {
            const AxisSample middle = locatedAt(response, x);
            const bool left = !response.differ(middle, before);
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

constexpr double EdgeOfAxis = 1e-6; // a gap that ends this close to the axis' end is none

double middleOf(const Sample& a, const Sample& b) {
    return a.x + (b.x - a.x) / 2;
}

/// Why there is a gap whose edge is sample i: as told inside of it, where figures are larger than
/// rounding.
std::string gapText(const Response& response, const std::vector<AxisSample>& samples,
                    std::size_t i) {
    for (const std::size_t inside : {i + 1, i - 1}) // before 0 is beyond the last
        if (inside < samples.size() && !samples[inside].computed)
            if (std::string why = response.gapAt(middleOf(samples[i], samples[inside]));
                !why.empty())
                return why;
    return response.gapAt(samples[i].x);
}

} // namespace

std::string jumpText(const Response& response, const Sample& before, const Sample& after,
                     std::size_t value) {
    constexpr double boundless = 1000; // on either side of a zero of the load
    const double yBefore = before.values[value], yAfter = after.values[value];
    if ((yBefore < 0) != (yAfter < 0) && std::min(std::abs(yBefore), std::abs(yAfter)) > boundless)
        return "The load passes through zero, where the factor has no bound";
    return response.switchText(before, after, value);
}

CutCurve cutAtJumps(const Response& response, const std::vector<AxisSample>& samples,
                    std::size_t value) {
    CutCurve cut;
    const double low = samples.front().x, high = samples.back().x;
    bool open = false; // the last stretch goes on
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const AxisSample& here = samples[i];
        const AxisSample* before = i > 0 ? &samples[i - 1] : nullptr;
        if (before && before->computed != here.computed) {
            open = false;
            const double x = middleOf(*before, here), edge = EdgeOfAxis * (high - low);
            if (x - low >= edge && high - x >= edge) {
                Jump jump{x, {}, {}, gapText(response, samples, before->computed ? i : i - 1)};
                if (before->computed) jump.before = before->values[value];
                if (here.computed) jump.after = here.values[value];
                cut.jumps.push_back(std::move(jump));
            }
        }
        if (!here.computed) continue;
        const double y = here.values[value];
        if (before && before->computed && before->switchesAfter &&
            isJump(before->values[value], y)) {
            cut.jumps.push_back({middleOf(*before, here), before->values[value], y,
                                 jumpText(response, *before, here, value)});
            open = false;
        }
        if (!open) cut.stretches.emplace_back();
        open = true;
        cut.stretches.back().push_back({here.x, y});
    }
    return cut;
}

bool isJump(double before, double after) {
    return std::abs(after - before) > SmallestJump * std::max(std::abs(before), std::abs(after));
}

std::vector<AxisSample> alongAxis(const Response& response, const std::vector<double>& grid,
                                  double resolution) {
    std::vector<AxisSample> samples{{response.at(grid.front())}};
    samples.reserve(4 * grid.size());
    for (std::size_t i = 1; i < grid.size(); ++i)
        walkSwitches(response, samples, {response.at(grid[i])}, resolution);
    return samples;
}

} // namespace telvo::study
