// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/pictures.h"
#include "report/ReportWriter.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

/// The command that draws a case.
namespace telvo::cli {

struct PlotRequest {
    std::string source;
    std::string kind;
    std::string target;
    bool force = false;
    PictureOptions picture;
    report::ReportOptions report;
    std::vector<double> range; ///< as given: nothing, or minimum and maximum
};

/// Adds the command with the kinds that the plotter has. Both have to outlive the parsing.
CLI::App* addPlot(CLI::App& app, const Plotter& plotter, PlotRequest& request);
int runPlot(Console& console, const PlotRequest& request);

} // namespace telvo::cli
