// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/resultsCommand.h"

#include "base/escapes.h"
#include "cli/arguments.h"
#include "cli/outputs.h"
#include "report/warnings.h"

#include <CLI/CLI.hpp>

namespace telvo::cli {

CLI::App* addResults(CLI::App& app, ResultsRequest& request) {
    CLI::App* command = app.add_subcommand("results", "print every computed quantity of each case");
    addInputs(*command, request.inputs);
    command->add_option("--format", request.format, "text, json or csv")
        ->check(CLI::IsMember({"text", "json", "csv"}))
        ->capture_default_str();
    command->add_flag("--no-header", request.noHeader, "CSV without its first line");
    literal(command->add_option("-o,--output", request.target,
                                "write to this file instead of the terminal"))
        ->option_text("FILE");
    command->add_flag("--force", request.force, "overwrite an existing file");
    addJobs(*command, request.jobs);
    addRounding(*command, request.options);
    command->footer("A file is written whole or not at all. A byte of a file name that is no "
                    "UTF-8 reads \\xE4 in JSON\nand CSV.\n\n"
                    "Example:\n  telvo-cli results *.TLV --format csv -o panels.csv");
    return command;
}

int runResults(Console& console, const ResultsRequest& request) {
    ExitStatus status = AllGood;
    const auto names = namesOf(console, request.inputs, status);
    if (!names) return status;
    const bool toFile = !request.target.empty() && !isStandardOutput(request.target);
    if (toFile && !mayWriteMade(console, request.target, request.force, *names)) return FileTrouble;
    const bool json = request.format == "json";
    const bool csv = request.format == "csv";
    TextOutput output(console, request.target, existingFor(request.force));
    std::size_t formulas = 0;
    if (json) output.print("[\n");
    if (csv && !request.noHeader) output.print(run::csvHeader());
    bool first = true;
    const auto make = [&](CaseOutcome& outcome) {
        runCase(outcome);
        if (outcome.run) outcome.warnings = report::assessWarnings(*outcome.run, request.options);
        Made made = madeOf(outcome);
        made.looksLikeFormula = csv && run::looksLikeFormula(resultOf(outcome));
        if (json)
            made.text = run::resultJson(resultOf(outcome));
        else if (csv)
            made.text = run::csvRow(resultOf(outcome));
        else if (outcome.run)
            made.text = run::resultText(resultOf(outcome));
        return made;
    };
    makeInOrder(console, *names, request.jobs, make, [&](const Made& made) {
        raise(status, made.status);
        if (made.looksLikeFormula) ++formulas;
        if (!first && json) output.print(",\n");
        if (!first && !json && !csv && made.hasRun) output.print("\n");
        output.print(made.text);
        first = false;
    });
    if (json) output.print("\n]\n");
    if (formulas > 0)
        console.complain(
            "in " + std::to_string(formulas) + (formulas == 1 ? " row" : " rows") +
            " the file name or title begins like a formula, and a spreadsheet may compute it");
    raise(status, output.finish());
    return status;
}

} // namespace telvo::cli
