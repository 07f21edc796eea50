// SPDX-License-Identifier: GPL-3.0-or-later
#include "plot/distribution.h"

#include "base/numbers.h"
#include "base/text.h"
#include "engine/driver.h"
#include "engine/questions.h"
#include "plot/planDimensions.h"
#include "project/units.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace telvo::plot {

using engine::FirstSide, engine::SecondSide;

namespace {

// As on the pages of the report.
constexpr std::string_view ForcePattern = "#.00E+00";
constexpr std::string_view StressPattern = "##0.00";
constexpr double WholeFrom = 100; // stress that a picture shows without decimals
/// Widest barrier to scale, in widths of the panel.
constexpr double WidestBarrier = 1;
/// Limits of the strength to stress ratio: those that factors of pillars and barriers are held
/// against, and what comes before and after.
constexpr std::array<double, ColourSteps - 1> RatioLimits = {1, 1.5, 2, 4};

/// A figure with its unit, which is a label in parentheses with a leading blank.
std::string withUnit(const std::string& figure, std::string_view unit) {
    std::string text = figure;
    for (const char c : unit)
        if (c != '(' && c != ')') text += c;
    return text;
}

/// What both kinds of distribution have of a run.
class Maker {
  public:
    Maker(const run::Run& run, const report::ReportOptions& options)
        : m_run(run), m_options(options), m_results(run.results), m_in(run.in) {
        m_made.caption = {caseTitle(run.current)};
        m_made.lengthUnit = project::unitLabel(m_in.Units, project::Quantity::Length);
    }

    Distribution capacity();
    Distribution stress(int pass);

  private:
    void toReportUnits() { m_units = report::fixReportUnits(m_results, m_in.Units, m_options); }
    void describe(std::string_view what, const std::string& unit);
    void addPillars();
    void addBarrier(int k);
    void finish(std::string_view pattern);
    void noteStresses(int pass);
    std::string reportedFactors(int pass) const;

