// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/sections.h"

#include "base/numbers.h"
#include "base/text.h"
#include "project/inputFields.h"
#include "project/units.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace telvo::report {

using project::Field;
using project::FieldId;
using project::FieldKind;
using project::InputField;
using project::ParameterTab;
using project::ProjectInput;
using project::Quantity;
using project::unitLabel;

namespace {

/// Label lines of the input echo, in the units of one case.
class EchoPage : public PageWriter {
  public:
    explicit EchoPage(std::int16_t units) : m_units(units) {}

    void value(std::string_view label, float number) { text(label, generalNumber(number)); }
    /// The line of a number of the record.
    void field(const ProjectInput& in, FieldId id) {
        const InputField& row = project::rowOf(id.field);
        std::string label(row.echoLabel());
        if (id.index > 0) label += " #" + std::to_string(id.index);
        if (row.isFlag())
            text(label, project::get(in, id) == 1 ? "yes" : "no");
        else
            text(label, generalNumber(project::shownValue(in, id), significantDigits),
                 unitOf(row.kind));
    }
    void text(std::string_view label, std::string_view shown, std::string_view unit = {}) {
        line(DotLeader(label, leader) + AlignValue(shown, valueWidth) + std::string(unit));
    }

  private:
    std::string_view unitOf(FieldKind kind) const {
        switch (kind) {
        case FieldKind::Length:
            return unitLabel(m_units, Quantity::Length);
        case FieldKind::Strength:
            return unitLabel(m_units, Quantity::Strength);
        case FieldKind::UnitWeight:
            return unitLabel(m_units, Quantity::UnitWeight);
        case FieldKind::Angle:
            return " (deg)";
        case FieldKind::Number:
            break;
        }
        return {};
    }

    static constexpr int leader = 50;
    static constexpr int valueWidth = 10;
    static constexpr int significantDigits = 10;
    std::int16_t m_units;
};

void description(EchoPage& page, const project::ProjectCase& current) {
    page.heading("PROJECT TITLE");
    page.paragraph(cutLongWords(withoutControls(current.Title), TextWidth));
    page.line();
    page.heading("PROJECT DESCRIPTION");
    for (const auto line : splitLines(current.Description))
        page.paragraph(cutLongWords(withoutControls(line), TextWidth));
    if (!current.Description.empty()) page.line();
}

constexpr std::string_view headingOf(ParameterTab tab) {
    switch (tab) {
    case ParameterTab::DevelopmentGeometry:
        return "DEVELOPMENT GEOMETRY PARAMETERS";
    case ParameterTab::DefaultParameters:
        return "DEFAULT PARAMETERS";
    case ParameterTab::RetreatMining:
        break;
    }
    return "RETREAT MINING PARAMETERS";
}

/// Order of the page: that of the form, but that the number of entries comes before the crosscut
/// spacing.
constexpr auto EchoOrder = [] {
    auto order = project::FormOrder;
    std::swap(*std::find(order.begin(), order.end(), Field::NumberEntries),
              *std::find(order.begin(), order.end(), Field::XcutSpacing));
    return order;
}();

/// The line that tells whether a value is automatic. "manualy" is how it has always been spelled.
void howItWasSet(EchoPage& page, std::string_view what, std::int16_t flag) {
    page.line(std::string(what) + (flag == 1 ? " set automatically" : " set manualy"));
}

/// All inputs: a heading per tab of the form, a subheading per gob.
/// Given: archFactorUsed  what the analysis computes with; 0 where that is not known
void inputs(EchoPage& page, const ProjectInput& in, int analysisCase, float archFactorUsed) {
    std::optional<ParameterTab> tab;
    std::string_view group;
    for (const Field field : EchoOrder) {
        const InputField& row = project::rowOf(field);
        if (row.control.empty()) continue; // carried along
        if (tab && tab != row.tab) page.line();
        if (tab != row.tab) page.heading(headingOf(row.tab));
        if (row.group.ends_with("Gob") && group != row.group) {
            page.line();
            page.subHeading(row.group);
        }
        tab = row.tab;
        group = row.group;
        switch (field) {
        case Field::XcutCenters:
            for (int i = 1; i <= project::distanceCount(in); ++i)
                page.field(in, {field, i});
            break;
        case Field::Anal:
            page.text(row.echoLabel(), project::LoadingConditionNames[analysisCase - 1]);
            break;
        case Field::AMZ:
            howItWasSet(page, "AMZ", in.AMZ);
            break;
        case Field::Arch:
            howItWasSet(page, project::rowOf(Field::ArchFactor).label, in.Arch);
            // The record's own factor may be that of another depth, and the analysis has a rule of
            // its own.
            if (in.Arch != 0 && archFactorUsed != 0 && archFactorUsed != in.ArchFactor)
                page.value("Pressure Arch Factor used by the analysis", archFactorUsed);
            break;
        default:
            page.field(in, field);
        }
    }
}

} // namespace

std::string inputEchoPage(const project::ProjectCase& current, int analysisCase,
                          float archFactorUsed) {
    EchoPage page(current.Units);
    page.line("TELVO module build: " + std::string(run::ModuleBuild));
    page.line("Project File: " + withoutControls(current.FileName));
    page.line("Units: " + std::string(project::unitSummary(current.Units)));
    page.line();
    description(page, current);
    inputs(page, current.Input, analysisCase, archFactorUsed);
    return page.take();
}

} // namespace telvo::report
