// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/inputFields.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace telvo::study {

/// Ends of a stretch of values.
struct Span {
    double low = 0;
    double high = 0;
    bool contains(double value) const { return value >= low && value <= high; }
};

/// What a study may vary: a number of a record, or several of them that are given one value.
class Variable {
  public:
    constexpr Variable(project::FieldId id) : m_first(id) {}
    constexpr Variable(project::Field field) : m_first(field) {}
    /// All center-to-center distances of the panel.
    static constexpr Variable allDistances() {
        return {project::FieldId(project::Field::XcutCenters, 1), Also::OtherDistances};
    }
    /// The barriers of both sides.
    static constexpr Variable bothBarriers() {
        return {project::Field::BarrierFirstGob, Also::OtherBarrier};
    }

    /// "DepthCover", "XcutCenters.3"; "XcutCenters" and "Barriers" of several numbers.
    std::string name() const;
    /// Its field; of several numbers the first one's.
    project::Field field() const { return m_first.field; }
    project::FieldKind kind() const { return project::kindOf(m_first); }
    /// "ft", "MPa", "degrees"; "" of a plain number.
    std::string_view unit(std::int16_t units) const { return fieldUnit(kind(), units); }

    /// "82 ft", "85 degrees", "0.9": a value with its unit, to `digits` digits.
    std::string text(double value, std::int16_t units, int digits = 10) const;

    /// Its value in a record; of several numbers the first one's.
    double of(const project::ProjectInput& in) const { return get(in, m_first); }
    /// A record with this value; automatic values that depend on it follow by the rule of the
    /// parameter form, all others stay.
    project::ProjectInput in(project::ProjectInput record, std::int16_t units, double value) const;
    /// The numbers of a record that take its value.
    std::vector<project::FieldId> fields(const project::ProjectInput& in) const;
    /// "Depth of Cover", "First Gob: Extent", "Center to Center Distances": as screens name it.
    std::string label() const;
    /// Whether the breadth of the active mining zone follows in a record.
    bool movesBreadth(const project::ProjectInput& in) const;

    /// The values that the parameter form would take in a record. The ends belong to it but for a
    /// size that has to be above 0 or above the entry width.
    Span valid(const project::ProjectInput& in) const;
    /// Whether factors grow without bound, or are lost, where it comes near 0.
    bool leavesZeroOut() const;
    /// Why a value that the analysis would compute all the same is left out; nothing for most.
    std::optional<std::string_view> leftOut(const project::ProjectInput& varied) const;

    bool operator==(const Variable&) const = default;

  private:
    enum class Also : std::uint8_t { Nothing, OtherDistances, OtherBarrier };
    constexpr Variable(project::FieldId id, Also also) : m_first(id), m_also(also) {}

    project::FieldId m_first;
    Also m_also = Also::Nothing;
};

/// Everything that may be varied: the numeric inputs in record order, then those of several
/// numbers.
std::vector<Variable> variables();

/// The variable of a name; nothing for any other text.
std::optional<Variable> variableNamed(std::string_view name);

} // namespace telvo::study
