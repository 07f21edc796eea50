// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/ProjectInput.h"
#include "study/Outcome.h"

#include <vector>

/// What a study shows of a case when nobody names a result.
namespace telvo::study {

/// The stability factors of panel and barriers of a case, by pass: the panel's first. Of a side
/// that takes part even where its barrier has no width yet, since that may be what varies.
std::vector<Outcome> factorsOf(const project::ProjectCase& current);

/// The panel's factor of the last pass.
Outcome defaultOutcome(const project::ProjectCase& current);

} // namespace telvo::study
