// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/questions/ranges.h"

#include "base/numbers.h"
#include "engine/AnalysisResults.h"
#include "engine/driver.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace telvo::study {

using project::Field;

namespace {

/// To two significant digits, or to a tenth of a percent.
double asGiven(double value, Range::Form form) {
    if (form == Range::Form::Percent) return std::round(value * 10) / 10;
    return *numberOf(generalNumber(value, 2));
}

/// Whether a distribution has nothing but ends and values: it is taken whole.
bool isBounded(Scatter::Shape shape) {
    return shape == Scatter::Shape::Uniform || shape == Scatter::Shape::Discrete ||
           shape == Scatter::Shape::Measured;
}

Span endsOf(const sampling::Distribution& distribution, Scatter::Shape shape) {
    if (isBounded(shape)) return {distribution.at(0x1p-53), distribution.at(1 - 0x1p-53)};
    return {distribution.at(0.05), distribution.at(0.95)};
}

} // namespace

Span Range::of(const project::ProjectInput& in, const Variable& variable) const {
    const double own = variable.of(in);
    Span span{low, high};
    if (form == Form::Percent) span = {own + own * low / 100, own + own * high / 100};
    if (form == Form::Offset) span = {own + low, own + high};
    const Span valid = variable.valid(in);
    return {std::clamp(span.low, valid.low, valid.high),
            std::clamp(span.high, valid.low, valid.high)};
}

std::optional<Range> rangeOf(const Scatter& scatter, const Variable& variable,
                             const project::ProjectInput& in) {
    using Form = Range::Form;
    const bool about = !scatter.mean && !scatter.low && !scatter.high && !scatter.scale &&
                       (scatter.points.empty() ? scatter.sd || scatter.cov
                                               : scatter.pointsAre != Scatter::Points::Values);
    if (about && scatter.shape != Scatter::Shape::Beta) {
        const bool percent =
            scatter.points.empty() ? !!scatter.cov : scatter.pointsAre == Scatter::Points::Percent;
        const double own = percent ? 100 : 1000;
        const auto made = distributionAbout(scatter, own);
        if (!made) return std::nullopt;
        const Span ends = endsOf(*made, scatter.shape);
        const Form form = percent ? Form::Percent : Form::Offset;
        return Range{form, asGiven(ends.low - own, form), asGiven(ends.high - own, form)};
    }
    const auto made = distributionOf(scatter, variable, in);
    if (!made) return std::nullopt;
    const Span ends = endsOf(*made, scatter.shape);
    return Range{Form::Absolute, *numberOf(generalNumber(ends.low, 4)),
                 *numberOf(generalNumber(ends.high, 4))};
}

Scatter scatterOf(const Range& range) {
    Scatter even;
    even.shape = Scatter::Shape::Uniform;
    even.pointsAre = range.form == Range::Form::Percent  ? Scatter::Points::Percent
                     : range.form == Range::Form::Offset ? Scatter::Points::Offsets
                                                         : Scatter::Points::Values;
    even.points = {range.low, range.high};
    return even;
}

Range defaultRange(const Variable& variable, std::int16_t units) {
    const auto range = rangeOf(usualScatter(variable, units), variable, {});
    assert(range); // all that is usual is about the case's own value
    return *range;
}

std::vector<RangedInput> defaultRanges(const project::ProjectCase& base) {
    std::vector<RangedInput> inputs;
    for (const project::FieldId id : project::NumericInputs)
        if (id.field != Field::XcutCenters || id.index <= project::distanceCount(base.Input))
            inputs.push_back({id, defaultRange(id, base.Units), false});
    return inputs;
}

std::string whyWithoutEffect(const project::ProjectCase& base, const Variable& variable) {
    const project::ProjectInput& in = base.Input;
    const int loading = engine::analysisCase(in.Anal, engine::DevelopmentLoad);
    for (const project::FieldId id : variable.fields(in)) {
        switch (id.field) {
        case Field::BreadthAMZ:
            if (in.AMZ == 1) return "it is set automatically from the depth of cover";
            break;
        case Field::ArchFactor:
            if (in.Arch != 0) return "it is set automatically from the depth and the panel width";
            break;
        case Field::XcutCenters:
            if (id.index > project::distanceCount(in))
                return "the panel has " + generalNumber(int{in.NumberEntries}) + " entries";
            break;
        case Field::ExtentActiveGob:
        case Field::AbutmentAngleActiveGob:
            if (loading < engine::ActiveGob) return "this loading condition has no active gob";
            break;
        case Field::ExtentFirstGob:
        case Field::AbutmentAngleFirstGob:
        case Field::BarrierFirstGob:
        case Field::SlabcutFirstGob:
            if (loading < engine::OneSideGob) return "this loading condition has no side gob";
            break;
        case Field::ExtentSecondGob:
        case Field::AbutmentAngleSecondGob:
        case Field::BarrierSecondGob:
        case Field::SlabcutSecondGob:
            if (loading < engine::TwoSideGobs)
                return "this loading condition has no second side gob";
            break;
        case Field::WidthC:
            if (in.RowC == 0) return "row C is not left";
            if (loading < engine::OneSideGob) return "this loading condition has no side gob";
            break;
        case Field::WidthD:
            if (in.RowD == 0) return "row D is not left";
            if (loading < engine::TwoSideGobs)
                return "this loading condition has no second side gob";
            break;
        default:
            break;
        }
    }
    return {};
}

std::string spanText(const Variable& variable, const Span& span, std::int16_t units) {
    return generalNumber(span.low, 6) + " .. " + variable.text(span.high, units, 6);
}

} // namespace telvo::study
