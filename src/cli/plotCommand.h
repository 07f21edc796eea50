// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/AtomicFile.h"
#include "cli/cases.h"
#include "report/ReportWriter.h"
#include "study/graph/sfGraph.h"

#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

/// The command that draws. What is drawn, and how, is handed in: a build without the desktop
/// libraries hands in nothing and says so.
namespace telvo::cli {

/// What the pictures of a case depend on.
struct PlotOptions {
    report::ReportOptions report;
    study::GraphRange range;
    int dpi = 0;                     ///< of a PNG
    std::vector<int> size{900, 700}; ///< width and height in pixels of 1/96 inch
    Existing existing = Existing::Refuse;
};

/// A kind of picture and the options that it follows.
struct PlotKind {
    std::string_view name;   ///< as --kind has it
    std::string_view shows;  ///< for the help text
    bool hasNumbers = false; ///< can be written as .csv
    bool takesRange = false;
    bool takesReportOptions = false;
};

/// Why there is no picture; AllGood where there is one.
struct PlotOutcome {
    ExitStatus status = AllGood;
    std::string message;
};

/// Draws pictures of cases into files, in the format that the file name ends in.
struct Plotter {
    std::vector<PlotKind> kinds; ///< none: this build does not draw
    int lowestDpi = 0, highestDpi = 0, defaultDpi = 0;
    /// Given: kind  index in `kinds`
    PlotOutcome (*draw)(Console& console, const project::ProjectCase& current, std::size_t kind,
                        const PlotOptions& options, const std::string& target) = nullptr;
};

struct PlotRequest {
    std::string source;
    std::string kind;
    std::string target;
    bool force = false;
    PlotOptions options;
    std::vector<double> range; ///< as given: nothing, or minimum and maximum
};

/// Adds the command with the kinds that the plotter has. Both have to outlive the parsing.
CLI::App* addPlot(CLI::App& app, const Plotter& plotter, PlotRequest& request);
int runPlot(Console& console, const PlotRequest& request, const Plotter& plotter);

} // namespace telvo::cli
