// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/quantityNames.h"
#include "engine/questions.h"
#include "explain/chapters.h"
#include "explain/formulaText.h"
#include "explain/nomenclature.h"
#include "explain/printedFigures.h"
#include "explain/words.h"
#include "project/automatic.h"
#include "project/inputFields.h"

#include <algorithm>
#include <array>
#include <set>

namespace telvo::explain {

using namespace engine;

namespace {

/// The chapters in the order of the calculation.
enum Place : std::size_t {
    Inputs,
    Prepared,
    Geometry,
    Strength,
    RunLoads,
    DevelopmentPass,
    RetreatPass,
    Stresses,
    ReportOnly,
    NotArising,
    PlaceCount
};

constexpr std::array<std::string_view, PlaceCount> Titles = {
    "Inputs",
    "Prepared inputs",
    "Panel geometry",
    "Pillar strength and load-bearing capacity",
    "Pressure arch, tributary load, R-factors and side abutments",
    "Development loading",
    "Retreat loading",
    "Stresses of the plots, retreat",
    "Figures that only the report has",
    "Quantities that do not arise in this case"};

Place placeOf(Part part, int pass) {
    switch (part) {
    case Part::Inputs:
        return Inputs;
    case Part::Prepared:
        return Prepared;
    case Part::Geometry:
        return Geometry;
    case Part::Strength:
        return Strength;
    case Part::RunLoads:
        return RunLoads;
    case Part::Pass:
        return pass == Development ? DevelopmentPass : RetreatPass;
    case Part::Stresses:
        return Stresses;
    case Part::ReportOnly:
        break;
    }
    return ReportOnly;
}

class Writer {
  public:
    Writer(const run::Run& run, const report::ReportOptions& options, int digits, Extent extent)
        : m_run(run), m_current(run.current), m_results(run.results), m_options(options),
          m_digits(std::clamp(digits, 1, MostDigits)), m_extent(extent),
          m_trace(traceRun(run.current, run.results.AnalysisCase, options, extent)) {
        for (std::size_t i = 0; i < PlaceCount; ++i)
            m_chapters[i].title = Titles[i];
    }

    TracedChapters write() {
        if (m_extent == Extent::OfThisCase) foldSideFactors();
        addInputs();
        for (const TracedStep& step : m_trace.steps)
            addInEveryPass(step);
        if (m_extent == Extent::OfThisCase) addNotArising();
        for (Chapter& chapter : m_chapters)
            if (!chapter.steps.empty()) m_made.chapters.push_back(std::move(chapter));
        m_made.frame = m_trace.frame;
        return std::move(m_made);
    }

  private:
    /// The R-factor that a side stores is that of its loads, unless it stands for exactly 1: then
    /// both are steps, else there is one under the symbol of the former.
    void foldSideFactors() {
        for (const int k : m_trace.frame.sidesInUse()) {
            const auto find = [&](std::string_view symbol) {
                return std::find_if(m_trace.steps.begin(), m_trace.steps.end(),
                                    [&](const TracedStep& step) {
                                        return step.symbol == symbol && step.where.side == k;
                                    });
            };
            const auto stored = find("Rs");
            if (stored->tree->yes) {
                m_apart[static_cast<std::size_t>(k)] = true;
                continue;
            }
            m_trace.steps.erase(stored);
        }
    }

    /// The symbol that a reader sees.
    std::string_view shown(std::string_view symbol, const Where& at) const {
        return m_extent == Extent::OfThisCase && symbol == "Ru" &&
                       !m_apart[static_cast<std::size_t>(at.side)]
                   ? "Rs"
                   : symbol;
    }

    Step& newStep(Place place, std::string_view key, std::string title, double value, Kind kind) {
        const Measure measure = measureOf(key, kind, m_current.Units);
        m_written.insert(std::string(key));
        Step& step = m_chapters[place].steps.emplace_back();
        step.key = key;
        step.title = std::move(title);
        step.value = value;
        step.unit = measure.unit;
        step.result = numberText(value, measure.unit, m_digits);
        return step;
    }

    void addInputs() {
        project::visitInputFields(
            m_current.Input, [&](const char* field, project::FieldKind, const auto& values) {
                flatten("inputs." + std::string(field), values, m_results.NumberPillars,
                        [&](const std::string& key, auto value) {
                            Name name = nameOf(key);
                            Step& step = newStep(Inputs, key, std::move(name.title),
                                                 static_cast<double>(value), Kind::Number);
                            step.symbol = name.symbol;
                            if (key == "inputs.BreadthAMZ") step.rule = breadthNote();
                        });
            });
    }

