// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cassert>
#include <cstddef>

namespace telvo {

/// Fixed array that keeps the index range of the trade: pillars 1..9, sides 3..4, passes 1..2.
/// An index outside First..Last is a broken assumption of the program and asserts.
template <typename T, int First, int Last>
struct IndexedArray {
    static_assert(First <= Last);
    static constexpr int first = First;
    static constexpr int last = Last;
    static constexpr std::size_t count = static_cast<std::size_t>(Last - First + 1);

    std::array<T, count> elements{};

    constexpr T& operator[](int index) {
        assert(index >= First && index <= Last);
        return elements[static_cast<std::size_t>(index - First)];
    }
    constexpr const T& operator[](int index) const {
        assert(index >= First && index <= Last);
        return elements[static_cast<std::size_t>(index - First)];
    }

    constexpr auto begin() { return elements.begin(); }
    constexpr auto end() { return elements.end(); }
    constexpr auto begin() const { return elements.begin(); }
    constexpr auto end() const { return elements.end(); }

    bool operator==(const IndexedArray&) const = default;
};

} // namespace telvo
