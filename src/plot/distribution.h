// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "plot/panelPlan.h"
#include "report/sections.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// How capacity and stress of a finished run are distributed over its pillars, as bars across the
/// panel and as colours on its plan. Units and rounding are those of the report.
namespace telvo::plot {

/// One pillar of a crosscut interval, or a barrier beside the panel.
struct Bar {
    std::string name;  ///< "1" to "9", "1st barrier", "2nd barrier"
    int pillar = 0;    ///< 1 to 9; 0 for a barrier
    int side = 0;      ///< 3 or 4 for a barrier
    double left = 0;   ///< drawn from rib to rib, from the center of entry 1; ft | m
    double right = 0;  ///< ft | m
    double width = 0;  ///< the true one; ft | m
    bool cut = false;  ///< drawn narrower than it is
    double height = 0; ///< total of the parts
    /// The total with no more digits than mean something: a force as the report prints it, a stress
    /// from 100 on without decimals.
    std::string figure = {};
    std::vector<double> parts = {};      ///< one for each component, from below
    std::optional<double> strength = {}; ///< of a stress plot
    std::string strengthFigure = {};
    std::optional<double> factor = {}; ///< of a barrier in a stress plot: its stability factor
    std::string factorFigure = {};     ///< the same as the report prints it
    /// What a pillar is judged by: of a barrier its stability factor; of a pillar, which has none
    /// of its own, strength to stress; nothing without a stress.
    std::optional<double> margin() const;
    bool isBarrier() const { return pillar == 0; }
};

/// Where a part of a bar comes from.
enum class Source {
    Own, ///< its tributary area; of a capacity the pillar itself
    Front,
    FirstSide,
    SecondSide
};

/// What one part of each bar is.
struct Component {
    std::string name;
    Source source = Source::Own;
};

struct Distribution {
    std::vector<std::string> caption;  ///< name of the case; what is shown; of which condition
    std::string pass;                  ///< "development" or "retreat"; empty of a capacity
    std::string quantity;              ///< with its unit, as an axis is labelled
    std::string unit;                  ///< " (tons)", " (psi)", ...
    std::string lengthUnit;            ///< " (ft)" or " (m)"
    std::vector<Component> components; ///< what the parts of the bars are
    std::vector<Bar> bars;             ///< from left to right
    std::string total;                 ///< a line below the bars; may be empty
    std::vector<std::string> notes;    ///< what the figures hold and what they leave out
    std::vector<std::string> marginNotes = {}; ///< the same of Bar::margin()
};

/// Load-bearing capacity of one pillar of each row. The total is that of the active mining zone:
/// the sum times the rows in it, its breadth through the crosscut spacing.
Distribution capacityDistribution(const run::Run& run, const report::ReportOptions& options);

/// Stresses of the plots on pillars and barriers in a pass, by their sources, with the strengths.
/// Notes: 1) the results by their names have those of the retreat pass. Those of development follow
///           by the same rule from what the run keeps of that pass.
///        2) the front abutment of the zone is not shared out to single pillars; the stress of a
///           barrier has neither its pressure arch load nor its slab corner load.
Distribution stressDistribution(const run::Run& run, const report::ReportOptions& options,
                                int pass);

/// The values that the axis of a distribution spans. A strength far above everything else would
/// flatten the rest and is off the scale; that of a pillar never is.
struct ValueSpan {
    double lowest = 0; ///< of parts that pull down
    double highest = 1;
    bool shows(double strength) const { return strength <= highest; }
};
ValueSpan valueSpan(const Distribution& distribution);

/// The numbers behind the bars, unrounded, a line for each bar.
std::string distributionCsv(const Distribution& distribution);

/// Everything of a bar in a line, for a hint.
std::string barHint(const Distribution& distribution, const Bar& bar);

/// What colours tell on a plan.
enum class Coloured {
    Total,           ///< of the bars
    StrengthToStress ///< Bar::margin() against fixed limits, rounded as stability factors are
};

/// Colours for the pillars of a plan after a distribution, in ColourSteps steps. Darker is more,
/// but with StrengthToStress weaker.
PlanOverlay planOverlay(const Distribution& distribution, Coloured what, int RoundTELVOSF);

} // namespace telvo::plot
