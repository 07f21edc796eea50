// SPDX-License-Identifier: GPL-3.0-or-later
#include "explain/printedFigures.h"

#include "base/text.h"
#include "engine/questions.h"
#include "explain/formulaText.h"
#include "explain/nomenclature.h"
#include "project/units.h"
#include "report/warnings.h"

#include <algorithm>

namespace telvo::explain {

using namespace engine;

namespace {

constexpr std::string_view AMZHeading = "[DATA ABOUT THE ACTIVE MINING ZONE (AMZ)]";

/// The pages of the report, in which a figure is found by the words around it.
class FigureFinder {
  public:
    FigureFinder(const run::Run& run, const report::ReportOptions& options, int digits,
                 Chapters& chapters)
        : m_run(run), m_options(options), m_digits(std::clamp(digits, 1, MostDigits)),
          m_chapters(chapters), m_pages(report::makeReport(run, options).pages) {
        for (std::size_t page = 0; page < m_pages.size(); ++page)
            m_lines[page] = splitLines(m_pages[page]);
        AnalysisResults copy = run.results;
        m_units = report::fixReportUnits(copy, run.current.Units, options);
    }

    /// Later figures are looked for on this page, behind the line that starts so (the nth of them).
    /// Returned: false when there is no such line.
    bool goTo(int page, std::string_view start, int nth = 1) {
        m_page = page;
        m_from = 0;
        for (; nth > 0; --nth) {
            const int found = lineStarting(start);
            if (found < 0) return false;
            m_from = static_cast<std::size_t>(found) + 1;
        }
        return true;
    }

    /// Tells a figure: the line starts with `label`, and behind its first `skip` characters the
    /// figure is number `column` from 0. A figure that the page does not have is passed over.
    void tell(std::string_view symbol, const Where& at, std::string_view label, std::size_t skip,
              int column) {
        const Meaning meaning = meaningOf(symbol);
        Step* step = find(meaning.key(at));
        const int line = lineStarting(label);
        if (!step || line < 0) return;
        Printed printed;
        printed.page = m_page;
        printed.line = line + 1;
        printed.figure = figure(lines()[static_cast<std::size_t>(line)], skip, column);
        if (printed.figure.empty()) return; // a pass that is not shown
        if (printed.figure.back() == '*') printed.figure.pop_back();
        for (const Printed& known : step->printed)
            if (known.page == printed.page && known.line == printed.line) return; // twice on a line
        convert(*step, meaning.symbol->kind, printed);
        step->printed.push_back(std::move(printed));
    }

  private:
    const std::vector<std::string_view>& lines() const {
        return m_lines[static_cast<std::size_t>(m_page)];
    }
    int lineStarting(std::string_view start) const {
        for (std::size_t i = m_from; i < lines().size(); ++i)
            if (lines()[i].starts_with(start)) return static_cast<int>(i);
        return -1;
    }
    Step* find(const std::string& key) {
        for (Chapter& chapter : m_chapters)
            for (Step& step : chapter.steps)
                if (step.key == key) return &step;
        return nullptr;
    }
    static std::string figure(std::string_view line, std::size_t skip, int column) {
        std::string_view rest = line.substr(std::min(skip, line.size()));
        for (;; --column) {
            rest = trimmed(rest);
            const std::size_t end = std::min(rest.find(' '), rest.size());
            if (column == 0) return std::string(rest.substr(0, end));
            rest.remove_prefix(end);
        }
    }
    static std::string bare(std::string_view label) {
        std::string text(trimmed(label));
        std::erase_if(text, [](char c) { return c == '(' || c == ')'; });
        return text;
    }

