// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"

#include <cstddef>
#include <string>
#include <vector>

/// Dependence between uncertain inputs: rank correlations by pairs, brought together by a Gaussian
/// copula.
namespace telvo::sampling {

/// A square matrix, row by row.
class Matrix {
  public:
    explicit Matrix(std::size_t order) : m_order(order), m_numbers(order * order) {}
    static Matrix identity(std::size_t order);

    std::size_t order() const { return m_order; }
    double& at(std::size_t i, std::size_t j) { return m_numbers[i * m_order + j]; }
    double at(std::size_t i, std::size_t j) const { return m_numbers[i * m_order + j]; }
    const double* row(std::size_t i) const { return m_numbers.data() + i * m_order; }
    bool operator==(const Matrix&) const = default;

  private:
    std::size_t m_order;
    std::vector<double> m_numbers;
};

/// Correlation of the normal scores that belongs to a rank correlation: 2 sin(pi rho / 6).
double ofNormalScores(double rank);
/// The rank correlation of normal scores: 6 / pi asin(r / 2).
double ofRanks(double normal);

/// Eigenvalues of a symmetric matrix, largest first, and its eigenvectors in columns, by rotations
/// (C. G. J. Jacobi): plain sums, so that no library decides digits.
struct Eigen {
    std::vector<double> values;
    Matrix vectors;
};
Eigen eigenOf(const Matrix& symmetric);

/// The lower triangle L with L L' = matrix.
/// Faults: a matrix that is not positive definite
Result<Matrix> cholesky(const Matrix& symmetric);

/// A correlation matrix as it is used.
struct Correlation {
    Matrix asked;      ///< of the normal scores
    Matrix used;       ///< the same where it is possible, else repaired
    double change = 0; ///< largest difference of an entry between them
    Matrix lower;      ///< of `used`, by cholesky()
};

/// Repairs what contradicts itself: eigenvalues below 1e-8 are lifted to it and the diagonal is made
/// 1 again (R. Rebonato, P. Jaeckel 2000).
/// Given: ranks  rank correlations, 1 on the diagonal
/// Faults: an entry beyond -1 to 1, a matrix that is not symmetric, one whose repair changes an entry
///         by more than 0.05
Result<Correlation> correlationOf(const Matrix& ranks);

} // namespace telvo::sampling
