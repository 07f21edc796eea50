// SPDX-License-Identifier: GPL-3.0-or-later
#include "explain/printedFigures.h"

#include "base/text.h"
#include "explain/formulaText.h"
#include "explain/nomenclature.h"
#include "project/units.h"
#include "report/warnings.h"

#include <algorithm>
#include <map>

namespace telvo::explain {

using namespace engine;

namespace {

/// Brings the figures of the report to the steps that lead to them.
class FigureTeller {
  public:
    FigureTeller(const run::Run& run, const report::ReportOptions& options, int digits,
                 Chapters& chapters)
        : m_run(run), m_options(options), m_digits(std::clamp(digits, 1, MostDigits)) {
        for (Chapter& chapter : chapters)
            for (Step& step : chapter.steps)
                m_steps.emplace(step.key, &step);
        AnalysisResults copy = run.results;
        m_units = report::fixReportUnits(copy, run.current.Units, options);
    }

    /// A figure without a step is passed over: what a loading condition does not have is printed all
    /// the same.
    void tell(const report::Figure& figure) {
        const Meaning meaning = meaningOf(figure.symbol);
        const auto found = m_steps.find(meaning.key(figure.at));
        if (found == m_steps.end()) return;
        Step& step = *found->second;
        Printed printed;
        printed.page = figure.page;
        printed.line = figure.line;
        printed.figure = figure.text;
        convert(step, meaning.symbol->kind, printed);
        step.printed.push_back(std::move(printed));
    }

  private:
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
    report::ReportUnits m_units;
    std::map<std::string, Step*, std::less<>> m_steps;
};

} // namespace

void addPrintedFigures(const run::Run& run, const report::ReportOptions& options, int digits,
                       Chapters& chapters) {
    FigureTeller teller(run, options, digits, chapters);
    for (const report::Figure& figure : report::makeReport(run, options).figures)
        teller.tell(figure);
}

} // namespace telvo::explain
