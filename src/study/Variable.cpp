// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/Variable.h"

#include "project/automatic.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace telvo::study {

using project::Field;
using project::ProjectInput;

namespace {

constexpr double Unlimited = std::numeric_limits<double>::infinity();
constexpr double FlattestCrosscut = 30; // degrees
constexpr double RightAngle = 90;
constexpr double LeastArchFactor = 0.28;

double widestPillarless(const ProjectInput& in) {
    double narrowest = in.XcutSpacing;
    for (int i = 1; i <= project::distanceCount(in); ++i)
        narrowest = std::min(narrowest, in.XcutCenters[i]);
    return narrowest;
}

} // namespace

std::string Variable::name() const {
    switch (m_also) {
    case Also::OtherDistances:
        return "XcutCenters";
    case Also::OtherBarrier:
        return "Barriers";
    case Also::Nothing:
        break;
    }
    return nameOf(m_first);
}

ProjectInput Variable::in(ProjectInput record, std::int16_t units, double value) const {
    if (m_also == Also::OtherBarrier) record.BarrierSecondGob = value;
    if (m_also == Also::OtherDistances)
        for (int i = 2; i <= project::distanceCount(record); ++i)
            record.XcutCenters[i] = value;
    return withVaried(record, units, m_first, value);
}

bool Variable::movesBreadth(const ProjectInput& in) const {
    return m_first.field == Field::DepthCover && in.AMZ == 1;
}

Span Variable::valid(const ProjectInput& in) const {
    switch (m_first.field) {
    case Field::EntryWidth:
        return {0, widestPillarless(in)};
    case Field::XcutSpacing:
    case Field::XcutCenters:
        return {in.EntryWidth, Unlimited};
    case Field::XcutAngle:
        return {FlattestCrosscut, RightAngle};
    case Field::ArchFactor:
        return {LeastArchFactor, 1};
    case Field::AbutmentAngleActiveGob:
    case Field::AbutmentAngleFirstGob:
    case Field::AbutmentAngleSecondGob:
        return {0, RightAngle};
    case Field::BarrierFirstGob:
        return {std::max({0.0, in.SlabcutFirstGob,
                          m_also == Also::OtherBarrier ? in.SlabcutSecondGob : 0.0}),
                Unlimited};
    case Field::BarrierSecondGob:
        return {std::max(0.0, in.SlabcutSecondGob), Unlimited};
    case Field::SlabcutFirstGob:
        return {0, in.BarrierFirstGob};
    case Field::SlabcutSecondGob:
        return {0, in.BarrierSecondGob};
    default:
        return {0, Unlimited};
    }
}

bool Variable::leavesZeroOut() const {
    switch (m_first.field) {
    case Field::EntryHeight:
    case Field::DepthCover:
    case Field::EntryWidth:
    case Field::CoalStrength:
    case Field::UnitWeight:
    case Field::BreadthAMZ:
        return true;
    default:
        return false;
    }
}

std::optional<std::string_view> Variable::leftOut(const ProjectInput& varied) const {
    // The analysis would take such pillars as having no strength; the parameter form refuses them.
    const bool spacing = m_first.field == Field::XcutSpacing || m_first.field == Field::EntryWidth;
    if (spacing && varied.XcutSpacing <= varied.EntryWidth)
        return "The crosscut spacing does not exceed the entry width";
    return std::nullopt;
}

std::vector<Variable> variables() {
    std::vector<Variable> all(project::NumericInputs.begin(), project::NumericInputs.end());
    all.push_back(Variable::allDistances());
    all.push_back(Variable::bothBarriers());
    return all;
}

std::optional<Variable> variableNamed(std::string_view name) {
    for (const Variable& variable : variables())
        if (variable.name() == name) return variable;
    return std::nullopt;
}

} // namespace telvo::study
