// SPDX-License-Identifier: GPL-3.0-or-later
// What samples say: shares, means, quantiles, histogram and cumulative curve with their intervals.
#include "base/elementary.h"
#include "base/numbers.h"
#include "study/questions/sampleBlock.h"
#include "study/questions/uncertainty.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace telvo::study {

using sampling::Estimate;

namespace {

constexpr std::size_t MostMessagesMade = 1000;
constexpr int CoarsestConvergence = 6; // 2^6 samples per replicate
constexpr std::size_t MostCurvePoints = 401;
constexpr double FewestBins = 20, MostBins = 80;
constexpr double TwoSidedNormal = 1.9599639845400545;

std::string headlineOf(const Uncertainty& result, const UncertaintyRequest& request) {
    const CriterionShare& first = result.criteria.front();
    const std::string samples =
        groupedText(result.samples.size()) + " samples miss " + request.criteria.front().text();
    std::string text =
        first.misses == 0
            ? "None of " + samples + " (below " + percentText(first.missed.high) + " %)"
            : percentText(first.missed.value) + " % of " + samples + " (" +
                  percentText(first.missed.low) + " to " + percentText(first.missed.high) + " %)";
    if (result.criteria.size() > 1 && result.any.value > 0)
        text += "; " + percentText(result.any.value) + " % miss one of the " +
                std::to_string(result.criteria.size());
    return text;
}

/// The values of an outcome that are numbers, rising; of all samples and of each replicate.
struct SortedValues {
    std::vector<double> all;
    std::vector<std::array<double, ShownQuantiles.size()>> quantiles; ///< of each replicate
    std::vector<sampling::Moments> moments;                           ///< likewise

    SortedValues(const Samples& samples, std::size_t criterion) {
        const std::size_t per = samples.perReplicate;
        all.reserve(samples.size());
        std::vector<double> values;
        for (std::size_t r = 0; r < samples.replicates; ++r) {
            values.clear();
            for (std::size_t s = r * per; s < (r + 1) * per; ++s)
                if (const double value = samples.outcomes[criterion][s]; !std::isnan(value))
                    values.push_back(value);
            if (values.empty()) continue;
            moments.push_back(sampling::Moments::of(values));
            const auto old = static_cast<std::ptrdiff_t>(all.size());
            std::sort(values.begin(), values.end());
            all.insert(all.end(), values.begin(), values.end());
            std::inplace_merge(all.begin(), all.begin() + old, all.end());
            auto& own = quantiles.emplace_back();
            for (std::size_t q = 0; q < own.size(); ++q)
                own[q] = sampling::quantileOf(values, ShownQuantiles[q]);
        }
    }
};

/// With the interval of the replicates about the value of all samples; of a single replicate that of
/// plain random samples, which is no narrower.
Estimate aboutAll(double value, const std::vector<double>& byReplicate, double half) {
    if (byReplicate.size() > 1) half = sampling::overReplicates(byReplicate).halfWidth();
    return {value, value - half, value + half};
}

void setQuantiles(CriterionShare& share, const SortedValues& sorted) {
    const auto n = static_cast<double>(sorted.all.size());
    for (std::size_t q = 0; q < ShownQuantiles.size(); ++q) {
        const double p = ShownQuantiles[q];
        const double value = sampling::quantileOf(sorted.all, p);
        std::vector<double> byReplicate;
        for (const auto& own : sorted.quantiles)
            byReplicate.push_back(own[q]);
        share.quantiles[q] = aboutAll(value, byReplicate, 0);
        if (byReplicate.size() > 1) continue;
        const double ranks = TwoSidedNormal * std::sqrt(p * (1 - p) / n);
        share.quantiles[q].low = sampling::quantileOf(sorted.all, std::max(p - ranks, 0.0));
        share.quantiles[q].high = sampling::quantileOf(sorted.all, std::min(p + ranks, 1.0));
    }
}

/// The least number of the form 1, 2 or 5 times a power of ten that is no less than x.
double roundStep(double x) {
    double power = 1;
    while (power * 10 <= x)
        power *= 10;
    while (power > x)
        power /= 10;
    for (const double factor : {1.0, 2.0, 5.0})
        if (factor * power >= x) return factor * power;
    return 10 * power;
}

/// Width after D. Freedman and P. Diaconis: 2 IQR n^(-1/3), held to 20 to 80 bins.
Histogram histogramOf(const std::vector<double>& sorted, const Criterion& criterion) {
    Histogram histogram;
    const double low = sampling::quantileOf(sorted, 0.001),
                 high = sampling::quantileOf(sorted, 0.999);
    histogram.first = low;
    if (!(low < high)) {
        for (const double value : sorted)
            ++(value < low ? histogram.below : histogram.above);
        histogram.counts = {histogram.above};
        histogram.above = 0;
        return histogram;
    }
    const double range = high - low;
    const double middle = sampling::quantileOf(sorted, 0.75) - sampling::quantileOf(sorted, 0.25);
    const double wanted = 2 * middle * exponential(-ln(static_cast<double>(sorted.size())) / 3);
    double width = roundStep(std::clamp(wanted, range / (MostBins - 2), range / FewestBins));
    if (range / width < FewestBins && range / (width / 2.5) <= MostBins - 2)
        width = roundStep(range / (MostBins - 2));
    const double origin = criterion.target.value_or(0);
    const bool upToEdge = criterion.sense == Criterion::Sense::AtMost; // the limit itself holds
    const auto binOf = [&](double value) {
        const double place = (value - origin) / width;
        return upToEdge ? std::ceil(place) - 1 : std::floor(place);
    };
    const double firstBin = binOf(low), lastBin = binOf(high);
    histogram.width = width;
    histogram.first = origin + firstBin * width;
    histogram.counts.resize(static_cast<std::size_t>(lastBin - firstBin) + 1);
    for (const double value : sorted) {
        const double bin = binOf(value);
        if (bin < firstBin)
            ++histogram.below;
        else if (bin > lastBin)
            ++histogram.above;
        else
            ++histogram.counts[static_cast<std::size_t>(bin - firstBin)];
    }
    return histogram;
}

std::vector<std::pair<double, double>> cumulativeOf(const std::vector<double>& sorted) {
    std::vector<std::pair<double, double>> curve;
    const std::size_t points = std::min(MostCurvePoints, sorted.size());
    for (std::size_t k = 0; k < points; ++k) {
        const std::size_t i = points > 1 ? k * (sorted.size() - 1) / (points - 1) : 0;
        curve.emplace_back(sorted[i],
                           static_cast<double>(i + 1) / static_cast<double>(sorted.size()));
    }
    return curve;
}

void setSpread(CriterionShare& share, const Samples& samples, std::size_t criterion,
               const Criterion& asked) {
    const SortedValues sorted(samples, criterion);
    if (sorted.all.empty()) return;
    std::vector<double> means;
    sampling::Moments all;
    for (const sampling::Moments& moments : sorted.moments) {
        means.push_back(moments.mean);
        all.join(moments);
    }
    share.sd = std::sqrt(all.variance());
    share.mean = aboutAll(all.mean, means,
                          TwoSidedNormal * share.sd / std::sqrt(static_cast<double>(all.count)));
    setQuantiles(share, sorted);
    share.histogram = histogramOf(sorted.all, asked);
    share.cumulative = cumulativeOf(sorted.all);
}

void setTally(Uncertainty& result, std::size_t criteria) {
    result.byMask.assign(std::size_t{1} << criteria, 0);
    std::size_t left = 0;
    for (std::size_t s = 0; s < result.samples.size(); ++s) {
        if (result.isComputed(s)) {
            ++result.byMask[result.samples.missed[s]];
        } else if (left++ < MostMessagesMade) {
            result.tally.leaveOut(result.evaluator->whyNot(result.variables(s)));
        } else {
            result.tally.leaveOut("Not looked into");
        }
    }
    result.tally.runs = result.samples.size();
}

} // namespace

