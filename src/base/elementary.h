// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/number.h"

#include <limits>

/// Logarithm, sine, tangent, exponential and normal quantile with the same digits on every machine;
/// those of a C library differ in the last bit between processors and systems. These are templates over
/// the number type, made from + - * /, square root and bit patterns alone (64-bit sums and logical
/// shifts, as SSE2 has no more), so that one case and a pack of cases get the same bits. The first four
/// are within 1 ulp of the true value over the range named, the quantile within 4.
///
/// All coefficients are fitted by scripts/fit-elementary; the largest part of an ulp that they leave
/// out is a tenth, in the logarithm and the tangent.
namespace telvo {

namespace elementary {

constexpr double Nothing = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double Largest = std::numeric_limits<double>::max();
constexpr double SmallestNormal = std::numeric_limits<double>::min();
constexpr double LargestAngle = 0x1.2d97c7f3321d2p+1; // 135 degrees
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

/// The first 26 bits of a number: products of two such are exact.
template <class N>
TELVO_INLINE N upperHalf(const N& x) {
    return numberOf(bitsOf(x) & BitsOf<N>(0xfffffffff8000000U));
}

/// The size of an angle, or what it lacks of a right angle where it is above 45 degrees: `rest` +
/// `tail`, with |tail| at most half an ulp of rest, and 0 at up to 45 degrees.
template <class N>
struct ReducedAngle {
    N size;
    TruthOf<N> lacking;
    N rest, tail;
};

template <class N>
TELVO_INLINE ReducedAngle<N> reducedAngle(const N& x) {
    constexpr double quarterOfPi = 0x1.921fb54442d18p-1;
    constexpr double halfOfPi = 0x1.921fb54442d18p+0;
    constexpr double halfOfPiLow = 0x1.1a62633145c07p-54;
    const N size = absolute(x);
    const auto lacking = size > quarterOfPi;
    const N first = select(lacking, halfOfPi - size, size); // the difference is exact
    const N second = select(lacking, N(halfOfPiLow), N(0));
    const N rest = first + second;
    return {size, lacking, rest, (first - rest) + second};
}

/// What an odd function of an angle gives: its value for the size of x with the sign of x, NaN outside
/// its range.
template <class N>
TELVO_INLINE N withSign(const N& x, const ReducedAngle<N>& angle, const N& value) {
    const auto sign = bitsOf(x) & BitsOf<N>(0x8000000000000000U);
    return select(angle.size <= LargestAngle, numberOf(bitsOf(value) ^ sign), N(Nothing));
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

/// Sine of an angle in radians, |x| up to 135 degrees.
/// Returned: NaN for larger angles and NaN.
/// Notes:    above 45 degrees the cosine of what is left to the right angle.
template <class N>
TELVO_INLINE N sine(const N& x) {
    using namespace elementary;
    const ReducedAngle<N> angle = reducedAngle(x);
    const N& r = angle.rest;
    const N z = r * r;

    const N series =
        polynomial(z, -0x1.5555555555555p-3, 0x1.1111111110c83p-7, -0x1.a01a019ea13b6p-13,
                   0x1.71de37b1e24f8p-19, -0x1.ae60212331627p-26, 0x1.5e119c8bdbfe2p-33);
    const N ofRest = r + r * z * series; // the tail is 0 where it counts

    const N half = 0.5 * z;
    const N near = 1 - half;
    const N higher =
        polynomial(z, 0x1.5555555555555p-5, -0x1.6c16c16c168ccp-10, 0x1.a01a019f38b48p-16,
                   -0x1.27e4fa0378261p-22, 0x1.1eeb585f82b45p-29, -0x1.9073e0ea437a0p-37);
    const N cosine = near + (((1 - near) - half) + (z * z * higher - r * angle.tail));

    return withSign(x, angle, select(angle.lacking, cosine, ofRest));
}

/// Tangent of an angle in radians, |x| up to 135 degrees.
/// Returned: NaN for larger angles and NaN.
/// Notes:    1) with u = tan(r/2): tan r = 2u / (1 - u^2), and of what lacks r (1 - u^2) / 2u.
///           2) numerator, denominator and quotient are held to 26 bits, so that their products are
///              exact, and what they lack goes into the remainder of the division.
template <class N>
TELVO_INLINE N tangent(const N& x) {
    using namespace elementary;
    const ReducedAngle<N> angle = reducedAngle(x);
    const N& r = angle.rest;
    const N z = r * r;
    const N series =
        polynomial(z, 0x1.5555555555556p-4, 0x1.1111111110a53p-7, 0x1.ba1ba1bb48d98p-11,
                   0x1.664f47e49126fp-14, 0x1.226e5e9bc2015p-17, 0x1.d6c7d023c8339p-21,
                   0x1.7ea832c32b990p-24, 0x1.289856bc193c6p-27, 0x1.4e66392d16477p-30);
    const N more = r * (z * series) + angle.tail;
    const N twice = upperHalf(r + more); // 2u
    const N twiceTail = (r - twice) + more;
    const N half = 0.5 * twice;
    const N square = half * half;
    const N rest = upperHalf(1 - square);
    const N restTail = ((1 - rest) - square) - twiceTail * (half + 0.25 * twiceTail);

    const N above = select(angle.lacking, rest, twice);
    const N aboveTail = select(angle.lacking, restTail, twiceTail);
    const N below = select(angle.lacking, twice, rest);
    const N belowTail = select(angle.lacking, twiceTail, restTail);
    const N inverse = 1 / (below + belowTail);
    const N quotient = upperHalf(above * inverse);
    const N remainder = (above - quotient * below) + (aboveTail - quotient * belowTail);
    return withSign(x, angle, quotient + inverse * remainder);
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

/// Quantile of the standard normal distribution: the x below which a standard normal variable stays
/// with the probability p; within 4 ulp for p from 2.3E-308 to 1 - 1.1E-16.
/// Returned: -infinity for 0 and probabilities below the least normal number, infinity for 1, NaN
///           outside 0 to 1 and for NaN.
/// Notes:    1) in the middle, |p - 1/2| <= 0.425, x = q (root 2 pi + q^2 R(0.425^2 - q^2)) with
///              q = p - 1/2; beyond it |x| = root 2 r - R(r - 1.5625) with r = root(-ln p).
///           2) a small probability above x is better given as p, and the sign of the result turned:
///              1 - p knows only 16 digits behind the decimal sign.
template <class N>
TELVO_INLINE N inverseNormal(const N& p) {
    using namespace elementary;
    constexpr double rootOfTwoPi = 0x1.40d931ff62706p+1;
    constexpr double rest = -0x1.a6a0d6f814637p-53; // of root 2 pi
    constexpr double rootOfTwo = 0x1.6a09e667f3bcdp+0;
    constexpr double middle = 0.425;
    const N q = p - 0.5;
    const N square = q * q;
    const N t = middle * middle - square;
    const N r = root(-ln(select(q < 0, p, 1 - p)));
    const N u = r - 1.5625;
    const auto inMiddle = absolute(q) <= middle;

    const N above =
        select(inMiddle,
               polynomial(t, 0x1.37fc2a497deaap+2, 0x1.7c54e380f9b7cp+7, 0x1.5c6169db02117p+11,
                          0x1.2a994b16aea54p+14, 0x1.e60251723432cp+15, 0x1.50b5811134a48p+16,
                          0x1.1eb21e1025b5cp+15, 0x1.1e087594a880dp+9),
               polynomial(u, 0x1.b373310c085c7p-1, 0x1.b2bc72785b4b3p+0, 0x1.64248dea1c4b3p+0,
                          0x1.39b31d4d9a0b2p-1, 0x1.43e1433051e8ap-3, 0x1.89661d5602d3dp-6,
                          0x1.0b200d733fc43p-9, 0x1.71b477b9131b6p-14, 0x1.c027238b587cdp-20,
                          0x1.5be3af09758edp-27, 0x1.f0dca43b1e498p-39, -0x1.0de209709c3ffp-48));
    const N below =
        select(inMiddle,
               polynomial(t, 1, 0x1.6846c73574130p+5, 0x1.8bc3fa76d393cp+9, 0x1.ae58a82440ac7p+12,
                          0x1.e59172c0268acp+14, 0x1.109a0bec0340ap+16, 0x1.09196b445e11cp+16,
                          0x1.3775fe414aba0p+14),
               polynomial(u, 1, 0x1.2d2eefc917654p+1, 0x1.292d4ffd1f4a6p+1, 0x1.42783c93f6423p+0,
                          0x1.a68d7ad84fefap-2, 0x1.56ad99a83e761p-4, 0x1.503aab133023dp-7,
                          0x1.7745b56b348b1p-11, 0x1.aee1b36785eefp-16, 0x1.af491f50e9482p-22,
                          0x1.07c71777fb036p-29));
    const N ratio = above / below;

    const N tail = select(r == Infinity, N(Infinity), rootOfTwo * r - ratio);
    return select(inMiddle, q * rootOfTwoPi + q * (square * ratio + rest),
                  select(q < 0, -tail, tail));
}

} // namespace telvo
