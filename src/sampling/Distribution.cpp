// SPDX-License-Identifier: GPL-3.0-or-later
#include "sampling/Distribution.h"

#include "base/elementary.h"
#include "base/numbers.h"
#include "sampling/columns.h"
#include "sampling/special.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>
#include <utility>

namespace telvo::sampling {

namespace {

constexpr double Infinite = std::numeric_limits<double>::infinity();
constexpr double EulerGamma = 0.57721566490153286;

/// Normal quantile of a probability that is known from both sides.
double normalOf(double p, double q) {
    return p < q ? inverseNormal(p) : -inverseNormal(q);
}

/// -ln(1 - p), q being 1 - p.
double minusLnOfRest(double p, double q) {
    if (p > 0.01) return -ln(q);
    double power = p, sum = 0;
    for (int n = 1; n < 12; ++n, power *= p)
        sum += power / n;
    return sum;
}

/// x to the power of y for x above 0.
double raised(double x, double y) {
    return x > 0 ? exponential(y * ln(x)) : 0;
}

bool allFinite(std::initializer_list<double> numbers) {
    return std::all_of(numbers.begin(), numbers.end(), [](double x) { return std::isfinite(x); });
}

Fault noNumber() {
    return {"A parameter of the distribution is no number", ""};
}
Fault notAbove0(std::string_view what, double value) {
    return {std::string(what) + " has to be above 0, not " + generalNumber(value), ""};
}
Fault wrongOrder(std::string_view what) {
    return {std::string(what) + " have to rise", ""};
}

} // namespace

/// Values of a quantile over the normal quantile, with their slopes: a cubic between each two.
struct Distribution::Knots {
    static constexpr int Count = 1025;
    static constexpr double End = 8.25;
    static constexpr double Step = 2 * End / (Count - 1);

    std::array<double, Count> x, slope; // the slope per step

    double at(double z) const {
        const double place = std::clamp((z + End) / Step, 0.0, double{Count - 1});
        const int k = std::min(static_cast<int>(place), Count - 2);
        const double t = place - k, rest = 1 - t;
        const auto i = static_cast<std::size_t>(k);
        return rest * rest * ((1 + 2 * t) * x[i] + t * slope[i]) +
               t * t * ((1 + 2 * rest) * x[i + 1] - rest * slope[i + 1]);
    }