Result<Uncertainty> assess(const project::ProjectCase& base, const UncertaintyRequest& request,
                           Samples samples, int RoundTELVOSF) {
    auto ready = readyToDraw(base, request, RoundTELVOSF);
    if (!ready) return ready.fault();
    Uncertainty result;
    result.sampler = ready->sampler;
    result.evaluator = ready->evaluator;
    result.scattered = request.inputs;
    result.samples = std::move(samples);
    const std::size_t criteria = request.criteria.size(), per = result.samples.perReplicate;
    setTally(result, criteria);
    if (result.tally.notComputed() == result.samples.size())
        return Fault{"None of the samples can be computed: " + result.tally.left.front().message,
                     base.FileName};

    const auto sizeOfAll = [&](std::size_t points) { return result.samples.replicates * points; };
    const auto converging = [&](std::uint16_t mask) {
        std::vector<Convergence> steps;
        const bool whole = request.plan.method == sampling::Method::LatinHypercube;
        std::size_t points = whole ? per : std::min(std::size_t{1} << CoarsestConvergence, per);
        for (; points <= per; points *= 2)
            steps.push_back(
                {sizeOfAll(points),
                 shareOfReplicates(countsOf(result.samples, mask, points, per), points)});
        return steps;
    };
    for (std::size_t c = 0; c < criteria; ++c) {
        CriterionShare one;
        const auto mask = static_cast<std::uint16_t>(1U << c);
        for (std::size_t m = 0; m < result.byMask.size(); ++m)
            if ((m & mask) != 0) one.misses += result.byMask[m];
        one.missed =
            shareOfReplicates(countsOf(result.samples, mask, per, per), per, &one.fewMisses);
        setSpread(one, result.samples, c, request.criteria[c]);
        if (one.cumulative.empty())
            return Fault{"No sample has this result", request.criteria[c].outcome.name()};
        if (request.halfWidth && !isNarrow(one.missed, *request.halfWidth))
            result.halfWidthMet = false;
        result.criteria.push_back(std::move(one));
        result.convergence.push_back(converging(mask));
    }
    const auto every = static_cast<std::uint16_t>((1U << criteria) - 1);
    result.any = shareOfReplicates(countsOf(result.samples, every, per, per), per);
    result.convergenceOfAny = converging(every);
    result.headline = headlineOf(result, request);
    return result;
}

} // namespace telvo::study
