// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Rule.h"
#include "engine/quantities.h"

#include <string>
#include <string_view>

namespace telvo::explain {

/// Whether a symbol may carry a number: "C2" is the C of pillar 2, "Sl2" the Sl of the second side.
enum class Numbered { No, ByPillar, BySide };

/// The chapter that a symbol belongs to; Pass stands for one of each pass.
enum class Part { Inputs, Prepared, Geometry, Strength, RunLoads, Pass, Stresses, ReportOnly };

/// A symbol of the formulas. Keys and titles hold places for what it is said of:
/// {i} pillar, {k} side "first", {K} "First", {R} its bleeder row "C", {p} pass "retreat".
struct Symbol {
    std::string_view name; ///< empty: never stands in a formula
    std::string_view key;
    std::string_view title;
    Numbered numbered = Numbered::No;
    engine::Kind kind = engine::Kind::Number; ///< of what is neither input nor result
};

/// What a symbol stands for.
struct Meaning {
    const Symbol* symbol = nullptr;
    Part part = Part::Inputs;

    bool ofPass() const; ///< each pass has its own
    std::string key(const Where& at) const;
    std::string title(const Where& at) const;
};
Meaning meaningOf(std::string_view symbol);

/// What the quantity of a key is called, and its symbol where it has one.
struct Name {
    std::string_view symbol;
    std::string title;
};
Name nameOf(std::string_view key);

} // namespace telvo::explain
