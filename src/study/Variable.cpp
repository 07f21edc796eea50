// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/Variable.h"

#include "base/numbers.h"
#include "project/automatic.h"
#include "project/checks.h"

#include <algorithm>
#include <utility>

namespace telvo::study {

using project::Field;
using project::ProjectInput;

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

std::vector<project::FieldId> Variable::fields(const ProjectInput& in) const {
    std::vector<project::FieldId> all{m_first};
    if (m_also == Also::OtherBarrier) all.emplace_back(Field::BarrierSecondGob);
    if (m_also == Also::OtherDistances)
        for (int i = 2; i <= project::distanceCount(in); ++i)
            all.emplace_back(Field::XcutCenters, i);
    return all;
}

std::string Variable::label() const {
    switch (m_also) {
    case Also::OtherDistances:
        return "Center to Center Distances";
    case Also::OtherBarrier:
        return "Both Barriers";
    case Also::Nothing:
        break;
    }
    return fullLabelOf(m_first);
}

std::string Variable::text(double value, std::int16_t units, int digits) const {
    std::string text = generalNumber(value, digits);
    if (const std::string_view behind = unit(units); !behind.empty())
        text.append(" ").append(behind);
    return text;
}

bool Variable::movesBreadth(const ProjectInput& in) const {
    return m_first.field == Field::DepthCover && in.AMZ == 1;
}

Span Variable::valid(const ProjectInput& in) const {
    ProjectInput all = in; // with both side gobs and no row beside them, so that every limit counts
    all.Anal = 3;
    all.RowA = all.RowB = 0;
    const project::Span span = project::validSpan(project::acceptanceRequirements(), all, m_first);
    double low = std::max(0.0, span.low);
    if (m_also == Also::OtherBarrier) low = std::max(low, in.SlabcutSecondGob);
    return {low, span.high};
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
