// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/automaticRules.h"

#include "base/numbers.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace telvo::project {
namespace {

/// The rounding by way of text: the digits that a form would show, read back.
double roundedAsText(double x) {
    return leadingValue(formatPattern(x, "0"));
}

double breadthBeforeRounding(double H, bool english) {
    return english ? 5 * std::sqrt(H) : 5 * std::sqrt(H * FeetPerMetre) / FeetPerMetre;
}

double nextOf(double x, int steps) {
    for (; steps > 0; --steps)
        x = std::nextafter(x, std::numeric_limits<double>::infinity());
    for (; steps < 0; ++steps)
        x = std::nextafter(x, 0.0);
    return x;
}

TEST(WholeOfDecimals, RoundsAsThePatternDoesAroundEveryKindOfHalf) {
    EXPECT_EQ(wholeOfDecimals(2.5), 3); // half up, not to even
    EXPECT_EQ(wholeOfDecimals(2.4999999999999996), 3) << "15 digits: 2.50000000000000";
    EXPECT_EQ(wholeOfDecimals(2.499999999999994), 2) << "15 digits: 2.49999999999999";
    EXPECT_EQ(wholeOfDecimals(0.0), 0);
    // The last 60 numbers before a half, and some behind it, in every decade below 1E15.
    std::mt19937_64 random(20);
    for (double decade = 1; decade < 1e15; decade *= 10)
        for (int draw = 0; draw < 100; ++draw) {
            const double whole = std::floor(
                decade * std::uniform_real_distribution<double>(draw < 50 ? 0 : 1, 10)(random));
            for (int steps = -60; steps <= 5; ++steps) {
                const double x = nextOf(whole + 0.5, steps);
                ASSERT_EQ(wholeOfDecimals(x), roundedAsText(x)) << generalNumber(x);
            }
        }
}

TEST(AutomaticAMZBreadth, IsWhatTheFormWouldShowForAMillionDepths) {
    std::mt19937_64 random(21);
    std::uniform_real_distribution<double> mined(0, 4000);
    std::uniform_real_distribution<double> exponent(-6, 24);
    Plain<double> calc;
    const auto expectSame = [&](double H, bool english) {
        ASSERT_EQ(automaticAMZBreadth(calc, english, H),
                  roundedAsText(breadthBeforeRounding(H, english)))
            << generalNumber(H) << (english ? " ft" : " m");
    };
    for (int i = 0; i < 250'000; ++i) {
        const double depths[] = {mined(random), std::pow(10, exponent(random))};
        for (const double H : depths)
            for (const bool english : {true, false})
                expectSame(H, english);
    }
    // Depths whose breadth is a half, and their neighbors.
    for (int whole = 0; whole < 2000; ++whole)
        for (int steps = -4; steps <= 4; ++steps) {
            const double tie = (whole + 0.5) / 5;
            expectSame(nextOf(tie * tie, steps), true);
            const double metricTie = (whole + 0.5) * FeetPerMetre / 5;
            expectSame(nextOf(metricTie * metricTie / FeetPerMetre, steps), false);
        }
}

TEST(FormArchFactor, RoundsAsWithTheLogarithmOfTheLibrary) {
    std::mt19937_64 random(22);
    std::uniform_real_distribution<double> depth(1, 3000);
    std::uniform_real_distribution<double> width(20, 1200);
    Plain<double> calc;
    for (int i = 0; i < 200'000; ++i) {
        const bool english = i % 2 == 0;
        const auto H = static_cast<float>(depth(random));
        const auto W = static_cast<float>(width(random));
        const float h = english ? H : static_cast<float>(H * FeetPerMetre);
        const float w = english ? W : static_cast<float>(W * FeetPerMetre);
        double F = h >= 25 ? 1 - 0.28 * std::log(double{h} / double{w}) : 0;
        if (h - (english ? 80.0 : 262.4671916010498) < w) F = 1;
        F = std::max(F, 0.28);
        ASSERT_EQ(formArchFactor(calc, english, W, H), static_cast<float>(roundHalfEven2(F)))
            << H << ' ' << W;
    }
}

} // namespace
} // namespace telvo::project
