// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/drawings/studyDrawings.h"

#include "study/output/factors.h"
#include "study/ui/drawings/caseBars.h"

namespace telvo::study::ui {

namespace {

struct Drawings {
    const StudyLook& look;
    int RoundTELVOSF;

    Drawing operator()(std::monostate) const { return {}; }
    Drawing operator()(const std::shared_ptr<const TornadoAnswer>& answer) const {
        return tornadoDrawing(answer, look.spider,
                              suggestedFor(answer->base, answer->request.outcome, RoundTELVOSF));
    }
    Drawing operator()(const std::shared_ptr<const FindAnswer>& answer) const {
        return findDrawing(answer);
    }
    Drawing operator()(const std::shared_ptr<const DesignAnswer>& answer) const {
        return designDrawing(answer);
    }
    Drawing operator()(const std::shared_ptr<const Sweep>& sweep) const {
        return sweepDrawing(sweep, sweepLines(*sweep, look.lines));
    }
    Drawing operator()(const std::shared_ptr<const ScenarioAnswer>& answer) const {
        return scenarioDrawing(*answer);
    }
    Drawing operator()(const std::shared_ptr<const Comparison>& comparison) const {
        return compareDrawing(*comparison, comparedOutcomes(*comparison));
    }
};

} // namespace

Drawing drawingOf(const StudyAnswer& answer, const StudyLook& look, int RoundTELVOSF) {
    return std::visit(Drawings{look, RoundTELVOSF}, answer);
}

} // namespace telvo::study::ui
