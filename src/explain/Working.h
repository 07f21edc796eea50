// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "report/ReportWriter.h"
#include "run/Run.h"

#include <string>
#include <string_view>
#include <vector>

/// The working of a run: every quantity as formula, substituted numbers and result, in the order of
/// the calculation, to be checked with a pocket calculator. Every number comes from the engine.
namespace telvo::explain {

/// What stands for a symbol of a formula.
struct Operand {
    std::string symbol; ///< "Wb"
    std::string key;    ///< of the step that it comes from
    double value = 0;
    std::string unit;
};

/// A figure of the report.
struct Printed {
    int page = 0; ///< 1 to 5
    int line = 0; ///< counted from 1
    std::string figure;
    std::string unit;       ///< as the report prints it; may be empty
    std::string conversion; ///< "635040000 lb / 2000"; empty: printed in the engine's unit
    std::string rounding;   ///< of stability factors, in words; empty: as the figure shows
};

/// One quantity. The formula is plain text of symbols, numbers, + - * / ^ ( ) and the functions
/// sin, tan, sqrt, ln, min, max and round(x, decimals); angles are marked "deg".
struct Step {
    std::string key; ///< "BarrierLoad.retreat.first": inputs and results as the console names them
    std::string title;             ///< in words
    std::string symbol;            ///< may be empty
    std::string formula;           ///< empty: given, or does not arise
    std::string substituted;       ///< the formula with numbers and units for its symbols
    std::string condition;         ///< "SFm > 1.5", for which the formula holds; may be empty
    std::string conditionShown;    ///< the same with numbers and units
    std::string rule;              ///< which rule applies and why; may be empty
    std::vector<Operand> operands; ///< of formula and condition
    double value = 0;              ///< the engine's
    std::string unit;
    std::string result; ///< value and unit as text
    std::vector<Printed> printed;
};

struct Chapter {
    std::string title;
    std::vector<Step> steps;
    std::string note = {}; ///< a rule that all its steps share; may be empty
};

using Chapters = std::vector<Chapter>;

/// Significant digits that a pocket calculator carries through.
inline constexpr int DefaultDigits = 7;
inline constexpr int MostDigits = 17;

/// The working of a run.
/// Given: options  of the report whose figures are told
///        digits   significant digits of the numbers, 1 to 17
Chapters explain(const run::Run& run, const report::ReportOptions& options,
                 int digits = DefaultDigits);

/// The step of that key, or nullptr.
const Step* findStep(const Chapters& chapters, std::string_view key);

/// The steps that lead to a quantity, and itself as the last one, in the order of the calculation.
/// Chapters of which nothing is left fall away; nothing at all is left of an unknown quantity.
/// Given: key  of a step, or what several begin with: "BarrierSF", "BarrierSF.retreat"
Chapters leadingTo(const Chapters& chapters, std::string_view key);

/// Keys that a reader may have meant by a name that there is not, best first, at most `most`.
std::vector<std::string> nearMatches(const Chapters& chapters, std::string_view name,
                                     std::size_t most = 8);

} // namespace telvo::explain
