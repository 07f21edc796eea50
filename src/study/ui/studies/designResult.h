// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/output/StudyAnswer.h"
#include "study/ui/studies/StudyPage.h"

namespace telvo::study::ui {

/// What a design chart shows.
StudyResult designResult(std::shared_ptr<const DesignAnswer> answer);

} // namespace telvo::study::ui
