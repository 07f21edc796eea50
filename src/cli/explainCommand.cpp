// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/explainCommand.h"

#include "cli/arguments.h"
#include "cli/inputs.h"
#include "cli/outputs.h"
#include "explain/workingSheet.h"
#include "explain/workingText.h"

#include <CLI/CLI.hpp>

namespace telvo::cli {

namespace {

int complainOfName(Console& console, const explain::Chapters& chapters, const std::string& name) {
    std::string message = "no quantity is called " + name;
    const std::vector<std::string> near = explain::nearMatches(chapters, name);
    if (near.empty()) message += "; --list tells the names";
    for (std::size_t i = 0; i < near.size(); ++i)
        message += (i == 0 ? "; near it: " : ", ") + near[i];
    return console.wrongUsage(message);
}

/// What stands against writing the workbook that was asked for.
int checkTarget(Console& console, const ExplainRequest& request) {
    if (endingOf(request.target) != WorkbookEnding)
        return console.wrongUsage(request.target + ": the file name has to end in .xlsx");
    if (!request.quantity.empty() || request.list)
        return console.wrongUsage("--output: a workbook always has all quantities");
    if (!console.workbooks().writeSheets) return console.wrongUsage(request.target + NoWorkbooks);
    return mayWriteMade(console, request.target, request.force, {request.source}) ? AllGood
                                                                                  : FileTrouble;
}

int writeWorkbook(Console& console, const ExplainRequest& request, const CaseOutcome& outcome) {
    const explain::WorkingSheets working =
        explain::workingSheets(*outcome.run, request.options, "TELVO " TELVO_VERSION);
    const auto bytes = console.workbooks().writeSheets(working.sheets);
    if (bytes) return writeOrComplain(console, request.target, *bytes, existingFor(request.force));
    console.complain(faultText(bytes.fault()));
    return FileTrouble;
}

} // namespace

CLI::App* addExplain(CLI::App& app, ExplainRequest& request) {
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
    literal(command->add_option("-o,--output", request.target,
                                "write a workbook that computes instead: .xlsx"));
    command->add_flag("--force", request.force, "overwrite an existing workbook");
    addRounding(*command, request.options);
    addUnits(*command, request.options);
    command->footer("The last two concern the figures of the report that stand beside the "
                    "quantities.\n\n"
                    "Examples:\n  telvo-cli explain panel.TLV BarrierSF.retreat.first\n"
                    "  telvo-cli explain panel.TLV -o working.xlsx");
    return command;
}

int runExplain(Console& console, const ExplainRequest& request) {
    if (!request.target.empty())
        if (const int status = checkTarget(console, request); status != AllGood) return status;
    CaseOutcome outcome = readCase(console, request.source);
    runCase(outcome);
    tellNotes(console, outcome);
    if (!outcome.run) {
        complainOf(console, outcome);
        return outcome.status;
    }
    if (!request.target.empty()) return writeWorkbook(console, request, outcome);
    explain::Chapters chapters = explain::explain(*outcome.run, request.options, request.digits);
    if (!request.quantity.empty()) {
        explain::Chapters selected = explain::leadingTo(chapters, request.quantity);
        if (selected.empty()) return complainOfName(console, chapters, request.quantity);
        chapters = std::move(selected);
    }
    console.print(request.list ? explain::quantityList(chapters) : explain::workingText(chapters));
    return console.finish();
}

} // namespace telvo::cli