    const run::Run& m_run;
    const report::ReportOptions& m_options;
    engine::AnalysisResults m_results; ///< in report units as soon as they are fixed
    const engine::WorkingInputs& m_in;
    report::ReportUnits m_units;
    Distribution m_made;
};

void Maker::describe(std::string_view what, const std::string& unit) {
    m_made.quantity = std::string(what) + unit;
    m_made.unit = unit;
}

void Maker::addPillars() {
    double center = 0;
    for (int i = 1; i <= m_results.NumberPillars; ++i) {
        Bar bar{.name = generalNumber(i), .pillar = i};
        bar.width = m_in.PillarGrossWidth[i];
        bar.left = center + m_in.We / 2;
        bar.right = bar.left + bar.width;
        m_made.bars.push_back(std::move(bar));
        center += m_in.EntryCenter[i];
    }
}

void Maker::addBarrier(int k) {
    const bool first = k == FirstSide;
    Bar bar{.name = first ? "1st barrier" : "2nd barrier", .side = k};
    bar.width = m_in.BarrierWidth[k];
    const double widest = WidestBarrier * (m_in.PanelWidth + m_in.We);
    bar.cut = bar.width > widest;
    const double drawn = bar.cut ? widest : bar.width;
    bar.left = first ? -m_in.We / 2 - drawn : m_in.PanelWidth + m_in.We / 2;
    bar.right = bar.left + drawn;
    m_made.bars.insert(first ? m_made.bars.begin() : m_made.bars.end(), std::move(bar));
}

void Maker::finish(std::string_view pattern) {
    for (Bar& bar : m_made.bars) {
        bar.height = std::accumulate(bar.parts.begin(), bar.parts.end(), 0.0);
        const auto figure = [&](double value) {
            const bool whole = pattern == StressPattern && std::abs(value) >= WholeFrom;
            return formatPattern(value, whole ? "##0" : pattern);
        };
        bar.figure = figure(bar.height);
        if (bar.strength) bar.strengthFigure = figure(*bar.strength);
    }
}

Distribution Maker::capacity() {
    toReportUnits();
    m_made.caption.push_back("Pillar load-bearing capacity");
    describe("Load-bearing capacity", m_units.force);
    m_made.components = {{"Load-bearing capacity", Source::Own}};
    addPillars();
    for (Bar& bar : m_made.bars)
        bar.parts = {m_results.PillarCapacity[bar.pillar]};
    finish(ForcePattern);
    m_made.total = "Total load-bearing capacity of pillars within AMZ: " +
                   formatPattern(m_results.TotalCapacityAMZ, ForcePattern) + m_units.force;
    m_made.notes = {"The AMZ holds " + formatPattern(m_in.B / m_in.Sc, "##0.00") +
                    " rows of these pillars: its breadth of " +
                    withUnit(lengthText(m_in.B), m_made.lengthUnit) +
                    " divided by the crosscut spacing of " +
                    withUnit(lengthText(m_in.Sc), m_made.lengthUnit) + "."};
    return std::move(m_made);
}

/// What the report says of the same pillars, so that no picture looks better than it.
std::string Maker::reportedFactors(int pass) const {
    std::string barriers;
    for (const Bar& bar : m_made.bars)
        if (bar.factor)
            barriers += std::string(bar.side == FirstSide ? ", first" : ", second") + " barrier " +
                        bar.factorFigure;
    return "Report, " + m_made.pass + ": stability factor of the pillars within the AMZ " +
           report::factorText(m_results.TELVOSF[pass], m_options.RoundTELVOSF) + barriers + '.';
}

void Maker::noteStresses(int pass) {
    const int analysisCase = m_results.AnalysisCase;
    std::vector<std::string> pillars;
    if (analysisCase >= engine::ActiveGob && pass == engine::Retreat)
        pillars.emplace_back(
            analysisCase >= engine::OneSideGob
                ? "Pillars: without the front abutment load and the load transferred from "
                  "remnants, which are not shared out to single pillars."
                : "Pillars: without the front abutment load, which is not shared out to single "
                  "pillars.");
    if (m_results.ArchFactor != 1)
        pillars.emplace_back("Pillars: without the relief by the pressure arch.");
    if (analysisCase >= engine::OneSideGob)
        pillars.emplace_back(
            "Side abutments are followed over the three pillars next to each side gob.");
    const bool barriers = std::any_of(m_made.bars.begin(), m_made.bars.end(),
                                      [](const Bar& bar) { return bar.isBarrier(); });

    m_made.notes = pillars;
    if (barriers)
        m_made.notes.emplace_back(
            "Barriers: average stress without pressure arch and slab corner loads.");
    m_made.notes.push_back(reportedFactors(pass));

    m_made.marginNotes.emplace_back(
        barriers ? "Pillars: strength divided by stress. Barriers: stability factor of the report."
                 : "Pillars: strength divided by stress.");
    m_made.marginNotes.insert(m_made.marginNotes.end(), pillars.begin(), pillars.end());
    m_made.marginNotes.push_back(reportedFactors(pass));
}

Distribution Maker::stress(int pass) {
    if (pass == engine::Development) m_results = engine::withStressesOf(m_in, m_run.byPass, pass);
    toReportUnits();
    const int analysisCase = m_results.AnalysisCase;
    m_made.pass = pass == engine::Development ? "development" : "retreat";
    m_made.caption.push_back("Individual pillar stresses, " + m_made.pass);
    m_made.caption.emplace_back(project::LoadingConditionNames[analysisCase - 1]);
    describe("Stress", m_units.stress);

    const auto barriers = engine::barrierSides(m_in);
    const bool side = analysisCase >= engine::OneSideGob;
    const bool front = !barriers.empty();
    // Tributary, front, first side, second side; those that cannot arise are left out.
    std::array<bool, 4> arises = {true, front, side, analysisCase >= engine::TwoSideGobs};
    const std::array<Component, 4> components = {{{"Tributary area", Source::Own},
                                                  {"Front abutment (barriers)", Source::Front},
                                                  {"First side abutment", Source::FirstSide},
                                                  {"Second side abutment", Source::SecondSide}}};
    const auto set = [&](Bar& bar, const std::array<double, 4>& parts) {
        for (std::size_t c = 0; c < parts.size(); ++c)
            if (arises[c]) bar.parts.push_back(parts[c]);
    };
    for (std::size_t c = 0; c < components.size(); ++c)
        if (arises[c]) m_made.components.push_back(components[c]);

    addPillars();
    for (const int k : barriers)
        addBarrier(k);
    const auto& r = m_results;
    for (Bar& bar : m_made.bars) {
        const int i = bar.pillar;
        const int k = bar.side;
        if (bar.isBarrier()) {
            const double abutment = r.BarrierSideStress[k];
            set(bar, {r.BarrierTributaryStress[k], r.BarrierFrontStress[k],
                      k == FirstSide ? abutment : 0, k == SecondSide ? abutment : 0});
            bar.strength = r.BarrierStrength[k];
            bar.factor = r.BarrierSF[pass][k];
            bar.factorFigure = report::factorText(*bar.factor, m_options.RoundTELVOSF);
        } else {
            set(bar, {r.TributaryStress, 0, r.PillarSideStress[FirstSide][i],
                      r.PillarSideStress[SecondSide][i]});
            bar.strength = r.PillarStrength[i];
        }
    }
    finish(StressPattern);
    noteStresses(pass);
    return std::move(m_made);
}

/// About `most` steps of 1, 2, 2.5 or 5 with zeros that span the values.
double roundStep(double span, int most) {
    const double least = span / most;
    const double power = std::pow(10, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 2.5, 5.0})
        if (factor * power >= least * (1 - 1e-9)) return factor * power;
    return 10 * power;
}

