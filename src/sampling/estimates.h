// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// What a sample says of a share, a mean or a quantile, and how sure it is.
namespace telvo::sampling {

/// An estimate with its 95 % interval.
struct Estimate {
    double value = 0;
    double low = 0, high = 0;

    double halfWidth() const { return (high - low) / 2; }
};

/// A share k of n: E. B. Wilson 1927, which holds its 95 % also where k is small.
Estimate wilson(std::uint64_t k, std::uint64_t n);

/// The exact interval of C. J. Clopper and E. S. Pearson 1934, for the record.
Estimate clopperPearson(std::uint64_t k, std::uint64_t n);

/// The mean of replicates that are independent of each other, with Student's interval.
Estimate overReplicates(std::span<const double> values);

/// A share from replicates of n points each: Student's interval over the replicates, but Wilson's of
/// all points together where fewer than 30 of them, or none of a replicate, belong to it.
/// Given: counts  of each replicate
Estimate shareOf(std::span<const std::uint64_t> counts, std::uint64_t perReplicate);

/// Quantile of sorted numbers as spreadsheets have it: linear between order statistics (type 7 of R.
/// J. Hyndman and Y. Fan).
double quantileOf(std::span<const double> sorted, double p);

/// The numbers that would stand at some places, from 0, if all were sorted; faster than sorting them.
/// Given: places  in any order
std::vector<double> orderStatistics(std::span<const double> values,
                                    std::span<const std::size_t> places);
/// quantileOf() for some probabilities, of numbers in any order.
std::vector<double> quantilesOf(std::span<const double> values, std::span<const double> ps);

/// Mean and variance of blocks, joined in the order of the blocks (T. F. Chan et al. 1983), so that
/// any number of threads gives the same bits.
struct Moments {
    std::uint64_t count = 0;
    double mean = 0;
    double squares = 0; ///< sum of the squared differences from the mean

    static Moments of(std::span<const double> values);
    void join(const Moments& later);
    double variance() const { return count > 1 ? squares / static_cast<double>(count - 1) : 0; }
};

/// Ranks from 1, ties at their middle.
std::vector<double> midranks(std::span<const double> values);
/// Pearson's correlation; 0 where one of both does not vary.
double correlationOf(std::span<const double> x, std::span<const double> y);
/// Spearman's: Pearson's of the midranks.
double rankCorrelation(std::span<const double> x, std::span<const double> y);

/// First-order and total index of an input (A. Saltelli et al. 2010, M. J. W. Jansen 1999).
/// Given: a, b   outcomes of two independent samples
///        mixed  outcomes of the first with this input from the second
struct SobolIndices {
    double first = 0, total = 0;
};
SobolIndices sobolIndices(std::span<const double> a, std::span<const double> b,
                          std::span<const double> mixed);

} // namespace telvo::sampling
