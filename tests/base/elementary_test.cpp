// SPDX-License-Identifier: GPL-3.0-or-later
//
// The elementary functions against MPFR, which rounds to any number of bits.

#include "base/elementary.h"

#include <gtest/gtest.h>
#include <mpfr.h>

#include <vector>

namespace telvo {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double RightAngle = 0x1.921fb54442d18p+0;

/// A number of 200 bits.
struct Exact {
    mpfr_t value;
    Exact() { mpfr_init2(value, 200); }
    explicit Exact(double x) : Exact() { mpfr_set_d(value, x, MPFR_RNDN); }
    ~Exact() { mpfr_clear(value); }
    Exact(const Exact&) = delete;
    Exact& operator=(const Exact&) = delete;
};

/// How far a result is from the true value, in units of the true value's last place.
double ulps(double result, const Exact& truth) {
    if (mpfr_zero_p(truth.value)) return result == 0 ? 0 : Infinity;
    constexpr mpfr_exp_t leastExponent = -1021; // below, all numbers have the same last place
    const mpfr_exp_t exponent = std::max(mpfr_get_exp(truth.value), leastExponent);
    Exact difference(result);
    mpfr_sub(difference.value, difference.value, truth.value, MPFR_RNDN);
    mpfr_mul_2si(difference.value, difference.value, 53 - exponent, MPFR_RNDN);
    return std::fabs(mpfr_get_d(difference.value, MPFR_RNDN));
}

double evenlySpread(int n) {
    return std::fmod(n * 0.6180339887498949, 1);
}

std::vector<double> between(double from, double to, int count = 4000) {
    std::vector<double> points = {from, to};
    for (int n = 0; n < count; ++n)
        points.push_back(from + evenlySpread(n) * (to - from));
    return points;
}

std::vector<double> atAnyScale(double from, double to, int count = 4000) {
    std::vector<double> points = {from, to};
    for (int n = 0; n < count; ++n)
        points.push_back(
            std::exp(std::log(from) + evenlySpread(n) * (std::log(to) - std::log(from))));
    return points;
}

/// The numbers next to a place where a function changes its way.
std::vector<double> around(double place) {
    std::vector<double> points = {place};
    for (const double end : {-Infinity, Infinity}) {
        double x = place;
        for (int n = 0; n < 40; ++n)
            points.push_back(x = std::nextafter(x, end));
    }
    return points;
}

struct Range {
    const char* name;
    std::vector<double> points;
};

template <class Function, class Truth>
void expectWithin(double limit, Function function, Truth truth, const std::vector<Range>& ranges) {
    for (const Range& range : ranges) {
        double worst = 0;
        double at = 0;
        for (const double x : range.points) {
            Exact expected;
            truth(expected, x);
            const double error = ulps(function(x), expected);
            if (!(error <= worst)) {
                worst = error;
                at = x;
            }
        }
        EXPECT_LE(worst, limit) << range.name << ", at " << at;
    }
}

bool isPositiveZero(double x) {
    return x == 0 && !std::signbit(x);
}

TEST(Elementary, LogarithmIsWithinOneUlpOfTheTruth) {
    expectWithin(
        1, [](double x) { return ln(x); },
        [](Exact& y, double x) {
            mpfr_set_d(y.value, x, MPFR_RNDN);
            mpfr_log(y.value, y.value, MPFR_RNDN);
        },
        {{"depth over width", between(0.05, 20)},
         {"one power of two", between(0.7, 1.42)},
         {"near 1", between(0.999, 1.001)},
         {"around 1", around(1)},
         {"around root 1/2", around(std::sqrt(0.5))},
         {"around root 2", around(std::sqrt(2))},
         {"every size", atAnyScale(2.3e-308, 1.7e308)},
         {"the least and the largest",
          {std::numeric_limits<double>::min(), std::numeric_limits<double>::max()}}});
    EXPECT_TRUE(isPositiveZero(ln(1.0)));
}

TEST(Elementary, SineIsWithinOneUlpOfTheTruth) {
    expectWithin(
        1, [](double x) { return sine(x); },
        [](Exact& y, double x) {
            mpfr_set_d(y.value, x, MPFR_RNDN);
            mpfr_sin(y.value, y.value, MPFR_RNDN);
        },
        {{"to a right angle", between(0, RightAngle)},
         {"the ends of both polynomials", between(0.6, 0.95)},
         {"obtuse and negative", between(-2.356, 2.356)},
         {"around 45 degrees", around(RightAngle / 2)},
         {"around 90 degrees", around(RightAngle)},
         {"small", atAnyScale(5e-324, 0.1)}});
}

TEST(Elementary, TangentIsWithinOneUlpOfTheTruth) {
    expectWithin(
        1, [](double x) { return tangent(x); },
        [](Exact& y, double x) {
            mpfr_set_d(y.value, x, MPFR_RNDN);
            mpfr_tan(y.value, y.value, MPFR_RNDN);
        },
        {{"to 89.9 degrees", between(0, 1.56905)},
         {"both sides of 45 degrees", between(0.7, 0.87)},
         {"the last degree", between(1.5533, RightAngle)},
         {"obtuse and negative", between(-2.356, 2.356)},
         {"around 45 degrees", around(RightAngle / 2)},
         {"around 90 degrees", around(RightAngle)},
         {"small", atAnyScale(5e-324, 0.1)}});
}

TEST(Elementary, ExponentialIsWithinOneUlpOfTheTruth) {
    constexpr double ln2 = 0.6931471805599453;
    expectWithin(
        1, [](double x) { return exponential(x); },
        [](Exact& y, double x) {
            mpfr_set_d(y.value, x, MPFR_RNDN);
            mpfr_exp(y.value, y.value, MPFR_RNDN);
        },
        {{"one power of two", between(-0.36, 0.36)},
         {"moderate", between(-20, 20)},
         {"every result", between(-745.13, 709.78)},
         {"results below the normal numbers", between(-745.13, -708.3)},
         {"around half of ln 2", around(ln2 / 2)},
         {"around the largest result", {709.782712893384, 709.7827128933839}},
         {"small", atAnyScale(5e-324, 0.1)}});
    EXPECT_EQ(exponential(0.0), 1);
    EXPECT_EQ(exponential(-0.0), 1);
}

/// The normal quantile by Newton's steps from the result in question, each of which doubles the digits.
void trueQuantile(Exact& x, double p) {
    const bool upper = p > 0.5;
    Exact least(p);
    if (upper) mpfr_ui_sub(least.value, 1, least.value, MPFR_RNDN);
    mpfr_set_d(x.value, upper ? -inverseNormal(p) : inverseNormal(p), MPFR_RNDN);
    Exact below;
    Exact density;
    Exact scale;
    for (int step = 0; step < 3; ++step) {
        // below = erfc(-x / root 2) / 2, density = exp(-x^2 / 2) / root(2 pi)
        mpfr_sqrt_ui(scale.value, 2, MPFR_RNDN);
        mpfr_div(below.value, x.value, scale.value, MPFR_RNDN);
        mpfr_neg(below.value, below.value, MPFR_RNDN);
        mpfr_erfc(below.value, below.value, MPFR_RNDN);
        mpfr_div_2ui(below.value, below.value, 1, MPFR_RNDN);
        mpfr_sqr(density.value, x.value, MPFR_RNDN);
        mpfr_div_si(density.value, density.value, -2, MPFR_RNDN);
        mpfr_exp(density.value, density.value, MPFR_RNDN);
        mpfr_const_pi(scale.value, MPFR_RNDN);
        mpfr_mul_2ui(scale.value, scale.value, 1, MPFR_RNDN);
        mpfr_sqrt(scale.value, scale.value, MPFR_RNDN);
        mpfr_div(density.value, density.value, scale.value, MPFR_RNDN);

        mpfr_sub(below.value, below.value, least.value, MPFR_RNDN);
        mpfr_div(below.value, below.value, density.value, MPFR_RNDN);
        mpfr_sub(x.value, x.value, below.value, MPFR_RNDN);
    }
    if (upper) mpfr_neg(x.value, x.value, MPFR_RNDN);
}

TEST(Elementary, NormalQuantileIsWithinFourUlpOfTheTruth) {
    expectWithin(4, [](double p) { return inverseNormal(p); }, trueQuantile,
                 {{"the middle", between(0.075, 0.925, 1500)},
                  {"close to one half", between(0.4999, 0.5001, 300)},
                  {"around one half", around(0.5)},
                  {"around the lower seam", around(0.075)},
                  {"around the upper seam", around(0.925)},
                  {"the lower tail", between(1e-6, 0.075, 1500)},
                  {"the upper tail", between(0.925, 1 - 0x1p-53, 1500)},
                  {"small", atAnyScale(2.3e-308, 0.1, 600)}});
    EXPECT_EQ(inverseNormal(0.5), 0);
}

TEST(Elementary, AnglesAsTheEngineComputesThemHaveTheNearestSineAndTangent) {
    // The least crosscut angle, usual abutment angles, and the right angle.
    for (const double degrees : {18.0, 21.0, 25.0, 30.0, 90.0}) {
        const double x = degrees * 0.017453292519943278;
        Exact y(x);
        mpfr_sin(y.value, y.value, MPFR_RNDN);
        EXPECT_EQ(sine(x), mpfr_get_d(y.value, MPFR_RNDN)) << degrees;
        mpfr_set_d(y.value, x, MPFR_RNDN);
        mpfr_tan(y.value, y.value, MPFR_RNDN);
        EXPECT_EQ(tangent(x), mpfr_get_d(y.value, MPFR_RNDN)) << degrees;
    }
    EXPECT_EQ(sine(RightAngle), 1);
}

TEST(Elementary, OutsideTheirRangeTheyGiveWhatIsDocumented) {
    const double nothing = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(ln(0.0), -Infinity);
    EXPECT_EQ(ln(-0.0), -Infinity);
    EXPECT_EQ(ln(0x1p-1023), -Infinity);
    EXPECT_EQ(ln(Infinity), Infinity);
    for (const double x : {-0x1p-1023, -1.0, -Infinity, nothing})
        EXPECT_TRUE(std::isnan(ln(x))) << x;

    for (const double x : {2.3561944, -2.3561944}) {
        EXPECT_FALSE(std::isnan(sine(x)));
        EXPECT_FALSE(std::isnan(tangent(x)));
    }
    for (const double x : {2.3561945, -2.3561945, 1e300, Infinity, -Infinity, nothing}) {
        EXPECT_TRUE(std::isnan(sine(x))) << x;
        EXPECT_TRUE(std::isnan(tangent(x))) << x;
    }
    EXPECT_TRUE(isPositiveZero(sine(0.0)) && isPositiveZero(-sine(-0.0)));
    EXPECT_TRUE(isPositiveZero(tangent(0.0)) && isPositiveZero(-tangent(-0.0)));

    for (const double x : {709.79, 1e300, Infinity})
        EXPECT_EQ(exponential(x), Infinity) << x;
    for (const double x : {-745.14, -1e300, -Infinity})
        EXPECT_TRUE(isPositiveZero(exponential(x))) << x;
    EXPECT_TRUE(std::isnan(exponential(nothing)));

    EXPECT_EQ(inverseNormal(0.0), -Infinity);
    EXPECT_EQ(inverseNormal(0x1p-1023), -Infinity);
    EXPECT_EQ(inverseNormal(1.0), Infinity);
    for (const double p : {-1e-300, -1.0, 1.0000000000000002, Infinity, -Infinity, nothing})
        EXPECT_TRUE(std::isnan(inverseNormal(p))) << p;
}

} // namespace
} // namespace telvo
