// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/IndexedArray.h"
#include "engine/AnalysisResults.h"

#include <array>
#include <string>
#include <string_view>
#include <type_traits>

namespace telvo::engine {

template <typename Field>
inline constexpr bool isIndexed = false;
template <typename T, int First, int Last>
inline constexpr bool isIndexed<IndexedArray<T, First, Last>> = true;

/// An array over the pillars of the panel; its elements have numbers, all other indices names.
template <typename Field>
inline constexpr bool isPerPillar = false;
template <typename T>
inline constexpr bool isPerPillar<IndexedArray<T, 1, MaxPillars>> = true;

/// Name of an index, told apart by its range: passes 1..2, sides 3..4, load components up to 4.
template <int First, int Last>
constexpr std::string_view indexName(int index) {
    constexpr std::array<std::string_view, 2> passes = {"development", "retreat"};
    constexpr std::array<std::string_view, 2> sides = {"first", "second"};
    constexpr std::array<std::string_view, 4> components = {"tributary", "front", "firstSide",
                                                            "secondSide"};
    if constexpr (Last == Retreat)
        return passes[static_cast<std::size_t>(index - First)];
    else if constexpr (First == FirstSide)
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

/// Walks a field down to its numbers, giving each its path: "LFBAR.retreat.first", "PillarArea.3".
/// `pillars` is how many elements of per-pillar arrays are visited.
template <typename Field, typename Visit>
void flatten(const std::string& path, const Field& field, int pillars, Visit&& visit) {
    if constexpr (isPerPillar<Field>) {
        for (int i = 1; i <= pillars; ++i)
            visit(path + "." + std::to_string(i), field[i]);
    } else if constexpr (isIndexed<Field>) {
        visitNamed(field, [&](std::string_view name, const auto& element) {
            flatten(path + "." + std::string(name), element, pillars, visit);
        });
    } else {
        visit(path, field);
    }
}

} // namespace telvo::engine