/// Limits between the colours of values: round ones, evenly spaced.
std::vector<double> evenLimits(const std::vector<double>& values) {
    const auto [low, high] = std::minmax_element(values.begin(), values.end());
    if (values.empty() || !(*high - *low > 1e-6 * std::abs(*high))) return {};
    // One step more than there are limits: the first one need not lie at the lowest value.
    for (int most = ColourSteps; most > 1; --most) {
        const double step = roundStep(*high - *low, most);
        std::vector<double> limits;
        const double first = std::floor(*low / step) + 1;
        for (double n = first; n * step <= *high && limits.size() <= ColourSteps; ++n)
            limits.push_back(n * step);
        if (limits.size() < ColourSteps) return limits;
    }
    return {};
}

/// Text of each step between limits: "< 1", "1 - 1.5", ">= 4".
std::vector<std::string> stepNames(const std::vector<double>& limits) {
    constexpr int digits = 6;
    constexpr double large = 1e5;
    const auto text = [](double limit) {
        return limit < large ? generalNumber(limit, digits) : formatPattern(limit, ForcePattern);
    };
    if (limits.empty()) return {};
    std::vector<std::string> names{"< " + text(limits.front())};
    for (std::size_t i = 1; i < limits.size(); ++i)
        names.push_back(text(limits[i - 1]) + " - " + text(limits[i]));
    names.push_back("\u2265 " + text(limits.back()));
    return names;
}

} // namespace

std::optional<double> Bar::margin() const {
    if (isBarrier()) return factor;
    if (!strength || !(height > 0)) return std::nullopt;
    return *strength / height;
}

Distribution capacityDistribution(const run::Run& run, const report::ReportOptions& options) {
    return Maker(run, options).capacity();
}

Distribution stressDistribution(const run::Run& run, const report::ReportOptions& options,
                                int pass) {
    return Maker(run, options).stress(pass);
}

ValueSpan valueSpan(const Distribution& distribution) {
    constexpr double offScale = 1.6; // times everything else
    ValueSpan span;
    double most = 0;
    for (const Bar& bar : distribution.bars) {
        most = std::max(most, bar.height);
        if (!bar.isBarrier()) most = std::max(most, bar.strength.value_or(0));
        double below = 0;
        for (const double part : bar.parts)
            below += std::min(part, 0.0);
        span.lowest = std::min(span.lowest, below);
    }
    double all = most;
    for (const Bar& bar : distribution.bars)
        if (const double strength = bar.strength.value_or(0); strength <= offScale * most)
            all = std::max(all, strength);
    if (all > 0) span.highest = all;
    return span;
}

