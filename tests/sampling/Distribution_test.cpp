// SPDX-License-Identifier: GPL-3.0-or-later
// Quantiles against values computed with thirty digits by another program.
#include "sampling/Distribution.h"
#include "sampling/special.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace telvo::sampling {
namespace {

Distribution made(Result<Distribution> result) {
    EXPECT_TRUE(result) << faultText(result.fault());
    return *result;
}

constexpr double Probabilities[] = {0.001, 0.05, 0.5, 0.95, 0.999};

void expectQuantiles(const Distribution& distribution, const std::array<double, 5>& expected,
                     double tolerance, const char* name) {
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(distribution.at(Probabilities[i]), expected[i],
                    tolerance * std::abs(expected[i]))
            << name << " " << Probabilities[i];
        EXPECT_NEAR(distribution.below(expected[i]), Probabilities[i], 1e-8) << name;
    }
}

TEST(Distribution, HasThePublishedQuantiles) {
    constexpr double close = 1e-12, knots = 1e-9;
    const Distribution normal = made(Distribution::normal(900, 135));
    expectQuantiles(
        normal, {482.8186386673452, 677.9447603615512, 900, 1122.055239638449, 1317.181361332655},
        close, "normal");
    expectQuantiles(made(Distribution::lognormal(900, .15)),
                    {561.330967948692, 696.3919146560521, 890.0427175814678, 1137.543418365304,
                     1411.245921483193},
                    close, "lognormal");
    expectQuantiles(
        made(normal.truncated(600, 1200)),
        {603.7730801976462, 692.1449093683567, 900, 1107.855090631643, 1196.226919802354}, close,
        "truncated normal");
    expectQuantiles(
        made(Distribution::triangular(700, 900, 1200)),
        {710, 770.7106781186548, 926.1387212474169, 1113.397459621556, 1187.752551286084}, close,
        "triangular");
    expectQuantiles(made(Distribution::pert(700, 900, 1200)),
                    {714.3075211172064, 769.6402269413804, 912.7354010011498, 1077.225799719545,
                     1163.831118545181},
                    knots, "PERT");
    expectQuantiles(made(Distribution::beta(2.5, 4, 0, 1)),
                    {0.02210474259210367, 0.1148196419309744, 0.3721324311676063,
                     0.6973994508621769, 0.8939321882896461},
                    knots, "beta");
    expectQuantiles(made(Distribution::gamma(900, .15)),
                    {539.6644517497654, 690.0380896607322, 893.2590740726282, 1132.958476385467,
                     1375.387423344671},
                    knots, "gamma");
    expectQuantiles(made(Distribution::weibull(2, 900)),
                    {28.46761792287269, 203.832206615922, 749.299150041928, 1557.736544342057,
                     2365.434796390619},
                    close, "Weibull");
    expectQuantiles(made(Distribution::gumbelLargest(900, 135)),
                    {635.8144331923434, 723.7537567780528, 877.8216254727566, 1151.882801168212,
                     1566.294049293309},
                    close, "Gumbel");
    expectQuantiles(
        made(Distribution::trapezoidal(700, 800, 1000, 1200)),
        {708.3666002653408, 759.1607978309962, 925, 1116.333997346592, 1188.167840433801}, close,
        "trapezoidal");
    const Distribution smallest = made(Distribution::gumbelSmallest(-900, 135));
    const Distribution largest = made(Distribution::gumbelLargest(900, 135));
    for (const double p : Probabilities)
        EXPECT_NEAR(smallest.at(p), -largest.at(1 - p), 1e-9);
    const Distribution weibull = made(Distribution::weibullOfMean(900, .15));
    const Distribution same = made(Distribution::weibull(7.90692680460164, 956.220054218085));
    for (const double p : Probabilities)
        EXPECT_NEAR(weibull.at(p), same.at(p), 1e-9);
}

