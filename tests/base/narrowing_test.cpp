// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/number.h"

#include <gtest/gtest.h>

namespace {

// Two roundings to float in a row of stores: g++ 12 at -O2 drops the first of them when it makes one
// store of the two (its vectorizer of straight-line code). The loads in single precision of the first
// panel row have this shape.
void storePair(double x, double y, double* out) {
    const float a = static_cast<float>(x);
    const float b = static_cast<float>(y + a);
    out[0] = a;
    out[1] = b;
}

void storePairThroughToSingle(double x, double y, double* out) {
    const double a = telvo::toSingle(x);
    const double b = telvo::toSingle(y + a);
    out[0] = a;
    out[1] = b;
}

void expectBothRoundings(void (*function)(double, double, double*)) {
    void (*volatile store)(double, double, double*) = function; // compiled for any numbers
    double out[2];
    store(1.0 / 3, 1, out);
    EXPECT_EQ(out[0], 11184811.0 / 33554432); // 0.333333343267..., 24 bits
    EXPECT_EQ(out[1], 11184811.0 / 8388608);
}

TEST(Narrowing, ThisBuildKeepsBothRoundingsOfAPair) {
    expectBothRoundings(storePair);
}

TEST(Narrowing, ToSingleKeepsThemWhateverTheFlags) {
    expectBothRoundings(storePairThroughToSingle);
}

} // namespace