    /// Given: below, above, density  of the distribution at x, for x from low to high
    template <class Below, class Above, class Density>
    static std::shared_ptr<const Knots> make(double low, double high, Below below, Above above,
                                             Density density) {
        auto knots = std::make_shared<Knots>();
        double from = low;
        for (int k = 0; k < Count; ++k) {
            const double z = k * Step - End;
            const double p = normalCdf(z), q = normalCdf(-z);
            const auto lacks = [&](double x) { // of the probability, from the nearer tail
                return p < q ? below(x) - p : q - above(x);
            };
            double left = from, right = high;
            if (!std::isfinite(right)) {
                right = std::max(2 * from, 1.0);
                while (lacks(right) < 0)
                    right *= 2;
            }
            double x = left + (right - left) / 2;
            for (int n = 0; n < 200; ++n) {
                const double by = lacks(x);
                (by < 0 ? left : right) = x;
                const double slope = density(x);
                double next = x - by / slope;
                if (!(slope > 0) || !(next > left && next < right))
                    next = left + (right - left) / 2;
                if (next == x || std::abs(next - x) <= 4e-16 * std::abs(x)) break;
                x = next;
            }
            const auto i = static_cast<std::size_t>(k);
            knots->x[i] = x;
            const double f = density(x);
            const double phi = exponential(-z * z / 2) / 2.5066282746310002;
            knots->slope[i] = f > 0 ? Step * phi / f : 0;
            from = x;
        }
        return knots;
    }
};

Result<Distribution> Distribution::normal(double mean, double sd) {
    if (!allFinite({mean, sd})) return noNumber();
    if (!(sd > 0)) return notAbove0("A standard deviation", sd);
    Distribution made(Shape::Normal, mean, sd);
    made.m_mean = mean;
    made.m_sd = sd;
    return made;
}

Result<Distribution> Distribution::lognormal(double mean, double cov) {
    if (!allFinite({mean, cov})) return noNumber();
    if (!(mean > 0)) return notAbove0("The mean of a lognormal distribution", mean);
    if (!(cov > 0)) return notAbove0("A coefficient of variation", cov);
    const double square = ln(1 + cov * cov);
    Distribution made(Shape::Lognormal, ln(mean) - square / 2, std::sqrt(square));
    made.m_mean = mean;
    made.m_sd = mean * cov;
    return made;
}

Result<Distribution> Distribution::uniform(double low, double high) {
    if (!allFinite({low, high})) return noNumber();
    if (!(low < high)) return wrongOrder("The ends of a uniform distribution");
    Distribution made(Shape::Uniform, low, high);
    made.m_mean = low + (high - low) / 2;
    made.m_sd = (high - low) / std::sqrt(12.0);
    return made;
}

Result<Distribution> Distribution::triangular(double low, double mode, double high) {
    if (!allFinite({low, mode, high})) return noNumber();
    if (!(low <= mode && mode <= high && low < high))
        return wrongOrder("Lowest, most likely and highest value");
    Distribution made(Shape::Triangular, low, mode, high);
    made.m_mean = (low + mode + high) / 3;
    made.m_sd = std::sqrt(((high - low) * (high - low) - (mode - low) * (high - mode)) / 18);
    return made;
}

Result<Distribution> Distribution::trapezoidal(double low, double from, double to, double high) {
    if (!allFinite({low, from, to, high})) return noNumber();
    if (!(low <= from && from <= to && to <= high && low < high))
        return wrongOrder("The corners of a trapezoidal distribution");
    Distribution made(Shape::Trapezoidal, low, from, to, high);
    made.settle();
    return made;
}

Result<Distribution> Distribution::pert(double low, double mode, double high) {
    if (!allFinite({low, mode, high})) return noNumber();
    if (!(low <= mode && mode <= high && low < high))
        return wrongOrder("Lowest, most likely and highest value");
    return beta(1 + 4 * (mode - low) / (high - low), 1 + 4 * (high - mode) / (high - low), low,
                high);
}

Result<Distribution> Distribution::beta(double shape1, double shape2, double low, double high) {
    if (!allFinite({shape1, shape2, low, high})) return noNumber();
    if (!(shape1 > 0)) return notAbove0("A shape of a beta distribution", shape1);
    if (!(shape2 > 0)) return notAbove0("A shape of a beta distribution", shape2);
    if (!(low < high)) return wrongOrder("The ends of a beta distribution");
    Distribution made(Shape::Beta, shape1, shape2, low, high);
    const double front = logGamma(shape1 + shape2) - logGamma(shape1) - logGamma(shape2);
    made.m_knots = Knots::make(
        0, 1, [=](double x) { return incompleteBeta(shape1, shape2, x); },
        [=](double x) { return incompleteBeta(shape2, shape1, 1 - x); },
        [=](double x) {
            return x > 0 && x < 1
                       ? exponential(front + (shape1 - 1) * ln(x) + (shape2 - 1) * ln(1 - x))
                       : 0;
        });
    const double sum = shape1 + shape2;
    made.m_mean = low + (high - low) * shape1 / sum;
    made.m_sd = (high - low) * std::sqrt(shape1 * shape2 / (sum * sum * (sum + 1)));
    return made;
}

Result<Distribution> Distribution::betaOfMean(double mean, double sd, double low, double high) {
    if (!allFinite({mean, sd, low, high})) return noNumber();
    if (!(low < mean && mean < high)) return wrongOrder("Lower end, mean and upper end");
    if (!(sd > 0)) return notAbove0("A standard deviation", sd);
    const double m = (mean - low) / (high - low), s = sd / (high - low);
    const double sum = m * (1 - m) / (s * s) - 1;
    if (!(sum > 0)) return Fault{"No beta distribution scatters so widely between its ends", ""};
    return beta(m * sum, (1 - m) * sum, low, high);
}

Result<Distribution> Distribution::gamma(double mean, double cov) {
    if (!allFinite({mean, cov})) return noNumber();
    if (!(mean > 0)) return notAbove0("The mean of a gamma distribution", mean);
    if (!(cov > 0)) return notAbove0("A coefficient of variation", cov);
    const double shape = 1 / (cov * cov);
    Distribution made(Shape::Gamma, shape, mean / shape);
    const double front = -logGamma(shape);
    made.m_knots = Knots::make(
        0, Infinite, [=](double x) { return incompleteGamma(shape, x); },
        [=](double x) { return upperIncompleteGamma(shape, x); },
        [=](double x) { return x > 0 ? exponential(front + (shape - 1) * ln(x) - x) : 0; });
    made.m_mean = mean;
    made.m_sd = mean * cov;
    return made;
}

Result<Distribution> Distribution::weibull(double shape, double scale) {
    if (!allFinite({shape, scale})) return noNumber();
    if (!(shape > 0)) return notAbove0("The shape of a Weibull distribution", shape);
    if (!(scale > 0)) return notAbove0("The scale of a Weibull distribution", scale);
    Distribution made(Shape::Weibull, shape, scale);
    const double one = logGamma(1 + 1 / shape);
    made.m_mean = scale * exponential(one);
    made.m_sd = made.m_mean * std::sqrt(exponential(logGamma(1 + 2 / shape) - 2 * one) - 1);
    return made;
}

Result<Distribution> Distribution::weibullOfMean(double mean, double cov) {
    if (!allFinite({mean, cov})) return noNumber();
    if (!(mean > 0)) return notAbove0("The mean of a Weibull distribution", mean);
    if (!(cov > 0.005 && cov < 15))
        return Fault{"A Weibull distribution has a coefficient of variation from 0.005 to 15", ""};
    // The coefficient of variation falls as the shape rises.
    double low = 0.1, high = 400;
    for (int n = 0; n < 200; ++n) {
        const double shape = low + (high - low) / 2;
        const double square =
            exponential(logGamma(1 + 2 / shape) - 2 * logGamma(1 + 1 / shape)) - 1;
        (square > cov * cov ? low : high) = shape;
    }
    const double shape = low + (high - low) / 2;
    return weibull(shape, mean / exponential(logGamma(1 + 1 / shape)));
}

Result<Distribution> Distribution::gumbelLargest(double mean, double sd) {
    if (!allFinite({mean, sd})) return noNumber();
    if (!(sd > 0)) return notAbove0("A standard deviation", sd);
    const double scale = sd * std::sqrt(6.0) / Pi;
    Distribution made(Shape::GumbelLargest, mean - EulerGamma * scale, scale);
    made.m_mean = mean;
    made.m_sd = sd;
    return made;
}

Result<Distribution> Distribution::gumbelSmallest(double mean, double sd) {
    auto made = gumbelLargest(-mean, sd);
    if (!made) return made;
    made->m_shape = Shape::GumbelSmallest;
    made->m_a = -made->m_a;
    made->m_mean = mean;
    return made;
}

Result<Distribution> Distribution::discrete(std::vector<double> values,
                                            std::vector<double> weights) {
    if (values.empty() || values.size() != weights.size())
        return Fault{"Every value needs a weight, and there has to be one", ""};
    std::vector<std::size_t> order(values.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return values[a] < values[b]; });
    double total = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!std::isfinite(values[i]) || !std::isfinite(weights[i])) return noNumber();
        if (!(weights[i] > 0)) return notAbove0("A weight", weights[i]);
        total += weights[i];
    }
    Distribution made(Shape::Discrete, 0);
    double sum = 0;
    for (const std::size_t i : order) {
        sum += weights[i];
        made.m_values.push_back(values[i]);
        made.m_steps.push_back(sum / total);
        made.m_mean += values[i] * weights[i] / total;
    }
    made.m_steps.back() = 1;
    double square = 0;
    for (const std::size_t i : order)
        square += (values[i] - made.m_mean) * (values[i] - made.m_mean) * weights[i] / total;
    made.m_sd = std::sqrt(square);
    return made;
}

