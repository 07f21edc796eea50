// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/questions/designChart.h"
#include "study/ui/studies/StudyPage.h"

namespace telvo::study::ui {

/// What a design chart shows.
StudyResult designResult(DesignChart made, const project::ProjectCase& base,
                         const DesignChartRequest& request);

} // namespace telvo::study::ui
