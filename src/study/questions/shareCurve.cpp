// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/questions/shareCurve.h"

#include "study/questions/ranges.h"
#include "study/questions/sampleBlock.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace telvo::study {

using sampling::Estimate;

namespace {

std::optional<Fault> refusedCurve(const project::ProjectCase& base, const AskedFragility& asked) {
    const std::string name = asked.over.name();
    if (const std::string why = whyWithoutEffect(base, asked.over); !why.empty())
        return Fault{asked.over.label() + " changes nothing in this case: " + why, name};
    if (asked.values.empty()) return Fault{"There are no values", name};
    for (std::size_t v = 1; v < asked.values.size(); ++v)
        if (!(asked.values[v - 1] < asked.values[v])) return Fault{"The values have to rise", name};
    if (!asked.weights.empty() && asked.weights.size() != asked.values.size())
        return Fault{"Every value needs a weight", name};
    if (std::any_of(asked.weights.begin(), asked.weights.end(),
                    [](double weight) { return !(weight > 0); }))
        return Fault{"A weight has to be above 0", name};
    if (asked.share && !(*asked.share > 0 && *asked.share < 1))
        return Fault{"A share that is looked for is between 0 and 1, neither of them", name};
    return std::nullopt;
}

/// Counts at some values of the design variable.
struct CurveCounts {
    std::vector<std::vector<std::vector<ReplicateCount>>>
        byCriterion;                               ///< [criterion][value][replicate]
    std::vector<std::vector<std::size_t>> leftOut; ///< the first sample that was not computed
};

/// Nothing where it was stopped.
std::optional<CurveCounts> countsAt(const ReadyToDraw& ready, const UncertaintyRequest& request,
                                    const std::vector<double>& values, unsigned threads,
                                    const std::stop_token& stop) {
    const auto per = static_cast<std::size_t>(request.plan.perReplicate());
    const std::size_t replicates = request.plan.replicates, criteria = request.criteria.size();
    const std::vector<std::vector<ReplicateCount>> none(values.size(),
                                                        std::vector<ReplicateCount>(replicates));
    CurveCounts counts{
        std::vector(criteria, none),
        std::vector(values.size(), std::vector<std::size_t>(replicates, ~std::size_t{0}))};
    const bool whole = inParallel(replicates, threads, stop, [&](std::size_t r) {
        SampleBlock block(ready, request.criteria);
        for (std::size_t from = 0; from < per; from += SamplesPerBlock) {
            const std::size_t count = std::min(SamplesPerBlock, per - from);
            block.draw(r, from, count);
            for (std::size_t v = 0; v < values.size(); ++v) {
                std::fill(block.other(0).begin(), block.other(0).end(), values[v]);
                block.compute(count);
                for (std::size_t i = 0; i < count; ++i) {
                    if (!block.isComputed(i)) {
                        counts.leftOut[v][r] = std::min(counts.leftOut[v][r], from + i);
                        continue;
                    }
                    for (std::size_t c = 0; c < criteria; ++c) {
                        ++counts.byCriterion[c][v][r].computed;
                        counts.byCriterion[c][v][r].misses += block.misses(c, i);
                    }
                }
            }
        }
    });
    if (!whole) return std::nullopt;
    return counts;
}

std::vector<ShareCurvePoint> pointsOf(const CurveCounts& counts, std::size_t c,
                                      const std::vector<double>& values, std::size_t per) {
    std::vector<ShareCurvePoint> points;
    for (std::size_t v = 0; v < values.size(); ++v) {
        const std::vector<ReplicateCount>& own = counts.byCriterion[c][v];
        ShareCurvePoint point;
        point.x = values[v];
        for (const ReplicateCount& one : own)
            point.computed += one.computed;
        point.notComputed = own.size() * per - point.computed;
        point.missed = shareOfReplicates(own, per);
        points.push_back(point);
    }
    return points;
}

/// Adds points where the curve, or an end of its band, passes a share, until straight lines between
/// them do no harm. Returned: it was not stopped.
bool refine(std::vector<ShareCurvePoint>& points, std::size_t c, const ReadyToDraw& ready,
            const UncertaintyRequest& request, double share, unsigned threads,
            const std::stop_token& stop) {
    constexpr double finest = 1.0 / 4096; // of the range
    const double width = (points.back().x - points.front().x) * finest;
    const auto side = [&](const ShareCurvePoint& point) {
        if (point.computed == 0) return -1;
        return (point.missed.value <= share ? 1 : 0) + (point.missed.low <= share ? 2 : 0) +
               (point.missed.high <= share ? 4 : 0);
    };
    for (;;) {
        std::vector<double> between;
        for (std::size_t v = 1; v < points.size(); ++v)
            if (side(points[v - 1]) != side(points[v]) && points[v].x - points[v - 1].x > width)
                between.push_back(points[v - 1].x + (points[v].x - points[v - 1].x) / 2);
        if (between.empty()) return true;
        const auto counts = countsAt(ready, request, between, threads, stop);
        if (!counts) return false;
        const auto more =
            pointsOf(*counts, c, between, static_cast<std::size_t>(request.plan.perReplicate()));
        points.insert(points.end(), more.begin(), more.end());
        std::sort(points.begin(), points.end(),
                  [](const ShareCurvePoint& a, const ShareCurvePoint& b) { return a.x < b.x; });
    }
}

/// Stretches in which a curve is at most a share, on straight lines between its points.
std::vector<Span> stretchesUpTo(const std::vector<ShareCurvePoint>& points, double Estimate::*bound,
                                double share) {
    std::vector<Span> stretches;
    bool open = false;
    for (std::size_t v = 0; v < points.size(); ++v) {
        const double y = points[v].missed.*bound;
        const bool known = points[v].computed > 0, holds = known && y <= share;
        const bool afterKnown = v > 0 && points[v - 1].computed > 0;
        const auto crossing = [&] {
            const double before = points[v - 1].missed.*bound;
            return points[v - 1].x +
                   (points[v].x - points[v - 1].x) * ((share - before) / (y - before));
        };
        if (holds && !open)
            stretches.push_back({afterKnown ? crossing() : points[v].x, points[v].x});
        else if (holds)
            stretches.back().high = points[v].x;
        else if (open && known)
            stretches.back().high = crossing();
        open = holds;
    }
    return stretches;
}

std::vector<ShareInterval> intervalsUpTo(const std::vector<ShareCurvePoint>& points, double share) {
    const auto least = stretchesUpTo(points, &Estimate::low, share),
               most = stretchesUpTo(points, &Estimate::high, share);
    std::vector<ShareInterval> intervals;
    for (const Span& own : stretchesUpTo(points, &Estimate::value, share)) {
        ShareInterval one;
        one.from = own.low;
        one.to = own.high;
        one.fromRange = own.low == points.front().x;
        one.toRange = own.high == points.back().x;
        for (const Span& wide : least)
            if (wide.low <= own.low && own.high <= wide.high) {
                one.fromEarliest = wide.low;
                one.toLatest = wide.high;
            }
        for (const Span& narrow : most)
            if (own.low <= narrow.low && narrow.high <= own.high) {
                if (!one.fromLatest) one.fromLatest = narrow.low;
                one.toEarliest = narrow.high;
            }
        intervals.push_back(one);
    }
    return intervals;
}

/// Average of a curve over the parts of a panel.
Estimate averageOf(const std::vector<ShareCurvePoint>& points,
                   const std::vector<std::vector<ReplicateCount>>& counts,
                   const std::vector<double>& weights) {
    double total = 0, value = 0, low = 0, high = 0;
    bool few = false;
    std::vector<double> byReplicate(counts.front().size());
    for (std::size_t v = 0; v < points.size(); ++v) {
        if (points[v].computed == 0) continue;
        total += weights[v];
        value += weights[v] * points[v].missed.value;
        low += weights[v] * points[v].missed.low;
        high += weights[v] * points[v].missed.high;
        for (std::size_t r = 0; r < byReplicate.size(); ++r) {
            const ReplicateCount& one = counts[v][r];
            few = few || one.computed == 0;
            if (one.computed > 0)
                byReplicate[r] += weights[v] * static_cast<double>(one.misses) /
                                  static_cast<double>(one.computed);
        }
    }
    if (!(total > 0)) return {0, 0, 1};
    // Where hardly anything misses the ends of the single intervals hold.
    few = few || byReplicate.size() < 2 ||
          *std::min_element(byReplicate.begin(), byReplicate.end()) <= 0;
    if (few) return {value / total, low / total, high / total};
    for (double& one : byReplicate)
        one /= total;
    const double half = sampling::overReplicates(byReplicate).halfWidth();
    value /= total;
    return {value, std::max(value - half, 0.0), std::min(value + half, 1.0)};
}

std::string curveHeadline(const ShareCurve& curve, const UncertaintyRequest& request,
                          const AskedFragility& asked, std::int16_t units) {
    const std::string what = request.criteria.front().title(units);
    const auto text = [&](double x) { return asked.over.text(x, units, 4); };
    const auto about = [&](double x, const std::optional<double>& from,
                           const std::optional<double>& to) {
        std::string own = text(x);
        if (from && to && *from < *to) own += " (" + text(*from) + " to " + text(*to) + ")";
        return own;
    };
    const std::vector<ShareCurvePoint>& points = curve.points.front();
    if (!asked.share)
        return "The share that misses (" + what + ") is " +
               percentText(points.front().missed.value) + " % at " + text(points.front().x) +
               " and " + percentText(points.back().missed.value) + " % at " + text(points.back().x);
    const std::string aim = "At most " + percentText(*asked.share) + " % miss: " + what + ",";
    const auto& meets = curve.meets.front();
    if (meets.empty())
        return aim + " nowhere from " + text(points.front().x) + " to " + text(points.back().x);
    const ShareInterval& last = meets.back();
    const std::string others = meets.size() > 1 ? "; also in a stretch before" : "";
    if (last.fromRange && last.toRange)
        return aim + " everywhere from " + text(last.from) + " to " + text(last.to);
    if (last.toRange)
        return aim + " from " + about(last.from, last.fromEarliest, last.fromLatest) + " on" +
               others;
    if (last.fromRange) return aim + " up to " + about(last.to, last.toEarliest, last.toLatest);
    return aim + " from " + about(last.from, last.fromEarliest, last.fromLatest) + " up to " +
           about(last.to, last.toEarliest, last.toLatest) + others;
}

} // namespace

