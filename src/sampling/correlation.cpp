// SPDX-License-Identifier: GPL-3.0-or-later
#include "sampling/correlation.h"

#include "base/elementary.h"
#include "base/numbers.h"
#include "sampling/special.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace telvo::sampling {

namespace {

constexpr double LeastEigenvalue = 1e-8;
constexpr double MostChange = 0.05;

} // namespace

Matrix Matrix::identity(std::size_t order) {
    Matrix matrix(order);
    for (std::size_t i = 0; i < order; ++i)
        matrix.at(i, i) = 1;
    return matrix;
}

double ofNormalScores(double rank) {
    return 2 * sine(Pi * rank / 6);
}

double ofRanks(double normal) {
    // The inverse of the sine above, which is nearly straight: Newton.
    double rank = normal;
    for (int n = 0; n < 8; ++n) {
        const double angle = Pi * rank / 6;
        const double slope = Pi / 3 * sine(Pi / 2 - angle); // d/d rank of 2 sin(pi rank / 6)
        rank -= (2 * sine(angle) - normal) / slope;
    }
    return rank;
}

Eigen eigenOf(const Matrix& symmetric) {
    const std::size_t n = symmetric.order();
    Matrix a = symmetric, v = Matrix::identity(n);
    for (int sweep = 0; sweep < 100; ++sweep) {
        double off = 0;
        for (std::size_t i = 0; i < n; ++i)
            for (std::size_t j = i + 1; j < n; ++j)
                off += a.at(i, j) * a.at(i, j);
        if (off < 1e-30) break;
        for (std::size_t p = 0; p < n; ++p)
            for (std::size_t q = p + 1; q < n; ++q) {
                if (a.at(p, q) == 0) continue;
                const double theta = (a.at(q, q) - a.at(p, p)) / (2 * a.at(p, q));
                const double size = std::abs(theta) + std::sqrt(theta * theta + 1);
                const double t = (theta < 0 ? -1 : 1) / size;
                const double c = 1 / std::sqrt(t * t + 1), s = t * c;
                for (std::size_t k = 0; k < n; ++k) {
                    const double kp = a.at(k, p), kq = a.at(k, q);
                    a.at(k, p) = c * kp - s * kq;
                    a.at(k, q) = s * kp + c * kq;
                }
                for (std::size_t k = 0; k < n; ++k) {
                    const double pk = a.at(p, k), qk = a.at(q, k);
                    a.at(p, k) = c * pk - s * qk;
                    a.at(q, k) = s * pk + c * qk;
                }
                for (std::size_t k = 0; k < n; ++k) {
                    const double kp = v.at(k, p), kq = v.at(k, q);
                    v.at(k, p) = c * kp - s * kq;
                    v.at(k, q) = s * kp + c * kq;
                }
            }
    }
    std::vector<std::size_t> order(n);
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t i, std::size_t j) { return a.at(i, i) > a.at(j, j); });
    Eigen eigen{{}, Matrix(n)};
    for (std::size_t j = 0; j < n; ++j) {
        eigen.values.push_back(a.at(order[j], order[j]));
        for (std::size_t i = 0; i < n; ++i)
            eigen.vectors.at(i, j) = v.at(i, order[j]);
    }
    return eigen;
}

Result<Matrix> cholesky(const Matrix& symmetric) {
    const std::size_t n = symmetric.order();
    Matrix lower(n);
    for (std::size_t j = 0; j < n; ++j)
        for (std::size_t i = j; i < n; ++i) {
            double sum = symmetric.at(i, j);
            for (std::size_t k = 0; k < j; ++k)
                sum -= lower.at(i, k) * lower.at(j, k);
            if (i > j) {
                lower.at(i, j) = sum / lower.at(j, j);
                continue;
            }
            if (!(sum > 0)) return Fault{"These correlations contradict each other", ""};
            lower.at(i, i) = std::sqrt(sum);
        }
    return lower;
}

Result<Correlation> correlationOf(const Matrix& ranks) {
    const std::size_t n = ranks.order();
    Matrix asked(n);
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = 0; j < n; ++j) {
            const double rank = ranks.at(i, j);
            if (!(rank >= -1 && rank <= 1))
                return Fault{"A correlation lies from -1 to 1, not at " + generalNumber(rank), ""};
            if (rank != ranks.at(j, i) || (i == j && rank != 1))
                return Fault{"Correlations have to be the same both ways", ""};
            asked.at(i, j) = i == j ? 1 : ofNormalScores(rank);
        }
    Correlation made{asked, asked, 0, Matrix(n)};
    const Eigen eigen = eigenOf(asked);
    if (n > 0 && eigen.values.back() < LeastEigenvalue) {
        Matrix lifted(n);
        for (std::size_t i = 0; i < n; ++i)
            for (std::size_t j = 0; j < n; ++j)
                for (std::size_t k = 0; k < n; ++k)
                    lifted.at(i, j) += eigen.vectors.at(i, k) *
                                       std::max(eigen.values[k], LeastEigenvalue) *
                                       eigen.vectors.at(j, k);
        for (std::size_t i = 0; i < n; ++i)
            for (std::size_t j = 0; j < n; ++j) {
                made.used.at(i, j) =
                    i == j ? 1 : lifted.at(i, j) / std::sqrt(lifted.at(i, i) * lifted.at(j, j));
                made.change = std::max(made.change, std::abs(made.used.at(i, j) - asked.at(i, j)));
            }
        if (made.change > MostChange)
            return Fault{"These correlations contradict each other: the nearest possible ones "
                         "differ by " +
                             generalNumber(made.change, 2),
                         ""};
    }
    auto lower = cholesky(made.used);
    if (!lower) return lower.fault();
    made.lower = std::move(*lower);
    return made;
}

} // namespace telvo::sampling
