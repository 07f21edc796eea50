// SPDX-License-Identifier: GPL-3.0-or-later
#include "sampling/special.h"

#include "base/elementary.h"

#include <array>
#include <cmath>

namespace telvo::sampling {

namespace {

constexpr double Tiny = 1e-300;
constexpr double Enough = 1e-16;
constexpr int MostTerms = 2000;

constexpr double RootOfTwoPi = 2.5066282746310002;

double density(double x) {
    const double head = std::trunc(x * 16) / 16; // its square is exact
    return exponential(-head * head / 2) * exponential(-(x - head) * (x + head) / 2) / RootOfTwoPi;
}

/// 1 - Phi(x) for x of 3 and more: density / (x + 1/(x + 2/(x + 3/...))).
double upperTail(double x) {
    double fraction = x;
    for (int k = 200; k >= 1; --k)
        fraction = x + k / fraction;
    return density(x) / fraction;
}

/// ln Gamma(x) for x of 20 and more, by Stirling's series.
double stirling(double x) {
    constexpr std::array<double, 7> terms = {1.0 / 12,   -1.0 / 360,      1.0 / 1260, -1.0 / 1680,
                                             1.0 / 1188, -691.0 / 360360, 1.0 / 156};
    double series = 0;
    const double perSquare = 1 / (x * x);
    double power = 1 / x;
    for (const double term : terms) {
        series += term * power;
        power *= perSquare;
    }
    constexpr double halfLnTwoPi = 0.91893853320467274;
    return (x - 0.5) * ln(x) - x + halfLnTwoPi + series;
}

/// x^a e^-x / Gamma(a), with a care for large a: what cancels is taken together.
double gammaPrefix(double a, double x) {
    if (!(x > 0)) return 0;
    return exponential(a * ln(x) - x - logGamma(a));
}

double gammaSeries(double a, double x) {
    double term = 1 / a, sum = term;
    for (int n = 1; n < MostTerms; ++n) {
        term *= x / (a + n);
        sum += term;
        if (term < sum * Enough) break;
    }
    return sum * gammaPrefix(a, x);
}

/// Lentz's continued fraction of Q(a, x).
double gammaFraction(double a, double x) {
    double b = x + 1 - a, c = 1 / Tiny, d = 1 / b, h = d;
    for (int n = 1; n < MostTerms; ++n) {
        const double an = -n * (n - a);
        b += 2;
        d = an * d + b;
        if (std::abs(d) < Tiny) d = Tiny;
        c = b + an / c;
        if (std::abs(c) < Tiny) c = Tiny;
        d = 1 / d;
        const double factor = d * c;
        h *= factor;
        if (std::abs(factor - 1) < Enough) break;
    }
    return h * gammaPrefix(a, x);
}

double betaFraction(double a, double b, double x) {
    double c = 1, d = 1 - (a + b) * x / (a + 1);
    if (std::abs(d) < Tiny) d = Tiny;
    d = 1 / d;
    double h = d;
    for (int m = 1; m < MostTerms; ++m) {
        const double even = m * (b - m) * x / ((a + 2 * m - 1) * (a + 2 * m));
        d = 1 + even * d;
        if (std::abs(d) < Tiny) d = Tiny;
        c = 1 + even / c;
        if (std::abs(c) < Tiny) c = Tiny;
        d = 1 / d;
        h *= d * c;
        const double odd = -(a + m) * (a + b + m) * x / ((a + 2 * m) * (a + 2 * m + 1));
        d = 1 + odd * d;
        if (std::abs(d) < Tiny) d = Tiny;
        c = 1 + odd / c;
        if (std::abs(c) < Tiny) c = Tiny;
        d = 1 / d;
        const double factor = d * c;
        h *= factor;
        if (std::abs(factor - 1) < Enough) break;
    }
    return h;
}

} // namespace

double normalCdf(double x) {
    if (std::isnan(x)) return x;
    if (x > 3) return 1 - (x > 40 ? 0 : upperTail(x));
    if (x < -3) return x < -40 ? 0 : upperTail(-x);
    // 1/2 + density (x + x^3/3 + x^5/15 + ...)
    double term = x, sum = x;
    for (int n = 1; n < 200; ++n) {
        term *= x * x / (2 * n + 1);
        sum += term;
        if (std::abs(term) < Enough * std::abs(sum)) break;
    }
    return 0.5 + density(x) * sum;
}

double logGamma(double x) {
    // Gamma(x) = Gamma(x + n) / (x (x + 1) ... (x + n - 1))
    double product = 1, lowered = 0;
    while (x < 20) {
        product *= x;
        if (product > 1e250 || product < 1e-250) {
            lowered += ln(product);
            product = 1;
        }
        x += 1;
    }
    return stirling(x) - ln(product) - lowered;
}

double incompleteGamma(double a, double x) {
    if (!(x > 0)) return 0;
    return x < a + 1 ? gammaSeries(a, x) : 1 - gammaFraction(a, x);
}

double upperIncompleteGamma(double a, double x) {
    if (!(x > 0)) return 1;
    return x < a + 1 ? 1 - gammaSeries(a, x) : gammaFraction(a, x);
}

double incompleteBeta(double a, double b, double x) {
    if (!(x > 0)) return 0;
    if (!(x < 1)) return 1;
    const double front =
        exponential(logGamma(a + b) - logGamma(a) - logGamma(b) + a * ln(x) + b * ln(1 - x));
    return x < (a + 1) / (a + b + 2) ? front * betaFraction(a, b, x) / a
                                     : 1 - front * betaFraction(b, a, 1 - x) / b;
}

} // namespace telvo::sampling
