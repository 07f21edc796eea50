// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/elementary.h"

#include <iterator>

// What a number type can do, once for `double` and for every Pack: no standard function in it, since
// one of its users is compiled for a machine that may not be there.
namespace telvo::batch {

constexpr const char* PackOperations[] = {
    "a + b",    "a - b",       "a * b",     "a / b",    "-a",          "root",       "absolute",
    "toSingle", "smaller",     "not above", "above",    "not below",   "equal",      "unlike",
    "both",     "either",      "neither",   "literals", "sum of bits", "bits",       "shifts",
    "bitWhere", "nearestEven", "ln",        "sine",     "tangent",     "exponential"};
constexpr int PackOperationCount = static_cast<int>(std::size(PackOperations));

template <class N>
TELVO_INLINE N packOperation(int operation, const N& a, const N& b) {
    using Bits = BitsOf<N>;
    const auto shown = [](const TruthOf<N>& truth) __attribute__((always_inline)) {
        return select(truth, N(1), N(0));
    };
    switch (operation) {
    case 0:
        return a + b;
    case 1:
        return a - b;
    case 2:
        return a * b;
    case 3:
        return a / b;
    case 4:
        return -a;
    case 5:
        return root(a);
    case 6:
        return absolute(a);
    case 7:
        return toSingle(a);
    case 8:
        return shown(a < b);
    case 9:
        return shown(a <= b);
    case 10:
        return shown(a > b);
    case 11:
        return shown(a >= b);
    case 12:
        return shown(a == b);
    case 13:
        return shown(a != b);
    case 14:
        return shown(a < b && b > 1);
    case 15:
        return shown(a < b || 1 > a);
    case 16:
        return shown(!(a < b));
    case 17:
        return 2 * a + b / 4 - 0.5;
    case 18:
        return numberOf(bitsOf(a) + bitsOf(b) - Bits(1));
    case 19:
        return numberOf((bitsOf(a) & bitsOf(b)) | (bitsOf(a) ^ Bits(0xffU)));
    case 20:
        return numberOf((bitsOf(a) >> 3) | (bitsOf(b) << 61));
    case 21:
        return numberOf(bitsOf(N(1)) | bitWhere(a < b, 0x5000U));
    case 22:
        return nearestEven(a);
    case 23:
        return ln(a);
    case 24:
        return sine(a);
    case 25:
        return tangent(a);
    case 26:
        return exponential(a);
    }
    return a;
}

/// Computes as many cases as a pack has lanes.
void packOperationAvx2(int operation, const double* a, const double* b, double* out);

} // namespace telvo::batch
