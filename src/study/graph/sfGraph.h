// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "engine/AnalysisResults.h"
#include "project/ProjectInput.h"
#include "report/ReportWriter.h"
#include "study/alongAxis.h"
#include "study/Variable.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// How a stability factor answers to one design choice: the six parametric graphs.
namespace telvo::study {

/// The graphs by their index in the menu and in the settings.
enum class GraphKind {
    EntryHeight = 0,
    DepthCover = 1,
    XcutAngle = 2,
    XcutSpacing = 3,
    FirstBarrier = 4,
    SecondBarrier = 5
};
inline constexpr int GraphKinds = 6;

/// Titles of the vertical axis at first: for the panel's factor and for a barrier's.
inline constexpr std::array<std::string_view, 2> FactorTitles = {"Stability Factor",
                                                                 "Barrier Stability Factor"};

/// A graph: which factor over which parameter, and what it is called.
struct GraphRow {
    Variable varied;
    int side = 0;               ///< of the barrier whose factor it is, 3 or 4; 0 the panel's
    std::string_view name;      ///< as the console names it
    std::string_view caption;   ///< as the menu names it
    std::string_view axisTitle; ///< as the settings have it at first
    std::string_view parameter; ///< at the beginning of a sentence

    constexpr bool isOfBarrier() const { return side != 0; }
    /// "SF" or "SFBAR".
    constexpr std::string_view factorName() const { return isOfBarrier() ? "SFBAR" : "SF"; }
    constexpr std::string_view factorTitle() const { return FactorTitles[isOfBarrier() ? 1 : 0]; }
};

/// The graphs in the order of GraphKind.
inline constexpr std::array<GraphRow, GraphKinds> GraphRows = {{
    {project::Field::EntryHeight, 0, "sf-height", "SF vs Entry Height", "Entry Height",
     "Entry height"},
    {project::Field::DepthCover, 0, "sf-depth", "SF vs Depth of Cover", "Depth of Cover",
     "Depth of cover"},
    {project::Field::XcutAngle, 0, "sf-angle", "SF vs Crosscut Angle", "Crosscut Angle",
     "Crosscut angle"},
    {project::Field::XcutSpacing, 0, "sf-spacing", "SF vs Crosscut Spacing", "Crosscut Spacing",
     "Crosscut spacing"},
    {project::Field::BarrierFirstGob, engine::FirstSide, "sfbar-first",
     "SFBAR vs First Barrier Width", "Width of First Barrier", "First barrier width"},
    {project::Field::BarrierSecondGob, engine::SecondSide, "sfbar-second",
     "SFBAR vs Second Barrier Width", "Width of Second Barrier", "Second barrier width"},
}};

constexpr const GraphRow& rowOf(GraphKind kind) {
    return GraphRows[static_cast<std::size_t>(kind)];
}

/// Titles of the horizontal axes at first, by GraphKind.
inline std::array<std::string, GraphKinds> axisTitles() {
    std::array<std::string, GraphKinds> titles;
    for (std::size_t i = 0; i < GraphKinds; ++i)
        titles[i] = GraphRows[i].axisTitle;
    return titles;
}

/// What the ends of an axis may be, in percent of the case's own value.
inline constexpr double LowestPercent = 0;
inline constexpr double HighestPercent = 150;

/// Ends of the axis in percent of the case's own value.
struct GraphRange {
    double PlotRangeMin = 50;
    double PlotRangeMax = 150;
};

/// A place where a rule switches and the curve goes on without a jump: it bends, or a gob turns
/// between sub- and supercritical.
struct Turn {
    double x = 0;
    double y = 0;
    std::string rule;
};

/// One curve: "Development" or "Retreat".
struct Curve {
    std::string name;
    /// Stretches without jump or gap, from left to right, each with its points in rising x.
    std::vector<Stretch> pieces;
    std::vector<Jump> jumps;
    std::vector<Turn> turns;
    /// The point of the case itself, when it lies on the axis. With an automatic AMZ whose breadth
    /// is not that of the form's rule it lies off the curve.
    std::optional<GraphPoint> own;
};

/// A limit that the warnings use, as a line or a curve.
struct ReferenceLine {
    std::string label;
    std::vector<GraphPoint> points;
};

struct SfGraph {
    GraphKind kind = GraphKind::EntryHeight;
    std::int16_t units = 0; ///< of the case: 0 English, 1 metric
    double low = 0;         ///< ends of the axis
    double high = 0;
    double ownValue = 0; ///< the case's own value of the parameter
    std::vector<Curve> curves;
    std::vector<ReferenceLine> limits;
};

/// Whether the menu offers a graph for a case: 0 to 3 always, 4 with a first barrier from loading
/// condition 2 on, 5 with a second barrier in loading condition 3.
bool isOffered(GraphKind kind, const project::ProjectInput& in);

/// A case with the varied parameter set; with an automatic AMZ its breadth follows a varied depth
/// by the rule of the parameter form.
project::ProjectCase variedCase(const project::ProjectCase& current, GraphKind kind, double x);

/// Computes a graph. At least 101 points besides the case's own, and the points on either side of a
/// place where a rule switches; points that the check refuses or that cannot be computed are gaps.
/// The axis is clipped: angle 30 to 90, spacing above the entry width, barrier at least the slab
/// cut. The steps of a rounded arch factor or an automatic AMZ breadth are jumps like any other:
/// the report prints them.
/// Refusals: a range whose minimum is not below its maximum; a graph that the case has no use for;
///           a graph without any point.
std::variant<SfGraph, Refusal> sfGraph(const project::ProjectCase& current, GraphKind kind,
                                       const GraphRange& range,
                                       const report::ReportOptions& options);

/// Name of the varied parameter with its unit: "Entry Height (ft)".
std::string parameterLabel(GraphKind kind, std::int16_t units);

/// Where a curve takes a value, or jumps over it.
struct Crossing {
    std::string curve;
    double x = 0;
    bool isJump = false;
    std::string rule; ///< of a jump
};

/// All values of the parameter within the axis at which a factor is `target`, from left to right;
/// refined on the analysis itself, not on the drawn points. A stretch that lies on the target is
/// told by its first point.
std::vector<Crossing> valuesAt(const project::ProjectCase& current, const SfGraph& graph,
                               double target);

/// The numbers of a graph as comma-separated values, one row per value of the parameter, lines
/// ended by CR LF. A factor is empty in a gap; a gap has a row without factors at either end.
std::string graphCsv(const SfGraph& graph);

} // namespace telvo::study
