// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/cases.h"

#include <string>

/// The quantities of a run in forms for people (text), programs (JSON) and spreadsheets (CSV).
/// All numbers are unrounded, in the engine's units, in the shortest form that reads back to the
/// same value.
namespace telvo::cli {

/// One line per number: name, value, unit; inputs, results and warnings of one case.
std::string resultText(const CaseOutcome& outcome);

/// A JSON object; the values of a refused case are null.
std::string resultJson(const CaseOutcome& outcome);

/// Header of the CSV form; every column names the English and the metric unit of its quantity.
std::string csvHeader();
/// One row; a refused case keeps its row with the message and empty values.
std::string csvRow(const CaseOutcome& outcome);
/// Whether a spreadsheet may take a text of the row for a formula. It is not altered for that.
bool looksLikeFormula(const CaseOutcome& outcome);

} // namespace telvo::cli
