// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/AnalysisResults.h"

#include <string>
#include <string_view>

namespace telvo::explain {

/// What a symbol is said of: a pass, a side, a pillar.
struct At {
    int pass = engine::Retreat;
    int side = engine::FirstSide;
    int pillar = 1;
};

/// Whether a symbol may carry a number: "C2" is the C of pillar 2, "Sl2" the Sl of the second side.
enum class Numbered { No, ByPillar, BySide };

/// A symbol of the formulas. Keys and titles hold places for what it is said of:
/// {i} pillar, {k} side "first", {K} "First", {R} its bleeder row "C", {p} pass "retreat", and for
/// quantities without a pass index {q} "@development" in that pass, {d} ", development", {in}
/// "inputs." in retreat: development changes two inputs.
struct Symbol {
    std::string_view name; ///< empty: never stands in a formula
    std::string_view key;
    std::string_view title;
    Numbered numbered = Numbered::No;
};

/// A symbol with what it is said of. Returned: an empty key for an unknown name.
struct Meaning {
    std::string key;
    std::string title;
};
Meaning meaningOf(std::string_view symbol, const At& at);

/// What the quantity of a key is called, and its symbol where it has one.
struct Name {
    std::string_view symbol;
    std::string title;
};
Name nameOf(std::string_view key);

} // namespace telvo::explain