TEST(Distribution, TellsMeanAndDeviationOfWhatIsLeft) {
    const auto expectMoments = [](const Distribution& d, double mean, double sd) {
        EXPECT_NEAR(d.mean(), mean, 1e-3 * std::abs(mean));
        EXPECT_NEAR(d.sd(), sd, 2e-3 * sd);
        // And these are the samples' own.
        double sum = 0, square = 0;
        constexpr int n = 50'000;
        for (int i = 0; i < n; ++i)
            sum += d.at((i + .5) / n);
        for (int i = 0; i < n; ++i)
            square += std::pow(d.at((i + .5) / n) - sum / n, 2);
        EXPECT_NEAR(sum / n, mean, 2e-3 * std::abs(mean));
        EXPECT_NEAR(std::sqrt(square / n), sd, 1e-2 * sd);
    };
    expectMoments(made(made(Distribution::normal(900, 135)).truncated(600, 1200)), 900, 124.16);
    expectMoments(made(Distribution::lognormal(900, .15)), 900, 135);
    expectMoments(made(Distribution::gamma(900, .15)), 900, 135);
    expectMoments(made(Distribution::weibullOfMean(900, .15)), 900, 135);
    expectMoments(made(Distribution::gumbelSmallest(900, 135)), 900, 135);
    expectMoments(made(Distribution::betaOfMean(900, 60, 700, 1200)), 900, 60);
    expectMoments(made(Distribution::uniform(-3, 3)).shifted(100), 100, std::sqrt(3.0));
    expectMoments(made(Distribution::triangular(0, 0, 3)), 1, std::sqrt(.5));
    expectMoments(made(Distribution::discrete({6, 5, 8}, {2, 1, 1})), 6.25, std::sqrt(1.1875));
    expectMoments(made(Distribution::measured({5, 6, 6, 7, 9, 8})), 6.8, std::sqrt(3.68 / 3));
}

TEST(Distribution, OfSingleAndMeasuredValues) {
    const Distribution single = made(Distribution::discrete({6, 5, 8}, {2, 1, 1}));
    EXPECT_EQ(single.at(0.2), 5);
    EXPECT_EQ(single.at(0.25), 5);
    EXPECT_EQ(single.at(0.26), 6);
    EXPECT_EQ(single.at(0.99), 8);
    EXPECT_EQ(single.below(6), 0.75);
    const Distribution measured = made(Distribution::measured({9, 5, 7}));
    EXPECT_EQ(measured.at(0.25), 6);
    EXPECT_EQ(measured.at(0.75), 8);
    const Distribution cut = made(measured.truncated(6, std::nullopt));
    EXPECT_GE(cut.at(1e-9), 6);
    EXPECT_EQ(made(Distribution::normal(0, 1)).shifted(5).below(5), 0.5);
}

TEST(Distribution, RefusesWhatIsNone) {
    const double nan = std::nan("");
    EXPECT_FALSE(Distribution::normal(1, 0));
    EXPECT_FALSE(Distribution::normal(nan, 1));
    EXPECT_FALSE(Distribution::lognormal(-1, 1));
    EXPECT_FALSE(Distribution::lognormal(1, -1));
    EXPECT_FALSE(Distribution::uniform(1, 1));
    EXPECT_FALSE(Distribution::triangular(1, 0, 2));
    EXPECT_FALSE(Distribution::trapezoidal(1, 3, 2, 4));
    EXPECT_FALSE(Distribution::pert(1, 1, 1));
    EXPECT_FALSE(Distribution::beta(0, 1, 0, 1));
    EXPECT_FALSE(Distribution::betaOfMean(0.5, 0.6, 0, 1));
    EXPECT_FALSE(Distribution::gamma(1, 0));
    EXPECT_FALSE(Distribution::weibullOfMean(1, 1e-6));
    EXPECT_FALSE(Distribution::gumbelLargest(1, -1));
    EXPECT_FALSE(Distribution::discrete({}, {}));
    EXPECT_FALSE(Distribution::discrete({1, 2}, {1, 0}));
    EXPECT_FALSE(Distribution::measured({1}));
    EXPECT_FALSE(Distribution::measured({1, 1}));
    const Distribution normal = made(Distribution::normal(0, 1));
    EXPECT_FALSE(normal.truncated(1, -1));
    EXPECT_FALSE(normal.truncated(50, 60)) << "nothing is left there";
    EXPECT_TRUE(normal.truncated(7, 8));
}

TEST(Special, AgreesWithTheFunctionsOfTheLibrary) {
    for (double x = -37; x < 37; x += 0.173) {
        const auto expected = static_cast<double>(std::erfc(-x / std::sqrt(2.0L)) / 2);
        EXPECT_NEAR(normalCdf(x), expected, 1e-13 * expected + 1e-300) << x;
    }
    for (double x = 0.013; x < 400; x *= 1.21)
        EXPECT_NEAR(logGamma(x), std::lgamma(x), 3e-14 * std::max(1.0, std::abs(std::lgamma(x))))
            << x;
    EXPECT_NEAR(incompleteGamma(1, 2), 1 - std::exp(-2.0), 1e-15);
    EXPECT_NEAR(upperIncompleteGamma(1, 30) / std::exp(-30.0), 1, 1e-13);
    EXPECT_NEAR(incompleteGamma(0.5, 2), std::erf(std::sqrt(2.0)), 1e-14);
    EXPECT_NEAR(incompleteBeta(1, 3, 0.2), 1 - std::pow(0.8, 3), 1e-14);
    EXPECT_NEAR(incompleteBeta(2, 2, 0.7), 3 * 0.49 - 2 * 0.343, 1e-14);
}

} // namespace
} // namespace telvo::sampling
