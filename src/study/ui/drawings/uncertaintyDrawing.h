// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/questions/importance.h"
#include "study/questions/shareCurve.h"
#include "study/ui/drawings/Drawing.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

/// The pictures of samples: how an outcome is distributed, what drives it, how sure a share is, and
/// how it goes with a design variable.
namespace telvo::study::ui {

/// What was asked, and what came of it.
struct UncertaintyAnswer {
    project::ProjectCase base;
    UncertaintyRequest request;
    Uncertainty made;
};
using UncertaintyPtr = std::shared_ptr<const UncertaintyAnswer>;

/// "3.8 % of 131,072 samples miss: Retreat factor of the panel at least 1.5 (3.7 to 3.9 %)."
std::string shareSentence(const UncertaintyAnswer& answer, std::size_t criterion);
/// "Retreat factor of the panel at least 1.5".
std::string criterionTitle(const Criterion& criterion, std::int16_t units);

/// Bars of the outcome's histogram with the limit, and the cumulative curve over them.
Drawing distributionDrawing(const UncertaintyPtr& answer, std::size_t criterion);
/// Bars of the rank correlations, the longest on top.
Drawing importanceDrawing(const UncertaintyPtr& answer,
                          std::shared_ptr<const std::vector<Importance>> importance,
                          std::size_t criterion);
/// The share and its interval over the number of samples.
Drawing convergenceDrawing(const UncertaintyPtr& answer, std::size_t criterion);

struct ShareCurveAnswer {
    project::ProjectCase base;
    UncertaintyRequest request;
    AskedFragility asked;
    ShareCurve made;
};
using ShareCurvePtr = std::shared_ptr<const ShareCurveAnswer>;
/// A line and its band per criterion. Its places are numbered by value.
Drawing shareCurveDrawing(const ShareCurvePtr& answer);

} // namespace telvo::study::ui
