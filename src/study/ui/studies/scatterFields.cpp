// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/studies/scatterFields.h"

#include "base/numbers.h"
#include "base/text.h"

#include <cmath>
#include <string_view>

namespace telvo::study::ui {

using Shape = Scatter::Shape;

namespace {

const char* const ShapeTitles[] = {
    "Normal",         "Lognormal", "Uniform", "Triangular",      "Trapezoidal",      "PERT",
    "Beta",           "Gamma",     "Weibull", "Gumbel, largest", "Gumbel, smallest", "Discrete",
    "Measured values"};

} // namespace

QString shapeTitle(Shape shape) {
    return ShapeTitles[static_cast<std::size_t>(shape)];
}

Family familyOf(Shape shape) {
    switch (shape) {
    case Shape::Uniform:
    case Shape::Triangular:
    case Shape::Trapezoidal:
    case Shape::Pert:
        return Family::ByPoints;
    case Shape::Beta:
        return Family::Beta;
    case Shape::Discrete:
    case Shape::Measured:
        return Family::List;
    default:
        return Family::ByMean;
    }
}

std::vector<QString> captionsOf(Shape shape) {
    switch (shape) {
    case Shape::Uniform:
        return {"Lowest", "Highest"};
    case Shape::Triangular:
    case Shape::Pert:
        return {"Lowest", "Best", "Highest"};
    case Shape::Trapezoidal:
        return {"Lowest", "Level from", "Level to", "Highest"};
    case Shape::Beta:
        return {"First shape", "Second shape", "Lowest", "Highest"};
    case Shape::Discrete:
    case Shape::Measured:
        return {};
    default:
        return {"Mean", "Spread"};
    }
}

Result<std::vector<std::pair<double, std::optional<double>>>> listOf(const std::string& text) {
    std::vector<std::pair<double, std::optional<double>>> list;
    std::string word;
    const auto take = [&]() -> std::optional<Fault> {
        if (word.empty()) return std::nullopt;
        const auto colon = word.find(':');
        const auto value = numberOf(word.substr(0, colon));
        std::optional<double> weight;
        if (colon != std::string::npos) weight = numberOf(word.substr(colon + 1));
        if (!value || (colon != std::string::npos && !weight))
            return Fault{"Not a number: \"" + excerpt(word, 40) + "\"", "txtScatterList"};
        list.emplace_back(*value, weight);
        word.clear();
        return std::nullopt;
    };
    for (const char c : text + "\n") {
        if (std::string_view(" ,;\t\r\n").find(c) == std::string_view::npos) {
            word += c;
        } else if (auto fault = take()) {
            return std::move(*fault);
        }
    }
    return list;
}

Scatter firstOf(Shape shape, const Scatter& before, const Variable& variable,
                const project::ProjectInput& in) {
    const double own = variable.of(in);
    double sd = 0.05 * std::abs(own);
    if (const auto now = distributionOf(before, variable, in); now && now->sd() > 0) sd = now->sd();
    if (sd == 0) sd = 1;
    const auto rounded = [](double x) { return leadingValue(generalNumber(x, 3)); };
    Scatter scatter;
    scatter.shape = shape;
    switch (familyOf(shape)) {
    case Family::ByMean:
        if (own != 0)
            scatter.cov = rounded(sd / std::abs(own));
        else
            scatter.sd = rounded(sd);
        break;
    case Family::ByPoints: {
        const double half = rounded(2 * sd);
        scatter.pointsAre = Scatter::Points::Offsets;
        scatter.points = {-half, half};
        if (shape == Shape::Triangular || shape == Shape::Pert) scatter.points = {-half, 0, half};
        if (shape == Shape::Trapezoidal)
            scatter.points = {-half, rounded(-half / 2), rounded(half / 2), half};
        break;
    }
    case Family::Beta: {
        const double half = rounded(2 * sd);
        scatter.shapes = {2, 2};
        scatter.pointsAre = Scatter::Points::Offsets;
        scatter.points = {-half, half};
        break;
    }
    case Family::List:
        scatter.points = {rounded(own - sd), own, rounded(own + sd)};
        break;
    }
    return scatter;
}

} // namespace telvo::study::ui