Result<Distribution> Distribution::measured(std::vector<double> values) {
    if (values.size() < 2) return Fault{"Measured values have to be two at least", ""};
    if (!std::all_of(values.begin(), values.end(), [](double x) { return std::isfinite(x); }))
        return noNumber();
    std::sort(values.begin(), values.end());
    if (!(values.front() < values.back()))
        return Fault{"Measured values that are all alike scatter nowhere", ""};
    Distribution made(Shape::Measured, 0);
    made.m_values = std::move(values);
    made.settle();
    return made;
}

Result<Distribution> Distribution::truncated(std::optional<double> low,
                                             std::optional<double> high) const {
    if ((low && std::isnan(*low)) || (high && std::isnan(*high))) return noNumber();
    if (low && high && !(*low < *high)) return wrongOrder("The bounds of a truncation");
    Distribution part = *this;
    part.m_low = low ? *low - m_offset : -Infinite;
    part.m_high = high ? *high - m_offset : Infinite;
    if (low) {
        part.m_belowLow = below(*low);
        part.m_aboveLow = above(*low - m_offset);
    }
    if (high) {
        part.m_belowHigh = below(*high);
        part.m_aboveHigh = above(*high - m_offset);
    }
    part.m_cut = true;
    if (!(std::max(part.m_belowHigh - part.m_belowLow, part.m_aboveLow - part.m_aboveHigh) > 0))
        return Fault{"Nothing of the distribution lies between its bounds", ""};
    part.settle();
    return part;
}

