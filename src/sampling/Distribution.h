// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace telvo::sampling {

/// How an uncertain number scatters: the inverse of its distribution function, and what a reader has
/// to know of it. A value that is the same on every machine.
class Distribution {
  public:
    // Makers. Faults name what is wrong: a deviation that is not above 0, bounds or corners in the
    // wrong order, a number that is none.
    static Result<Distribution> normal(double mean, double sd);
    /// Given: cov  sd over mean, both of the number itself
    static Result<Distribution> lognormal(double mean, double cov);
    static Result<Distribution> uniform(double low, double high);
    static Result<Distribution> triangular(double low, double mode, double high);
    /// Density rising from `low` to `from`, level to `to`, falling to `high`.
    static Result<Distribution> trapezoidal(double low, double from, double to, double high);
    /// Beta with a mode that counts four times an end.
    static Result<Distribution> pert(double low, double mode, double high);
    static Result<Distribution> beta(double shape1, double shape2, double low, double high);
    static Result<Distribution> betaOfMean(double mean, double sd, double low, double high);
    static Result<Distribution> gamma(double mean, double cov);
    static Result<Distribution> weibull(double shape, double scale);
    static Result<Distribution> weibullOfMean(double mean, double cov);
    /// Of largest or of smallest values.
    static Result<Distribution> gumbelLargest(double mean, double sd);
    static Result<Distribution> gumbelSmallest(double mean, double sd);
    /// Single values, each with a weight above 0.
    static Result<Distribution> discrete(std::vector<double> values, std::vector<double> weights);
    /// Measured values, two at least: linear between them.
    static Result<Distribution> measured(std::vector<double> values);

    /// The part of it between two bounds, either of which may be missing.
    /// Faults: bounds in the wrong order, or nothing of it between them
    Result<Distribution> truncated(std::optional<double> low, std::optional<double> high) const;
    /// The same shape at another place.
    Distribution shifted(double by) const;

    /// The value below which the number stays with the probability u, 0 < u < 1.
    double at(double u) const { return of(u, 1 - u); }
    /// The same from both sides, without loss in either tail.
    /// Given: p, q  probability below and above
    double of(double p, double q) const;
    /// Whether it is a plain function of a normal score: ofScores() then needs no probability.
    bool takesScores() const;
    /// Normal scores become numbers; for one that takesScores().
    void ofScores(double* values, std::size_t count) const;
    /// Probability that the number is at most x.
    double below(double x) const;

    /// Of what is left after truncation.
    double mean() const { return m_mean; }
    double sd() const { return m_sd; }

  private:
    enum class Shape : std::uint8_t {
        Normal,
        Lognormal,
        Uniform,
        Triangular,
        Trapezoidal,
        Beta,
        Gamma,
        Weibull,
        GumbelLargest,
        GumbelSmallest,
        Discrete,
        Measured
    };
    struct Knots;

    Distribution(Shape shape, double a, double b = 0, double c = 0, double d = 0)
        : m_shape(shape), m_a(a), m_b(b), m_c(c), m_d(d) {}
    void settle();
    double quantile(double p, double q) const;
    double above(double x) const;

    Shape m_shape;
    double m_a, m_b, m_c, m_d;             ///< parameters of the shape
    std::vector<double> m_values, m_steps; ///< of Discrete and Measured, with what lies below
    std::shared_ptr<const Knots> m_knots;  ///< of Beta and Gamma
    double m_offset = 0;
    // Probabilities below and above the ends of what is left.
    double m_belowLow = 0, m_aboveLow = 1, m_belowHigh = 1, m_aboveHigh = 0;
    bool m_cut = false;
    double m_low = 0, m_high = 0; ///< bounds of a truncation
    double m_mean = 0, m_sd = 0;
};

} // namespace telvo::sampling
