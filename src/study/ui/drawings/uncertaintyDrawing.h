// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/output/StudyAnswer.h"
#include "study/questions/importance.h"
#include "study/ui/drawings/Drawing.h"

#include <cstddef>
#include <memory>
#include <vector>

/// The pictures of samples: how an outcome is distributed, what drives it, how sure a share is, and
/// how it goes with a design variable.
namespace telvo::study::ui {

using UncertaintyPtr = std::shared_ptr<const UncertaintyAnswer>;
using ShareCurvePtr = std::shared_ptr<const ShareCurveAnswer>;

/// Bars of the outcome's histogram with the limit, and the cumulative curve over them.
Drawing distributionDrawing(const UncertaintyPtr& answer, std::size_t criterion);
/// Bars of the rank correlations, the longest on top.
Drawing importanceDrawing(const UncertaintyPtr& answer,
                          std::shared_ptr<const std::vector<Importance>> importance,
                          std::size_t criterion);
/// The share and its interval over the number of samples.
Drawing convergenceDrawing(const UncertaintyPtr& answer, std::size_t criterion);

/// A line and its band per criterion. Its places are numbered by value.
Drawing shareCurveDrawing(const ShareCurvePtr& answer);

} // namespace telvo::study::ui
