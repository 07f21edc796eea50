// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/output/factors.h"

#include "engine/driver.h"
#include "engine/questions.h"

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

} // namespace telvo::study
