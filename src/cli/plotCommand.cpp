// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plotCommand.h"

#include "cli/arguments.h"
#include "cli/inputs.h"
#include "cli/outputs.h"
#include "study/graph/sfGraph.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace telvo::cli {

namespace {

using study::HighestPercent;
using study::LowestPercent;

constexpr std::string_view NumbersEnding = ".csv";

/// One line per kind, in columns.
std::string kindTable(const std::vector<PlotKind>& kinds) {
    std::size_t widest = 0;
    for (const PlotKind& kind : kinds)
        widest = std::max(widest, kind.name.size());
    std::string text;
    for (const PlotKind& kind : kinds) {
        text.append("  ").append(kind.name).append(widest + 2 - kind.name.size(), ' ');
        text.append(kind.shows).append("\n");
    }
    return text;
}

bool any(const Plotter& plotter, bool PlotKind::*has) {
    return std::any_of(plotter.kinds.begin(), plotter.kinds.end(),
                       [has](const PlotKind& kind) { return kind.*has; });
}

} // namespace

CLI::App* addPlot(CLI::App& app, const Plotter& plotter, PlotRequest& request) {
    if (plotter.kinds.empty()) {
        CLI::App* command = app.add_subcommand("plot", "draw a case (not in this build)");
        command->allow_extras();
        return command;
    }
    CLI::App* command = app.add_subcommand("plot", "draw a case into a file, without a display");
    literal(command->add_option("CASE", request.source,
                                "case file, or TABLE#ROW; - reads standard input"))
        ->required();
    std::vector<std::string> names;
    for (const PlotKind& kind : plotter.kinds)
        names.emplace_back(kind.name);
    command->add_option("--kind", request.kind, "what is drawn, see below")
        ->check(CLI::IsMember(names))
        ->option_text("KIND")
        ->required();
    literal(command->add_option(
                "-o,--output", request.target,
                any(plotter, &PlotKind::hasNumbers)
                    ? "file to write: .svg, .png, .pdf, or .csv for the numbers behind it"
                    : "file to write: .svg, .png or .pdf"))
        ->option_text("FILE")
        ->required();
    command->add_flag("--force", request.force, "overwrite an existing file");
    addPictureOptions(*command, request.picture, "900 700");
    if (any(plotter, &PlotKind::takesRange))
        command
            ->add_option("--range", request.range,
                         "ends of a graph's axis in percent of the case's own value, 0 to 150")
            ->expected(2)
            ->check(CLI::Range(LowestPercent, HighestPercent))
            ->option_text("MIN MAX");
    if (any(plotter, &PlotKind::takesReportOptions)) {
        addRounding(*command, request.report);
        addUnits(*command, request.report);
    }
    command->footer("Kinds:\n" + kindTable(plotter.kinds) +
                    "\nExample:\n  telvo-cli plot panel.TLV --kind " + names.front() +
                    " -o panel.svg");
    return command;
}

int runPlot(Console& console, const PlotRequest& request) {
    const Plotter& plotter = console.plotter();
    if (plotter.kinds.empty()) {
        console.complain(NoPictures);
        return WrongUsage;
    }
    std::size_t index = 0;
    while (plotter.kinds[index].name != request.kind) // one of them, or it had been refused
        ++index;
    const PlotKind& kind = plotter.kinds[index];
    if (const std::string ending = endingOf(request.target); ending == NumbersEnding) {
        if (!kind.hasNumbers) {
            return console.wrongUsage(request.target + ": a picture of kind " + request.kind +
                                      " has no numbers");
        }
    } else if (!isPictureEnding(ending)) {
        return console.wrongUsage(request.target +
                                  ": the file name has to end in .svg, .png or .pdf");
    }
    study::GraphRange range;
    if (!request.range.empty()) {
        if (!kind.takesRange) {
            return console.wrongUsage("--range: a picture of kind " + request.kind +
                                      " has no such axis");
        }
        range = {request.range[0], request.range[1]};
    }
    const CaseOutcome outcome = readCase(console, request.source);
    if (!outcome.current) {
        complainOf(console, outcome);
        return outcome.status;
    }
    if (!mayWriteMade(console, request.target, request.force, {request.source})) return FileTrouble;
    PictureOptions options = request.picture;
    options.existing = existingFor(request.force);
    const PlotOutcome drawn = plotter.drawCase(
        console, {*outcome.current, index, request.report, range}, options, request.target);
    if (drawn.status == Refused)
        console.complain(outcome.file + ": " + drawn.message);
    else if (!drawn.message.empty())
        console.complain(drawn.message);
    return drawn.status;
}

} // namespace telvo::cli
