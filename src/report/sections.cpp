// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/sections.h"

#include "base/numbers.h"
#include "base/text.h"
#include "engine/quantities.h"
#include "engine/questions.h"
#include "engine/rules/figures.h"
#include "project/unitFactors.h"
#include "project/units.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <vector>

namespace telvo::report {

using namespace engine;
using project::ProjectInput;
using project::Quantity;
using project::unitLabel;

namespace {

constexpr std::string_view None = "***none***";
constexpr std::string_view FactorPattern = "##0.00";
constexpr std::string_view ForcePattern = "#.00E+00";

// Names by side and pass. A load-case table stands for each loading condition with side gobs.
constexpr IndexedArray<std::string_view, 3, 4> SideNames = {{"First", "Second"}};
constexpr IndexedArray<std::string_view, 3, 4> BarrierNames = {
    {"FIRST SIDE GOB BARRIER", "SECOND SIDE GOB BARRIER"}};
constexpr IndexedArray<std::string_view, 1, 2> PassNames = {{"Development", "Retreat"}};
using PassTexts = IndexedArray<std::string_view, 1, 2>;
constexpr IndexedArray<PassTexts, 3, 4> LoadCaseNames = {
    {PassTexts{{"DEVELOPMENT & 1S GOB", "ACTIVE + 1S GOB"}},
     PassTexts{{"DEVELOPMENT & 2S GOB", "ACTIVE + 2S GOB"}}}};
constexpr IndexedArray<PassTexts, 3, 4> GobNotes = {
    {PassTexts{{"*Development loading includes one side gob.",
                "*Retreat loading includes one side gob."}},
     PassTexts{{"*Development loading includes two side gobs.",
                "*Retreat loading includes two side gobs."}}}};
constexpr IndexedArray<std::string_view, 3, 4> BleederMarks = {{" *", "**"}};
constexpr IndexedArray<std::string_view, 3, 4> BleederNotes = {
    {" *Includes contribution from row 'C' bleeder pillar",
     "**Includes contribution from row 'D' bleeder pillar"}};

/// What the pages are written from.
struct Shown {
    const project::ProjectCase& current;
    const WorkingInputs& in;
    const AnalysisResults& results; ///< on page 1 the engine's, on 2 to 5 in report units
    const ReportOptions& options;
};

double barrierWidth(const ProjectInput& in, int k) {
    return k == FirstSide ? in.BarrierFirstGob : in.BarrierSecondGob;
}

/// A unit label in parentheses without its leading blank, as it stands under a column header.
std::string_view columnUnit(std::string_view label) {
    return trimmed(label);
}

std::string force(double value) {
    return formatPattern(value, ForcePattern);
}

} // namespace

std::string factorText(double factor, int RoundTELVOSF) {
    return formatPattern(RoundSF(factor, RoundTELVOSF), FactorPattern);
}

ReportUnits fixReportUnits(AnalysisResults& copy, std::int16_t units,
                           const ReportOptions& options) {
    if (units != project::English)
        return {std::string(unitLabel(project::Metric, Quantity::Force)),
                std::string(unitLabel(project::Metric, Quantity::TonsPerFootOrKilonewtonsPerMetre)),
                std::string(unitLabel(project::Metric, Quantity::Stress)), 1};

    const bool tons = options.OutputStrGradUnits == 1;
    const bool psi = options.OutputStrUnits == 0;
    visitQuantities(copy, [&](const char*, Kind kind, auto& field) {
        visitNumbers(field, [&](auto& value) {
            using Number = std::remove_reference_t<decltype(value)>;
            if (tons && (kind == Kind::Force || kind == Kind::ForcePerLength))
                value = static_cast<Number>(value / project::PoundsPerTon);
            if (psi && kind == Kind::Stress)
                value = static_cast<Number>(value * project::PsiPerPsf);
        });
    });
    return {
        std::string(unitLabel(project::English, tons ? Quantity::Tons : Quantity::Force)),
        tons ? std::string(unitLabel(project::English, Quantity::TonsPerFootOrKilonewtonsPerMetre))
             : std::string(" (lbs/ft)"),
        std::string(unitLabel(project::English, psi ? Quantity::Strength : Quantity::Stress)),
        tons ? project::PoundsPerTon : 1};
}

// --- Page 1: stability factors and warnings

namespace {

void factorLine(PageWriter& page, std::string_view symbol, const Where& at, double factor,
                const ReportOptions& options) {
    constexpr int leader = 45;
    constexpr int width = 6;
    const std::string text = factorText(factor, options.RoundTELVOSF);
    page.line(DotLeader(PassNames[at.pass], leader) +
              AlignValue(page.figure(symbol, at, text), width));
}

PageWriter stabilityFactorPage(const Shown& source, const Warnings& warnings) {
    const AnalysisResults& r = source.results;
    const bool sideGobs = r.AnalysisCase >= OneSideGob;
    PageWriter page(1);
    page.heading("TELVO STABILITY FACTORS");
    for (int p = Development; p <= lastPass(source.in); ++p) {
        factorLine(page, "SF", {p}, r.TELVOSF[p], source.options);
        if (sideGobs) page.line(GobNotes[r.AnalysisCase][p]);
    }
    if (sideGobs) {
        page.line();
        page.heading("BARRIER PILLAR STABILITY FACTORS");
        for (const int k : barrierSides(source.in)) {
            page.subHeading(BarrierNames[k]);
            for (int p = Development; p <= lastPass(source.in); ++p)
                factorLine(page, "SFb", {p, k}, r.BarrierSF[p][k], source.options);
        }
    }
    if (warnings.AnyWarning) {
        page.line();
        page.text(warnings.section);
    }
    page.line();
    return page;
}

// --- Page 2: active mining zone

class LabelPage : public PageWriter {
  public:
    using PageWriter::PageWriter;