    void convert(const Step& step, Kind otherwise, Printed& printed) const {
        const Kind kind = measureOf(step.key, otherwise, m_run.current.Units).kind;
        const bool english = m_run.current.Units == project::English;
        printed.unit = step.unit;
        if (kind == Kind::Factor) {
            const int mode = m_options.RoundTELVOSF;
            printed.rounding = mode == 0   ? "two decimals, a tie goes to the even digit"
                               : mode == 2 ? "cut after two decimals"
                                           : "in single precision";
        }
        if (kind == Kind::Force || kind == Kind::ForcePerLength) {
            printed.unit = bare(kind == Kind::Force ? m_units.force : m_units.forcePerLength);
            if (m_units.forceDivisor != 1)
                printed.conversion = numberText(step.value, step.unit, m_digits) + " / 2000";
        }
        if (kind == Kind::Stress) {
            printed.unit = bare(m_units.stress);
            if (english && m_options.OutputStrUnits == 0)
                printed.conversion = numberText(step.value, step.unit, m_digits) + " / 144";
        }
    }

    const run::Run& m_run;
    const report::ReportOptions& m_options;
    int m_digits;
    Chapters& m_chapters;
    report::ReportPages m_pages;
    report::ReportUnits m_units;
    std::array<std::vector<std::string_view>, report::LastReportPage + 1> m_lines;
    int m_page = 0;
    std::size_t m_from = 0;
};

constexpr std::size_t FactorLeader = 45;
constexpr std::size_t LabelLeader = 40;

void tellFactorPage(FigureFinder& finder, const run::Run& run) {
    const int last = lastPass(run.in);
    const auto label = [](int p) { return p == Development ? "Development." : "Retreat."; };
    finder.goTo(1, "[TELVO STABILITY FACTORS]");
    for (int p = Development; p <= last; ++p)
        finder.tell("SF", {p}, label(p), FactorLeader, 0);
    for (const int k : barrierSides(run.in)) {
        finder.goTo(1, k == FirstSide ? "[FIRST SIDE" : "[SECOND SIDE");
        for (int p = Development; p <= last; ++p)
            finder.tell("SFb", {p, k}, label(p), FactorLeader, 0);
    }
}

void tellActiveMiningZonePage(FigureFinder& finder) {
    finder.goTo(2, AMZHeading);
    const auto value = [&](const char* symbol, const char* label, int k = FirstSide) {
        finder.tell(symbol, {Retreat, k}, label, LabelLeader, 0);
    };
    value("Wp", "Panel Width.");
    value("rHW", "Depth to Panel Width Ratio");
    value("B", "AMZ Breadth");
    value("Az", "AMZ Area");
    value("e", "Extraction Ratio");
    value("Lt", "Tributary Area Load on AMZ");
    value("Lf", "Front Abutment Load");
    value("Ls", "First Side Abutment Load");
    value("Ls", "Second Side Abutment Load", SecondSide);
    value("Rf", "R-FACTOR For Front");
    value("Rs", "R-FACTOR For First");
    value("Rs", "R-FACTOR For Second", SecondSide);

    finder.goTo(2, " LOADINGS ON AMZ");
    const auto row = [&](const char* symbol, const char* label, int k = FirstSide) {
        for (const int p : {Development, Retreat})
            finder.tell(symbol, {p, k}, label, LabelLeader, p - Development);
    };
    row("Q1", "Tributary Area*");
    row("Qf", "Front abutment load*");
    row("Qs", "1st Side Abutment load*");
    row("Qr", "1st Side Barrier LTRANSREM*");
    row("Ltb", "1st Side Barrier LTRANSBAR");
    row("Qs", "2nd Side Abutment load*", SecondSide);
    row("Qr", "2nd Side Barrier LTRANSREM*", SecondSide);
    row("Ltb", "2nd Side Barrier LTRANSBAR", SecondSide);
}

void tellPillarPage(FigureFinder& finder, int pillars) {
    const auto row = [&](int i, std::initializer_list<const char*> symbols) {
        const std::string label = "   " + std::to_string(i) + " ";
        int column = 0;
        for (const char* symbol : symbols)
            finder.tell(symbol, {Retreat, FirstSide, i}, label, 4, column++);
    };
    finder.goTo(3, "PILLAR         ENTRY");
    for (int i = 1; i <= pillars; ++i)
        row(i, {"C", "w", "L"});
    finder.goTo(3, "PILLAR          AREA");
    for (int i = 1; i <= pillars; ++i)
        row(i, {"A", "s", "K"});
    constexpr std::string_view total = "TOTAL LOAD-BEARING CAPACITY OF PILLARS WITHIN AMZ:";
    finder.tell("Kt", {}, total, total.size(), 0);
}

std::string_view sideLabel(int k) {
    return k == FirstSide ? "First" : "Second";
}

void tellBarrierPage(FigureFinder& finder, const run::Run& run) {
    constexpr std::size_t sideWidth = 7;
    constexpr std::size_t loadWidth = 20;
    const std::vector<int> sides = barrierSides(run.in);
    if (finder.goTo(4, "BARRIER       WIDTH"))
        for (const int k : sides) {
            int column = 0;
            for (const char* symbol : {"Wb", "sb", "Kb"})
                finder.tell(symbol, {Retreat, k}, sideLabel(k), sideWidth, column++);
        }
    for (int p = Development; p <= lastPass(run.in); ++p) {
        if (!finder.goTo(4, "LOAD   ", p)) return;
        for (const int k : sides) {
            const auto load = [&](const char* symbol, const char* label) {
                finder.tell(symbol, {p, k}, label, loadWidth, k - FirstSide);
            };
            load("Lbt", "Tributary Area");
            load("Lbf", "Front Abutment");
            load("Lbs", "Side Abutment");
            load("Lba", "Pressure Arch");
            load("Lb", "TOTAL");
            load("SFb", "Stability Factor");
            load("Ltb", "LTRANSBAR");
        }
    }
}

void tellRemnantPage(FigureFinder& finder) {
    constexpr std::size_t sideWidth = 7;
    const auto row = [&](const Where& at, std::string_view label, std::size_t skip,
                         std::initializer_list<const char*> symbols) {
        int column = 0;
        for (const char* symbol : symbols)
            finder.tell(symbol, at, label, skip, column++);
    };
    for (const int k : {FirstSide, SecondSide}) {
        if (finder.goTo(5, "REMNANT       WIDTH"))
            row({Retreat, k}, sideLabel(k), sideWidth, {"Wm", "a", "Kn"});
        if (finder.goTo(5, "REMNANT    TOTAL LOAD"))
            row({Retreat, k}, sideLabel(k), sideWidth, {"Lm", "SFm", "Lm", "Lrem"});
    }
    if (!finder.goTo(5, " PILLAR  STRENGTH")) return;
    for (const int k : {FirstSide, SecondSide})
        row({Retreat, k}, k == FirstSide ? "    C" : "    D", 5, {"sr", "Kr", "Tr", "Xo"});
}

/// Rows A and B are pillars of the panel.
void tellOuterRows(FigureFinder& finder, int pillars) {
    if (!finder.goTo(5, " PILLAR  STRENGTH")) return;
    for (const int row : {1, 2}) {
        const Where at{Retreat, row, row == 1 ? 1 : pillars};
        int column = 0;
        for (const char* symbol : {"s", "K", "To", "Xo"})
            finder.tell(symbol, at, row == 1 ? "    A" : "    B", 5, column++);
    }
}

} // namespace

void addPrintedFigures(const run::Run& run, const report::ReportOptions& options, int digits,
                       Chapters& chapters) {
    FigureFinder finder(run, options, digits, chapters);
    const int pillars = run.results.NumberPillars;
    tellFactorPage(finder, run);
    tellActiveMiningZonePage(finder);
    finder.goTo(2, " LOADINGS ON AMZ");
    const std::string total = "Q" + std::to_string(run.results.AnalysisCase);
    for (const int p : {Development, Retreat})
        finder.tell(total, {p}, "TOTAL ", LabelLeader, p - Development);
    tellPillarPage(finder, pillars);
    tellBarrierPage(finder, run);
    tellRemnantPage(finder);
    tellOuterRows(finder, pillars);
}

} // namespace telvo::explain