Distribution Distribution::shifted(double by) const {
    Distribution moved = *this;
    moved.m_offset += by;
    moved.m_mean += by;
    return moved;
}

/// Mean and deviation of what has no formula for them, by the midpoint rule over the probability:
/// they are shown, not computed with.
void Distribution::settle() {
    constexpr int parts = 20'000;
    double sum = 0;
    for (int i = 0; i < parts; ++i)
        sum += at((i + 0.5) / parts);
    m_mean = sum / parts;
    double squares = 0;
    for (int i = 0; i < parts; ++i) {
        const double by = at((i + 0.5) / parts) - m_mean;
        squares += by * by;
    }
    m_sd = std::sqrt(squares / parts);
}

double Distribution::of(double p, double q) const {
    if (!m_cut) return quantile(p, q) + m_offset;
    const double below = m_belowLow + p * (m_belowHigh - m_belowLow);
    const double above = m_aboveHigh + q * (m_aboveLow - m_aboveHigh);
    return std::clamp(quantile(below, above), m_low, m_high) + m_offset;
}

bool Distribution::takesScores() const {
    if (m_cut) return false;
    return m_shape == Shape::Normal || m_shape == Shape::Lognormal || m_shape == Shape::Beta ||
           m_shape == Shape::Gamma;
}

void Distribution::ofScores(double* values, std::size_t count) const {
    // Each as in quantile(), and the offset added as in of().
    const auto each = [&](auto&& number) {
        for (std::size_t i = 0; i < count; ++i)
            values[i] = number(values[i]) + m_offset;
    };
    switch (m_shape) {
    case Shape::Lognormal:
        toExponentials(values, count, m_a, m_b);
        return each([](double x) { return x; });
    case Shape::Beta:
        return each([this](double z) { return m_c + (m_d - m_c) * m_knots->at(z); });
    case Shape::Gamma:
        return each([this](double z) { return m_b * m_knots->at(z); });
    default:
        return each([this](double z) { return m_a + m_b * z; });
    }
}

double Distribution::quantile(double p, double q) const {
    switch (m_shape) {
    case Shape::Normal:
        return m_a + m_b * normalOf(p, q);
    case Shape::Lognormal:
        return exponential(m_a + m_b * normalOf(p, q));
    case Shape::Uniform:
        return m_a + p * (m_b - m_a);
    case Shape::Triangular: {
        const double width = m_c - m_a;
        return p * width < m_b - m_a ? m_a + std::sqrt(p * width * (m_b - m_a))
                                     : m_c - std::sqrt(q * width * (m_c - m_b));
    }
    case Shape::Trapezoidal: {
        const double top = 2 / (m_d + m_c - m_b - m_a); // height of the density
        const double rise = (m_b - m_a) * top / 2, fall = (m_d - m_c) * top / 2;
        if (p < rise) return m_a + std::sqrt(2 * p * (m_b - m_a) / top);
        if (q < fall) return m_d - std::sqrt(2 * q * (m_d - m_c) / top);
        return m_b + (p - rise) / top;
    }
    case Shape::Beta:
        return m_c + (m_d - m_c) * m_knots->at(normalOf(p, q));
    case Shape::Gamma:
        return m_b * m_knots->at(normalOf(p, q));
    case Shape::Weibull:
        return m_b * raised(minusLnOfRest(p, q), 1 / m_a);
    case Shape::GumbelLargest:
        return m_a - m_b * ln(minusLnOfRest(q, p));
    case Shape::GumbelSmallest:
        return m_a + m_b * ln(minusLnOfRest(p, q));
    case Shape::Discrete: {
        const auto at = std::lower_bound(m_steps.begin(), m_steps.end(), p);
        return m_values[std::min(static_cast<std::size_t>(at - m_steps.begin()),
                                 m_values.size() - 1)];
    }
    case Shape::Measured: {
        const double place = p * static_cast<double>(m_values.size() - 1);
        const auto k = std::min(static_cast<std::size_t>(place), m_values.size() - 2);
        return m_values[k] + (place - static_cast<double>(k)) * (m_values[k + 1] - m_values[k]);
    }
    }
    return 0;
}

