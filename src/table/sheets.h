// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace telvo::table {

/// How a cell looks.
enum class CellLook {
    Plain,
    Heading,
    Chapter, ///< heading of a part, over the whole width
    Input,   ///< may be changed: colored, and not locked
    Fixed,   ///< grayed
    Faint,
    Wrapped
};

/// A cell of a workbook that computes.
struct SheetCell {
    std::string text = {};             ///< of a text, or what a formula comes to as a text
    std::optional<double> number = {}; ///< of a number, or what a formula comes to
    std::string formula = {};          ///< without its "="; empty for a value
    CellLook look = CellLook::Plain;

    bool isBlank() const { return text.empty() && !number && formula.empty(); }
};

struct Sheet {
    std::string name;
    std::vector<double> widths; ///< of the columns, in characters
    std::vector<std::vector<SheetCell>> rows;
    int frozenRows = 0;  ///< stay in sight
    bool locked = false; ///< only cells of Input may be changed; without a password
};

/// Writes sheets as a workbook (XLSX). Numbers keep every digit, texts are texts whatever they begin
/// with. Formulas carry what they came to, so that a program that does not compute shows it.
/// Faults: a text or a formula that is too long for a cell.
Result<std::string> writeSheets(std::span<const Sheet> sheets);

} // namespace telvo::table
