// SPDX-License-Identifier: GPL-3.0-or-later
#include "sampling/estimates.h"

#include "sampling/special.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace telvo::sampling {

namespace {

constexpr double TwoSided = 1.9599639845400545; // normal quantile of 0.975
constexpr std::uint64_t FewMisses = 30;

/// The x at which an incomplete beta function is p.
double betaQuantile(double a, double b, double p) {
    double low = 0, high = 1;
    for (int n = 0; n < 200 && high - low > 1e-16 * high; ++n) {
        const double x = low + (high - low) / 2;
        (incompleteBeta(a, b, x) < p ? low : high) = x;
    }
    return low + (high - low) / 2;
}

/// Student's quantile of 0.975.
double student(std::size_t freedom) {
    const auto f = static_cast<double>(freedom);
    // P(|T| > t) = I_x(f/2, 1/2) with x = f / (f + t^2)
    const double x = betaQuantile(f / 2, 0.5, 0.05);
    return std::sqrt(f / x - f);
}

} // namespace

Estimate wilson(std::uint64_t k, std::uint64_t n) {
    if (n == 0) return {0, 0, 1};
    const auto count = static_cast<double>(n);
    const double p = static_cast<double>(k) / count, z2 = TwoSided * TwoSided;
    const double middle = (p + z2 / (2 * count)) / (1 + z2 / count);
    const double half =
        TwoSided / (1 + z2 / count) * std::sqrt(p * (1 - p) / count + z2 / (4 * count * count));
    return {p, k == 0 ? 0 : middle - half, k == n ? 1 : middle + half};
}

Estimate clopperPearson(std::uint64_t k, std::uint64_t n) {
    if (n == 0) return {0, 0, 1};
    const auto hits = static_cast<double>(k), count = static_cast<double>(n);
    return {hits / count, k == 0 ? 0 : betaQuantile(hits, count - hits + 1, 0.025),
            k == n ? 1 : betaQuantile(hits + 1, count - hits, 0.975)};
}

Estimate overReplicates(std::span<const double> values) {
    const Moments moments = Moments::of(values);
    if (values.size() < 2) return {moments.mean, moments.mean, moments.mean};
    const double half = student(values.size() - 1) *
                        std::sqrt(moments.variance() / static_cast<double>(values.size()));
    return {moments.mean, moments.mean - half, moments.mean + half};
}

Estimate shareOf(std::span<const std::uint64_t> counts, std::uint64_t perReplicate) {
    std::uint64_t all = 0;
    bool none = counts.size() < 2, whole = false;
    std::vector<double> shares;
    for (const std::uint64_t count : counts) {
        all += count;
        none = none || count == 0;
        whole = whole || count == perReplicate;
        shares.push_back(static_cast<double>(count) / static_cast<double>(perReplicate));
    }
    const std::uint64_t n = perReplicate * counts.size();
    if (none || whole || all < FewMisses || n - all < FewMisses) return wilson(all, n);
    Estimate share = overReplicates(shares);
    share.low = std::max(share.low, 0.0);
    share.high = std::min(share.high, 1.0);
    return share;
}

double quantileOf(std::span<const double> sorted, double p) {
    if (sorted.empty()) return std::nan("");
    const double place = p * static_cast<double>(sorted.size() - 1);
    const auto k = std::min(static_cast<std::size_t>(place), sorted.size() - 1);
    const std::size_t next = std::min(k + 1, sorted.size() - 1);
    return sorted[k] + (place - static_cast<double>(k)) * (sorted[next] - sorted[k]);
}

