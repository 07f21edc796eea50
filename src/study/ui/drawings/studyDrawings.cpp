// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/drawings/studyDrawings.h"

#include "study/output/factors.h"
#include "study/ui/drawings/caseBars.h"
#include "study/ui/drawings/uncertaintyDrawing.h"

namespace telvo::study::ui {

namespace {

struct Drawings {
    const StudyLook& look;
    int RoundTELVOSF;

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
    Drawing operator()(const std::shared_ptr<const UncertaintyAnswer>& answer) const {
        return distributionDrawing(answer, 0);
    }
    Drawing operator()(const std::shared_ptr<const ShareCurveAnswer>& answer) const {
        return shareCurveDrawing(answer);
    }
};

} // namespace

Drawing drawingOf(const StudyAnswer& answer, const StudyLook& look, int RoundTELVOSF) {
    return std::visit(Drawings{look, RoundTELVOSF}, answer);
}

} // namespace telvo::study::ui
