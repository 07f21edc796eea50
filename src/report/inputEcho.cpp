// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/sections.h"

#include "base/numbers.h"
#include "base/text.h"
#include "project/units.h"

namespace telvo::report {

using project::ProjectInput;
using project::Quantity;
using project::unitLabel;

namespace {

/// Label lines of the input echo, in the units of one case.
class EchoPage : public PageWriter {
  public:
    explicit EchoPage(std::int16_t units) : m_units(units) {}

    void value(std::string_view label, double number, std::string_view unit = {}) {
        text(label, generalNumber(number, significantDigits), unit);
    }
    void value(std::string_view label, float number, std::string_view unit = {}) {
        text(label, generalNumber(number), unit);
    }
    void length(std::string_view label, double number) {
        value(label, number, unitLabel(m_units, Quantity::Length));
    }
    void length(std::string_view label, float number) {
        value(label, number, unitLabel(m_units, Quantity::Length));
    }
    void angle(std::string_view label, double number) { value(label, number, " (deg)"); }
    void yesNo(std::string_view label, std::int16_t flag) { text(label, flag == 1 ? "yes" : "no"); }
    void text(std::string_view label, std::string_view shown, std::string_view unit = {}) {
        line(DotLeader(label, leader) + AlignValue(shown, valueWidth) + std::string(unit));
    }

  private:
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

void developmentGeometry(EchoPage& page, const ProjectInput& in) {
    page.heading("DEVELOPMENT GEOMETRY PARAMETERS");
    page.length("Entry Height", in.EntryHeight);
    page.length("Depth of Cover", in.DepthCover);
    page.angle("Crosscut Angle", in.XcutAngle);
    page.length("Entry Width", in.EntryWidth);
    page.text("Number of Entries", generalNumber(in.NumberEntries));
    page.length("Crosscut Spacing", in.XcutSpacing);
    for (int i = 1; i <= project::distanceCount(in); ++i)
        page.length("Center to Center Distance #" + std::to_string(i), in.XcutCenters[i]);
    page.line();
}

/// Given: archFactorUsed  what the analysis computes with; 0 where that is not known
void defaultParameters(EchoPage& page, const ProjectInput& in, std::int16_t units,
                       float archFactorUsed) {
    page.heading("DEFAULT PARAMETERS");
    page.value("In Situ Coal Strength", in.CoalStrength, unitLabel(units, Quantity::Strength));
    page.value("Unit Weight of Overburden", in.UnitWeight, unitLabel(units, Quantity::UnitWeight));
    page.length("Breadth of AMZ", in.BreadthAMZ);
    // "manualy" is how these lines have always been spelled.
    page.line(in.AMZ == 1 ? "AMZ set automatically" : "AMZ set manualy");
    page.value("Pressure Arch Factor", in.ArchFactor);
    page.line(in.Arch == 1 ? "Pressure Arch Factor set automatically"
                           : "Pressure Arch Factor set manualy");
    // The record's own factor may be that of another depth, and the analysis has a rule of its own.
    if (in.Arch != 0 && archFactorUsed != 0 && archFactorUsed != in.ArchFactor)
        page.value("Pressure Arch Factor used by the analysis", archFactorUsed);
    page.line();
}

void retreatMining(EchoPage& page, const ProjectInput& in, int analysisCase) {
    page.heading("RETREAT MINING PARAMETERS");
    page.text("Loading Condition", project::LoadingConditionNames[analysisCase - 1]);
    page.line();
    page.subHeading("Active Gob");
    page.length("Extent of Active Gob", in.ExtentActiveGob);
    page.angle("Abutment Angle of Active Gob", in.AbutmentAngleActiveGob);
    page.yesNo("Leave pillar Row 'A' in place", in.RowA);
    page.yesNo("Leave pillar Row 'B' in place", in.RowB);
    page.line();
    page.subHeading("First Gob");
    page.length("Extent of First Gob", in.ExtentFirstGob);
    page.angle("Abutment Angle of First Gob", in.AbutmentAngleFirstGob);
    page.length("Barrier Pillar Width of First Gob", in.BarrierFirstGob);
    page.length("Depth of Slab Cut in Barrier Pillar of First Gob", in.SlabcutFirstGob);
    page.yesNo("Leave pillar Row 'C' in place", in.RowC);
    page.length("Width of pillars in row 'C'", in.WidthC);
    page.line();
    page.subHeading("Second Gob");
    page.length("Extent of Second Gob", in.ExtentSecondGob);
    page.angle("Abutment Angle of Second Gob", in.AbutmentAngleSecondGob);
    page.length("Barrier Pillar Width of Second Gob", in.BarrierSecondGob);
    page.length("Depth of Slab Cut in Barrier Pillar of Second Gob", in.SlabcutSecondGob);
    page.yesNo("Leave pillar Row 'D' in place", in.RowD);
    page.length("Width of pillars in row 'D'", in.WidthD);
}

} // namespace

std::string inputEchoPage(const ReportSource& source) {
    const project::ProjectCase& current = source.current;
    EchoPage page(current.Units);
    page.line("TELVO module build: " + std::string(source.build));
    page.line("Project File: " + withoutControls(current.FileName));
    page.line("Units: " + std::string(project::unitSummary(current.Units)));
    page.line();
    description(page, current);
    developmentGeometry(page, current.Input);
    defaultParameters(page, current.Input, current.Units, source.results.ArchFactor);
    retreatMining(page, current.Input, source.results.AnalysisCase);
    return page.take();
}

} // namespace telvo::report
