// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/questions/ranges.h"

#include "base/numbers.h"
#include "engine/AnalysisResults.h"
#include "engine/driver.h"

#include <algorithm>

namespace telvo::study {

using project::Field;

namespace {

constexpr Range percent(double size) {
    return {Range::Form::Percent, -size, size};
}
constexpr Range offset(double low, double high) {
    return {Range::Form::Offset, low, high};
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

// The 5 % and 95 % points: 1.645 standard deviations of a normal, and those of a triangular
// distribution.
Range defaultRange(const Variable& variable, std::int16_t units) {
    const bool english = units == project::English;
    const auto lengths = [english](double feetLow, double feetHigh, double metersLow,
                                   double metersHigh) {
        return english ? offset(feetLow, feetHigh) : offset(metersLow, metersHigh);
    };
    switch (variable.field()) {
    case Field::DepthCover: // topography and boreholes: 5 %
        return percent(8.2);
    case Field::EntryHeight: // seam and roof that is taken: 7 %
        return percent(11.5);
    case Field::EntryWidth: // overcut and spalling, one-sided: -0.5, 0, 2 ft
        return lengths(-0.25, 1.5, -0.075, 0.45);
    case Field::XcutSpacing: // survey: 1.5 ft
    case Field::XcutCenters:
    case Field::WidthC:
    case Field::WidthD:
        return lengths(-2.5, 2.5, -0.75, 0.75);
    case Field::XcutAngle: // 2 degrees
        return offset(-3.3, 3.3);
    case Field::BarrierFirstGob: // maps of old workings: 3 ft
    case Field::BarrierSecondGob:
        return lengths(-5, 5, -1.5, 1.5);
    case Field::SlabcutFirstGob: // cut too deep is the danger: -3, 0, 5 ft
    case Field::SlabcutSecondGob:
        return lengths(-1.9, 3.6, -0.6, 1.1);
    case Field::ExtentActiveGob: // 3 %
    case Field::ExtentFirstGob:
    case Field::ExtentSecondGob:
        return percent(5);
    case Field::AbutmentAngleActiveGob: // -6, 0, 6 degrees
    case Field::AbutmentAngleFirstGob:
    case Field::AbutmentAngleSecondGob:
        return offset(-4.1, 4.1);
    case Field::UnitWeight: // 4 %
        return percent(6.6);
    case Field::CoalStrength: // lognormal, 15 %
        return {Range::Form::Percent, -22.6, 26.4};
    default:
        return percent(10);
    }
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

} // namespace telvo::study
