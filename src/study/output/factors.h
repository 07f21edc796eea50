// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/ProjectInput.h"
#include "study/Outcome.h"

#include <optional>
#include <vector>

/// What a study shows of a case when nobody names a result.
namespace telvo::study {

/// The stability factors of panel and barriers of a case, by pass: the panel's first. Of a side
/// that takes part even where its barrier has no width yet, since that may be what varies.
std::vector<Outcome> factorsOf(const project::ProjectCase& current);

/// The panel's factor of the last pass.
Outcome defaultOutcome(const project::ProjectCase& current);

/// The factor that the warnings suggest for a case; nothing for what is no such factor and where
/// the case cannot be computed.
std::optional<double> suggestedFor(const project::ProjectCase& base, const Outcome& outcome,
                                   int RoundTELVOSF);

/// The value of an outcome in a case; nothing where it has none.
std::optional<double> ownValueOf(const project::ProjectCase& base, const Outcome& outcome);

} // namespace telvo::study
