// SPDX-License-Identifier: GPL-3.0-or-later
// What samples say: shares, means, quantiles, histogram and cumulative curve with their intervals.
#include "base/elementary.h"
#include "base/numbers.h"
#include "study/questions/sampleBlock.h"
#include "study/questions/uncertainty.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <span>
#include <utility>

namespace telvo::study {

using sampling::Estimate;

namespace {

constexpr std::size_t MostMessagesMade = 1000;
constexpr int CoarsestConvergence = 6; // 2^6 samples per replicate
constexpr std::size_t MostCurvePoints = 401;
constexpr double FewestBins = 20, MostBins = 80;
constexpr double TwoSidedNormal = 1.9599639845400545;

std::string headlineOf(const Uncertainty& result, const UncertaintyRequest& request,
                       std::int16_t units) {
    std::string text = shareSentence(result, request, 0, units);
    if (result.criteria.size() > 1 && result.any.value > 0)
        text += "; " + percentText(result.any.value) + " % miss at least one of the " +
                std::to_string(result.criteria.size());
    return text;
}

/// The values of an outcome that are numbers.
struct KnownValues {
    std::vector<double> all;
    std::vector<std::vector<double>> quantiles; ///< of each replicate
    std::vector<sampling::Moments> moments;     ///< likewise

    KnownValues(const Samples& samples, std::size_t criterion) {
        const std::size_t per = samples.perReplicate;
        all.reserve(samples.size());
        for (std::size_t r = 0; r < samples.replicates; ++r) {
            const std::size_t from = all.size();
            for (std::size_t s = r * per; s < (r + 1) * per; ++s)
                if (const double value = samples.outcomes[criterion][s]; !std::isnan(value))
                    all.push_back(value);
            const std::span<const double> own = std::span(all).subspan(from);
            if (own.empty()) continue;
            moments.push_back(sampling::Moments::of(own));
            quantiles.push_back(sampling::quantilesOf(own, ShownQuantiles));
        }
    }
};

/// With the interval of the replicates about the value of all samples; of a single replicate that of
/// plain random samples, which is no narrower.
Estimate aboutAll(double value, const std::vector<double>& byReplicate, double half) {
    if (byReplicate.size() > 1) half = sampling::overReplicates(byReplicate).halfWidth();
    return {value, value - half, value + half};
}

/// What is read off all values in one go: order is costly.
class Ordered {
  public:
    explicit Ordered(const std::vector<double>& values) : m_count(values.size()) {
        const std::size_t points = std::min(MostCurvePoints, m_count);
        for (std::size_t k = 0; k < points; ++k)
            m_places.push_back(points > 1 ? k * (m_count - 1) / (points - 1) : 0);
        m_points = points;
        for (const auto& list : {std::span<const double>(ShownQuantiles), histogramQuantiles()})
            for (const double p : list) {
                m_places.push_back(static_cast<std::size_t>(p * last()));
                m_places.push_back(std::min(m_places.back() + 1, m_count - 1));
            }
        m_at = sampling::orderStatistics(values, m_places);
    }

    /// The probabilities that a histogram asks for.
    static std::span<const double> histogramQuantiles() {
        static constexpr double list[] = {0.001, 0.25, 0.75, 0.999};
        return list;
    }
    /// Of the q-th of ShownQuantiles and, behind them, of histogramQuantiles().
    double quantile(std::size_t q) const {
        const double p = q < ShownQuantiles.size()
                             ? ShownQuantiles[q]
                             : histogramQuantiles()[q - ShownQuantiles.size()];
        const std::size_t i = m_points + 2 * q;
        return m_at[i] + (p * last() - static_cast<double>(m_places[i])) * (m_at[i + 1] - m_at[i]);
    }
    std::vector<std::pair<double, double>> cumulative() const {
        std::vector<std::pair<double, double>> curve;
        for (std::size_t k = 0; k < m_points; ++k)
            curve.emplace_back(m_at[k],
                               static_cast<double>(m_places[k] + 1) / static_cast<double>(m_count));
        return curve;
    }

  private:
    double last() const { return static_cast<double>(m_count - 1); }

