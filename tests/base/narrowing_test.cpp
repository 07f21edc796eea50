// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/number.h"

#include <gtest/gtest.h>

namespace {

// Two roundings to float in a row of stores: g++ 12 at -O2 drops the first of them when it makes one
// store of the two (its vectorizer of straight-line code). The loads in single precision of the first
// panel row have this shape.
[[gnu::noinline]] void storePair(double x, double y, double* out) {
    const float a = static_cast<float>(x);
    const float b = static_cast<float>(y + a);
    out[0] = a;
    out[1] = b;
}

[[gnu::noinline]] void storePairThroughToSingle(double x, double y, double* out) {
    const double a = telvo::toSingle(x);
    const double b = telvo::toSingle(y + a);
    out[0] = a;
    out[1] = b;
}

constexpr double third = 1.0 / 3;
constexpr double thirdAsFloat = 11184811.0 / 33554432; // 0.333333343267..., 24 bits

TEST(Narrowing, ThisBuildKeepsBothRoundingsOfAPair) {
    double out[2];
    storePair(third, 1, out);
    EXPECT_EQ(out[0], thirdAsFloat);
    EXPECT_EQ(out[1], 11184811.0 / 8388608); // 1.33333337306976
}

TEST(Narrowing, ToSingleKeepsThemWhateverTheFlags) {
    double out[2];
    storePairThroughToSingle(third, 1, out);
    EXPECT_EQ(out[0], thirdAsFloat);
    EXPECT_EQ(out[1], 11184811.0 / 8388608);
}

} // namespace
