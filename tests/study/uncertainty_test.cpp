// SPDX-License-Identifier: GPL-3.0-or-later
// Samples are cases, shares are counts of them, on any number of threads.
#include "study/questions/uncertainty.h"

#include "goodCase.h"
#include "run/caseRun.h"
#include "study/named.h"
#include "study/questions/importance.h"
#include "study/questions/ranges.h"
#include "study/questions/shareCurve.h"

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
            ASSERT_EQ(result->samples.size(), 512U);
            std::vector<std::uint64_t> byMask(8);
            for (std::size_t s = 0; s < result->samples.size(); ++s) {
                const project::ProjectCase current = result->caseOf(s);
                const auto ran = run::runCase(current);
                const auto* run = std::get_if<run::Run>(&ran);
                ASSERT_EQ(run != nullptr, result->isComputed(s));
                if (!run) continue;
                const double retreat = run->results.TELVOSF[engine::Retreat];
                const double barrier = run->results.BarrierSF[engine::Retreat][engine::SecondSide];
                const double load = run->results.AMZLoad[engine::Retreat][engine::Front];
                EXPECT_EQ(result->samples.outcomes[0][s], retreat);
                EXPECT_EQ(result->samples.outcomes[1][s], barrier);
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
    EXPECT_EQ(one->samples.outcomes, seven->samples.outcomes);
    EXPECT_EQ(one->byMask, seven->byMask);
    EXPECT_EQ(one->criteria[1].mean.value, seven->criteria[1].mean.value);
    EXPECT_EQ(one->headline, seven->headline);
    EXPECT_NE(
        one->headline.find(" % of 8,192 samples miss: Retreat factor of the panel at least 1.2 ("),
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
    AskedFragility over4{{}, over, {60, 90, 120, 200}, {1, 1, 1, 1}, 0.05};
    const auto curve = shareCurve(panel(), asked, over4);
    ASSERT_TRUE(curve) << faultText(curve.fault());
    double before = 1;
    for (const ShareCurvePoint& point : curve->points[1]) {
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

TEST(Uncertainty, PartsAreOneStudy) {
    UncertaintyRequest asked = request(10);
    asked.plan.replicates = 7;
    for (const bool stops : {false, true}) {
        if (stops) asked.halfWidth = 0.3;
        const auto whole = drawSamples(panel(), asked);
        ASSERT_TRUE(whole) << faultText(whole.fault());
        EXPECT_EQ(whole->perReplicate, stops ? 512U : 1024U);
        std::vector<Samples> parts;
        for (const std::size_t k : {3, 1, 2})
            parts.push_back(*drawSamples(panel(), asked, {k, 3}, 0, 2));
        const auto joined = joinSamples(parts, asked);
        ASSERT_TRUE(joined) << faultText(joined.fault());
        EXPECT_EQ(joined->missed, whole->missed);
        EXPECT_EQ(joined->outcomes[0], whole->outcomes[0]);
        EXPECT_EQ(joined->perReplicate, whole->perReplicate);
        const auto assessed = assess(panel(), asked, *joined);
        ASSERT_TRUE(assessed);
        EXPECT_EQ(assessed->halfWidthMet, true);
        parts.pop_back();
        EXPECT_EQ(joinSamples(parts, asked).fault().message, "A part is missing");
        parts.push_back(parts[1]);
        EXPECT_EQ(joinSamples(parts, asked).fault().message, "A part comes twice");
    }
    EXPECT_FALSE(drawSamples(panel(), asked, {1, 8})) << "more parts than replicates";
    asked.halfWidth = 1e-4;
    const auto missed = uncertainty(panel(), asked);
    ASSERT_TRUE(missed);
    EXPECT_FALSE(missed->halfWidthMet);
}

TEST(Uncertainty, TellsHowTheOutcomeSpreads) {
    UncertaintyRequest asked = request(10);
    asked.plan.replicates = 8;
    const auto result = uncertainty(panel(), asked);
    ASSERT_TRUE(result);
    const CriterionShare& share = result->criteria[0];
    std::vector<double> values = result->samples.outcomes[0];
    std::sort(values.begin(), values.end());
    EXPECT_EQ(share.quantiles[4].value, sampling::quantileOf(values, 0.5));
    for (std::size_t q = 1; q < ShownQuantiles.size(); ++q)
        EXPECT_LT(share.quantiles[q - 1].value, share.quantiles[q].value);
    EXPECT_LT(share.quantiles[4].low, share.quantiles[4].value);

    // What lies in the bins below the limit are the samples that miss it.
    const Histogram& histogram = share.histogram;
    std::uint64_t below = histogram.below, all = histogram.below + histogram.above;
    for (std::size_t b = 0; b < histogram.counts.size(); ++b) {
        all += histogram.counts[b];
        if (histogram.first + (static_cast<double>(b) + 0.5) * histogram.width < 1.2)
            below += histogram.counts[b];
    }
    EXPECT_EQ(all, values.size());
    EXPECT_EQ(below, share.misses);
    EXPECT_GE(histogram.counts.size(), 20U);
    EXPECT_LE(histogram.counts.size(), 80U);
    ASSERT_EQ(share.cumulative.size(), 401U);
    EXPECT_EQ(share.cumulative.back(), (std::pair{values.back(), 1.0}));

    UncertaintyRequest single = request(8); // no interval of replicates, yet one that is none of 0
    single.plan.replicates = 1;
    const auto one = uncertainty(panel(), single);
    ASSERT_TRUE(one);
    EXPECT_LT(one->criteria[0].mean.low, one->criteria[0].mean.value);
    EXPECT_LT(one->criteria[0].quantiles[4].low, one->criteria[0].quantiles[4].high);
    single.criteria[0] = criterion("TELVOSF.retreat>=0"); // missed by none, then by all
    single.criteria[1] = criterion("TELVOSF.retreat>=99");
    const auto extreme = uncertainty(panel(), single);
    ASSERT_TRUE(extreme);
    EXPECT_EQ(
        extreme->headline.find(
            "None of 256 samples miss: Retreat factor of the panel at least 0 (below 1.48 %)"),
        0U)
        << extreme->headline;
    EXPECT_EQ(extreme->criteria[1].missed.value, 1);
}

TEST(Uncertainty, TakesWhatIsUsualFromTheCase) {
    const project::ProjectCase base = panel();
    const auto made = requestOf({}, base);
    ASSERT_TRUE(made) << faultText(made.fault());
    EXPECT_EQ(made->criteria.size(), 6U) << "panel and two barriers, in both passes";
    for (const UncertainInput& input : made->inputs) {
        const project::Field field = input.variable.field();
        EXPECT_NE(field, Field::CoalStrength);
        EXPECT_NE(field, Field::AbutmentAngleActiveGob);
        EXPECT_NE(field, Field::UnitWeight);
        // "What matters" goes over the 5 % and 95 % points of the same distribution.
        const Span range = defaultRange(input.variable, base.Units).of(base.Input, input.variable);
        const double own = input.variable.of(base.Input);
        const double room = 0.03 * (range.high - range.low);
        const Span valid = input.variable.valid(base.Input);
        if (own - 4 * input.distribution.sd() < valid.low ||
            own + 4 * input.distribution.sd() > valid.high)
            continue; // cut by the form
        EXPECT_NEAR(input.distribution.at(0.05), range.low, room) << input.shownName();
        EXPECT_NEAR(input.distribution.at(0.95), range.high, room) << input.shownName();
    }
    // Distances of one survey share an error.
    const auto distances =
        std::find_if(made->inputs.begin(), made->inputs.end(),
                     [](const auto& one) { return one.shownName() == "XcutCenters"; });
    ASSERT_NE(distances, made->inputs.end());
    EXPECT_EQ(distances->also.size() + 1,
              static_cast<std::size_t>(project::distanceCount(base.Input)));
    UncertaintyRequest asked = *made;
    asked.plan = {Method::Sobol, 2, 5, 1};
    project::ProjectCase uneven = base;
    uneven.Input.XcutCenters[2] += 10;
    const auto result = uncertainty(uneven, asked);
    ASSERT_TRUE(result) << faultText(result.fault());
    const project::ProjectInput sample = result->caseOf(7).Input;
    EXPECT_NEAR(sample.XcutCenters[2] - sample.XcutCenters[1], 10, 1e-9);
    EXPECT_NE(sample.XcutCenters[1], uneven.Input.XcutCenters[1]);
}

TEST(Scatter, RefusesWhatIsNoDistribution) {
    const project::ProjectInput in = panel().Input;
    const auto fault = [&](const Scatter& scatter, const Variable& variable = Field::DepthCover) {
        const auto made = distributionOf(scatter, variable, in);
        return made ? std::string() : faultText(made.fault());
    };
    Scatter scatter;
    EXPECT_EQ(fault(scatter), "DepthCover: normal needs either sd or cov");
    scatter.sd = 0;
    EXPECT_EQ(fault(scatter), "DepthCover: A standard deviation has to be above 0, not 0");
    scatter.sd = 50;
    EXPECT_EQ(fault(scatter), "");
    scatter.low = 1100;
    scatter.high = 900;
    EXPECT_EQ(fault(scatter), "DepthCover: The bounds of a truncation have to rise");
    scatter.low = -5;
    EXPECT_EQ(fault(scatter), "DepthCover: -5 is beyond what the parameter form takes");
    scatter = {};
    scatter.shape = Scatter::Shape::Triangular;
    scatter.points = {900, 1000};
    EXPECT_EQ(fault(scatter), "DepthCover: triangular needs 3 values, percent or relative");
    scatter.points = {900, 1200, 1100};
    EXPECT_EQ(fault(scatter), "DepthCover: Lowest, most likely and highest value have to rise");
    scatter.sd = 3;
    EXPECT_EQ(fault(scatter), "DepthCover: triangular takes no sd and no cov");
    // An angle of 90 degrees scatters to one side: the form takes no more.
    const auto angle =
        distributionOf(usualScatter(Field::XcutAngle, project::English), Field::XcutAngle, in);
    ASSERT_TRUE(angle);
    EXPECT_LE(angle->at(0.9999), 90);
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
