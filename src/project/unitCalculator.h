// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The unit calculator. Its factors are its own, that of the unit weight excepted: a case is
/// converted with those of units.h, which differ from them in their last digits.
namespace telvo::project {

struct CalculatorUnit {
    std::string_view symbol; // "kN/m"
    std::string_view name;   // "kilonewtons per meter"
    double size;             // in a unit that all of the quantity share
};

struct CalculatorQuantity {
    std::string_view name;                 // "Load Gradient"
    std::string_view control;              // name of its entry box, "txtLoadGrad"
    std::span<const CalculatorUnit> units; // an entry is at first in the first one
};

/// Length, load, load gradient, stress, stress gradient and unit weight.
std::span<const CalculatorQuantity> calculatorQuantities();

/// What the calculator shows for an entry.
struct Conversions {
    std::vector<std::string> results; ///< one per unit, empty where the entry is no number
    std::string_view note;            ///< why a result is missing; empty where none is
};

/// Converts an entry among the units of a quantity; ten significant digits.
/// Given: entry  a number and nothing else but blanks; an empty one has no results and no note
///        from   index of the entry's unit
/// Notes: a result that no double holds is empty.
Conversions convertEntry(std::string_view entry, const CalculatorQuantity& quantity,
                         std::size_t from);

} // namespace telvo::project
