// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/questions/scatter.h"

#include "base/numbers.h"
#include "study/questions/ranges.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace telvo::study {

using project::Field;
using sampling::Distribution;
using Shape = Scatter::Shape;

namespace {

constexpr std::array<std::string_view, 13> ShapeNames = {
    "normal", "lognormal", "uniform",        "triangular",      "trapezoidal", "pert",    "beta",
    "gamma",  "weibull",   "gumbel-largest", "gumbel-smallest", "discrete",    "measured"};

/// As near to 0 and 1 as a sample comes.
constexpr double LeastDrawn = 0x1p-53;

/// What a shape is made of.
enum Ingredient : unsigned {
    Mean = 1,
    Deviation = 2,
    PointList = 4,
    Weights = 8,
    Shapes = 16,
    Scale = 32
};

struct Makeup {
    unsigned takes = 0;
    std::size_t fewest = 0, most = 0; ///< points
};

Makeup makeupOf(const Scatter& scatter) {
    constexpr std::size_t many = 100'000;
    switch (scatter.shape) {
    case Shape::Normal:
    case Shape::Lognormal:
    case Shape::Gamma:
    case Shape::GumbelLargest:
    case Shape::GumbelSmallest:
        return {Mean | Deviation, 0, 0};
    case Shape::Uniform:
        return {PointList, 2, 2};
    case Shape::Triangular:
    case Shape::Pert:
        return {PointList, 3, 3};
    case Shape::Trapezoidal:
        return {PointList, 4, 4};
    case Shape::Beta:
        return {scatter.shapes.empty() ? PointList | Mean | Deviation : PointList | Shapes, 2, 2};
    case Shape::Weibull:
        return {scatter.shapes.empty() ? Mean | Deviation : Shapes | Scale, 0, 0};
    case Shape::Discrete:
        return {PointList | Weights, 1, many};
    case Shape::Measured:
        break;
    }
    return {PointList, 2, many};
}

/// The first thing that a shape lacks or does not know.
std::string wrongParts(const Scatter& s) {
    const Makeup makeup = makeupOf(s);
    const std::string shape(shapeName(s.shape));
    const auto takes = [&](Ingredient part) { return (makeup.takes & part) != 0; };
    if (takes(Deviation)) {
        if (!s.sd == !s.cov) return shape + " needs either sd or cov";
    } else if (s.sd || s.cov) {
        return shape + " takes no sd and no cov";
    }
    if (s.mean && !takes(Mean)) return shape + " takes no mean";
    if (!s.weights.empty() && !takes(Weights)) return shape + " takes no weights";
    if (!s.weights.empty() && s.weights.size() != s.points.size())
        return shape + " needs a weight for every value";
    const std::size_t shapes = s.shape == Shape::Beta ? 2 : 1;
    if (takes(Shapes) ? s.shapes.size() != shapes : !s.shapes.empty())
        return takes(Shapes) ? shape + " has " + (shapes == 2 ? "two shapes" : "one shape")
                             : shape + " takes no shapes";
    if (takes(Scale) != s.scale.has_value())
        return takes(Scale) ? shape + " needs a scale" : shape + " takes no scale";
    if (!takes(PointList)) return s.points.empty() ? "" : shape + " takes mean and sd or cov";
    if (s.points.size() < makeup.fewest || s.points.size() > makeup.most) {
        if (makeup.fewest != makeup.most)
            return shape + " needs " + (makeup.fewest == 1 ? "a value" : "two values") +
                   " at least";
        return shape + " needs " + generalNumber(static_cast<double>(makeup.fewest)) +
               " values, percent or relative";
    }
    return {};
}

Result<Distribution> uncut(const Scatter& s, double own) {
    std::vector<double> at = s.points;
    for (double& point : at) {
        if (s.pointsAre == Scatter::Points::Offsets) point = own + point;
        if (s.pointsAre == Scatter::Points::Percent) point = own + own * point / 100;
    }
    const double mean = s.mean.value_or(own);
    const double sd = s.sd ? *s.sd : std::abs(mean) * s.cov.value_or(0);
    const double cov = s.cov ? *s.cov : (mean != 0 ? s.sd.value_or(0) / std::abs(mean) : 0);
    switch (s.shape) {
    case Shape::Normal:
        return Distribution::normal(mean, sd);
    case Shape::Lognormal:
        return Distribution::lognormal(mean, cov);
    case Shape::Uniform:
        return Distribution::uniform(at[0], at[1]);
    case Shape::Triangular:
        return Distribution::triangular(at[0], at[1], at[2]);
    case Shape::Trapezoidal:
        return Distribution::trapezoidal(at[0], at[1], at[2], at[3]);
    case Shape::Pert:
        return Distribution::pert(at[0], at[1], at[2]);
    case Shape::Beta:
        if (s.shapes.empty()) return Distribution::betaOfMean(mean, sd, at[0], at[1]);
        return Distribution::beta(s.shapes[0], s.shapes[1], at[0], at[1]);
    case Shape::Gamma:
        return Distribution::gamma(mean, cov);
    case Shape::Weibull:
        if (s.shapes.empty()) return Distribution::weibullOfMean(mean, cov);
        return Distribution::weibull(s.shapes[0], *s.scale);
    case Shape::GumbelLargest:
        return Distribution::gumbelLargest(mean, sd);
    case Shape::GumbelSmallest:
        return Distribution::gumbelSmallest(mean, sd);
    case Shape::Discrete:
        return Distribution::discrete(at, s.weights.empty() ? std::vector<double>(at.size(), 1)
                                                            : s.weights);
    case Shape::Measured:
        break;
    }
    return Distribution::measured(at);
}

Scatter normalCov(double cov) {
    Scatter scatter;
    scatter.cov = cov;
    return scatter;
}
Scatter normalSd(double sd) {
    Scatter scatter;
    scatter.sd = sd;
    return scatter;
}
Scatter triangularAbout(double low, double high) {
    Scatter scatter;
    scatter.shape = Shape::Triangular;
    scatter.pointsAre = Scatter::Points::Offsets;
    scatter.points = {low, 0, high};
    return scatter;
}

} // namespace

