// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "study/questions/scatter.h"
#include "study/Variable.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// How far each input may be off: entered once, used by every study that varies inputs by
/// themselves.
namespace telvo::study {

/// A range about the case's own value, so that the case may change.
struct Range {
    enum class Form {
        Percent, // of the case's own value: -10 to 10
        Offset,  // in the units of the case: -0.5 to 2
        Absolute // the values themselves: 800 to 1000
    };
    Form form = Form::Percent;
    double low = -10, high = 10;

    /// The values that it means in a case, clipped to what the input may be.
    Span of(const project::ProjectInput& in, const Variable& variable) const;
    bool operator==(const Range&) const = default;
};

/// An input with its range.
struct RangedInput {
    Variable variable;
    Range range;
    bool edited = false; ///< the user's own, not the default
    bool operator==(const RangedInput&) const = default;
};

/// What a distribution means where only ends are wanted: its 5 % and 95 % points, or the ends of one
/// that has no more than ends; about the case's own value where it is, too, to the digits that people
/// give. Nothing for one that is none (distributionOf()).
std::optional<Range> rangeOf(const Scatter& scatter, const Variable& variable,
                             const project::ProjectInput& in);
/// What ends mean where a distribution is wanted: every value between them alike.
Scatter scatterOf(const Range& range);

/// What an input of a coal panel is usually uncertain by: rangeOf() its usualScatter().
Range defaultRange(const Variable& variable, std::int16_t units);

/// Every numeric input of a case with its default range; distances beyond its number of entries are
/// left out.
std::vector<RangedInput> defaultRanges(const project::ProjectCase& base);

/// The range of an input in words: "826.2 .. 973.8 ft".
std::string spanText(const Variable& variable, const Span& span, std::int16_t units);

/// Why an input changes nothing in a case: "not used by this loading condition", "set automatically
/// from the depth of cover", "row C is not left". Empty for one that is used.
std::string whyWithoutEffect(const project::ProjectCase& base, const Variable& variable);

} // namespace telvo::study