    std::string breadthNote() const {
        const project::ProjectInput& input = m_current.Input;
        if (input.AMZ != 1) return "set by hand";
        const std::string rule =
            "automatic: the parameter form fills it in from the depth of cover, a whole number";
        for (const auto& stale : project::staleAutomaticValues(input, m_current.Units))
            if (stale.field == project::Field::BreadthAMZ)
                return rule + "; the case holds another value, and the analysis takes what the "
                              "case holds";
        return rule;
    }

    /// What both passes share is written in both.
    void addInEveryPass(const TracedStep& step) {
        const Meaning meaning = meaningOf(step.symbol);
        if (!meaning.ofPass() || step.where.pass != 0) return add(step);
        for (const int pass : {Development, Retreat}) {
            TracedStep of = step;
            of.where.pass = pass;
            add(of);
        }
    }

    void add(const TracedStep& traced) {
        const std::string_view symbol = shown(traced.symbol, traced.where);
        const Meaning meaning = meaningOf(symbol);
        const std::string key = meaning.key(traced.where);
        FormulaText text(traced, m_current.Units, m_digits,
                         [this](std::string_view of, const Where& at) { return shown(of, at); });
        Step& step = newStep(placeOf(meaning.part, traced.where.pass), key,
                             meaning.title(traced.where), traced.value, meaning.symbol->kind);
        step.symbol = symbol;
        step.formula = text.formula();
        step.substituted = text.substituted();
        addReason(step, traced, text);
        if (traced.symbol == "SF" && traced.where.pass > lastPass(m_run.in))
            append(step.rule, "not printed, since the case has no active gob to retreat from, yet "
                              "the warnings use it");
        step.operands = text.operands();
        m_made.expressions.emplace(key, traced);
    }

    static void append(std::string& text, std::string_view sentence) {
        if (!sentence.empty()) text.append(text.empty() ? "" : "; ").append(sentence);
    }

    /// The innermost decision that has something to say, and what bounds a value.
    void addReason(Step& step, const TracedStep& traced, FormulaText& text) {
        std::string bounds;
        const Decided* innermost = nullptr;
        for (const Decided& decided : text.decisions()) {
            const Reason reason = reasonOf(decided.rule, decided.yes, traced.symbol);
            if (reason.sentence.empty()) continue;
            if (decided.test)
                innermost = &decided;
            else
                append(bounds, reason.sentence);
        }
        if (innermost) {
            const Reason reason = reasonOf(innermost->rule, innermost->yes, traced.symbol);
            append(step.rule, reason.sentence);
            if (reason.withCondition) {
                const auto condition = text.condition(*innermost->test);
                step.condition = condition.text;
                step.conditionShown = condition.shown;
            }
        }
        append(step.rule, bounds);
        append(step.rule, noteOn(traced, m_trace.frame, m_options.RoundTELVOSF));
    }

    /// What is left of the list of quantities after all the steps.
    void addNotArising() {
        const std::string condition(project::LoadingConditionNames[m_trace.frame.AnalysisCase - 1]);
        Chapter& chapter = m_chapters[NotArising];
        chapter.note = "does not arise under the loading condition " + condition +
                       " with these inputs; stays 0";
        visitQuantities(m_results, [&](const char* name, Kind kind, const auto& field) {
            flatten(name, field, m_results.NumberPillars, [&](const std::string& key, auto value) {
                if (m_written.contains(key)) return;
                newStep(NotArising, key, nameOf(key).title, static_cast<double>(value), kind).rule =
                    chapter.note;
            });
        });
    }

    const run::Run& m_run;
    const project::ProjectCase& m_current;
    const AnalysisResults& m_results;
    const report::ReportOptions& m_options;
    int m_digits;
    Extent m_extent;
    Trace m_trace;
    TracedChapters m_made;
    std::array<Chapter, PlaceCount> m_chapters;
    std::array<bool, SecondSide + 1> m_apart{};
    std::set<std::string> m_written;
};

} // namespace

TracedChapters tracedChapters(const run::Run& run, const report::ReportOptions& options, int digits,
                              Extent extent) {
    return Writer(run, options, digits, extent).write();
}

Chapters explain(const run::Run& run, const report::ReportOptions& options, int digits) {
    Chapters chapters = tracedChapters(run, options, digits, Extent::OfThisCase).chapters;
    addPrintedFigures(run, options, digits, chapters);
    return chapters;
}

} // namespace telvo::explain
