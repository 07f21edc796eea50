// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/explainCommand.h"

#include "cli/arguments.h"
#include "cli/inputs.h"
#include "cli/outputs.h"
#include "explain/workingText.h"

#include <CLI/CLI.hpp>

namespace telvo::cli {

namespace {

int complainOfName(const explain::Chapters& chapters, const std::string& name) {
    std::string message = "no quantity is called " + name;
    const std::vector<std::string> near = explain::nearMatches(chapters, name);
    if (near.empty()) message += "; --list tells the names";
    for (std::size_t i = 0; i < near.size(); ++i)
        message += (i == 0 ? "; near it: " : ", ") + near[i];
    complain(message);
    return WrongUsage;
}

} // namespace

CLI::App* addExplainCommand(CLI::App& app, ExplainRequest& request) {
    CLI::App* command =
        app.add_subcommand("explain", "show the working of a case: formulas, numbers, results");
    literal(command->add_option("CASE", request.source,
                                "case file or TABLE#ROW; - reads standard input"))
        ->required();
    literal(command->add_option(
        "QUANTITY", request.quantity,
        "only this quantity, named as by results, with all that it depends on;\n"
        "a name such as BarrierSF stands for all quantities that begin so"));
    command->add_flag("--list", request.list, "names of the quantities and what they are");
    command->add_option("--digits", request.digits, "significant digits of the numbers")
        ->check(CLI::Range(1, explain::MostDigits))
        ->capture_default_str();
    addRounding(*command, request.options);
    addUnits(*command, request.options);
    command->footer("The last two concern the figures of the report that stand beside the "
                    "quantities.\n\n"
                    "Example:\n  telvo-cli explain panel.TLV BarrierSF.retreat.first");
    return command;
}

int runExplain(const ExplainRequest& request) {
    CaseOutcome outcome = readCase(request.source, request.workbooks);
    runCase(outcome);
    tellNotes(outcome);
    if (!outcome.run) {
        complainOf(outcome);
        return outcome.status;
    }
    explain::Chapters chapters = explain::explain(*outcome.run, request.options, request.digits);
    if (!request.quantity.empty()) {
        explain::Chapters selected = explain::leadingTo(chapters, request.quantity);
        if (selected.empty()) return complainOfName(chapters, request.quantity);
        chapters = std::move(selected);
    }
    print(request.list ? explain::quantityList(chapters) : explain::workingText(chapters));
    return finishOutput();
}

} // namespace telvo::cli
