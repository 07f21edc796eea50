// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/IndexedArray.h"
#include "engine/AnalysisResults.h"

#include <array>
#include <string_view>
#include <type_traits>

namespace telvo::cli {

template <typename Field>
inline constexpr bool isIndexed = false;
template <typename T, int First, int Last>
inline constexpr bool isIndexed<IndexedArray<T, First, Last>> = true;

/// An array over the pillars of the panel; its elements have numbers, all other indices names.
template <typename Field>
inline constexpr bool isPerPillar = false;
template <typename T>
inline constexpr bool isPerPillar<IndexedArray<T, 1, engine::MaxPillars>> = true;

/// Name of an index, told apart by its range: passes 1..2, sides 3..4, load components up to 4.
template <int First, int Last>
constexpr std::string_view indexName(int index) {
    constexpr std::array<std::string_view, 2> passes = {"development", "retreat"};
    constexpr std::array<std::string_view, 2> sides = {"first", "second"};
    constexpr std::array<std::string_view, 4> components = {"tributary", "front", "firstSide",
                                                            "secondSide"};
    if constexpr (Last == engine::Retreat)
        return passes[static_cast<std::size_t>(index - First)];
    else if constexpr (First == engine::FirstSide)
        return sides[static_cast<std::size_t>(index - First)];
    else
        return components[static_cast<std::size_t>(index - 1)];
}

/// Calls visit(name, element) for every element of an array whose indices have names.
template <typename T, int First, int Last, typename Visit>
void visitNamed(const IndexedArray<T, First, Last>& field, Visit&& visit) {
    for (int i = First; i <= Last; ++i)
        visit(indexName<First, Last>(i), field[i]);
}

} // namespace telvo::cli
