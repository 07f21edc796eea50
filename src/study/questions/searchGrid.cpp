// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/questions/searchGrid.h"

#include "base/numbers.h"
#include "study/questions/intervals.h"
#include "study/questions/ranges.h"

#include <algorithm>
#include <cmath>

namespace telvo::study {

using project::FieldKind;

Span defaultSearchRange(const project::ProjectCase& base, const Variable& variable) {
    const Span valid = variable.valid(base.Input);
    const bool english = base.Units == project::English;
    const double own = variable.of(base.Input);
    Span range{own / 2, own * 2};
    if (!(own > 0)) {
        const double length = english ? 200 : 60;
        range = {0, variable.kind() == FieldKind::Length ? length : 1};
    }
    if (variable.kind() == FieldKind::Angle) range = {own - 30, own + 30};
    range.low = std::max(range.low, valid.low);
    range.high = std::min(range.high, valid.high);
    // A wide range begins and ends at round values.
    if (const double step = defaultStep(variable, base.Units); range.high - range.low > 20 * step) {
        const double low = practicalValue(std::ceil(range.low / step), step);
        const double high = practicalValue(std::floor(range.high / step), step);
        range = {std::max(low, range.low), std::min(high, range.high)};
    }
    return range;
}

double defaultStep(const Variable& variable, std::int16_t units) {
    const bool english = units == project::English;
    switch (variable.kind()) {
    case FieldKind::Length:
        if (variable == project::Field::EntryHeight || variable == project::Field::EntryWidth)
            return english ? 0.1 : 0.05;
        return english ? 1 : 0.5;
    case FieldKind::Angle:
        return 1;
    case FieldKind::Strength:
        return english ? 10 : 0.1;
    case FieldKind::UnitWeight:
        return english ? 1 : 0.1;
    case FieldKind::Number:
        break;
    }
    return 0.01;
}

std::optional<Fault> refusedRange(const project::ProjectCase& base, const Variable& variable,
                                  const Span& range) {
    const std::string name = variable.name();
    if (const std::string why = whyWithoutEffect(base, variable); !why.empty())
        return Fault{variable.label() + " changes nothing in this case: " + why, name};
    if (!std::isfinite(range.low) || !std::isfinite(range.high) || !(range.low < range.high))
        return Fault{"A range goes from a smaller to a greater number, not from " +
                         generalNumber(range.low) + " to " + generalNumber(range.high),
                     name};
    const Span valid = variable.valid(base.Input);
    const auto beyond = [&](const std::string& limits) {
        return Fault{variable.label() + " has to be " + limits + "; asked for was " +
                         generalNumber(range.low) + " to " + variable.text(range.high, base.Units),
                     name};
    };
    if (range.low >= valid.low && range.high <= valid.high) return std::nullopt;
    if (std::isfinite(valid.high))
        return beyond("from " + generalNumber(valid.low) + " to " +
                      variable.text(valid.high, base.Units));
    return beyond("at least " + variable.text(valid.low, base.Units));
}

Result<std::vector<double>> searchGrid(const project::ProjectCase& base, const Variable& variable,
                                       const Span& range, double step) {
    if (auto fault = refusedRange(base, variable, range)) return std::move(*fault);
    if (!(step > 0) || !std::isfinite(step))
        return Fault{"A step has to be above 0, not " + generalNumber(step), variable.name()};
    const double width = range.high - range.low;
    if (width / step > static_cast<double>(MostPoints))
        return Fault{"A step of " + generalNumber(step) + " makes more than 100,000 values from " +
                         generalNumber(range.low) + " to " + generalNumber(range.high) +
                         ": take a longer one",
                     variable.name()};
    std::vector<double> grid, even;
    for (double k = std::ceil(range.low / step); practicalValue(k, step) <= range.high; ++k)
        if (const double x = practicalValue(k, step); x >= range.low) grid.push_back(x);
    const double own = variable.of(base.Input);
    if (range.contains(own)) even.push_back(own);
    constexpr std::size_t last = FewestPoints - 1;
    for (std::size_t i = 0; i <= last; ++i)
        even.push_back(i == last ? range.high : range.low + width * static_cast<double>(i) / last);
    // What differs by rounding alone gives way to practical values and to the case's own.
    const double near = width * SwitchResolution;
    for (const double x : even) {
        const auto next = std::lower_bound(grid.begin(), grid.end(), x);
        const bool known = (next != grid.end() && *next - x < near) ||
                           (next != grid.begin() && x - *(next - 1) < near);
        if (!known) grid.insert(next, x);
    }
    // A height or a depth of 0 has no factor, and those next to it have one without bound.
    if (!(grid.front() > 0) && variable.leavesZeroOut())
        grid.front() = grid.size() > 1 ? grid[1] / 2 : width / 2;
    return grid;
}

} // namespace telvo::study