Result<ShareCurve> shareCurve(const project::ProjectCase& base, const UncertaintyRequest& request,
                              const AskedFragility& asked, int RoundTELVOSF, unsigned threads,
                              const std::stop_token& stop) {
    if (auto fault = refusedCurve(base, asked)) return *fault;
    auto ready = readyToDraw(base, request, RoundTELVOSF, {asked.over});
    if (!ready) return ready.fault();
    const auto per = static_cast<std::size_t>(request.plan.perReplicate());
    const std::size_t replicates = request.plan.replicates, criteria = request.criteria.size();
    const auto counts = countsAt(*ready, request, asked.values, threads, stop);
    if (!counts) return Fault{"Stopped before anything was computed", ""};
    ShareCurve curve;
    curve.average.resize(criteria);
    curve.meets.resize(criteria);
    for (std::size_t c = 0; c < criteria; ++c) {
        curve.points.push_back(pointsOf(*counts, c, asked.values, per));
        if (!asked.weights.empty())
            curve.average[c] = averageOf(curve.points[c], counts->byCriterion[c], asked.weights);
        if (!asked.share) continue;
        std::vector<ShareCurvePoint> fine = curve.points[c];
        if (!refine(fine, c, *ready, request, *asked.share, threads, stop))
            return Fault{"Stopped before anything was computed", ""};
        curve.meets[c] = intervalsUpTo(fine, *asked.share);
    }
    // By the message of the first sample of each value and replicate.
    for (std::size_t v = 0; v < asked.values.size(); ++v)
        for (std::size_t r = 0; r < replicates; ++r) {
            const std::uint64_t lost = per - counts->byCriterion.front()[v][r].computed;
            if (lost == 0) continue;
            std::vector<double> drawn(request.inputs.size()), values;
            std::vector<double*> out;
            for (double& value : drawn)
                out.push_back(&value);
            ready->sampler->block(r, counts->leftOut[v][r], 1, out);
            for (const DrawnColumn& column : ready->columns)
                values.push_back(column.of(drawn[column.input]));
            values.push_back(asked.values[v]);
            curve.tally.leaveOut(ready->evaluator->whyNot(values), lost);
        }
    curve.tally.runs = replicates * per * asked.values.size();
    if (curve.tally.notComputed() == curve.tally.runs)
        return Fault{"None of the samples can be computed: " + curve.tally.left.front().message,
                     base.FileName};
    curve.headline = curveHeadline(curve, request, asked, base.Units);
    return curve;
}

} // namespace telvo::study
