// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"

#include "cli/arguments.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <utility>

namespace telvo::cli {

namespace {

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

} // namespace

CommandLine::CommandLine(Workbooks workbooks, Plotter plotter)
    : m_app(std::make_unique<CLI::App>(
          "TELVO: stability of room-and-pillar retreat mining panels in coal.", "telvo-cli")),
      m_workbooks(std::move(workbooks)), m_plotter(std::move(plotter)) {
    m_app->allow_windows_style_options(false); // a name that begins with "/" is a file everywhere
    m_app->set_version_flag("--version", versionText());
    m_app->require_subcommand(1);
    m_app->footer("Exit status: 0 all good, 1 a case was refused or could not be computed,\n"
                  "2 wrong usage, 3 a file could not be read or written.\n\n"
                  "telvo-cli COMMAND --help explains a command.");

    m_report.workbooks = m_workbooks;
    CLI::App* reportCommand =
        m_app->add_subcommand("report", "print the six-page report of each case");
    addCases(*reportCommand, m_report.files);
    reportCommand->add_option("--page", m_report.page, "only this page, 0 to 5")
        ->check(CLI::Range(0, telvo::report::LastReportPage));
    reportCommand->add_option("-o,--output", m_report.target,
                              "write to this file, lines ended by CR LF, instead of the terminal");
    addRounding(*reportCommand, m_report.options);
    addUnits(*reportCommand, m_report.options);
    reportCommand->footer("Example:\n  telvo-cli report panel.TLV --page 1");

    m_results.workbooks = m_workbooks;
    CLI::App* resultsCommand =
        m_app->add_subcommand("results", "print every computed quantity of each case");
    addCases(*resultsCommand, m_results.files);
    resultsCommand->add_option("--format", m_results.format, "text, json or csv")
        ->check(CLI::IsMember({"text", "json", "csv"}))
        ->capture_default_str();
    addRounding(*resultsCommand, m_results.options);
    resultsCommand->footer("Example:\n  telvo-cli results *.TLV --format csv > panels.csv");

    m_explained.workbooks = m_workbooks;
    CLI::App* explainCommand = addExplainCommand(*m_app, m_explained);

    m_plot.workbooks = m_workbooks;
    CLI::App* plotCommand = addPlotCommand(*m_app, m_plotter, m_plot);

    CLI::App* checkCommand =
        m_app->add_subcommand("check", "check the inputs of each case, one line per case");
    addCases(*checkCommand, m_checked);
    checkCommand->footer(
        "Prints OK or the message; with several cases the file stands before it.\n\n"
        "Example:\n  telvo-cli check panel.TLV");

    CLI::App* newCommand = m_app->add_subcommand("new", "write a new case with default values");
    newCommand->add_option("FILE", m_made.target, "file to write")->required();
    newCommand->add_option("--units", m_made.units, "english or metric")
        ->check(CLI::IsMember({"english", "metric"}))
        ->capture_default_str();
    newCommand->add_flag("--force", m_made.force, "overwrite an existing file");
    newCommand->footer("Example:\n  telvo-cli new panel.TLV --units metric");

    m_converted.workbooks = m_workbooks;
    CLI::App* convertCommand =
        m_app->add_subcommand("convert", "convert a case to the other unit system");
    addTarget(*convertCommand, m_converted);
    convertCommand->footer("Lengths, coal strength and unit weight are rounded to two decimals.\n\n"
                           "Example:\n  telvo-cli convert panel.TLV -o Metric_panel.TLV");

    m_saved.workbooks = m_workbooks;
    CLI::App* saveCommand =
        m_app->add_subcommand("save", "read a case of any level and write the current one");
    addTarget(*saveCommand, m_saved);
    saveCommand->footer("Items that the older level lacks get the values of a new case.\n\n"
                        "Example:\n  telvo-cli save old.TLV -o new.TLV");

    m_table.workbooks = m_workbooks;
    const TableCommands tableCommands = addTableCommands(*m_app, m_table);

    m_actions = {
        {reportCommand, [this] { return runReport(m_report); }},
        {resultsCommand, [this] { return runResults(m_results); }},
        {explainCommand, [this] { return runExplain(m_explained); }},
        {plotCommand, [this] { return runPlot(m_plot, m_plotter); }},
        {checkCommand, [this] { return runCheck(m_checked, m_workbooks); }},
        {newCommand, [this] { return runNew(m_made); }},
        {tableCommands.exporting, [this] { return runTableExport(m_table); }},
        {tableCommands.importing, [this] { return runTableImport(m_table); }},
        {tableCommands.making, [this] { return runTableTemplate(m_table); }},
        {convertCommand, [this] { return runConvert(m_converted); }},
        {saveCommand, [this] { return runSave(m_saved); }},
    };
}

CommandLine::~CommandLine() = default;

int CommandLine::run(int argc, char** argv) {
    try {
        m_app->parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return m_app->exit(error) == 0 ? finishOutput() : WrongUsage; // help and version end here
    }
    const auto chosen = std::find_if(m_actions.begin(), m_actions.end(),
                                     [](const Action& action) { return action.command->parsed(); });
    return chosen->act(); // one of them, or the parsing had failed
}

} // namespace telvo::cli