std::string_view shapeName(Shape shape) {
    return ShapeNames[static_cast<std::size_t>(shape)];
}

std::optional<Shape> shapeNamed(std::string_view name) {
    const auto at = std::find(ShapeNames.begin(), ShapeNames.end(), name);
    if (at == ShapeNames.end()) return std::nullopt;
    return static_cast<Shape>(at - ShapeNames.begin());
}

std::span<const std::string_view> shapeNames() {
    return ShapeNames;
}

Result<Distribution> distributionAbout(const Scatter& scatter, double own) {
    if (std::string wrong = wrongParts(scatter); !wrong.empty()) return Fault{wrong, ""};
    if (scatter.cutSd && !(*scatter.cutSd > 0))
        return Fault{"A cut is some standard deviations above 0 away", ""};
    auto made = uncut(scatter, own);
    if (!made) return made;
    std::optional<double> low = scatter.low, high = scatter.high;
    if (scatter.cutSd) {
        const double by = *scatter.cutSd * made->sd();
        low = std::max(low.value_or(made->mean() - by), made->mean() - by);
        high = std::min(high.value_or(made->mean() + by), made->mean() + by);
    }
    if (!low && !high) return made;
    return made->truncated(low, high);
}

Result<Distribution> distributionOf(const Scatter& scatter, const Variable& variable,
                                    const project::ProjectInput& in) {
    const std::string name = variable.name();
    const Span valid = variable.valid(in);
    std::vector<double> told;
    if (scatter.pointsAre == Scatter::Points::Values) told = scatter.points;
    for (const auto& bound : {scatter.low, scatter.high, scatter.mean})
        if (bound) told.push_back(*bound);
    for (const double value : told)
        if (!valid.contains(value))
            return Fault{generalNumber(value) + " is beyond what the parameter form takes", name};
    auto made = distributionAbout(scatter, variable.of(in));
    if (!made) return Fault{made.fault().message, name};
    const double least = made->at(LeastDrawn), most = made->at(1 - LeastDrawn);
    if (least >= valid.low && most <= valid.high) return made;
    // A part of a part would forget the first bounds.
    Scatter within = scatter;
    within.cutSd.reset();
    within.low = std::max(least, valid.low);
    within.high = std::min(most, valid.high);
    auto part = distributionAbout(within, variable.of(in));
    if (!part) return Fault{part.fault().message, name};
    return part;
}

