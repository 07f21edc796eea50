// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/explainCommand.h"
#include "cli/plotCommand.h"
#include "cli/tableCommand.h"
#ifdef TELVO_DRAWS
#include "cli/ui/drawCase.h"
#endif
#ifdef TELVO_WORKBOOKS
#include "table/workbookReader.h"
#include "table/workbookWriter.h"
#endif

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#ifdef __linux__
#include <unistd.h>
#endif

namespace {

using namespace telvo::cli;

Plotter plotterOfThisBuild() {
#ifdef TELVO_DRAWS
    return desktopPlotter();
#else
    return {};
#endif
}

Workbooks workbooksOfThisBuild() {
#ifdef TELVO_WORKBOOKS
    return {telvo::table::readWorkbook, telvo::table::writeWorkbook, telvo::table::writeTemplate};
#else
    return {};
#endif
}

void addCases(CLI::App& command, std::vector<std::string>& files) {
    command
        .add_option("CASE", files,
                    "case files and case tables, FILE#ROW for one row; - reads standard input")
        ->required();
}

void addTarget(CLI::App& command, SaveRequest& request) {
    command.add_option("CASE", request.source, "case file, or TABLE#ROW; - reads standard input")
        ->required();
    command.add_option("-o,--output", request.target, "file to write; - is standard output")
        ->required();
    command.add_flag("--force", request.force, "overwrite an existing file");
}

int run(int argc, char** argv) {
    CLI::App app{"TELVO: stability of room-and-pillar retreat mining panels in coal.", "telvo-cli"};
    app.set_version_flag("--version", versionText());
    app.require_subcommand(1);
    app.footer("Exit status: 0 all good, 1 a case was refused or could not be computed,\n"
               "2 wrong usage, 3 a file could not be read or written.\n\n"
               "telvo-cli COMMAND --help explains a command.");

    const Workbooks workbooks = workbooksOfThisBuild();
    ReportRequest report;
    report.workbooks = workbooks;
    CLI::App* reportCommand =
        app.add_subcommand("report", "print the six-page report of each case");
    addCases(*reportCommand, report.files);
    reportCommand->add_option("--page", report.page, "only this page, 0 to 5")
        ->check(CLI::Range(0, telvo::report::LastReportPage));
    reportCommand->add_option("-o,--output", report.target,
                              "write to this file, lines ended by CR LF, instead of the terminal");
    addRounding(*reportCommand, report.options);
    addUnits(*reportCommand, report.options);
    reportCommand->footer("Example:\n  telvo-cli report panel.TLV --page 1");

    ResultsRequest results;
    results.workbooks = workbooks;
    CLI::App* resultsCommand =
        app.add_subcommand("results", "print every computed quantity of each case");
    addCases(*resultsCommand, results.files);
    resultsCommand->add_option("--format", results.format, "text, json or csv")
        ->check(CLI::IsMember({"text", "json", "csv"}))
        ->capture_default_str();
    addRounding(*resultsCommand, results.options);
    resultsCommand->footer("Example:\n  telvo-cli results *.TLV --format csv > panels.csv");

    ExplainRequest explained;
    explained.workbooks = workbooks;
    const CLI::App* explainCommand = addExplainCommand(app, explained);

    const Plotter plotter = plotterOfThisBuild();
    PlotRequest plot;
    plot.workbooks = workbooks;
    const CLI::App* plotCommand = addPlotCommand(app, plotter, plot);

    std::vector<std::string> checked;
    CLI::App* checkCommand =
        app.add_subcommand("check", "check the inputs of each case, one line per case");
    addCases(*checkCommand, checked);
    checkCommand->footer(
        "Prints OK or the message; with several cases the file stands before it.\n\n"
        "Example:\n  telvo-cli check panel.TLV");

    NewRequest made;
    CLI::App* newCommand = app.add_subcommand("new", "write a new case with default values");
    newCommand->add_option("FILE", made.target, "file to write")->required();
    newCommand->add_option("--units", made.units, "english or metric")
        ->check(CLI::IsMember({"english", "metric"}))
        ->capture_default_str();
    newCommand->add_flag("--force", made.force, "overwrite an existing file");
    newCommand->footer("Example:\n  telvo-cli new panel.TLV --units metric");

    SaveRequest converted;
    converted.workbooks = workbooks;
    CLI::App* convertCommand =
        app.add_subcommand("convert", "convert a case to the other unit system");
    addTarget(*convertCommand, converted);
    convertCommand->footer("Lengths, coal strength and unit weight are rounded to two decimals.\n\n"
                           "Example:\n  telvo-cli convert panel.TLV -o Metric_panel.TLV");

    SaveRequest saved;
    saved.workbooks = workbooks;
    CLI::App* saveCommand =
        app.add_subcommand("save", "read a case of any level and write the current one");
    addTarget(*saveCommand, saved);
    saveCommand->footer("Items that the older level lacks get the values of a new case.\n\n"
                        "Example:\n  telvo-cli save old.TLV -o new.TLV");

    TableRequest table;
    table.workbooks = workbooks;
    const TableCommands tableCommands = addTableCommands(app, table);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? finishOutput() : WrongUsage; // help and version end here
    }
    if (*reportCommand) return runReport(report);
    if (*resultsCommand) return runResults(results);
    if (*explainCommand) return runExplain(explained);
    if (*plotCommand) return runPlot(plot, plotter);
    if (*checkCommand) return runCheck(checked, workbooks);
    if (*newCommand) return runNew(made);
    if (*tableCommands.exporting) return runTableExport(table);
    if (*tableCommands.importing) return runTableImport(table);
    if (*tableCommands.making) return runTableTemplate(table);
    if (*convertCommand) return runConvert(converted);
    return runSave(saved);
}

/// Hands a command over to the program beside this one that draws, or that knows workbooks, where
/// there is one: the libraries for it cost more time than most commands take.
void callOtherProgram([[maybe_unused]] int argc, [[maybe_unused]] char** argv) {
#if !defined(TELVO_DRAWS) && !defined(TELVO_WORKBOOKS) && defined(__linux__)
    const bool draws = argc > 1 && std::string_view(argv[1]) == "plot";
    const bool workbooks = argc > 1 && std::any_of(argv + 1, argv + argc, namesWorkbook);
    if (!draws && !workbooks) return;
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error) return;
    const char* other = draws ? "telvo-cli-draw" : "telvo-cli-table";
    execv((program.parent_path() / other).c_str(), argv); // returns when there is none
#endif
}

} // namespace

int main(int argc, char** argv) {
    try {
        callOtherProgram(argc, argv);
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "telvo-cli: %s\n", error.what());
        return FileTrouble;
    }
}
