// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "study/Outcome.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace telvo::study {

/// What a study asks of a run: an outcome at least or at most a value. Compared are the unrounded
/// numbers of the results, so that whatever reaches a limit here reaches it in the warnings, too.
struct Criterion {
    enum class Sense { AtLeast, AtMost };

    Outcome outcome;
    Sense sense = Sense::AtLeast;
    /// Nothing: the factor that the warnings suggest at the depth of the case.
    std::optional<double> target;

    /// Reads "TELVOSF.retreat>=1.5", "AMZLoad.retreat<=1e9", "BarrierSF.retreat.first>=suggested".
    /// Faults: an unknown quantity, no comparison, a number that is none, "suggested" of what is no
    ///         stability factor of panel or barriers
    static Result<Criterion> parse(std::string_view text);

    /// The outcome less its target.
    Outcome margin() const;
    /// Whether a margin meets it.
    bool holds(double margin) const { return sense == Sense::AtLeast ? margin >= 0 : margin <= 0; }
    /// For a sentence: "retreat factor of the panel >= 1.5".
    std::string words() const;
    /// For a list and behind a colon: "Retreat factor of the panel at least 1.5".
    std::string title(std::int16_t units) const;
    /// As parse() takes it: "TELVOSF.retreat>=1.5".
    std::string text() const;
};

inline constexpr std::size_t MostTargets = 8;

/// Targets of several criteria: "1.3, 1.5, suggested". Nothing is the suggested factor.
/// Faults: a text that is no number, none or more than MostTargets
Result<std::vector<std::optional<double>>> parseTargets(std::string_view text);

} // namespace telvo::study
