// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/sweepCommand.h"

#include "cli/arguments.h"

#include <CLI/CLI.hpp>

#include <chrono>
#include <mutex>
#include <utility>

namespace telvo::cli {

CLI::App* addSweep(CLI::App& app, SweepRequest& request) {
    CLI::App* command =
        app.add_subcommand("sweep", "make a table of values: one to four inputs, any results");
    addInputs(*command, request.inputs);
    literal(command->add_option("--vary", request.vary,
                                "input and its values: INPUT=FROM:TO:STEP or INPUT=6,8,10; up to "
                                "four times"))
        ->expected(1)
        ->take_all()
        ->option_text("INPUT=VALUES")
        ->required();
    command->add_flag("--linked", request.linked,
                      "the inputs go side by side, value by value, instead of all combinations");
    literal(command->add_option("--quantity", request.quantities,
                                "result in the table, named as by results, or all; may be "
                                "repeated; the stability factors if not given"))
        ->expected(1)
        ->take_all()
        ->option_text("NAME");
    addJobs(*command, request.jobs);
    addRounding(*command, request.options);
    addStudyTarget(*command, request.target);
    command
        ->add_option("--line", request.lines,
                     "values of the first result at which the picture has lines, such as "
                     "1.3,1.5,suggested; suggested if not given")
        ->option_text("VALUES");
    command->footer("The columns of CSV are id, the inputs, the results, flags of the warnings and "
                    "message, which tells\nwhy a row has no results.\n\n"
                    "Examples:\n  telvo-cli sweep panel.TLV --vary DepthCover=600:1200:50 "
                    "--vary EntryHeight=6,8,10 -o table.csv\n"
                    "  telvo-cli sweep panel.TLV --vary DepthCover=600:1200:25 "
                    "--vary EntryHeight=5:10:0.25 --line 1.3,1.5,2 -o map.svg");
    return command;
}

int runSweep(Console& console, const SweepRequest& request) {
    StudyTarget target = request.target;
    if (!request.lines.empty()) {
        auto lines = study::parseTargets(request.lines);
        if (!lines) return console.wrongUsage("--line: " + faultText(lines.fault()));
        target.look.lines = std::move(*lines);
    }
    study::SweepRequest asked;
    asked.linked = request.linked;
    for (const std::string& text : request.vary) {
        auto axis = axisOf(text);
        if (!axis) return console.wrongUsage("--vary: " + faultText(axis.fault()));
        asked.axes.push_back(std::move(*axis));
    }
    std::mutex mutex;
    auto last = std::chrono::steady_clock::now();
    const bool shows = console.showsProgress();
    bool shown = false;
    const auto progress = [&](std::size_t done, std::size_t all) {
        const std::lock_guard lock(mutex);
        const auto now = std::chrono::steady_clock::now();
        if (!shows || now - last < std::chrono::seconds(1)) return;
        last = now;
        shown = true;
        console.showProgress(std::to_string(done) + " of " + std::to_string(all) + " rows");
    };
    const int status = askCases(
        console, request.inputs, target,
        [&](const project::ProjectCase& current) -> Result<Answer> {
            auto outcomes = outcomesOf(request.quantities, current);
            if (!outcomes) return outcomes.fault();
            asked.outcomes = std::move(*outcomes);
            auto made = study::sweep(current, asked, request.options.RoundTELVOSF, request.jobs, {},
                                     progress);
            if (shown) console.showProgress({});
            shown = false;
            if (!made) return made.fault();
            return Answer{study::outputOf(std::move(*made)), asked};
        },
        request.options.RoundTELVOSF, request.jobs);
    return status;
}

} // namespace telvo::cli
