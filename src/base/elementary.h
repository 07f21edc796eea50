// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/number.h"

#include <limits>

/// Logarithm, sine, tangent and exponential with the same digits on every machine. Those of a C
/// library differ in the last bit between processors and systems. These are templates over the number
/// type, made from + - * /, square root and bit patterns alone (64-bit sums and logical shifts, as
/// SSE2 has no more), so that one case and a pack of cases get the same bits. All are within 1 ulp of
/// the true value over the range named.
///
/// The polynomials are fitted by scripts/fit-elementary: least squares at Chebyshev points, one
/// coefficient after the other rounded to double. What they leave out is at most 1/20 of an ulp.
namespace telvo {

namespace elementary {

constexpr double Nothing = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double Largest = std::numeric_limits<double>::max();
constexpr double SmallestNormal = std::numeric_limits<double>::min();
constexpr double LargestAngle = 64;
constexpr double WholeNumbers = 0x1.8p52; // a sum with it is a whole number, in its last bits

/// first + x (rest[0] + x (rest[1] + ...)).
template <class N>
TELVO_INLINE N polynomial(const N&, double constant) {
    return N(constant);
}
template <class N, class... Rest>
TELVO_INLINE N polynomial(const N& x, double first, Rest... rest) {
    return first + x * polynomial(x, rest...);
}

/// 2 to the power of a whole number from -1022 to 1023.
template <class N>
TELVO_INLINE N powerOfTwo(const N& whole) {
    return numberOf((bitsOf(whole + WholeNumbers) + BitsOf<N>(1023)) << 52);
}

/// An angle less the nearest multiple of a right angle: `rest` + `tail`, with |tail| below half an ulp
/// of rest; the two last bits of `quarter` count the right angles.
template <class N>
struct ReducedAngle {
    N rest, tail;
    BitsOf<N> quarter;
};

template <class N>
TELVO_INLINE ReducedAngle<N> reducedAngle(const N& x) {
    constexpr double quartersPerRadian = 0x1.45f306dc9c883p-1;
    // pi/2 in three parts; the products of the first two with a small whole number are exact.
    constexpr double high = 0x1.921fb5440p+0;
    constexpr double middle = 0x1.0b4611a60p-34;
    constexpr double low = 0x1.3198a2e037073p-69;
    const N counted = x * quartersPerRadian + WholeNumbers;
    const N n = counted - WholeNumbers;
    const N first = x - n * high;
    const N second = n * middle;
    const N near = first - second;
    const N left = ((first - near) - second) - n * low;
    const N rest = near + left;
    return {rest, (near - rest) + left, bitsOf(counted)};
}

/// What a function of an angle gives outside its range.
template <class N>
TELVO_INLINE N withinAngles(const N& x, const N& value) {
    return select(absolute(x) <= LargestAngle, value, N(Nothing));
}

} // namespace elementary

/// Natural logarithm of a normal number above 0.
/// Returned: -infinity for 0 and numbers below the least normal one (2.2E-308), infinity for infinity,
///           NaN for negative numbers and NaN.
/// Notes:    x = 2^k m with m between root 1/2 and root 2; ln m = 2 artanh(s) with s = (m-1)/(m+1), of
///           which the odd series is the polynomial.
template <class N>
TELVO_INLINE N ln(const N& x) {
    using namespace elementary;
    using Bits = BitsOf<N>;
    constexpr std::uint64_t rootOfHalf = 0x3fe6a09e667f3bcdU;
    constexpr std::uint64_t one = 0x3ff0000000000000U;
    constexpr double ln2High = 0x1.62e42fefap-1; // its product with any k is exact
    constexpr double ln2Low = 0x1.cf79abc9e3b39p-40;

    const Bits shifted = bitsOf(x) + Bits(one - rootOfHalf);
    const N k = numberOf((shifted >> 52) | bitsOf(N(0x1p52))) - (0x1p52 + 1023);
    const N m = numberOf((shifted & Bits(0x000fffffffffffffU)) + Bits(rootOfHalf));
    const N f = m - 1;
    const N half = 0.5 * f * f;
    const N s = f / (2 + f);
    const N z = s * s;
    const N series =
        z * polynomial(z, 0x1.5555555555558p-1, 0x1.9999999995309p-2, 0x1.2492492df1e99p-2,
                       0x1.c71c62e28b27dp-3, 0x1.7462b5c3e3a3bp-3, 0x1.39fe384090dfbp-3,
                       0x1.2b5a4d2779fdbp-3);
    const N value = k * ln2High - ((half - (s * (half + series) + k * ln2Low)) - f);

    const N beyond = select(x <= Largest, value, x);
    return select(x >= SmallestNormal, beyond, select(x >= 0, N(-Infinity), N(Nothing)));
}

/// Sine of an angle in radians, |x| <= 64.
/// Returned: NaN for larger angles and NaN.
template <class N>
TELVO_INLINE N sine(const N& x) {
    using namespace elementary;
    using Bits = BitsOf<N>;
    const ReducedAngle<N> angle = reducedAngle(x);
    const N& r = angle.rest;
    const N& tail = angle.tail;
    const N z = r * r;

    const N cube = z * r;
    const N higher =
        polynomial(z, 0x1.1111111110c83p-7, -0x1.a01a019ea13b6p-13, 0x1.71de37b1e24f8p-19,
                   -0x1.ae60212331627p-26, 0x1.5e119c8bdbfe2p-33);
    const N sineOfRest =
        r - ((z * (0.5 * tail - cube * higher) - tail) + cube * 0x1.5555555555555p-3);

    const N half = 0.5 * z;
    const N nearCosine = 1 - half;
    const N series =
        z * polynomial(z, 0x1.5555555555555p-5, -0x1.6c16c16c168ccp-10, 0x1.a01a019f38b48p-16,
                       -0x1.27e4fa0378261p-22, 0x1.1eeb585f82b45p-29, -0x1.9073e0ea437a0p-37);
    const N cosineOfRest = nearCosine + (((1 - nearCosine) - half) + (z * series - r * tail));

    // The last bit of the count takes the cosine, the one before it the other sign.
    const N odd = numberOf((angle.quarter & Bits(1)) << 62); // 0 or 2
    const N value = select(odd > 0, cosineOfRest, sineOfRest);
    const Bits sign = (angle.quarter & Bits(2)) << 62;
    return withinAngles(x, numberOf(bitsOf(value) ^ sign));
}

/// Tangent of an angle in radians, |x| <= 64.
/// Returned: NaN for larger angles and NaN.
/// Notes:    with u = tan(r/2): tan r = 2u / (1 - u^2), and one right angle further -(1 - u^2) / 2u.
///           Both are one division and a step that takes the rounding of the quotient back.
template <class N>
TELVO_INLINE N tangent(const N& x) {
    using namespace elementary;
    using Bits = BitsOf<N>;
    const ReducedAngle<N> angle = reducedAngle(x);
    const N h = 0.5 * angle.rest;
    const N z = h * h;
    const N series =
        polynomial(z, 0x1.5555555555556p-2, 0x1.1111111110a53p-3, 0x1.ba1ba1bb48d98p-5,
                   0x1.664f47e49126fp-6, 0x1.226e5e9bc2015p-7, 0x1.d6c7d023c8339p-9,
                   0x1.7ea832c32b990p-10, 0x1.289856bc193c6p-11, 0x1.4e66392d16477p-12);
    const N halfTail = 0.5 * angle.tail;
    const N more = h * (z * series) + (halfTail + halfTail * z);
    const N u = h + more;
    const N uTail = (h - u) + more;
    const N square = u * u;
    const N least = 1 - square;
    const N leastTail = ((1 - least) - square) - 2 * (u * uTail);

    const auto odd = numberOf((angle.quarter & Bits(1)) << 62) > N(0);
    const N above = select(odd, least, 2 * u);
    const N aboveTail = select(odd, leastTail, 2 * uTail);
    const N below = select(odd, -2 * u, least);
    const N belowTail = select(odd, -2 * uTail, leastTail);

    const N inverse = 1 / below;
    const N quotient = above * inverse;
    // What quotient * below misses of above, exactly: both factors as halves of 26 bits and less.
    const Bits upperHalf(0xfffffffff8000000U);
    const N q1 = numberOf(bitsOf(quotient) & upperHalf);
    const N q2 = quotient - q1;
    const N b1 = numberOf(bitsOf(below) & upperHalf);
    const N b2 = below - b1;
    const N missed = (((above - q1 * b1) - q1 * b2) - q2 * b1) - q2 * b2;
    const N value = quotient + inverse * (missed + (aboveTail - quotient * belowTail));
    return withinAngles(x, value);
}

/// e to the power of x.
/// Returned: infinity above 709.78, 0 below -745.13, NaN for NaN.
template <class N>
TELVO_INLINE N exponential(const N& x) {
    using namespace elementary;
    constexpr double ln2High = 0x1.62e42fefap-1;
    constexpr double ln2Low = 0x1.cf79abc9e3b39p-40;
    const N held = select(x > 710, N(710), select(x < -746, N(-746), x));
    const N k = (held * 0x1.71547652b82fep+0 + WholeNumbers) - WholeNumbers;
    const N high = held - k * ln2High;
    const N low = k * ln2Low;
    const N r = high - low;
    const N tail = (high - r) - low;
    const N series = polynomial(r, 0x1.0000000000000p-1, 0x1.5555555555557p-3, 0x1.5555555555556p-5,
                                0x1.1111111110050p-7, 0x1.6c16c16c15ff9p-10, 0x1.a01a01ac1e915p-13,
                                0x1.a01a01a81968ep-16, 0x1.71de01aacd321p-19, 0x1.27e4d81523f67p-22,
                                0x1.af4ecf3207b21p-26, 0x1.1f78e7c32e010p-29);
    const N sum = 1 + r;
    const N value = sum + (((1 - sum) + r) + (r * r * series + (tail + tail * r)));
    // In two steps: 2^1024 and the powers below the least normal number have no bit pattern of a power.
    const N firstStep = (0.5 * k + WholeNumbers) - WholeNumbers;
    return (value * powerOfTwo(firstStep)) * powerOfTwo(k - firstStep);
}

} // namespace telvo
