// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "engine/quantities.h"
#include "project/inputFields.h"
#include "project/ProjectInput.h"
#include "run/Run.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Cases side by side.
namespace telvo::study {

/// English value of one metric unit; 1 where both systems have the same.
double englishOf(project::FieldKind kind);
double englishOf(engine::Kind kind);

struct ComparedCase {
    std::string name;
    project::ProjectCase current;
    std::optional<run::Run> run; ///< nothing: not computed
    std::string message;         ///< then why
    std::uint16_t flags = 0;
};

/// One input, result or text of all cases.
struct ComparedRow {
    enum class Kind { Text, Input, Result };
    Kind kind = Kind::Text;
    std::string name;  ///< "DepthCover", "TELVOSF.retreat", "Title", "flags", "message"
    std::string label; ///< as screens name it
    std::string unit;  ///< of the base case; empty: has none
    std::vector<std::optional<double>> values; ///< per case, in that unit; nothing: has none
    std::vector<std::string> texts;            ///< per case, of a row of texts
    bool differs = false;                      ///< any case from the base
};

struct Comparison {
    std::vector<ComparedCase> cases;
    std::size_t base = 0;
    std::vector<ComparedRow> rows; ///< texts, inputs, results, flags and message

    /// A case less the base; nothing where one of them has no value.
    std::optional<double> difference(const ComparedRow& row, std::size_t which) const;
    /// The same in percent of the base; nothing where that is 0, too.
    std::optional<double> percent(const ComparedRow& row, std::size_t which) const;
};

/// Values of cases in the other unit system are brought into the units of the base; there, what
/// differs by less than one part in 10^9 counts as equal.
/// Faults: fewer than two cases, a base that is none of them
Result<Comparison> compare(std::vector<std::pair<std::string, project::ProjectCase>> cases,
                           std::size_t base = 0, int RoundTELVOSF = 0);

/// A line of two texts that are laid over each other.
struct DiffLine {
    enum class Side { Both, OnlyBefore, OnlyAfter };
    Side side = Side::Both;
    std::string_view text;
    bool operator==(const DiffLine&) const = default;
};

/// Lines of two texts with as many of them laid over each other as can be; what is only before comes
/// before what is only after.
/// Given: before, after  lines, which the result points to
std::vector<DiffLine> lineDiff(std::span<const std::string_view> before,
                               std::span<const std::string_view> after);

} // namespace telvo::study
