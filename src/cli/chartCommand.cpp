// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/chartCommand.h"

#include "cli/arguments.h"

#include <CLI/CLI.hpp>

#include <utility>

namespace telvo::cli {

CLI::App* addChart(CLI::App& app, ChartRequest& request) {
    CLI::App* command = app.add_subcommand(
        "chart", "make a design chart: the value that one input needs over another one");
    addCasesAndInput(*command, request.words, request.listFile);
    literal(command->add_option("--over", request.over,
                                "the other input and its values: INPUT=FROM:TO:STEP"))
        ->option_text("INPUT=VALUES")
        ->required();
    literal(command->add_option("--for", request.criterion,
                                "criterion with one to eight values: QUANTITY>=1.3,1.5,suggested"))
        ->option_text("CRITERION")
        ->required();
    literal(command->add_option("--in", request.in,
                                "where to look; half to double the case's value if not given"))
        ->option_text("LOW:HIGH");
    command->add_option("--step", request.step, "practical step to which answers are rounded")
        ->check(CLI::PositiveNumber)
        ->option_text("STEP");
    addRounding(*command, request.options);
    addStudyTarget(*command, request.target);
    command->footer("Exit status 4: nothing in the range helps anywhere.\n\n"
                    "Example:\n  telvo-cli chart panel.TLV BarrierSecondGob --over "
                    "DepthCover=600:2000:25 --for \"BarrierSF.retreat.second>=1.3,1.5,2\"");
    return command;
}

int runChart(Console& console, const ChartRequest& request) {
    const auto named = casesAndInput(request.words, request.listFile);
    if (!named) return console.wrongUsage(faultText(named.fault()));
    const auto criteria = criteriaOf(request.criterion);
    if (!criteria) return console.wrongUsage("--for: " + faultText(criteria.fault()));
    const auto over = axisOf(request.over);
    if (!over) return console.wrongUsage("--over: " + faultText(over.fault()));
    std::optional<study::Span> in;
    if (!request.in.empty()) {
        const auto span = spanOf(request.in);
        if (!span) return console.wrongUsage("--in: " + faultText(span.fault()));
        in = *span;
    }
    std::vector<std::optional<double>> targets;
    for (const study::Criterion& criterion : *criteria)
        targets.push_back(criterion.target);
    const auto ask = [&](const project::ProjectCase& current) -> Result<Answer> {
        const study::Variable& variable = named->variable;
        const study::DesignChartRequest asked{
            variable,
            in ? *in : study::defaultSearchRange(current, variable),
            request.step > 0 ? request.step : study::defaultStep(variable, current.Units),
            over->variable,
            over->values,
            criteria->front().outcome,
            criteria->front().sense,
            targets};
        auto made = study::designChart(current, asked, request.options.RoundTELVOSF);
        if (!made) return made.fault();
        return Answer{study::outputOf(std::move(*made), asked, current), asked};
    };
    return askCases(console, named->cases, request.target, ask, request.options.RoundTELVOSF);
}

} // namespace telvo::cli