std::string distributionCsv(const Distribution& distribution) {
    const bool stresses =
        !distribution.bars.empty() && distribution.bars.front().strength.has_value();
    std::string text =
        "Pillar,Left rib" + distribution.lengthUnit + ",Width" + distribution.lengthUnit;
    for (const Component& component : distribution.components)
        text += ',' + component.name + distribution.unit;
    if (stresses)
        text += ",Total" + distribution.unit + ",Strength" + distribution.unit +
                ",Stability factor of the report";
    text += LineBreak;
    for (const Bar& bar : distribution.bars) {
        text += bar.name + ',';
        // What is drawn narrower still ends at the panel.
        appendGeneralNumber(text, bar.side == FirstSide ? bar.right - bar.width : bar.left);
        text += ',';
        appendGeneralNumber(text, bar.width);
        const auto add = [&](double value) {
            text += ',';
            appendGeneralNumber(text, value);
        };
        for (const double part : bar.parts)
            add(part);
        if (stresses) {
            add(bar.height);
            add(bar.strength.value_or(0));
            text += ',';
            if (bar.factor) appendGeneralNumber(text, *bar.factor);
        }
        text += LineBreak;
    }
    return text;
}

std::string barHint(const Distribution& distribution, const Bar& bar) {
    std::string hint = (bar.isBarrier() ? "" : "Pillar ") + bar.name + ", " +
                       withUnit(lengthText(bar.width), distribution.lengthUnit) + " wide: ";
    if (!bar.strength) return hint + withUnit(bar.figure, distribution.unit);
    const auto stress = [&](double value) { return formatPattern(value, StressPattern); };
    hint += "stress " + withUnit(stress(bar.height), distribution.unit);
    std::string sources;
    for (std::size_t c = 0; c < bar.parts.size(); ++c)
        if (bar.parts[c] != 0)
            sources += (sources.empty() ? "" : ", ") + distribution.components[c].name + ' ' +
                       stress(bar.parts[c]);
    if (!sources.empty()) hint += " (" + sources + ')';
    hint += ", strength " + withUnit(stress(*bar.strength), distribution.unit);
    if (bar.factor) hint += "; stability factor of the report " + bar.factorFigure;
    return hint;
}

PlanOverlay planOverlay(const Distribution& distribution, Coloured what, int RoundTELVOSF) {
    const bool ratio = what == Coloured::StrengthToStress;
    const auto valueOf = [&](const Bar& bar) {
        return ratio ? bar.margin() : std::optional(bar.height);
    };
    std::vector<double> limits(RatioLimits.begin(), RatioLimits.end());
    if (!ratio) {
        std::vector<double> values;
        for (const Bar& bar : distribution.bars)
            values.push_back(bar.height);
        limits = evenLimits(values);
    }
    PlanOverlay overlay;
    overlay.caption = ratio ? "Strength to stress, " + distribution.pass : distribution.caption[1];
    overlay.notes = ratio ? distribution.marginNotes : distribution.notes;
    const bool barriers = std::any_of(distribution.bars.begin(), distribution.bars.end(),
                                      [](const Bar& bar) { return bar.isBarrier(); });
    overlay.key.title = !ratio     ? distribution.quantity
                        : barriers ? "Pillars: strength / stress; barriers: stability factor"
                                   : "Strength / stress";
    overlay.key.steps = stepNames(limits);
    if (limits.empty() && !distribution.bars.empty())
        overlay.key.steps = {distribution.bars.front().figure}; // all are alike
    const int steps = static_cast<int>(overlay.key.steps.size());
    // A few steps use the whole scale; weaker pillars are the darker ones.
    for (int step = 0; step < steps; ++step) {
        const int colour = steps == 1 ? ColourSteps / 2 : step * (ColourSteps - 1) / (steps - 1);
        overlay.key.colours.push_back(ratio ? ColourSteps - 1 - colour : colour);
    }
    for (const Bar& bar : distribution.bars) {
        const auto value = valueOf(bar);
        PlanOverlay::Cell cell;
        cell.hint = barHint(distribution, bar);
        cell.wordings = {bar.figure};
        if (ratio) cell.wordings = {value ? report::factorText(*value, RoundTELVOSF) : "-"};
        if (value) {
            const auto step = std::upper_bound(limits.begin(), limits.end(), *value);
            cell.colour = overlay.key.colours[static_cast<std::size_t>(step - limits.begin())];
        }
        (bar.isBarrier() ? overlay.barriers[bar.side] : overlay.pillars[bar.pillar]) =
            std::move(cell);
    }
    return overlay;
}

} // namespace telvo::plot
