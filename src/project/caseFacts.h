// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/KeyFigures.h"
#include "project/ProjectInput.h"

#include <string>
#include <string_view>
#include <vector>

namespace telvo::project {

/// One line of a case at a glance.
struct CaseFact {
    std::string_view control; ///< name of the label that shows it
    std::string_view caption;
    std::string text; ///< with its unit; empty: there is none
    std::string why;  ///< why there is none; may be empty
};

/// What a case is known by: loading condition, units, main dimensions, factors, in this order.
/// Given: figures  those of the case
std::vector<CaseFact> caseFacts(const ProjectCase& current, const KeyFigures& figures);

} // namespace telvo::project
