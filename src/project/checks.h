// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "project/inputFields.h"
#include "project/ParameterTexts.h"
#include "project/ProjectInput.h"

#include <limits>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

/// The three moments at which input is checked. A refusal names the control that failed.
namespace telvo::project {

/// Range check of one field.
/// Given:    text       the field's text
///           low, high  lowest and highest valid value, both allowed
///           label      what the field is called in front of the message; may be empty
///           control    the control's name
std::optional<Refusal> checkRange(std::string_view text, double low, double high,
                                  std::string_view label, std::string_view control);

/// When a requirement counts, by the flags and the loading condition of a record.
enum class Use {
    Always,
    FirstSideGob,  ///< the loading condition has a side gob
    SecondSideGob, ///< it has two
    RowCLeft,
    RowDLeft,
    RowABesideGob, ///< the row is left and the loading condition has a side gob
    RowBBesideGob  ///< likewise: the second barrier's row hangs on the first side gob, too
};
bool counts(Use use, const ProjectInput& in);

/// What a number has to be: within limits that are allowed, above a limit that is not, or in a
/// relation to another number of the record.
struct Bound {
    double low = -std::numeric_limits<double>::infinity();
    double high = std::numeric_limits<double>::infinity();
    bool open = false;                         ///< `low` itself is refused
    std::optional<Field> above = std::nullopt; ///< has to be greater than that field
    std::optional<Field> upTo = std::nullopt;  ///< has to be at most that field

    /// The other number of a relation, if it is one.
    constexpr std::optional<Field> other() const { return above ? above : upTo; }

    /// Whether a number, or each of a pack, is refused.
    /// Given: other  the number that `above` or `upTo` names; anything without them
    template <typename Number>
    constexpr auto refuses(const Number& x, const Number& otherNumber) const {
        if (above) return !(x > otherNumber);
        if (upTo) return x > otherNumber;
        if (open) return !(x > Number(low));
        return x < Number(low) || x > Number(high);
    }
};

/// One row of a check. Rows are tried in order and the first refusal wins; those of the
/// center-to-center distances come last, distance by distance.
struct Requirement {
    Field field;
    Bound bound;
    /// Empty: that of checkRange(). A "#" at the end is followed by the number of the distance.
    std::string_view message;
    Use use = Use::Always;
    std::string_view title = "Range Error";
};

/// The acceptance check of the parameter form, and the check before an analysis. Kept different on
/// purpose: the analysis takes angles down to 0 and arch factors down to 0, has other words for
/// coal strength and unit weight, makes no comparison with the entry width, and holds the upper
/// bound of the side gobs' angles and slab cuts whatever the loading condition.
std::span<const Requirement> acceptanceRequirements();
std::span<const Requirement> analysisRequirements();

/// Valid values of one number while all others of a record stay.
struct Span {
    double low = -std::numeric_limits<double>::infinity();
    double high = std::numeric_limits<double>::infinity();
    bool lowOpen = false, highOpen = false; ///< the limit itself is not valid

    bool contains(double x) const {
        return (lowOpen ? x > low : x >= low) && (highOpen ? x < high : x <= high);
    }
};
Span validSpan(std::span<const Requirement> requirements, const ProjectInput& in, FieldId id);

/// Acceptance check of the parameter form, before its values become the project copy.
/// A distance box is named with its element, "txtXcutCenters_3".
/// The form and the analysis check differ on purpose; see checkBeforeAnalysis().
std::optional<Refusal> checkAcceptance(const ParameterTexts& texts);

/// All refusals of that check at once, at most one per control, in the order of the check; for
/// marking fields while they are typed.
std::vector<Refusal> acceptanceRefusals(const ParameterTexts& texts);

/// Check of a row's box when it is set: a row beside a barrier with a slab cut cannot be left.
/// Given: row  Field::RowA to Field::RowD
std::optional<Refusal> checkLeavingRow(const ParameterTexts& texts, Field row);

/// Check of the working copy before any computation.
std::optional<Refusal> checkBeforeAnalysis(const ProjectInput& input);
/// Whether it refuses anything, without saying what.
bool isRefusedBeforeAnalysis(const ProjectInput& input);

} // namespace telvo::project