    void value(std::string_view label, std::string_view symbol, double number,
               std::string_view pattern, std::string_view unit = {}, int side = FirstSide) {
        const std::string text = figure(symbol, {Retreat, side}, formatPattern(number, pattern));
        line(DotLeader(label, leader) + AlignValue(text, valueWidth) + std::string(unit));
    }
    static constexpr int leader = 40;
    static constexpr int valueWidth = 12;
};

/// One row of the loadings table: its own contribution in each pass.
struct LoadingRow {
    std::string_view label, symbol;
    int side = 0;
    IndexedArray<double, 1, 2> load;
};

std::vector<LoadingRow> loadingRows(const AnalysisResults& r) {
    Scalar calc;
    const double arch = r.ArchFactor;
    const auto scaled = [&](const char* symbol, double load) {
        return rules::loadingRow(calc, symbol, arch, load);
    };
    const auto perPass = [](auto load) {
        return IndexedArray<double, 1, 2>{{load(Development), load(Retreat)}};
    };
    std::vector<LoadingRow> rows;
    rows.push_back(
        {"Tributary Area*", "Q1", 0, perPass([&](int p) { return r.AMZLoad[p][Tributary]; })});
    if (r.AnalysisCase >= ActiveGob)
        rows.push_back({"Front abutment load*", "Qf", 0,
                        perPass([&](int p) { return scaled("Qf", r.AbutmentLoadAMZ[p][Front]); })});
    struct SideLabels {
        std::string_view abutment, remnant, barrier;
    };
    constexpr IndexedArray<SideLabels, 3, 4> labels = {
        {SideLabels{"1st Side Abutment load*", "1st Side Barrier LTRANSREM*",
                    "1st Side Barrier LTRANSBAR"},
         SideLabels{"2nd Side Abutment load*", "2nd Side Barrier LTRANSREM*",
                    "2nd Side Barrier LTRANSBAR"}}};
    for (int k = FirstSide; k <= r.AnalysisCase; ++k) {
        rows.push_back({labels[k].abutment, "Qs", k,
                        perPass([&](int p) { return scaled("Qs", r.AbutmentLoadAMZ[p][k]); })});
        rows.push_back({labels[k].remnant, "Qr", k,
                        perPass([&](int p) { return scaled("Qr", r.LTRANSREM[p][k]); })});
        // LTRANSBAR is printed without the asterisk: the arch factor does not scale it.
        rows.push_back(
            {labels[k].barrier, "Ltb", k, perPass([&](int p) { return r.LTRANSBAR[p][k]; })});
    }
    constexpr IndexedArray<std::string_view, 1, 4> totals = {{"Q1", "Q2", "Q3", "Q4"}};
    rows.push_back({"TOTAL ", totals[r.AnalysisCase], 0,
                    perPass([&](int p) { return r.AMZLoad[p][r.AnalysisCase]; })});
    return rows;
}

PageWriter activeMiningZonePage(const Shown& source, const ReportUnits& units) {
    const AnalysisResults& r = source.results;
    const std::int16_t system = source.current.Units;
    const std::string_view length = unitLabel(system, Quantity::Length);
    const std::string_view area = system == project::English ? " (ft2)" : " (m2)";
    LabelPage page(2);
    page.heading("DATA ABOUT THE ACTIVE MINING ZONE (AMZ)");
    page.value("Panel Width", "Wp", r.PanelWidth, "##0.0", length);
    Scalar calc;
    page.value(
        "Depth to Panel Width Ratio", "rHW",
        rules::depthToPanelWidth<Scalar>(calc, source.current.Input.DepthCover, r.PanelWidth),
        "##0.0");
    page.value("AMZ Breadth", "B", r.AMZBreadth, "##0.0", length);
    page.value("AMZ Area", "Az", r.AMZArea, "##0.0", area);
    page.value("Extraction Ratio within AMZ", "e", r.ExtractionRatioAMZ, "##0.00");
    page.value("Tributary Area Load on AMZ", "Lt", r.TributaryLoadAMZ, ForcePattern, units.force);
    if (r.AnalysisCase >= ActiveGob)
        page.value("Front Abutment Load", "Lf", r.FrontAbutmentLoad, "##0", units.forcePerLength);
    if (r.AnalysisCase >= OneSideGob)
        page.value("First Side Abutment Load", "Ls", r.SideAbutmentLoad[FirstSide], "##0",
                   units.forcePerLength);
    if (r.AnalysisCase >= TwoSideGobs)
        page.value("Second Side Abutment Load", "Ls", r.SideAbutmentLoad[SecondSide], "##0",
                   units.forcePerLength, SecondSide);
    page.value("R-FACTOR For Front Abutment", "Rf", r.RFactorFront, "##0.000");
    page.value("R-FACTOR For First Side Abutment", "Rs", r.RFactorSide[FirstSide], "##0.000");
    page.value("R-FACTOR For Second Side Abutment", "Rs", r.RFactorSide[SecondSide], "##0.000", {},
               SecondSide);

    constexpr int column = 14;
    const int passes = lastPass(source.in);
    const auto tableLine = [&](std::string line, auto cell) {
        for (int p = Development; p <= passes; ++p)
            line += PadLeft(cell(p), column);
        page.line(line);
    };
    page.line();
    page.line(" LOADINGS ON AMZ");
    tableLine(PadRight("", LabelPage::leader), [&](int p) { return PassNames[p]; });
    tableLine(PadRight("", LabelPage::leader), [&](int) { return columnUnit(units.force); });
    for (const LoadingRow& row : loadingRows(r))
        tableLine(DotLeader(row.label, LabelPage::leader), [&](int p) {
            return page.figure(row.symbol, {p, row.side}, force(row.load[p]));
        });
    for (const std::string_view note :
         {"*Adjusted by Pressure Arch Factor",
          "R-Factor for front abutment is the percent of the total front abutment load that is "
          "applied to the AMZ.",
          "R-Factor for side abutment is the percent of the total side abutment load that is "
          "applied to the barrier pillar (the remainder is applied to the AMZ).",
          "LTRANSBAR is the load transferred to the AMZ from the barrier pillar between the side "
          "and active gob if the barrier's SF is less than 1.5.",
          "LTRANSREM is the load transferred to the AMZ from the remnant barrier between the side "
          "and active gob if the remnant's SF is less than 1.5."}) {
        page.line();
        page.paragraph(note);
    }
    return page;
}

// --- Page 3: pillars

PageWriter pillarPage(const Shown& source, const ReportUnits& units) {
    const AnalysisResults& r = source.results;
    const std::int16_t system = source.current.Units;
    const auto length = columnUnit(unitLabel(system, Quantity::Length));
    const std::string_view area = system == project::English ? "(ft2)" : "(m2)";
    // Right edges of the columns: 20, 34 and 48.
    const auto columns = [](std::string_view first, std::string_view second,
                            std::string_view third) {
        return PadLeft(first, 16) + PadLeft(second, 14) + PadLeft(third, 14);
    };
    const auto pillar = [](int i) { return PadLeft(std::to_string(i), 4); };
    PageWriter page(3);
    const auto cell = [&page](std::string_view symbol, int i, std::string text) {
        return page.figure(symbol, {Retreat, FirstSide, i}, std::move(text));
    };
    page.heading("PILLAR PARAMETERS");
    page.line("PILLAR         ENTRY       MINIMUM       MAXIMUM");
    page.line("              CENTER     DIMENSION     DIMENSION");
    page.line("    " + columns(length, length, length));
    for (int i = 1; i <= r.NumberPillars; ++i)
        page.line(
            pillar(i) +
            columns(cell("C", i, formatPattern(source.current.Input.XcutCenters[i], "##0.00")),
                    cell("w", i, formatPattern(r.MinDimension[i], "##0.00")),
                    cell("L", i, formatPattern(r.MaxDimension[i], "##0.00"))));
    page.line();
    page.line("PILLAR          AREA      STRENGTH  LOAD-BEARING");
    page.line("                                        CAPACITY");
    page.line("    " + columns(area, columnUnit(units.stress), columnUnit(units.force)));
    for (int i = 1; i <= r.NumberPillars; ++i)
        page.line(pillar(i) + columns(cell("A", i, formatPattern(r.PillarArea[i], "##0.00")),
                                      cell("s", i, formatPattern(r.PillarStrength[i], "##0.00")),
                                      cell("K", i, force(r.PillarCapacity[i]))));
    page.line();
    page.line("TOTAL LOAD-BEARING CAPACITY OF PILLARS WITHIN AMZ: " +
              page.figure("Kt", {}, force(r.TotalCapacityAMZ)) + units.force);
    page.line();
    page.line("To view the distribution of Pillar Load Bearing Capacity");
    page.line("select 'View Plots->Settings->Pillar Load Bearing Capacity'");
    return page;
}

// --- Page 4: barrier pillars

void barrierParameters(PageWriter& page, const Shown& source, const ReportUnits& units) {
    const AnalysisResults& r = source.results;
    // Right edges of the columns: 19, 34 and 52.
    const auto columns = [](std::string_view width, std::string_view strength,
                            std::string_view capacity) {
        return PadLeft(width, 12) + PadLeft(strength, 15) + PadLeft(capacity, 18);
    };
    page.line("BARRIER       WIDTH       STRENGTH      LOAD-BEARING");
    page.line(PadRight(" PILLAR", 7) + columns("", "", "CAPACITY"));
    page.line(PadRight("", 7) +
              columns(columnUnit(unitLabel(source.current.Units, Quantity::Length)),
                      columnUnit(units.stress), columnUnit(units.force)));
    const auto cell = [&page](std::string_view symbol, int k, std::string text) {
        return page.figure(symbol, {Retreat, k}, std::move(text));
    };
    std::vector<std::string_view> notes;
    for (const int k : barrierSides(source.in)) {
        const bool shared = r.BleederExcess[k] > 0;
        page.line(
            PadRight(SideNames[k], 7) +
            columns(cell("Wb", k, formatPattern(barrierWidth(source.current.Input, k), "0.00")),
                    cell("sb", k, formatPattern(r.BarrierStrength[k], "##0.00")),
                    cell("Kb", k, force(r.BarrierCapacity[k]))) +
            std::string(shared ? BleederMarks[k] : ""));
        if (shared) notes.push_back(BleederNotes[k]);
    }
    for (const auto note : notes)
        page.line(note);
}

/// Loads of the barriers in one pass. A side of the loading condition without a barrier keeps its
/// column, marked empty.
void barrierLoadTable(PageWriter& page, const Shown& source, const ReportUnits& units, int p) {
    constexpr int label = 20;
    constexpr int column = 14;
    const AnalysisResults& r = source.results;
    const auto row = [&](std::string_view name, auto cell) {
        std::string line = PadRight(name, label);
        for (int k = FirstSide; k <= r.AnalysisCase; ++k)
            line += PadLeft(cell(k), column);
        page.line(line);
    };
    const auto value = [&](std::string_view name, std::string_view symbol, auto shown) {
        row(name, [&](int k) -> std::string {
            if (barrierWidth(source.current.Input, k) == 0) return "-";
            return page.figure(symbol, {p, k}, shown(k));
        });
    };
    const auto load = [&](std::string_view name, std::string_view symbol, auto quantity) {
        value(name, symbol, [&](int k) { return force(quantity(k)); });
    };
    row("LOAD", [](int k) { return k == FirstSide ? "1st BARRIER" : "2nd BARRIER"; });
    row("", [&](int) { return columnUnit(units.force); });
    load("Tributary Area", "Lbt", [&](int k) { return r.BarrierTributaryLoad[p][k]; });
    load("Front Abutment", "Lbf", [&](int k) {
        Scalar calc;
        return rules::barrierFrontAbutment<Scalar>(calc, r.BarrierFrontTransfer[p][k],
                                                   r.SlabCornerLoad[p][k]);
    });
    load("Side Abutment", "Lbs", [&](int k) { return r.BarrierSideAbutmentLoad[p][k]; });
    load("Pressure Arch", "Lba", [&](int k) { return r.BarrierArchLoad[p][k]; });
    load("TOTAL", "Lb", [&](int k) { return r.BarrierLoad[p][k]; });
    value("Stability Factor", "SFb", [&](int k) {
        return formatPattern(RoundSF(r.BarrierSF[p][k], source.options.RoundTELVOSF), "#0.00");
    });
    load("LTRANSBAR", "Ltb", [&](int k) { return r.LTRANSBAR[p][k]; });
}

PageWriter barrierPage(const Shown& source, const ReportUnits& units) {
    PageWriter page(4);
    page.heading("BARRIER PILLAR PARAMETERS");
    if (barrierSides(source.in).empty()) {
        page.line(None);
        return page;
    }
    const int analysisCase = source.results.AnalysisCase;
    barrierParameters(page, source, units);
    page.line();
    page.heading("BARRIER PILLAR LOADS - " +
                 std::string(project::LoadingConditionNames[analysisCase - 1]));
    for (int p = Development; p <= lastPass(source.in); ++p) {
        if (p > Development) page.line();
        page.subHeading(LoadCaseNames[analysisCase][p]);
        barrierLoadTable(page, source, units, p);
    }
    return page;
}

// --- Page 5: remnant barriers and leave pillars

struct LeavePillar {
    char row = ' ';
    int pillar = 1; // of the panel; of the outer rows
    double strength = 0;
    double capacity = 0;
    double tributaryLoad = 0;
    double excess = 0;
    bool adjusted = false; // for the effective length of the remnant barrier
};

std::optional<LeavePillar> outerRow(const Shown& source, const ReportUnits& units, char row) {
    const ProjectInput& in = source.current.Input;
    const AnalysisResults& r = source.results;
    if ((row == 'A' ? in.RowA : in.RowB) != 1) return std::nullopt;
    const int i = row == 'A' ? 1 : r.NumberPillars;
    LeavePillar pillar{row, i, r.PillarStrength[i], r.PillarCapacity[i]};
    Scalar calc;
    pillar.tributaryLoad = rules::outerRowLoad<Scalar>(calc, in.UnitWeight, in.DepthCover,
                                                       in.XcutCenters[i], in.XcutSpacing) /
                           units.forceDivisor;
    pillar.excess = rules::outerRowExcess(calc, pillar.capacity, pillar.tributaryLoad);
    return pillar;
}

std::optional<LeavePillar> bleederRow(const Shown& source, char row) {
    const ProjectInput& in = source.current.Input;
    const AnalysisResults& r = source.results;
    if ((row == 'C' ? in.RowC : in.RowD) != 1) return std::nullopt;
    const int k = row == 'C' ? FirstSide : SecondSide;
    Scalar calc;
    return LeavePillar{row,
                       1,
                       r.BleederStrength[k],
                       r.BleederCapacity[k],
                       r.BleederLoad[k],
                       rules::bleederRowExcess<Scalar>(calc, k <= r.AnalysisCase,
                                                       r.AbutmentHalfWidth, r.BleederExcess[k],
                                                       in.XcutSpacing),
                       true};
}

std::vector<LeavePillar> leavePillars(const Shown& source, const ReportUnits& units) {
    std::vector<LeavePillar> pillars;
    for (const char row : {'A', 'B'})
        if (const auto pillar = outerRow(source, units, row)) pillars.push_back(*pillar);
    for (const char row : {'C', 'D'})
        if (const auto pillar = bleederRow(source, row)) pillars.push_back(*pillar);
    return pillars;
}

void remnantTables(PageWriter& page, const Shown& source, const ReportUnits& units,
                   const std::vector<int>& sides) {
    const AnalysisResults& r = source.results;
    const auto length = columnUnit(unitLabel(source.current.Units, Quantity::Length));
    const auto forceUnit = columnUnit(units.force);
    const auto cell = [&page](std::string_view symbol, int k, std::string text) {
        return page.figure(symbol, {Retreat, k}, std::move(text));
    };
    page.heading("REMNANT BARRIER PILLARS BETWEEN GOBS - DATA");
    if (sides.empty()) return page.line(None);

    // Right edges of the columns: 19, 31 and 51, then 21, 35, 47 and 59.
    const auto data = [](std::string_view width, std::string_view extent,
                         std::string_view capacity) {
        return PadLeft(width, 12) + PadLeft(extent, 12) + PadLeft(capacity, 20);
    };
    const auto loads = [](std::string_view total, std::string_view factor, std::string_view lfbar,
                          std::string_view ltransrem) {
        return PadLeft(total, 14) + PadLeft(factor, 14) + PadLeft(lfbar, 12) +
               PadLeft(ltransrem, 12);
    };
    page.line("REMNANT       WIDTH      LENGTH        LOAD BEARING");
    page.line(" PILLAR" + data("", "", "CAPACITY"));
    page.line(PadRight("", 7) + data(length, length, forceUnit));
    for (const int k : sides)
        page.line(PadRight(SideNames[k], 7) +
                  data(cell("Wm", k, formatPattern(r.RemnantWidth[k], "###0.0")),
                       cell("a", k, formatPattern(r.AbutmentHalfWidth, "###0.0")),
                       cell("Kn", k, force(r.RemnantTotalCapacity[k]))));
    page.line();
    page.line("REMNANT    TOTAL LOAD     STABILITY       LFBAR   LTRANSREM");
    page.line(PadRight("", 7) + loads("", "FACTOR", "", "").substr(0, 28));
    page.line(PadRight("", 7) + loads(forceUnit, "", forceUnit, forceUnit));
    for (const int k : sides) {
        const std::string load = force(r.LFBAR[Retreat][k]);
        const double factor = RoundSF(r.RemnantSF[k], source.options.RoundTELVOSF);
        page.line(PadRight(SideNames[k], 7) +
                  loads(cell("Lm", k, load), cell("SFm", k, formatPattern(factor, "#0.00")), load,
                        cell("Lrem", k, force(r.LTRANSREM[Retreat][k]))));
    }
}

void leavePillarTable(PageWriter& page, const ReportUnits& units,
                      const std::vector<LeavePillar>& pillars) {
    page.heading("LEAVE PILLAR PARAMETERS");
    if (pillars.empty()) return page.line(None);

    // Right edges of the columns: 17, 33, 45 and 57; the row letter stands in column 5.
    const auto columns = [](std::string_view strength, std::string_view capacity,
                            std::string_view load, std::string_view excess) {
        return PadLeft(strength, 12) + PadLeft(capacity, 16) + PadLeft(load, 12) +
               PadLeft(excess, 12);
    };
    const auto forceUnit = columnUnit(units.force);
    page.line(" PILLAR  STRENGTH    LOAD BEARING   TRIBUTARY      EXCESS");
    page.line("    ROW                  CAPACITY        AREA        LOAD");
    page.line(PadRight("", 5) + columns(columnUnit(units.stress), forceUnit, forceUnit, forceUnit));
    // Rows A and B are pillars of the panel, said of sides 1 and 2; C and D stand beside it.
    struct Symbols {
        std::string_view strength, capacity, load, excess;
    };
    constexpr Symbols outer{"s", "K", "To", "Xo"}, bleeder{"sr", "Kr", "Tr", "Xo"};
    for (const LeavePillar& pillar : pillars) {
        const Symbols& symbols = pillar.row <= 'B' ? outer : bleeder;
        const Where at{Retreat, pillar.row - 'A' + 1, pillar.pillar};
        page.line(
            PadLeft(std::string(1, pillar.row), 5) +
            columns(page.figure(symbols.strength, at, formatPattern(pillar.strength, "##0.00")),
                    page.figure(symbols.capacity, at, force(pillar.capacity)),
                    page.figure(symbols.load, at, force(pillar.tributaryLoad)),
                    page.figure(symbols.excess, at, force(pillar.excess))) +
            (pillar.adjusted ? "*" : ""));
    }
}

PageWriter remnantPage(const Shown& source, const ReportUnits& units) {
    const AnalysisResults& r = source.results;
    std::vector<int> sides;
    for (int k = FirstSide; k <= r.AnalysisCase; ++k)
        if (r.LFBAR[Retreat][k] > 0) sides.push_back(k);
    const std::vector<LeavePillar> pillars = leavePillars(source, units);

    PageWriter page(5);
    page.heading("REMNANT PILLAR AND LEAVE PILLAR PARAMETERS");
    if (sides.empty() && pillars.empty()) {
        page.line(None);
        return page;
    }
    remnantTables(page, source, units, sides);
    page.line();
    leavePillarTable(page, units, pillars);
    page.line();
    page.line("*Adjusted for effective length of the remnant barrier.");
    return page;
}

} // namespace

Report makeReport(const run::Run& run, const ReportOptions& options) {
    Report report;
    report.warnings = assessWarnings(run, options);
    report.pages[0] = inputEchoPage(run.current, run.results.AnalysisCase, run.results.ArchFactor);
    const auto add = [&](std::size_t page, PageWriter writer) {
        report.pages[page] = writer.take();
        std::vector<Figure> figures = writer.takeFigures();
        report.figures.insert(report.figures.end(), std::make_move_iterator(figures.begin()),
                              std::make_move_iterator(figures.end()));
    };
    add(1, stabilityFactorPage({run.current, run.in, run.results, options}, report.warnings));

    AnalysisResults inReportUnits = run.results;
    const ReportUnits units = fixReportUnits(inReportUnits, run.current.Units, options);
    const Shown shown{run.current, run.in, inReportUnits, options};
    add(2, activeMiningZonePage(shown, units));
    add(3, pillarPage(shown, units));
    add(4, barrierPage(shown, units));
    add(5, remnantPage(shown, units));
    return report;
}

} // namespace telvo::report
