// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "project/ProjectInput.h"

#include <cstdint>
#include <optional>
#include <string>
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

/// The texts and states of the parameter form's controls, by control name.
struct ParameterTexts {
    std::string txtEntryHeight, txtDepthCover, txtXcutAngle, txtEntryWidth, txtXcutSpacing;
    std::string txtNumberEntries;
    IndexedArray<std::string, 1, 9> txtXcutCenters;
    std::string txtCoalStrength, txtUnitWeight, txtBreadthAMZ, txtArchFactor;
    bool chkAMZ = true;
    bool chkArch = true;
    std::int16_t optAnal = 0; // index of the selected option, 0 to 3
    std::string txtExtentActiveGob, txtAbutmentAngleActiveGob;
    std::string txtExtentFirstGob, txtAbutmentAngleFirstGob, txtBarrierFirstGob, txtSlabcutFirstGob;
    std::string txtExtentSecondGob, txtAbutmentAngleSecondGob, txtBarrierSecondGob,
        txtSlabcutSecondGob;
    bool chkRowA = false;
    bool chkRowB = false;
    bool chkRowC = false;
    bool chkRowD = false;
    std::string txtWidthC, txtWidthD;
};

/// What the form shows for a record; numbers in general number format.
ParameterTexts textsFromInput(const ProjectInput& input);

/// Reads the texts into a record by the leading-number rule: a text that does not begin with a
/// number gives 0. `Reserved` and the distances beyond the last entry keep what `base` holds.
ProjectInput inputFromTexts(const ProjectInput& base, const ParameterTexts& texts);

/// Acceptance check of the parameter form, before its values become the project copy.
/// A distance box is named with its element, "txtXcutCenters_3".
/// The form and the analysis check differ on purpose; see checkBeforeAnalysis().
std::optional<Refusal> checkAcceptance(const ParameterTexts& texts);

/// All refusals of that check at once, at most one per control, in the order of the check; for
/// marking fields while they are typed.
std::vector<Refusal> acceptanceRefusals(const ParameterTexts& texts);

/// Check of a row's box when it is set: a row beside a barrier with a slab cut cannot be left.
std::optional<Refusal> checkLeavingRow(const ParameterTexts& texts, std::string_view control);

/// Check of the working copy before any computation.
std::optional<Refusal> checkBeforeAnalysis(const ProjectInput& input);

} // namespace telvo::project