double Distribution::below(double x) const {
    if (m_cut) {
        const double y = x - m_offset;
        if (y < m_low) return 0;
        if (y >= m_high) return 1;
        Distribution whole = *this;
        whole.m_cut = false;
        return std::clamp((whole.below(x) - m_belowLow) / (m_belowHigh - m_belowLow), 0.0, 1.0);
    }
    x -= m_offset;
    switch (m_shape) {
    case Shape::Normal:
        return normalCdf((x - m_a) / m_b);
    case Shape::Lognormal:
        return x > 0 ? normalCdf((ln(x) - m_a) / m_b) : 0;
    case Shape::Uniform:
        return std::clamp((x - m_a) / (m_b - m_a), 0.0, 1.0);
    case Shape::Triangular:
        if (x <= m_a) return 0;
        if (x >= m_c) return 1;
        return x < m_b ? (x - m_a) * (x - m_a) / ((m_c - m_a) * (m_b - m_a))
                       : 1 - (m_c - x) * (m_c - x) / ((m_c - m_a) * (m_c - m_b));
    case Shape::Trapezoidal: {
        if (x <= m_a) return 0;
        if (x >= m_d) return 1;
        const double top = 2 / (m_d + m_c - m_b - m_a);
        if (x < m_b) return top * (x - m_a) * (x - m_a) / (2 * (m_b - m_a));
        if (x > m_c) return 1 - top * (m_d - x) * (m_d - x) / (2 * (m_d - m_c));
        return top * ((m_b - m_a) / 2 + x - m_b);
    }
    case Shape::Beta:
        return incompleteBeta(m_a, m_b, (x - m_c) / (m_d - m_c));
    case Shape::Gamma:
        return incompleteGamma(m_a, x / m_b);
    case Shape::Weibull:
        return x > 0 ? 1 - exponential(-raised(x / m_b, m_a)) : 0;
    case Shape::GumbelLargest:
        return exponential(-exponential(-(x - m_a) / m_b));
    case Shape::GumbelSmallest:
        return 1 - exponential(-exponential((x - m_a) / m_b));
    case Shape::Discrete: {
        const auto at = std::upper_bound(m_values.begin(), m_values.end(), x);
        return at == m_values.begin()
                   ? 0
                   : m_steps[static_cast<std::size_t>(at - m_values.begin()) - 1];
    }
    case Shape::Measured: {
        if (x <= m_values.front()) return 0;
        if (x >= m_values.back()) return 1;
        const auto next = std::upper_bound(m_values.begin(), m_values.end(), x);
        const double part = (x - *(next - 1)) / (*next - *(next - 1));
        return (static_cast<double>(next - 1 - m_values.begin()) + part) /
               static_cast<double>(m_values.size() - 1);
    }
    }
    return 0;
}

/// Probability above x, before any shift, without loss where it is small.
double Distribution::above(double x) const {
    switch (m_shape) {
    case Shape::Normal:
        return normalCdf((m_a - x) / m_b);
    case Shape::Lognormal:
        return x > 0 ? normalCdf((m_a - ln(x)) / m_b) : 1;
    case Shape::Beta:
        return incompleteBeta(m_b, m_a, 1 - (x - m_c) / (m_d - m_c));
    case Shape::Gamma:
        return upperIncompleteGamma(m_a, x / m_b);
    case Shape::Weibull:
        return x > 0 ? exponential(-raised(x / m_b, m_a)) : 1;
    case Shape::GumbelSmallest:
        return exponential(-exponential((x - m_a) / m_b));
    default:
        return 1 - below(x + m_offset);
    }
}

} // namespace telvo::sampling
