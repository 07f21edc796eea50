// SPDX-License-Identifier: GPL-3.0-or-later
// Random bits against the published answers, Sobol' points against the published sequence.
#include "base/elementary.h"
#include "sampling/columnKernel.h"
#include "sampling/columns.h"
#include "sampling/sobol.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <vector>

namespace telvo::sampling {
namespace {

TEST(Columns, AreTheNumbersOneByOneWithEveryInstructionSet) {
    std::vector<double> uniform;
    for (std::uint64_t i = 0; i < 1003; ++i) // no whole number of packs
        uniform.push_back(between0and1(Stream{9, 1, 0}.word(Purpose::Samples, i)));
    uniform[5] = 0x1p-53;
    uniform[6] = 1 - 0x1p-53;
    std::vector<double> scores = uniform, narrow = uniform;
    toScores(scores.data(), scores.size());
    baselineColumns().scores(narrow.data(), narrow.size());
    for (std::size_t i = 0; i < uniform.size(); ++i) {
        EXPECT_EQ(scores[i], inverseNormal(uniform[i]));
        EXPECT_EQ(scores[i], narrow[i]);
    }
    std::vector<double> powers = scores, sums = scores;
    toExponentials(powers.data(), powers.size(), 0.5, 0.25);
    double* const columns[] = {powers.data(), uniform.data(), sums.data()};
    const double factors[] = {0.3, -0.1, 0.9};
    toSum(columns, sums.size(), factors);
    for (std::size_t i = 0; i < uniform.size(); ++i) {
        EXPECT_EQ(powers[i], exponential(0.5 + 0.25 * scores[i]));
        EXPECT_EQ(sums[i], 0.3 * powers[i] + -0.1 * uniform[i] + 0.9 * scores[i]);
    }
}

TEST(Philox, GivesThePublishedAnswers) {
    EXPECT_EQ(philox({0, 0, 0, 0}, {0, 0}), (Words{0x16554d9eca36314cU, 0xdb20fe9d672d0fdcU,
                                                   0xd7e772cee186176bU, 0x7e68b68aec7ba23bU}));
    const std::uint64_t all = ~std::uint64_t{0};
    EXPECT_EQ(philox({all, all, all, all}, {all, all}),
              (Words{0x87b092c3013fe90bU, 0x438c3c67be8d0224U, 0x9cc7d7c69cd777b6U,
                     0xa09caebf594f0ba0U}));
    EXPECT_DOUBLE_EQ(between0and1(0x16554d9eca36314cU), 0.0872391235991124);
    EXPECT_GT(between0and1(0), 0);
    EXPECT_LT(between0and1(all), 1);
    EXPECT_EQ(1 - between0and1(all), between0and1(0));
}

TEST(Philox, StreamsShareNoBits) {
    std::set<std::uint64_t> seen;
    for (const std::uint64_t seed : {1U, 2U})
        for (const char* name : {"DepthCover", "EntryHeight"})
            for (const std::uint64_t replicate : {0U, 1U})
                for (const Purpose purpose : {Purpose::Samples, Purpose::Shift})
                    for (std::uint64_t i = 0; i < 40; ++i)
                        seen.insert(Stream{seed, numberOfName(name), replicate}.word(purpose, i));
    EXPECT_EQ(seen.size(), 2U * 2 * 2 * 2 * 40);
    EXPECT_EQ(numberOfName("DepthCover"), 0x46481337715d12d9U);
}

TEST(Sobol, IsThePublishedSequence) {
    const double expected[8][10] = {
        {.5, .5, .5, .5, .5, .5, .5, .5, .5, .5},
        {.75, .25, .25, .25, .75, .75, .25, .75, .75, .75},
        {.25, .75, .75, .75, .25, .25, .75, .25, .25, .25},
        {.375, .375, .625, .875, .375, .125, .375, .875, .875, .625},
        {.875, .875, .125, .375, .875, .625, .875, .375, .375, .125},
        {.625, .125, .875, .625, .625, .875, .125, .125, .125, .375},
        {.125, .625, .375, .125, .125, .375, .625, .625, .625, .875},
        {.1875, .3125, .9375, .4375, .5625, .3125, .4375, .9375, .9375, .3125}};
    const double thousandth[] = {0.2197265625, 0.0966796875, 0.5185546875, 0.6767578125,
                                 0.2802734375, 0.9072265625, 0.0458984375, 0.8994140625};
    for (std::size_t d = 0; d < 10; ++d) {
        const SobolCoordinate coordinate(d);
        EXPECT_EQ(coordinate.bits(0), 0U);
        std::uint64_t bits = 0;
        for (std::uint64_t i = 0; i < 1000; ++i) {
            bits = coordinate.next(bits, i);
            ASSERT_EQ(bits, coordinate.bits(i + 1));
            const double x = static_cast<double>(bits) * 0x1p-52;
            EXPECT_TRUE(i >= 8 || x == expected[i][d]) << d << " " << i;
            EXPECT_TRUE(i != 999 || d >= 8 || x == thousandth[d]) << d;
        }
    }
}

TEST(Sobol, ScrambledPointsAreStillANet) {
    constexpr int m = 8;
    constexpr std::uint64_t n = 1U << m;
    for (const std::uint64_t replicate : {0U, 1U, 15U}) {
        std::vector<SobolCoordinate> coordinates;
        for (std::size_t d = 0; d < SobolDimensions; ++d)
            coordinates.emplace_back(d, Stream{1, d, replicate});
        for (const SobolCoordinate& coordinate : coordinates) {
            std::set<std::uint64_t> cells;
            double sum = 0;
            for (std::uint64_t i = 0; i < n; ++i) {
                const std::uint64_t bits = coordinate.bits(i);
                EXPECT_LT(bits, std::uint64_t{1} << SobolBits);
                cells.insert(bits >> (SobolBits - m));
                sum += SobolCoordinate::number(bits);
            }
            EXPECT_EQ(cells.size(), n) << "a point in each cell";
            EXPECT_NEAR(sum / n, 0.5, 1.0 / n);
        }
        // The first two dimensions: one point in every box of area 2^-m, however it is cut.
        for (int a = 0; a <= m; ++a) {
            std::set<std::uint64_t> boxes;
            for (std::uint64_t i = 0; i < n; ++i)
                boxes.insert((coordinates[0].bits(i) >> (SobolBits - a)) << (m - a) |
                             coordinates[1].bits(i) >> (SobolBits - (m - a)));
            EXPECT_EQ(boxes.size(), n) << a;
        }
    }
    EXPECT_NE(SobolCoordinate(5, Stream{1, 5, 0}).bits(0),
              SobolCoordinate(5, Stream{1, 5, 1}).bits(0));
}

} // namespace
} // namespace telvo::sampling
