// SPDX-License-Identifier: GPL-3.0-or-later
// Samples are cases, shares are counts of them, on any number of threads.
#include "study/questions/uncertainty.h"

#include "goodCase.h"
#include "run/caseRun.h"
#include "study/named.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

namespace telvo::study {
namespace {

using project::Field;
using sampling::Distribution, sampling::Method;
using tests::criterion;

project::ProjectCase panel() {
    project::ProjectCase base = tests::goodCase();
    project::ProjectInput& in = base.Input;
    in.Anal = 3;
    in.ExtentActiveGob = in.ExtentFirstGob = in.ExtentSecondGob = 800;
    in.BarrierFirstGob = 150;
    in.BarrierSecondGob = 120;
    return base;
}

UncertaintyRequest request(int bits = 8, Method method = Method::Sobol) {
    UncertaintyRequest asked;
    asked.inputs = {{Field::DepthCover, *Distribution::normal(1000, 80)},
                    {Field::EntryHeight, *Distribution::lognormal(6, .1)},
                    {*variableNamed("Barriers"), *Distribution::normal(110, 15)},
                    {*variableNamed("XcutCenters"), *Distribution::triangular(76, 80, 84)}};
    asked.criteria = {criterion("TELVOSF.retreat>=1.2"),
                      criterion("BarrierSF.retreat.second>=suggested"),
                      criterion("AMZLoad.retreat.front<=2e9")};
    asked.plan = {method, 4, bits, 1};
    return asked;
}

TEST(Uncertainty, CountsCases) {
    const project::ProjectCase base = panel();
    for (const Method method : {Method::Sobol, Method::LatinHypercube, Method::MonteCarlo})
        for (const bool correlated : {false, true}) {
            UncertaintyRequest asked = request(7, method);
            if (correlated) asked.correlated = {{0, 1, .4}, {2, 0, -.3}};
            const auto result = uncertainty(base, asked);
            ASSERT_TRUE(result) << faultText(result.fault());
            ASSERT_EQ(result->computed.size(), 512U);
            std::vector<std::uint64_t> byMask(8);
            for (std::size_t s = 0; s < result->computed.size(); ++s) {
                const project::ProjectCase current = result->caseOf(s);
                const auto ran = run::runCase(current);
                const auto* run = std::get_if<run::Run>(&ran);
                ASSERT_EQ(run != nullptr, result->computed[s] != 0);
                if (!run) continue;
                const double retreat = run->results.TELVOSF[engine::Retreat];
                const double barrier = run->results.BarrierSF[engine::Retreat][engine::SecondSide];
                const double load = run->results.AMZLoad[engine::Retreat][engine::Front];
                EXPECT_EQ(result->outcomes[0][s], retreat);
                EXPECT_EQ(result->outcomes[1][s], barrier);
                ++byMask[(retreat < 1.2 ? 1U : 0U) | (barrier < 1.5 ? 2U : 0U) |
                         (load > 2e9 ? 4U : 0U)];
            }
            EXPECT_EQ(result->byMask, byMask);
            const std::uint64_t missesFirst = byMask[1] + byMask[3] + byMask[5] + byMask[7];
            EXPECT_EQ(result->criteria[0].misses, missesFirst);
            EXPECT_NEAR(result->criteria[0].missed.value, static_cast<double>(missesFirst) / 512,
                        1e-12);
            EXPECT_LE(result->criteria[0].missed.low, result->criteria[0].missed.value);
            EXPECT_GE(result->criteria[0].missed.high, result->criteria[0].missed.value);
            EXPECT_NEAR(result->any.value, 1 - static_cast<double>(byMask[0]) / 512, 1e-12);
            EXPECT_EQ(result->convergence[0].back().samples, 512U);
            EXPECT_EQ(result->convergence[0].back().missed.value, result->criteria[0].missed.value);
        }
}

TEST(Uncertainty, IsTheSameOnAnyNumberOfThreads) {
    const auto one = uncertainty(panel(), request(11), 0, 1);
    const auto seven = uncertainty(panel(), request(11), 0, 7);
    ASSERT_TRUE(one && seven);
    EXPECT_EQ(one->outcomes, seven->outcomes);
    EXPECT_EQ(one->byMask, seven->byMask);
    EXPECT_EQ(one->criteria[1].mean.value, seven->criteria[1].mean.value);
    EXPECT_EQ(one->headline, seven->headline);
    EXPECT_NE(one->headline.find(" % of 8192 samples miss TELVOSF.retreat>=1.2 ("),
              std::string::npos)
        << one->headline;
    std::stop_source stop;
    stop.request_stop();
    EXPECT_FALSE(uncertainty(panel(), request(11), 0, 1, stop.get_token()));
}

TEST(Uncertainty, SaysWhatDrivesTheOutcome) {
    const UncertaintyRequest asked = request(10);
    const auto result = uncertainty(panel(), asked);
    ASSERT_TRUE(result);
    const auto inputs = importance(*result, 0, asked);
    ASSERT_EQ(inputs.size(), 4U);
    EXPECT_LT(inputs[0].rankCorrelation, -0.5) << "deeper is weaker";
    EXPECT_LT(inputs[1].rankCorrelation, -0.3) << "higher is weaker";
    EXPECT_GT(inputs[3].rankCorrelation, 0) << "wider pillars are stronger";
    EXPECT_EQ(inputs[0].binMeans.size(), 10U);
    EXPECT_GT(inputs[0].binMeans.front(), inputs[0].binMeans.back());
    ASSERT_TRUE(inputs[0].missesAt);
    EXPECT_GT(*inputs[0].missesAt, 0) << "the samples that miss lie deeper";

    UncertaintyRequest more = request(9);
    more.plan.replicates = 8;
    const auto indices = sobolStudy(panel(), more, 0, 0, 2);
    ASSERT_TRUE(indices) << faultText(indices.fault());
    EXPECT_EQ(indices->runs, 8U * 512 * 6);
    double sum = 0;
    for (std::size_t j = 0; j < 4; ++j) {
        EXPECT_NEAR(indices->outcome[j].first.value, inputs[j].betweenBins, 0.08) << j;
        EXPECT_GE(indices->outcome[j].total.value, indices->outcome[j].first.value - 0.03);
        sum += indices->outcome[j].first.value;
    }
    EXPECT_NEAR(sum, 1, 0.1);
    more.correlated = {{0, 1, .5}};
    EXPECT_FALSE(sobolStudy(panel(), more, 0));
}

TEST(Uncertainty, ShareOverAVariableTakesTheSameSamples) {
    UncertaintyRequest asked = request(9);
    asked.inputs.erase(asked.inputs.begin() + 2);
    const Variable over = Field::BarrierSecondGob;
    const auto curve = shareCurve(panel(), asked, 1, over, {60, 90, 120, 200});
    ASSERT_TRUE(curve) << faultText(curve.fault());
    double before = 1;
    for (const ShareCurvePoint& point : *curve) {
        project::ProjectCase there = panel();
        there.Input = over.in(there.Input, there.Units, point.x);
        const auto alone = uncertainty(there, asked);
        ASSERT_TRUE(alone);
        EXPECT_EQ(alone->criteria[1].missed.value, point.missed.value) << point.x;
        EXPECT_LE(point.missed.value, before);
        before = point.missed.value;
    }
    EXPECT_LT(before, 0.01);
}

TEST(Uncertainty, RefusesWhatIsNoStudy) {
    UncertaintyRequest none = request();
    none.inputs.clear();
    EXPECT_FALSE(uncertainty(panel(), none));
    none = request();
    none.criteria.clear();
    EXPECT_FALSE(uncertainty(panel(), none));
    none = request();
    none.inputs.push_back({Field::WidthC, *Distribution::normal(30, 1)});
    EXPECT_FALSE(uncertainty(panel(), none)) << "row C is not left";
    none = request();
    none.inputs.push_back({Field::BarrierSecondGob, *Distribution::normal(30, 1)});
    EXPECT_FALSE(uncertainty(panel(), none)) << "both barriers scatter already";
    none = request();
    none.correlated = {{0, 9, .1}};
    EXPECT_FALSE(uncertainty(panel(), none));
    project::ProjectCase broken = panel();
    broken.Input.EntryHeight = 0;
    none = request();
    none.inputs.erase(none.inputs.begin() + 1, none.inputs.end());
    EXPECT_FALSE(uncertainty(broken, none));
    none = request();
    none.inputs[1].distribution = *Distribution::uniform(-9, -8);
    EXPECT_FALSE(uncertainty(panel(), none)) << "no sample can be computed";
}

} // namespace
} // namespace telvo::study
