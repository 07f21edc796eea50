// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/ProjectInput.h"
#include "study/questions/compare.h"
#include "study/questions/designChart.h"
#include "study/questions/find.h"
#include "study/questions/scenarios.h"
#include "study/questions/shareCurve.h"
#include "study/questions/sweep.h"
#include "study/questions/tornado.h"
#include "study/questions/uncertainty.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

/// What was asked of a case and what came of it, as one value for all who write or draw it.
namespace telvo::study {

struct TornadoAnswer {
    project::ProjectCase base;
    TornadoRequest request;
    Tornado made;
};

struct FindAnswer {
    project::ProjectCase base;
    FindRequest request;
    Found made;
};

struct DesignAnswer {
    project::ProjectCase base;
    DesignChartRequest request;
    DesignChart made;
};

struct ScenarioAnswer {
    std::vector<Outcome> outcomes;
    Scenarios made;
};

struct UncertaintyAnswer {
    project::ProjectCase base;
    UncertaintyRequest request;
    Uncertainty made;
};

struct ShareCurveAnswer {
    project::ProjectCase base;
    UncertaintyRequest request;
    AskedFragility asked;
    ShareCurve made;
};

template <typename... Answers>
using AnyAnswer = std::variant<std::shared_ptr<const Answers>...>;
using StudyAnswer = AnyAnswer<TornadoAnswer, FindAnswer, DesignAnswer, Sweep, ScenarioAnswer,
                              Comparison, UncertaintyAnswer, ShareCurveAnswer>;

/// How an answer is drawn, where there is a choice.
struct StudyLook {
    bool spider = false; ///< a tornado as lines over one axis
    /// Lines of a table of values where its first outcome takes a value; nothing: the suggested one
    std::vector<std::optional<double>> lines{std::nullopt};
};

} // namespace telvo::study
