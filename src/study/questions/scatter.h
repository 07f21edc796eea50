// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "sampling/Distribution.h"
#include "study/Variable.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// How inputs scatter, as somebody asks for it: about the case's own value, so that the case may change.
/// The one source of what is usual: "what matters" takes the 5 % and 95 % points of the same
/// distributions (ranges.h).
namespace telvo::study {

struct Scatter {
    enum class Shape : std::uint8_t {
        Normal,
        Lognormal,
        Uniform,
        Triangular,
        Trapezoidal,
        Pert,
        Beta,
        Gamma,
        Weibull,
        GumbelLargest,
        GumbelSmallest,
        Discrete,
        Measured
    };
    /// What `points` are: the values themselves, or what is added to the case's own value, in its
    /// units or in percent of it.
    enum class Points : std::uint8_t { Values, Offsets, Percent };

    Shape shape = Shape::Normal;
    std::optional<double> mean;    ///< nothing: the case's own value
    std::optional<double> sd, cov; ///< one of them, of shapes that are given by their mean
    Points pointsAre = Points::Values;
    std::vector<double> points;      ///< ends, corners or values of the other shapes, and of a beta
    std::vector<double> weights;     ///< of discrete values; none: all alike
    std::vector<double> shapes;      ///< two of a beta, one of a Weibull distribution
    std::optional<double> scale;     ///< of a Weibull distribution with its shape
    std::optional<double> low, high; ///< values at which it is cut
    std::optional<double> cutSd;     ///< cut at that many standard deviations about the mean

    bool operator==(const Scatter&) const = default;
};

/// "normal", "gumbel-largest", ...
std::string_view shapeName(Scatter::Shape shape);
std::optional<Scatter::Shape> shapeNamed(std::string_view name);
std::span<const std::string_view> shapeNames();

/// The distribution that it means for an input with a value of its own, whatever the parameter form
/// takes.
/// Faults: a parameter that the shape needs and lacks, or has and does not know; what Distribution
///         finds
Result<sampling::Distribution> distributionAbout(const Scatter& scatter, double own);

/// The distribution that it means for an input of a case. Where it reaches beyond what the parameter
/// form takes it is cut there.
/// Faults: what distributionAbout() finds, a value or a bound beyond what the parameter form takes
Result<sampling::Distribution> distributionOf(const Scatter& scatter, const Variable& variable,
                                              const project::ProjectInput& in);

/// An input that scatters, or several that share one error, as the center distances of one survey.
struct ScatteredInput {
    std::vector<Variable> variables;
    std::optional<Scatter> scatter; ///< nothing: what is usual for the first one
    bool shared = false;            ///< one error for all; otherwise each scatters by itself

    bool operator==(const ScatteredInput&) const = default;
};

/// What an input of a coal panel usually scatters by; a table that the manual prints.
Scatter usualScatter(const Variable& variable, std::int16_t units);

/// Inputs that scatter in a study where nobody says which: those with an effect in the case, without
/// coal strength, abutment angles and unit weight, which belong to how the limits were found.
std::vector<ScatteredInput> usualInputs(const project::ProjectCase& base);

/// "normal, mean 900, CoV 5 %, cut at 3 standard deviations": as a reader understands it.
std::string scatterText(const Scatter& scatter);

} // namespace telvo::study
