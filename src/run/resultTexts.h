// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "run/Run.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// The quantities of a run in forms for people (text), programs (JSON) and spreadsheets (CSV).
/// All numbers are unrounded, in the engine's units, in the shortest form that reads back to the
/// same value.
namespace telvo::run {

/// A case and what came of it, as it is written out. It only points to what somebody else keeps.
struct CaseResult {
    static constexpr int flagCount = 16;

    std::string_view name;                         ///< file of the case, or a row of a table
    const project::ProjectCase* current = nullptr; ///< none when it could not be read
    const Run* run = nullptr;                      ///< none when it was not or could not be run
    std::string_view message;                      ///< why there is no run
    std::span<const std::string> notes;            ///< remarks on record and run
    std::uint16_t flags = 0;                       ///< of the warnings; bit i is flag i
    std::string_view warnings;                     ///< their summary

    bool flag(int i) const { return (flags >> i & 1) != 0; }
};

/// One line per number: name, value, unit; inputs, results and warnings of one case.
std::string resultText(const CaseResult& result);

/// A JSON object; the values of a refused case are null.
std::string resultJson(const CaseResult& result);

/// Header of the CSV form; every column names the English and the metric unit of its quantity.
std::string csvHeader();
/// One row; a refused case keeps its row with the message and empty values.
std::string csvRow(const CaseResult& result);
/// Whether a spreadsheet may take a text of the row for a formula. It is not altered for that.
bool looksLikeFormula(const CaseResult& result);

} // namespace telvo::run