Scatter usualScatter(const Variable& variable, std::int16_t units) {
    const bool english = units == project::English;
    const auto length = [english](double feet, double meters) {
        return normalSd(english ? feet : meters);
    };
    const auto triangle = [english](double feetLow, double feetHigh, double metersLow,
                                    double metersHigh) {
        return english ? triangularAbout(feetLow, feetHigh)
                       : triangularAbout(metersLow, metersHigh);
    };
    switch (variable.field()) {
    case Field::DepthCover: { // topography and boreholes
        Scatter depth = normalCov(0.05);
        depth.cutSd = 3;
        return depth;
    }
    case Field::EntryHeight: // seam and roof that is taken
        return normalCov(0.07);
    case Field::EntryWidth: // overcut and spalling are one-sided
        return triangle(-0.5, 2, -0.15, 0.6);
    case Field::XcutSpacing: // survey
    case Field::XcutCenters:
    case Field::WidthC:
    case Field::WidthD:
        return length(1.5, 0.45);
    case Field::XcutAngle:
        return normalSd(2);
    case Field::BarrierFirstGob: // maps of old workings
    case Field::BarrierSecondGob:
        return length(3, 0.9);
    case Field::SlabcutFirstGob: // cut too deep is the danger
    case Field::SlabcutSecondGob:
        return triangle(-3, 5, -0.9, 1.5);
    case Field::ExtentActiveGob:
    case Field::ExtentFirstGob:
    case Field::ExtentSecondGob:
        return normalCov(0.03);
    case Field::AbutmentAngleActiveGob:
    case Field::AbutmentAngleFirstGob:
    case Field::AbutmentAngleSecondGob:
        return triangularAbout(-6, 6);
    case Field::UnitWeight:
        return normalCov(0.04);
    case Field::CoalStrength: {
        Scatter strength = normalCov(0.15);
        strength.shape = Shape::Lognormal;
        return strength;
    }
    default: {
        Scatter even;
        even.shape = Shape::Uniform;
        even.pointsAre = Scatter::Points::Percent;
        even.points = {-10, 10};
        return even;
    }
    }
}

std::vector<ScatteredInput> usualInputs(const project::ProjectCase& base) {
    const Variable usual[] = {
        Field::DepthCover,       Field::EntryHeight,     Field::EntryWidth,
        Field::XcutSpacing,      Field::XcutAngle,       Variable::allDistances(),
        Field::ExtentActiveGob,  Field::ExtentFirstGob,  Field::BarrierFirstGob,
        Field::SlabcutFirstGob,  Field::ExtentSecondGob, Field::BarrierSecondGob,
        Field::SlabcutSecondGob, Field::WidthC,          Field::WidthD};
    std::vector<ScatteredInput> inputs;
    for (const Variable& variable : usual)
        if (variable.of(base.Input) != 0 && whyWithoutEffect(base, variable).empty())
            inputs.push_back({{variable}, {}, false});
    return inputs;
}

std::string scatterText(const Scatter& scatter) {
    std::string text(shapeName(scatter.shape));
    const auto add = [&](std::string_view name, const std::optional<double>& value) {
        if (value) text.append(", ").append(name).append(" ").append(generalNumber(*value, 6));
    };
    add("mean", scatter.mean);
    add("sd", scatter.sd);
    add("CoV", scatter.cov);
    add("scale", scatter.scale);
    const auto list = [&](std::string_view name, const std::vector<double>& values) {
        constexpr std::size_t shown = 6;
        if (values.empty()) return;
        text.append(", ").append(name);
        for (std::size_t i = 0; i < std::min(values.size(), shown); ++i)
            text.append(i > 0 ? ", " : " ").append(generalNumber(values[i], 6));
        if (values.size() > shown) text += ", ...";
    };
    list("shape", scatter.shapes);
    list(scatter.pointsAre == Scatter::Points::Values    ? "values"
         : scatter.pointsAre == Scatter::Points::Offsets ? "about the case's own value"
                                                         : "in percent about the case's own value",
         scatter.points);
    list("weights", scatter.weights);
    add("from", scatter.low);
    add("to", scatter.high);
    if (scatter.cutSd)
        text += ", cut at " + generalNumber(*scatter.cutSd, 6) + " standard deviations";
    return text;
}

} // namespace telvo::study
