// SPDX-License-Identifier: GPL-3.0-or-later
// Correlations and estimates against published values and against values computed by other programs.
#include "sampling/correlation.h"
#include "sampling/estimates.h"

#include "base/elementary.h"
#include "sampling/Philox.h"
#include "sampling/shapley.h"
#include "sampling/sobol.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace telvo::sampling {
namespace {

Matrix symmetric(double ab, double ac, double bc) {
    Matrix m = Matrix::identity(3);
    m.at(0, 1) = m.at(1, 0) = ab;
    m.at(0, 2) = m.at(2, 0) = ac;
    m.at(1, 2) = m.at(2, 1) = bc;
    return m;
}

TEST(Shapley, SharesOutTheVarianceOfALinearSum) {
    // x1 + x2 with standard deviations 1 and 2 and a correlation r of 0.5, V = 1 + 4 + 2 = 7. Given the
    // other one, x1 leaves 0.75 and x2 leaves 3: (0.75 + 7 - 3) / 2 / 7 and (3 + 7 - 0.75) / 2 / 7.
    Matrix correlation = Matrix::identity(2);
    correlation.at(0, 1) = correlation.at(1, 0) = 0.5;
    const auto drawn = [](std::uint64_t input, std::size_t count) {
        std::vector<double> scores;
        for (std::size_t i = 0; i < count; ++i)
            scores.push_back(
                inverseNormal(between0and1(Stream{1, input, 0}.word(Purpose::Samples, i))));
        return scores;
    };
    constexpr std::size_t count = 40'000;
    std::vector<std::vector<double>> base = {drawn(1, count), drawn(2, count)},
                                     fresh = {drawn(3, count), drawn(4, count)};
    for (std::size_t i = 0; i < count; ++i)
        base[1][i] = 0.5 * base[0][i] + std::sqrt(0.75) * base[1][i];
    const OutcomesOf sum = [](const auto& scores, std::vector<double>& to) {
        for (std::size_t i = 0; i < to.size(); ++i)
            to[i] = scores[0][i] + 2 * scores[1][i];
    };
    std::vector<double> own(count);
    sum(base, own);
    const auto effects = shapleyEffects({correlation, base, fresh, own}, sum, {1, 0, 0});
    ASSERT_TRUE(effects);
    EXPECT_NEAR((*effects)[0], 0.339285714286, 0.01);
    EXPECT_NEAR((*effects)[1], 0.660714285714, 0.01);
    EXPECT_NEAR((*effects)[0] + (*effects)[1], 1, 1e-12);
}

TEST(OrderStatistics, AreThoseOfSortedNumbers) {
    for (const std::size_t count : {1U, 7U, 512U, 5000U, 40'000U})
        for (const bool atoms : {false, true}) {
            std::vector<double> values;
            const Stream stream{3, count, 0};
            for (std::size_t i = 0; i < count; ++i) {
                const double u = between0and1(stream.word(Purpose::Samples, i));
                values.push_back(atoms ? std::floor(4 * u) : 1 / u - 3); // ties; a long tail
            }
            std::vector<double> sorted = values;
            std::sort(sorted.begin(), sorted.end());
            const std::vector<std::size_t> places = {0, count / 3, count / 2, count / 3, count - 1};
            const std::vector<double> found = orderStatistics(values, places);
            for (std::size_t i = 0; i < places.size(); ++i)
                EXPECT_EQ(found[i], sorted[places[i]]) << count;
            const double ps[] = {0, 0.05, 0.5, 0.999, 1};
            const std::vector<double> quantiles = quantilesOf(values, ps);
            for (std::size_t i = 0; i < std::size(ps); ++i)
                EXPECT_EQ(quantiles[i], quantileOf(sorted, ps[i])) << count << " " << ps[i];
        }
    EXPECT_TRUE(quantilesOf({}, {}).empty());
}

TEST(Correlation, OfRanksBecomesOneOfNormalScores) {
    EXPECT_NEAR(ofNormalScores(.5), 0.5176380902050415, 1e-15);
    EXPECT_NEAR(ofNormalScores(.3), 0.3128689300804617, 1e-15);
    EXPECT_NEAR(ofNormalScores(-.2), -0.2090569265353069, 1e-15);
    EXPECT_EQ(ofNormalScores(0), 0);
    for (const double rank : {-1.0, -.7, 0.0, .31, .999})
        EXPECT_NEAR(ofRanks(ofNormalScores(rank)), rank, 1e-14);
}

TEST(Correlation, IsRepairedWhereItContradictsItself) {
    const Eigen eigen = eigenOf(symmetric(.9, .7, .3));
    EXPECT_NEAR(eigen.values[0], 2.29672779, 1e-8);
    EXPECT_NEAR(eigen.values[1], 0.71062465, 1e-8);
    EXPECT_NEAR(eigen.values[2], -0.00735244, 1e-8);
    EXPECT_FALSE(cholesky(symmetric(.9, .7, .3)));

    const auto repaired = correlationOf(symmetric(ofRanks(.9), ofRanks(.7), ofRanks(.3)));
    ASSERT_TRUE(repaired);
    EXPECT_NEAR(repaired->used.at(0, 1), .89402441, 1e-8);
    EXPECT_NEAR(repaired->used.at(0, 2), .69631907, 1e-8);
    EXPECT_NEAR(repaired->used.at(1, 2), .30096904, 1e-8);
    EXPECT_NEAR(repaired->change, .9 - .89402441, 1e-8);
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j) {
            double product = 0;
            for (std::size_t k = 0; k < 3; ++k)
                product += repaired->lower.at(i, k) * repaired->lower.at(j, k);
            EXPECT_NEAR(product, repaired->used.at(i, j), 1e-12);
        }
    const auto possible = correlationOf(symmetric(.5, .2, .1));
    ASSERT_TRUE(possible);
    EXPECT_EQ(possible->change, 0);
    EXPECT_EQ(possible->used, possible->asked);
    EXPECT_FALSE(correlationOf(symmetric(.9, .9, -.9))) << "no repair is near";
    EXPECT_FALSE(correlationOf(symmetric(1.1, 0, 0)));
    EXPECT_FALSE(correlationOf(symmetric(std::nan(""), 0, 0)));
    Matrix oneWay = symmetric(.5, 0, 0);
    oneWay.at(0, 1) = .4;
    EXPECT_FALSE(correlationOf(oneWay));
    EXPECT_TRUE(correlationOf(symmetric(1, 0, 0))) << "one and the same error";
}

void expectInterval(const Estimate& estimate, double low, double high) {
    EXPECT_NEAR(estimate.low, low, 1e-9 * std::max(low, 1e-3));
    EXPECT_NEAR(estimate.high, high, 1e-9 * high);
}

TEST(Share, HasAnIntervalAlsoWhereNothingMisses) {
    expectInterval(wilson(0, 1000), 0, 0.003826758486);
    expectInterval(wilson(1, 10000), 1.76526736e-5, 5.662688974e-4);
    expectInterval(wilson(3, 1000), 0.001020783881, 0.008783014054);
    expectInterval(wilson(10, 100), 0.05522913706, 0.1743656615);
    expectInterval(wilson(38, 1024), 0.02715439992, 0.05052436866);
    expectInterval(clopperPearson(0, 1000), 0, 0.003682083897);
    expectInterval(clopperPearson(1, 10000), 2.531777593e-6, 5.570369979e-4);
    expectInterval(clopperPearson(10, 100), 0.04900468922, 0.1762225977);
    expectInterval(clopperPearson(38, 1024), 0.02639213335, 0.05058186936);
    EXPECT_EQ(wilson(7, 7).high, 1);
    EXPECT_EQ(clopperPearson(7, 7).high, 1);
    EXPECT_EQ(wilson(0, 0).high, 1);

    // Student's of 15 degrees of freedom is 2.131.
    std::vector<double> values(16, 1.0);
    values[0] = 5;
    const Estimate mean = overReplicates(values);
    EXPECT_DOUBLE_EQ(mean.value, 1.25);
    EXPECT_NEAR(mean.halfWidth(), 2.131449545559323 * 1 / 4, 1e-12);
    const std::vector<std::uint64_t> counts(16, 40), few(16, 1), some = {0, 500, 500, 500};
    EXPECT_EQ(shareOf(counts, 1024).halfWidth(), 0) << "all replicates alike";
    EXPECT_EQ(shareOf(few, 1024).high, wilson(16, 16384).high);
    EXPECT_EQ(shareOf(some, 1024).high, wilson(1500, 4096).high);
}

TEST(Summary, IsThatOfASpreadsheet) {
    const std::vector<double> five = {1, 2, 3, 4, 5};
    EXPECT_EQ(quantileOf(five, .25), 2);
    EXPECT_DOUBLE_EQ(quantileOf(five, .95), 4.8);
    EXPECT_EQ(quantileOf(five, 0), 1);
    EXPECT_EQ(quantileOf(five, 1), 5);
    Moments joined;
    for (const double x : five)
        joined.join(Moments::of(std::span(&x, 1)));
    EXPECT_DOUBLE_EQ(joined.mean, 3);
    EXPECT_DOUBLE_EQ(joined.variance(), 2.5);
    const std::vector<double> x = {1, 2, 2, 3, 4, 4, 4, 5}, y = {1, 1, 2, 3, 3, 4, 5, 5};
    EXPECT_EQ(midranks(x), (std::vector<double>{1, 2.5, 2.5, 4, 6, 6, 6, 8}));
    EXPECT_NEAR(rankCorrelation(x, y), 0.918821785756253, 1e-15);
    EXPECT_EQ(rankCorrelation(x, std::vector<double>(8, 3.0)), 0);
}

TEST(Importance, OfTheIshigamiFunctionIsThePublishedOne) {
    const auto ishigami = [](const double* u) {
        const double pi = 3.14159265358979324;
        const double a = pi * (2 * u[0] - 1), b = pi * (2 * u[1] - 1), c = pi * (2 * u[2] - 1);
        return std::sin(a) + 7 * std::pow(std::sin(b), 2) + .1 * std::pow(c, 4) * std::sin(a);
    };
    constexpr std::uint64_t n = 4096;
    constexpr std::size_t replicates = 16;
    const double first[] = {.313905191147811, .442411144790041, 0};
    const double total[] = {.557588855209959, .442411144790041, .243683664062148};
    std::vector<std::vector<double>> firsts(3), totals(3);
    for (std::size_t r = 0; r < replicates; ++r) {
        std::vector<SobolCoordinate> coordinates;
        for (std::size_t d = 0; d < 6; ++d)
            coordinates.emplace_back(d, Stream{1, d, r});
        std::vector<double> a, b;
        std::vector<std::vector<double>> mixed(3);
        for (std::uint64_t i = 0; i < n; ++i) {
            double u[6];
            for (std::size_t d = 0; d < 6; ++d)
                u[d] = SobolCoordinate::number(coordinates[d].bits(i));
            a.push_back(ishigami(u));
            b.push_back(ishigami(u + 3));
            for (std::size_t j = 0; j < 3; ++j) {
                double one[] = {u[0], u[1], u[2]};
                one[j] = u[3 + j];
                mixed[j].push_back(ishigami(one));
            }
        }
        for (std::size_t j = 0; j < 3; ++j) {
            const SobolIndices indices = sobolIndices(a, b, mixed[j]);
            firsts[j].push_back(indices.first);
            totals[j].push_back(indices.total);
        }
    }
    for (std::size_t j = 0; j < 3; ++j) {
        const Estimate f = overReplicates(firsts[j]), t = overReplicates(totals[j]);
        EXPECT_NEAR(f.value, first[j], 1.5 * f.halfWidth()) << j;
        EXPECT_NEAR(t.value, total[j], 1.5 * t.halfWidth()) << j;
        EXPECT_LT(f.halfWidth(), 0.005);
        EXPECT_LT(t.halfWidth(), 0.005);
    }
}

} // namespace
} // namespace telvo::sampling
