// SPDX-License-Identifier: GPL-3.0-or-later
// Samples belong to their input, their replicate and their index, and to nothing else.
#include "sampling/estimates.h"
#include "sampling/Sampler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>

namespace telvo::sampling {
namespace {

using Columns = std::vector<std::vector<double>>;

Scattered scattered(const char* name, std::size_t dimension, Distribution distribution) {
    return {name, dimension, std::move(distribution)};
}

std::vector<Scattered> three() {
    return {scattered("DepthCover", 1, *Distribution::normal(900, 50)),
            scattered("EntryHeight", 0, *Distribution::lognormal(6, .1)),
            scattered("EntryWidth", 2, *Distribution::triangular(19.5, 20, 22))};
}

Columns samplesOf(const Sampler& sampler, std::size_t replicate, std::size_t pieces = 1) {
    const auto n = static_cast<std::size_t>(sampler.plan().perReplicate());
    Columns columns(sampler.inputs().size(), std::vector<double>(n));
    const std::size_t piece = (n + pieces - 1) / pieces;
    for (std::size_t from = 0; from < n; from += piece) {
        std::vector<double*> out;
        for (auto& column : columns)
            out.push_back(column.data() + from);
        sampler.block(replicate, from, std::min(piece, n - from), out);
    }
    return columns;
}

Matrix ranks(double ab, double ac, double bc) {
    Matrix m = Matrix::identity(3);
    m.at(0, 1) = m.at(1, 0) = ab;
    m.at(0, 2) = m.at(2, 0) = ac;
    m.at(1, 2) = m.at(2, 1) = bc;
    return m;
}

constexpr Method Methods[] = {Method::Sobol, Method::LatinHypercube, Method::MonteCarlo};

TEST(Sampler, NoOtherInputNoOrderAndNoBlockMovesASample) {
    for (const Method method : Methods) {
        const Plan plan{method, 2, 10, 1};
        const auto whole = Sampler::prepare(three(), {}, plan);
        ASSERT_TRUE(whole);
        for (std::size_t r = 0; r < 2; ++r)
            EXPECT_EQ(samplesOf(*whole, r), samplesOf(*whole, r, 7));
        EXPECT_NE(samplesOf(*whole, 0), samplesOf(*whole, 1));
        std::vector<Scattered> turned = three();
        std::swap(turned[0], turned[2]);
        turned.pop_back();
        const auto part = Sampler::prepare(turned, {}, plan);
        EXPECT_EQ(samplesOf(*part, 1)[0], samplesOf(*whole, 1)[2]);
        EXPECT_EQ(samplesOf(*part, 1)[1], samplesOf(*whole, 1)[1]);
        const auto another = Sampler::prepare(three(), {}, {method, 2, 10, 2});
        EXPECT_NE(samplesOf(*another, 0)[0], samplesOf(*whole, 0)[0]);
    }
}

TEST(Sampler, HitsDistributionsAndCorrelations) {
    for (const Method method : Methods)
        for (const bool correlated : {false, true}) {
            const std::optional<Matrix> asked =
                correlated ? std::optional(ranks(.6, -.3, .1)) : std::nullopt;
            const auto sampler = Sampler::prepare(three(), asked, {method, 1, 14, 3});
            ASSERT_TRUE(sampler);
            Columns columns = samplesOf(*sampler, 0);
            const double loose = method == Method::Sobol ? 0.01 : 0.03;
            EXPECT_NEAR(rankCorrelation(columns[0], columns[1]), correlated ? .6 : 0, loose);
            EXPECT_NEAR(rankCorrelation(columns[0], columns[2]), correlated ? -.3 : 0, loose);
            EXPECT_NEAR(rankCorrelation(columns[1], columns[2]), correlated ? .1 : 0, loose);
            for (std::size_t j = 0; j < 3; ++j) {
                std::sort(columns[j].begin(), columns[j].end());
                for (const double p : {.01, .25, .5, .9})
                    EXPECT_NEAR(sampler->inputs()[j].distribution.below(quantileOf(columns[j], p)),
                                p, method == Method::MonteCarlo ? 0.02 : 0.003);
                // A Latin hypercube has a sample in every cell, correlated or not.
                if (method != Method::LatinHypercube) continue;
                const auto n = static_cast<double>(columns[j].size());
                for (std::size_t i = 0; i < columns[j].size(); ++i) {
                    const double u = sampler->inputs()[j].distribution.below(columns[j][i]);
                    ASSERT_EQ(std::floor(u * n + 1e-7 * (u < .5 ? 1 : -1)), static_cast<double>(i))
                        << j;
                }
            }
        }
}

/// The reference problems: a share that quadrature gave, from two normal or other inputs.
struct Problem {
    const char* name;
    std::vector<Scattered> inputs;
    std::function<bool(double, double)> misses;
    double share;
};

TEST(Sampler, SharesOfTheReferenceProblemsLieInTheirIntervals) {
    const auto normals = [](double m1, double s1, double m2, double s2) {
        return std::vector<Scattered>{scattered("x", 0, *Distribution::normal(m1, s1)),
                                      scattered("y", 1, *Distribution::normal(m2, s2))};
    };
    const double pi = 3.14159265358979324;
    const Problem problems[] = {
        {"axial stressed beam",
         {scattered("R", 0, *Distribution::lognormal(3e6, .1)),
          scattered("F", 1, *Distribution::normal(750, 50))},
         [=](double r, double f) { return r - f / (1e-4 * pi) <= 0; },
         0.029198194624830657811},
        {"R - S", normals(4, 1, 2, 1), [](double r, double s) { return r - s <= 0; },
         0.0786496035251425653},
        {"four branches", normals(0, 1, 0, 1),
         [](double x, double y) {
             const double d = x - y, s = (x + y) / std::sqrt(2.0), k = 7 / std::sqrt(2.0);
             return std::min({3 + .1 * d * d - s, 3 + .1 * d * d + s, d + k, -d + k}) <= 0;
         },
         0.0022227950661944398872},
        {"curved", normals(0, 1, 0, 1),
         [](double x, double y) {
             return 2.5 - (x + y) / std::sqrt(2.0) + .1 * (x - y) * (x - y) <= 0;
         },
         0.004207305511299617942},
        {"product", normals(0, 1, 0, 1), [](double x, double y) { return 3 - x * y <= 0; },
         0.0098192987215468905567},
    };
    for (const Problem& problem : problems) {
        int inside = 0;
#ifdef __OPTIMIZE__
        constexpr int seeds = 100;
#else
        constexpr int seeds = 20;
#endif
        for (std::uint64_t seed = 1; seed <= seeds; ++seed) {
            const auto sampler = Sampler::prepare(problem.inputs, {}, {Method::Sobol, 16, 9, seed});
            ASSERT_TRUE(sampler);
            std::vector<std::uint64_t> counts;
            for (std::size_t r = 0; r < 16; ++r) {
                const Columns columns = samplesOf(*sampler, r);
                counts.push_back(0);
                for (std::size_t i = 0; i < columns[0].size(); ++i)
                    counts.back() += problem.misses(columns[0][i], columns[1][i]);
            }
            const Estimate share = shareOf(counts, 512);
            inside += share.low <= problem.share && problem.share <= share.high;
        }
        EXPECT_GE(inside, seeds * (seeds < 100 ? 8 : 9) / 10) << problem.name;
    }
}

TEST(Sampler, RefusesWhatIsNoStudy) {
    EXPECT_FALSE(Sampler::prepare({}, {}, {}));
    std::vector<Scattered> twice = three();
    twice[1].name = "DepthCover";
    EXPECT_FALSE(Sampler::prepare(twice, {}, {}));
    twice = three();
    twice[1].dimension = 1;
    EXPECT_FALSE(Sampler::prepare(twice, {}, {}));
    EXPECT_FALSE(Sampler::prepare(three(), {}, {Method::Sobol, 0, 10, 1}));
    EXPECT_FALSE(Sampler::prepare(three(), {}, {Method::Sobol, 16, 21, 1}));
    EXPECT_FALSE(Sampler::prepare(three(), Matrix::identity(2), {}));
    EXPECT_FALSE(Sampler::prepare(three(), ranks(.9, .9, -.9), {}));
}

} // namespace
} // namespace telvo::sampling
