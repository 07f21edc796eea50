// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Distribution functions with the same digits on every machine, from the elementary functions of
/// base/elementary.h alone. They are called some thousand times per study, never per sample.
namespace telvo::sampling {

inline constexpr double Pi = 3.14159265358979324;

/// Probability that a standard normal variable stays below x; within 1e-13 of its value in either
/// tail.
double normalCdf(double x);

/// ln of the gamma function, x above 0; within 3e-14 of 1 or of its value, whichever is larger.
double logGamma(double x);

/// Regularized lower incomplete gamma function P(a, x), a above 0, x 0 or more.
double incompleteGamma(double a, double x);
/// 1 - P(a, x), without loss where that is small.
double upperIncompleteGamma(double a, double x);

/// Regularized incomplete beta function I_x(a, b), a and b above 0, x from 0 to 1.
double incompleteBeta(double a, double b, double x);

} // namespace telvo::sampling
