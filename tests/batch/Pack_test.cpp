// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Pack.h"

#include "batch/packOperations.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace telvo::batch {
namespace {

/// Drawn numbers: the n-th is a function of n alone (SplitMix64).
std::uint64_t drawnBits(std::uint64_t n) {
    n *= 0x9e3779b97f4a7c15U;
    n = (n ^ (n >> 30)) * 0xbf58476d1ce4e5b9U;
    n = (n ^ (n >> 27)) * 0x94d049bb133111ebU;
    return n ^ (n >> 31);
}

/// Every pair of special numbers, then pairs of moderate ones and of any bit pattern.
std::vector<double> numbers(bool second) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double most = std::numeric_limits<double>::max();
    const double special[] = {0,
                              -0.0,
                              1,
                              -1,
                              0.5,
                              1.5,
                              2.5,
                              -2.5,
                              1.0 / 3,
                              0x1p51,
                              0x1p52,
                              -0x1p52,
                              0x1p53,
                              most,
                              -most,
                              infinity,
                              -infinity,
                              0x1p-1022,
                              0x1p-1074,
                              3.5e38,
                              3.4028235677973366e38,
                              1e-46,
                              0x1.921fb54442d18p+0,
                              0x1.921fb54442d18p+1,
                              0.7853981633974483,
                              64,
                              64.00000000000001,
                              709.8,
                              -745.2,
                              1.2345e-300,
                              std::numeric_limits<double>::quiet_NaN(),
                              100};
    std::vector<double> all;
    for (const double a : special)
        for (const double b : special)
            all.push_back(second ? b : a);
    for (std::uint64_t n = 0; n < 20000; ++n) {
        const std::uint64_t bits = drawnBits(2 * n + (second ? 1 : 0));
        all.push_back(n % 2 == 0 ? static_cast<double>(bits >> 11) * 0x1p-46 : numberOf(bits));
    }
    return all;
}

/// NaN is NaN, whatever its sign and its other bits.
bool same(double a, double b) {
    return bitsOf(a) == bitsOf(b) || (a != a && b != b);
}

template <int Lanes, class Compute>
void expectTheBitsOfOneCase(Compute compute) {
    const std::vector<double> a = numbers(false);
    const std::vector<double> b = numbers(true);
    ASSERT_EQ(a.size() % Lanes, 0U);
    for (int operation = 0; operation < PackOperationCount; ++operation)
        for (std::size_t at = 0; at < a.size(); at += Lanes) {
            double out[Lanes];
            compute(operation, &a[at], &b[at], out);
            for (std::size_t lane = 0; lane < Lanes; ++lane) {
                const double alone = packOperation(operation, a[at + lane], b[at + lane]);
                ASSERT_TRUE(same(out[lane], alone))
                    << PackOperations[operation] << " of " << a[at + lane] << " and "
                    << b[at + lane] << ": " << out[lane] << " in a pack, " << alone << " alone";
            }
        }
}

TEST(Pack, BaselineGivesTheBitsOfOneCase) {
    using Number = Pack<Baseline>;
    expectTheBitsOfOneCase<Number::Lanes>(
        [](int operation, const double* a, const double* b, double* out) {
            packOperation(operation, Number::load(a), Number::load(b)).store(out);
        });
}

#ifdef TELVO_TEST_AVX2
TEST(Pack, Avx2GivesTheBitsOfOneCase) {
    if (!__builtin_cpu_supports("avx2")) GTEST_SKIP() << "this processor has no AVX2";
    expectTheBitsOfOneCase<4>(packOperationAvx2);
}
#endif

TEST(Pack, NearestEvenIsNearbyint) {
    for (const double x : numbers(false))
        EXPECT_TRUE(same(nearestEven(x), std::nearbyint(x))) << x;
}

} // namespace
} // namespace telvo::batch