    std::size_t m_count, m_points = 0;
    std::vector<std::size_t> m_places;
    std::vector<double> m_at;
};

void setQuantiles(CriterionShare& share, const KnownValues& known, const Ordered& ordered) {
    const auto n = static_cast<double>(known.all.size());
    for (std::size_t q = 0; q < ShownQuantiles.size(); ++q) {
        const double p = ShownQuantiles[q];
        std::vector<double> byReplicate;
        for (const auto& own : known.quantiles)
            byReplicate.push_back(own[q]);
        share.quantiles[q] = aboutAll(ordered.quantile(q), byReplicate, 0);
        if (byReplicate.size() > 1) continue;
        const double ranks = TwoSidedNormal * std::sqrt(p * (1 - p) / n);
        const double ends[] = {std::max(p - ranks, 0.0), std::min(p + ranks, 1.0)};
        const std::vector<double> at = sampling::quantilesOf(known.all, ends);
        share.quantiles[q].low = at[0];
        share.quantiles[q].high = at[1];
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
Histogram histogramOf(const std::vector<double>& values, const Ordered& ordered,
                      const Criterion& criterion) {
    Histogram histogram;
    constexpr std::size_t behind = ShownQuantiles.size();
    const double low = ordered.quantile(behind), high = ordered.quantile(behind + 3);
    histogram.first = low;
    if (!(low < high)) {
        for (const double value : values)
            ++(value < low ? histogram.below : histogram.above);
        histogram.counts = {histogram.above};
        histogram.above = 0;
        return histogram;
    }
    const double range = high - low;
    const double middle = ordered.quantile(behind + 2) - ordered.quantile(behind + 1);
    const double wanted = 2 * middle * exponential(-ln(static_cast<double>(values.size())) / 3);
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
    for (const double value : values) {
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

void setSpread(CriterionShare& share, const Samples& samples, std::size_t criterion,
               const Criterion& asked) {
    const KnownValues known(samples, criterion);
    if (known.all.empty()) return;
    std::vector<double> means;
    sampling::Moments all;
    for (const sampling::Moments& moments : known.moments) {
        means.push_back(moments.mean);
        all.join(moments);
    }
    share.sd = std::sqrt(all.variance());
    share.mean = aboutAll(all.mean, means,
                          TwoSidedNormal * share.sd / std::sqrt(static_cast<double>(all.count)));
    const Ordered ordered(known.all);
    setQuantiles(share, known, ordered);
    share.histogram = histogramOf(known.all, ordered, asked);
    share.cumulative = ordered.cumulative();
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

/// How many of the first samples of each replicate miss, at every doubling.
struct Counted {
    std::vector<std::size_t> sizes; ///< of a replicate
    /// [size][criterion][replicate]; behind the criteria any of them.
    std::vector<std::vector<std::vector<ReplicateCount>>> counts;

    Counted(const Samples& samples, std::size_t criteria, sampling::Method method) {
        const std::size_t per = samples.perReplicate;
        const bool whole = method == sampling::Method::LatinHypercube; // its first points are none
        for (std::size_t size = whole ? per : std::min(std::size_t{1} << CoarsestConvergence, per);
             size <= per; size *= 2)
            sizes.push_back(size);
        counts.assign(sizes.size(),
                      std::vector(criteria + 1, std::vector<ReplicateCount>(samples.replicates)));
        std::vector<std::uint64_t> misses;
        for (std::size_t r = 0; r < samples.replicates; ++r) {
            misses.assign(criteria + 1, 0);
            std::uint64_t computed = 0;
            std::size_t i = 0;
            for (std::size_t l = 0; l < sizes.size(); ++l) {
                for (; i < sizes[l]; ++i) {
                    unsigned missed = samples.missed[r * per + i];
                    if (missed == Samples::NotComputed) continue;
                    ++computed;
                    misses[criteria] += missed != 0;
                    for (; missed != 0; missed &= missed - 1)
                        ++misses[static_cast<std::size_t>(std::countr_zero(missed))];
                }
                for (std::size_t c = 0; c <= criteria; ++c)
                    counts[l][c][r] = {computed, misses[c]};
            }
        }
    }
};

} // namespace

std::string shareSentence(const Uncertainty& result, const UncertaintyRequest& request,
                          std::size_t criterion, std::int16_t units) {
    const CriterionShare& share = result.criteria[criterion];
    const std::string samples = groupedCount(result.samples.size()) +
                                " samples miss: " + request.criteria[criterion].title(units);
    if (share.misses == 0)
        return "None of " + samples + " (below " + percentText(share.missed.high) + " %)";
    return percentText(share.missed.value) + " % of " + samples + " (" +
           percentText(share.missed.low) + " to " + percentText(share.missed.high) + " %)";
}

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

    const Counted counted(result.samples, criteria, request.plan.method);
    const auto converging = [&](std::size_t c) {
        std::vector<Convergence> steps;
        for (std::size_t l = 0; l < counted.sizes.size(); ++l)
            steps.push_back({result.samples.replicates * counted.sizes[l],
                             shareOfReplicates(counted.counts[l][c], counted.sizes[l])});
        return steps;
    };
    for (std::size_t c = 0; c < criteria; ++c) {
        CriterionShare one;
        for (std::size_t m = 0; m < result.byMask.size(); ++m)
            if ((m >> c & 1) != 0) one.misses += result.byMask[m];
        one.missed = shareOfReplicates(counted.counts.back()[c], per, &one.fewMisses);
        setSpread(one, result.samples, c, request.criteria[c]);
        if (one.cumulative.empty())
            return Fault{"No sample has this result", request.criteria[c].outcome.name()};
        if (request.halfWidth && !isNarrow(one.missed, *request.halfWidth))
            result.halfWidthMet = false;
        result.criteria.push_back(std::move(one));
        result.convergence.push_back(converging(c));
    }
    result.any = shareOfReplicates(counted.counts.back()[criteria], per);
    result.convergenceOfAny = converging(criteria);
    result.headline = headlineOf(result, request, base.Units);
    return result;
}

} // namespace telvo::study
