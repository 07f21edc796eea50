// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <type_traits>

/// For functions that have to melt into their caller: on packs of cases a call costs more than the
/// work, and a body that stays outside could be linked from a source compiled for another machine.
#define TELVO_INLINE [[gnu::always_inline]] inline

/// What a rule may ask of its number type besides + - * / and comparisons, here for `double`. The
/// same functions stand for several cases at once in base/Pack.h.
namespace telvo {

/// `a` where `yes`, else `b`. Both are computed; the one that is not taken must be harmless.
TELVO_INLINE constexpr double select(bool yes, double a, double b) {
    return yes ? a : b;
}

/// The value that a float would hold, infinite beyond its range. The compiler cannot see through the
/// rounding: g++ 12 drops it from pairs of stores (tests/base/narrowing_test.cpp).
TELVO_INLINE double toSingle(double x) {
    float single = static_cast<float>(x);
#if defined(__SSE2__)
    asm("" : "+x"(single));
#elif defined(__aarch64__)
    asm("" : "+w"(single));
#else
    asm("" : "+m"(single));
#endif
    return single;
}

TELVO_INLINE double root(double x) {
    return std::sqrt(x);
}

TELVO_INLINE double absolute(double x) {
    return std::fabs(x);
}

/// The bit pattern of a number, and the number of a bit pattern.
TELVO_INLINE constexpr std::uint64_t bitsOf(double x) {
    return std::bit_cast<std::uint64_t>(x);
}
TELVO_INLINE constexpr double numberOf(std::uint64_t bits) {
    return std::bit_cast<double>(bits);
}

/// `bits` where `yes`, else 0.
TELVO_INLINE constexpr std::uint64_t bitWhere(bool yes, std::uint64_t bits) {
    return yes ? bits : 0;
}

/// What a comparison of two N gives, and what holds the bit pattern of an N.
template <class N>
struct NumberTraits {
    using Truth = typename N::Truth;
    using Bits = typename N::Bits;
};
template <>
struct NumberTraits<double> {
    using Truth = bool;
    using Bits = std::uint64_t;
};
template <class N>
using TruthOf = typename NumberTraits<N>::Truth;
template <class N>
using BitsOf = typename NumberTraits<N>::Bits;

/// The nearest whole number, ties to even: what std::nearbyint gives.
template <class N>
TELVO_INLINE N nearestEven(const N& x) {
    constexpr double whole = 0x1p52; // from here on every number is whole
    constexpr std::uint64_t sign = 0x8000000000000000U;
    const N size = absolute(x);
    const N rounded = (size + whole) - whole;
    const N result = numberOf(bitsOf(rounded) | (bitsOf(x) & BitsOf<N>(sign)));
    return select(size < whole, result, x);
}

} // namespace telvo
