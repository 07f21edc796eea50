// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/questions/tornado.h"

#include "engine/driver.h"
#include "engine/questions.h"
#include "study/questions/searchGrid.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace telvo::study {

namespace {

constexpr int PointsInside = 41; // of a range, its ends included

std::vector<double> gridOf(const Span& range, double own) {
    std::vector<double> grid;
    for (int i = 0; i < PointsInside; ++i)
        grid.push_back(i == PointsInside - 1
                           ? range.high
                           : range.low + (range.high - range.low) * i / (PointsInside - 1));
    if (range.contains(own)) {
        const double near = (range.high - range.low) * SwitchResolution;
        std::erase_if(grid, [&](double x) {
            return std::abs(x - own) < near && x != range.low && x != range.high;
        });
        if (const auto next = std::lower_bound(grid.begin(), grid.end(), own);
            next == grid.end() || *next != own)
            grid.insert(next, own);
    }
    return grid;
}

TornadoBar barOf(const Runner& runner, const RangedInput& input, const project::ProjectInput& base,
                 Tally& tally) {
    TornadoBar bar{input.variable,
                   input.range.of(base, input.variable),
                   input.variable.of(base),
                   {},
                   {},
                   {},
                   {},
                   {},
                   {},
                   {},
                   0};
    if (!(bar.range.low < bar.range.high)) {
        bar.withoutEffect = "its range is empty";
        return bar;
    }
    const auto samples = alongAxis(runner, gridOf(bar.range, bar.own),
                                   SwitchResolution * (bar.range.high - bar.range.low));
    tally.runs += samples.size();
    for (const AxisSample& sample : samples) {
        if (!sample.computed) {
            if (sample.located) continue;
            ++bar.notComputed;
            tally.leaveOut(runner.gapAt(sample.x));
            continue;
        }
        const GraphPoint point{sample.x, sample.values[0]};
        if (!bar.least || point.y < bar.least->y) bar.least = point;
        if (!bar.most || point.y > bar.most->y) bar.most = point;
    }
    const auto valueAt = [](const AxisSample& sample) -> std::optional<double> {
        if (!sample.computed) return std::nullopt;
        return sample.values[0];
    };
    bar.atLow = valueAt(samples.front());
    bar.atHigh = valueAt(samples.back());
    CutCurve cut = cutAtJumps(runner, samples, 0);
    bar.curve = std::move(cut.stretches);
    bar.jumps = std::move(cut.jumps);
    if (!bar.least)
        bar.withoutEffect = "nothing in its range can be computed";
    else if (!(bar.swing() > 0))
        bar.withoutEffect = "this result does not depend on it";
    return bar;
}

/// Inputs for whose default values the limits of the warnings were found.
bool isCalibrated(const Variable& variable) {
    switch (variable.field()) {
    case project::Field::CoalStrength:
    case project::Field::AbutmentAngleActiveGob:
    case project::Field::AbutmentAngleFirstGob:
    case project::Field::AbutmentAngleSecondGob:
        return true;
    default:
        return false;
    }
}

/// What of the panel itself moves the outcome most stands first, whatever a change of the calibration
/// would do.
std::string headlineOf(const Tornado& tornado, const Outcome& outcome, std::int16_t units) {
    std::string text = outcome.label();
    if (tornado.own) text += " " + outcome.text(*tornado.own, units);
    text += ". ";
    const auto span = [&](const TornadoBar& bar) {
        return outcome.text(bar.least->y, units) + " to " + outcome.text(bar.most->y, units);
    };
    const auto widest = std::find_if(tornado.bars.begin(), tornado.bars.end(), [](const auto& bar) {
        return bar.withoutEffect.empty() && !isCalibrated(bar.variable);
    });
    if (widest == tornado.bars.end()) return text + "None of the inputs moves it";
    text += widest->variable.label() + " moves it most: " + span(*widest);
    const TornadoBar& first = tornado.bars.front();
    if (isCalibrated(first.variable))
        text += "; " + first.variable.label() + ", whose default the limits were found with, " +
                span(first);
    return text;
}

} // namespace

Result<Tornado> tornado(const project::ProjectCase& base, const TornadoRequest& request) {
    const engine::Frame frame = engine::frameOf(base.Input, base.Units, engine::DevelopmentLoad);
    if (!request.outcome.isDefined(frame, base.Input))
        return Fault{"This case has no " + request.outcome.name(), base.FileName};
    const int lastPass = engine::lastPass(frame.AnalysisCase, base.Input.ExtentActiveGob);
    Tornado result;
    for (const RangedInput& input : request.inputs) {
        const Runner runner(base, input.variable, {request.outcome}, lastPass);
        if (!result.own) {
            const Sample own = runner.own();
            ++result.tally.runs;
            if (!own.computed) return Fault{runner.whyNoOwn(), base.FileName};
            result.own = own.values[0];
        }
        if (std::string why = whyWithoutEffect(base, input.variable); !why.empty()) {
            TornadoBar bar{
                input.variable, {}, input.variable.of(base.Input), {}, {}, {}, {}, {}, {},
                std::move(why), 0};
            bar.range = {bar.own, bar.own};
            result.bars.push_back(std::move(bar));
            continue;
        }
        result.bars.push_back(barOf(runner, input, base.Input, result.tally));
    }
    std::stable_sort(result.bars.begin(), result.bars.end(),
                     [](const TornadoBar& a, const TornadoBar& b) {
                         if (a.withoutEffect.empty() != b.withoutEffect.empty())
                             return a.withoutEffect.empty();
                         return a.swing() > b.swing();
                     });
    result.headline = headlineOf(result, request.outcome, base.Units);
    return result;
}

} // namespace telvo::study
