// SPDX-License-Identifier: GPL-3.0-or-later
// What holds for every valid case, over a family of generated ones.
#include "testCases.h"

#include "cases/drawnCases.h"

#include <algorithm>
#include <cmath>
#include <thread>
#include <vector>

namespace telvo::engine {
namespace {

using P = ProjectInput;

std::vector<ProjectInput> family() {
    return cases::drawnCases(400);
}

void mirror(double, int) {}

template <typename T, int First, int Last>
void mirror(IndexedArray<T, First, Last>& a, int n) {
    if constexpr (Last == MaxPillars)
        std::reverse(a.begin(), a.begin() + n);
    else if constexpr (First == 1 && Last == 4) // cumulative: the sides' own rows change places
        a[3] = a[4] - a[3] + a[2];
    else if constexpr (Last == 4)
        std::swap(a[3], a[4]);
    for (auto& element : a)
        mirror(element, n);
}

struct Number {
    std::string_view name;
    double value, greatest; // of the whole quantity
};

/// Every number of a run, times a factor for its kind of unit.
template <typename Factor>
std::vector<Number> numbersOf(const AnalysisResults& r, Factor factor) {
    std::vector<Number> all;
    visitQuantities(r, [&](const char* name, Kind kind, const auto& field) {
        double greatest = 0;
        visitNumbers(field, [&](double v) { greatest = std::max(greatest, std::abs(v)); });
        visitNumbers(field, [&](double v) { all.push_back({name, v * factor(kind), greatest}); });
    });
    return all;
}

/// Tolerances are relative to the greatest number; some are differences of near equals.
template <typename Factor>
void expectSame(const AnalysisResults& a, const AnalysisResults& b, Factor factor) {
    const auto ours = numbersOf(a, factor), theirs = numbersOf(b, [](Kind) { return 1.0; });
    for (std::size_t n = 0; n < ours.size(); ++n) {
        const auto& [name, value, greatest] = theirs[n];
        EXPECT_NEAR(ours[n].value, value, tolerance(name) * greatest) << name << ", number " << n;
    }
}

TEST(Invariant, MirroredPanelHasMirroredResults) {
    for (const P& input : family()) {
        if (input.Anal == 2) continue; // the only gob would change sides
        AnalysisResults r = computed(input);
        visitQuantities(r, [n = input.NumberEntries - 1](auto, Kind, auto& f) { mirror(f, n); });
        expectSame(r, computed(cases::mirrored(input)), [](Kind) { return 1.0; });
        if (HasFailure()) return;
    }
}

// Everything agrees but what depends on constants without unit conversion: the automatic arch
// factor (25 and 80), the smallest bleeder excess (0.01), and widths C and D, which are rounded to
// single precision in either unit. So the arch factor is manual here and no row is lent.
TEST(Invariant, MetricVersionHasTheSameResults) {
    constexpr double m = cases::MetresPerFoot, kN = cases::KilonewtonsPerPound;
    for (P input : family()) {
        input.Arch = input.RowC = input.RowD = 0;
        const AnalysisResults english = computed(input);
        expectSame(english, computed(cases::metricVersion(input), Metric), [](Kind kind) {
            const double factors[] = {1, 1, m, m * m, kN, kN / m, kN / (m * m)}; // by Kind
            return factors[static_cast<std::size_t>(kind)];
        });
        if (HasFailure()) return;
    }
}

TEST(Invariant, RowsOfTheAMZLoadAddUpToItsTotal) {
    for (const P& input : family()) {
        const AnalysisResults r = computed(input);
        for (const int p : {Development, Retreat}) {
            double sum = r.ArchFactor * r.TributaryLoadAMZ;
            for (const int c : {Front, FirstSide, SecondSide})
                sum += r.ArchFactor * r.AbutmentLoadAMZ[p][c];
            for (const int k : {FirstSide, SecondSide})
                sum += r.ArchFactor * r.LTRANSREM[p][k] + r.LTRANSBAR[p][k];
            EXPECT_NEAR(sum, r.AMZLoad[p][4], 2e-7 * std::abs(sum));
        }
    }
}

// Holds for a given arch factor and breadth: every load then grows with the depth. An automatic
// factor falls in steps as the depth grows and can outweigh it: 1 below H - 80 = W, 0.95 there.
TEST(Invariant, MoreDepthNeverRaisesTheDevelopmentFactorOfAGivenArchFactor) {
    const auto factorAt = [](P input, double depth) {
        input.DepthCover = depth;
        return computed(input).TELVOSF[Development];
    };
    for (P input : family()) {
        input.Arch = 0;
        for (const double depth : {60.0, 200.0, 200.5, 1000.0})
            EXPECT_LE(factorAt(input, depth + 1), factorAt(input, depth) * (1 + 2e-7)) << depth;
    }
    auto automatic = panel400(0);
    automatic.Arch = 1;
    EXPECT_NEAR(factorAt(automatic, 480) / factorAt(automatic, 479), 479 / (480 * 0.95), 1e-6);
}

TEST(Invariant, WiderPillarIsNeverWeaker) {
    for (P input : family())
        for (double before = 0; input.XcutCenters[1] < 300; input.XcutCenters[1] += 5) {
            const double strength = computed(input).PillarStrength[1];
            EXPECT_GE(strength, before * (1 - 1e-12)) << input.XcutCenters[1];
            before = strength; // also across the tie of width and length
        }
}

TEST(Invariant, ThreadsWithDifferentCasesDoNotDisturbEachOther) {
    const auto results = [cases = family()](std::size_t n) {
        std::vector<AnalysisResults> all;
        for (; n < cases.size(); n += 2)
            all.push_back(computed(cases[n]));
        return all;
    };
    std::vector<AnalysisResults> even, odd;
    std::thread first([&] { even = results(0); }), second([&] { odd = results(1); });
    first.join(), second.join();
    EXPECT_TRUE(even == results(0) && odd == results(1));
}

} // namespace
} // namespace telvo::engine