std::vector<double> orderStatistics(std::span<const double> values,
                                    std::span<const std::size_t> places) {
    constexpr std::size_t fewest = 512, most = 4096, perBucket = 256;
    std::vector<double> found;
    if (values.empty()) return found;
    const auto [least, greatest] = std::minmax_element(values.begin(), values.end());
    const double low = *least, high = *greatest;
    const std::size_t buckets = std::clamp(values.size() / perBucket, std::size_t{1}, most);
    const double scale = static_cast<double>(buckets) / (high - low);
    if (values.size() < fewest || !std::isfinite(scale)) {
        std::vector<double> sorted(values.begin(), values.end());
        std::sort(sorted.begin(), sorted.end());
        for (const std::size_t place : places)
            found.push_back(sorted[place]);
        return found;
    }
    // A rising function of the number: all of a bucket stand before all of the next.
    const auto bucketOf = [&](double value) {
        return std::min(static_cast<std::size_t>((value - low) * scale), buckets - 1);
    };
    std::vector<std::size_t> before(buckets + 1);
    for (const double value : values)
        ++before[bucketOf(value) + 1];
    std::partial_sum(before.begin(), before.end(), before.begin());
    constexpr std::size_t none = ~std::size_t{0};
    std::vector<std::size_t> wanted(buckets, none); // where its numbers are gathered
    std::vector<std::vector<double>> gathered;
    const auto bucketAt = [&](std::size_t place) {
        return static_cast<std::size_t>(std::upper_bound(before.begin(), before.end(), place) -
                                        before.begin()) -
               1;
    };
    for (const std::size_t place : places)
        if (std::size_t& where = wanted[bucketAt(place)]; where == none) {
            where = gathered.size();
            gathered.emplace_back().reserve(before[bucketAt(place) + 1] - before[bucketAt(place)]);
        }
    for (const double value : values)
        if (const std::size_t where = wanted[bucketOf(value)]; where != none)
            gathered[where].push_back(value);
    for (auto& bucket : gathered)
        std::sort(bucket.begin(), bucket.end());
    for (const std::size_t place : places) {
        const std::size_t bucket = bucketAt(place);
        found.push_back(gathered[wanted[bucket]][place - before[bucket]]);
    }
    return found;
}

std::vector<double> quantilesOf(std::span<const double> values, std::span<const double> ps) {
    std::vector<double> found;
    if (values.empty()) return found;
    const auto last = static_cast<double>(values.size() - 1);
    std::vector<std::size_t> places;
    for (const double p : ps) {
        const auto k = static_cast<std::size_t>(p * last);
        places.push_back(k);
        places.push_back(std::min(k + 1, values.size() - 1));
    }
    const std::vector<double> at = orderStatistics(values, places);
    for (std::size_t i = 0; i < ps.size(); ++i) {
        const double place = ps[i] * last;
        found.push_back(at[2 * i] +
                        (place - static_cast<double>(places[2 * i])) * (at[2 * i + 1] - at[2 * i]));
    }
    return found;
}

Moments Moments::of(std::span<const double> values) {
    Moments moments;
    moments.count = values.size();
    if (values.empty()) return moments;
    double sum = 0;
    for (const double value : values)
        sum += value;
    moments.mean = sum / static_cast<double>(values.size());
    for (const double value : values)
        moments.squares += (value - moments.mean) * (value - moments.mean);
    return moments;
}

void Moments::join(const Moments& later) {
    if (later.count == 0) return;
    const auto a = static_cast<double>(count), b = static_cast<double>(later.count);
    const double by = later.mean - mean;
    mean += by * b / (a + b);
    squares += later.squares + by * by * a * b / (a + b);
    count += later.count;
}

std::vector<double> midranks(std::span<const double> values) {
    std::vector<std::size_t> order(values.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return values[a] < values[b]; });
    std::vector<double> ranks(values.size());
    for (std::size_t from = 0; from < order.size();) {
        std::size_t to = from + 1;
        while (to < order.size() && values[order[to]] == values[order[from]])
            ++to;
        const double middle = static_cast<double>(from + to + 1) / 2;
        for (; from < to; ++from)
            ranks[order[from]] = middle;
    }
    return ranks;
}

double correlationOf(std::span<const double> x, std::span<const double> y) {
    const Moments mx = Moments::of(x), my = Moments::of(y);
    double together = 0;
    for (std::size_t i = 0; i < x.size(); ++i)
        together += (x[i] - mx.mean) * (y[i] - my.mean);
    const double spread = std::sqrt(mx.squares) * std::sqrt(my.squares);
    return spread > 0 ? together / spread : 0;
}

double rankCorrelation(std::span<const double> x, std::span<const double> y) {
    return correlationOf(midranks(x), midranks(y));
}

SobolIndices sobolIndices(std::span<const double> a, std::span<const double> b,
                          std::span<const double> mixed) {
    Moments both = Moments::of(a);
    both.join(Moments::of(b));
    const double variance = both.squares / static_cast<double>(both.count);
    if (!(variance > 0)) return {};
    double toB = 0, toA = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        toB += (b[i] - mixed[i]) * (b[i] - mixed[i]);
        toA += (a[i] - mixed[i]) * (a[i] - mixed[i]);
    }
    const double perRun = 1 / (2 * variance * static_cast<double>(a.size()));
    return {1 - toB * perRun, toA * perRun};
}

} // namespace telvo::sampling
