// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/inputFields.h"
#include "project/ProjectInput.h"

#include <array>
#include <string>

namespace telvo::project {

/// What the controls of the parameter form show, by the number of the record that they edit: the
/// text of a box, "1" or "0" of a check box, "0" to "3" of the options of the loading condition.
class ParameterTexts {
  public:
    std::string& operator[](FieldId id) { return m_texts[placeOf(id)]; }
    const std::string& operator[](FieldId id) const { return m_texts[placeOf(id)]; }

    bool isChecked(Field flag) const { return (*this)[flag] == "1"; }
    void check(Field flag, bool on) { (*this)[flag] = on ? "1" : "0"; }

    bool operator==(const ParameterTexts&) const = default;

  private:
    std::array<std::string, NumberCount> m_texts;
};

/// What the form shows for a record; numbers in general number format.
ParameterTexts textsFromInput(const ProjectInput& input);

/// Reads the texts into a record by the leading-number rule: a text that does not begin with a
/// number gives 0. `Reserved` and the distances beyond the last entry keep what `base` holds.
ProjectInput inputFromTexts(const ProjectInput& base, const ParameterTexts& texts);

/// Whether the center-to-center distances of a record are all the same, so that the form opens with
/// equal entry spacing: at least two, above 0.
bool haveEqualSpacing(const ProjectInput& in);

/// Equal entry spacing: every distance in use takes the text of the first.
ParameterTexts withEqualSpacing(ParameterTexts texts);

/// What the form lets its user edit.
struct ControlStates {
    std::array<bool, NumberCount> enabled{}; ///< by placeOf()
    int distances = 0;                       ///< distance boxes that are shown

    bool isEnabled(FieldId id) const { return enabled[placeOf(id)]; }
};

/// Automatic values, widths of rows that are not left and distances that follow the first one are
/// not edited; a distance box that has no entry is not shown.
/// Given: equalSpacing  whether the distances follow the first one
ControlStates controlStates(const ParameterTexts& texts, bool equalSpacing);

} // namespace telvo::project
