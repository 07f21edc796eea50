// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/output/factors.h"

#include "base/numbers.h"
#include "engine/driver.h"
#include "engine/questions.h"
#include "study/Runner.h"

#include <algorithm>

namespace telvo::study {

namespace {

int lastPassOf(const project::ProjectCase& current) {
    const engine::Frame frame =
        engine::frameOf(current.Input, current.Units, engine::DevelopmentLoad);
    return engine::lastPass(frame.AnalysisCase, current.Input.ExtentActiveGob);
}

} // namespace

std::vector<Outcome> factorsOf(const project::ProjectCase& current) {
    const engine::Frame frame =
        engine::frameOf(current.Input, current.Units, engine::DevelopmentLoad);
    project::ProjectInput wide = current.Input;
    wide.BarrierFirstGob = std::max(wide.BarrierFirstGob, 1.0);
    wide.BarrierSecondGob = std::max(wide.BarrierSecondGob, 1.0);
    const int last = lastPassOf(current);
    std::vector<Outcome> factors;
    for (int pass = engine::Development; pass <= last; ++pass)
        factors.push_back(Outcome::factor(pass, 0));
    for (int pass = engine::Development; pass <= last; ++pass)
        for (const int side : frame.sidesInUse())
            if (Outcome factor = Outcome::factor(pass, side); factor.isDefined(frame, wide))
                factors.push_back(std::move(factor));
    return factors;
}

Outcome defaultOutcome(const project::ProjectCase& current) {
    return Outcome::factor(lastPassOf(current), 0);
}

std::optional<double> suggestedFor(const project::ProjectCase& base, const Outcome& outcome,
                                   int RoundTELVOSF) {
    const auto margin = outcome.marginToSuggested();
    if (!margin) return std::nullopt;
    const Runner runner(base, project::Field::DepthCover, {outcome, *margin}, lastPassOf(base),
                        RoundTELVOSF);
    const Sample own = runner.own();
    if (!own.computed) return std::nullopt;
    // 1.5 less a rounding of the difference
    return roundHalfEven2(own.values[0] - own.values[1]);
}

std::optional<double> ownValueOf(const project::ProjectCase& base, const Outcome& outcome) {
    const engine::Frame frame = engine::frameOf(base.Input, base.Units, engine::DevelopmentLoad);
    if (!outcome.isDefined(frame, base.Input)) return std::nullopt;
    const Runner runner(base, project::Field::DepthCover, {outcome}, lastPassOf(base));
    const Sample own = runner.own();
    if (!own.computed) return std::nullopt;
    return own.values[0];
}

} // namespace telvo::study
