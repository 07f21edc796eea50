// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/ProjectInput.h"
#include "report/ReportWriter.h"
#include "study/file/StudySettings.h"

#include <string>

namespace telvo::study::ui {

/// The case that the studies are about.
struct StudyCase {
    project::ProjectCase current;
    std::string name; ///< its file without the folder
    int RoundTELVOSF = 0;
    std::string refusal; ///< why it has no studies; empty where it has
    report::ReportOptions options = {};
};

} // namespace telvo::study::ui
