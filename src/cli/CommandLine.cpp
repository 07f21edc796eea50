// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"

#include "cli/arguments.h"
#include "cli/inputs.h"
#include "cli/outputs.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <numeric>
#include <optional>
#include <string_view>
#include <utility>

namespace telvo::cli {

namespace {

void addTarget(CLI::App& command, SaveRequest& request) {
    literal(command.add_option("CASE", request.source,
                               "case file, or TABLE#ROW; - reads standard input"))
        ->required();
    literal(
        command.add_option("-o,--output", request.target, "file to write; - is standard output"))
        ->required();
    command.add_flag("--force", request.force, "overwrite an existing file");
}

/// Letters that one word has to be changed in to become the other.
std::size_t distance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t changed = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

/// Names the command that is none, or the option before the command that is none. The parser would
/// only say that a command is missing.
std::optional<std::string> misspeltCommand(const CLI::App& app,
                                           const std::vector<std::string>& arguments) {
    if (arguments.empty()) return std::nullopt;
    const std::string& word = arguments.front();
    if (word.starts_with('-') && word != "-") {
        const std::string name = word.substr(0, word.find('='));
        if (name == "--" || app.get_option_no_throw(name)) return std::nullopt;
        return word + ": is no option; options follow the command, telvo-cli --help lists both";
    }
    const CLI::App* nearest = nullptr;
    std::size_t least = 3; // a slip of two letters
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        const std::size_t letters = distance(word, command->get_name());
        if (letters == 0) return std::nullopt;
        if (letters >= least) continue;
        least = letters;
        nearest = command;
    }
    if (nearest) return word + ": is no command; near it: " + nearest->get_name();
    return word + ": is no command; telvo-cli --help lists them";
}

/// What the parser says, with the command that it speaks of.
std::string usageMessage(const CLI::App& app, const CLI::ParseError& error) {
    std::string command = "telvo-cli";
    for (auto parsed = app.get_subcommands(); !parsed.empty();
         parsed = parsed.front()->get_subcommands())
        command += " " + parsed.front()->get_name();
    std::string message = withoutProtection(error.what());
    if (const std::string what = "The following argument"; message.starts_with(what)) {
        const auto colon = message.find(": ");
        message = message.substr(std::min(colon + 2, message.size())) + ": not expected here";
    }
    return message + "; " + command + " --help explains";
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
    addInputs(*reportCommand, m_report.inputs);
    reportCommand->add_option("--page", m_report.page, "only this page, 0 to 5")
        ->check(CLI::Range(0, telvo::report::LastReportPage));
    literal(reportCommand->add_option(
                "-o,--output", m_report.target,
                "write to this file, lines ended by CR LF, instead of the terminal"))
        ->option_text("FILE");
    reportCommand->add_flag(
        "--force", m_report.force,
        "overwrite a file that is no report; an older report is replaced anyway");
    addJobs(*reportCommand, m_report.jobs);
    addRounding(*reportCommand, m_report.options);
    addUnits(*reportCommand, m_report.options);
    reportCommand->footer("Example:\n  telvo-cli report panel.TLV --page 1");

    m_results.workbooks = m_workbooks;
    CLI::App* resultsCommand =
        m_app->add_subcommand("results", "print every computed quantity of each case");
    addInputs(*resultsCommand, m_results.inputs);
    resultsCommand->add_option("--format", m_results.format, "text, json or csv")
        ->check(CLI::IsMember({"text", "json", "csv"}))
        ->capture_default_str();
    resultsCommand->add_flag("--no-header", m_results.noHeader, "CSV without its first line");
    literal(resultsCommand->add_option("-o,--output", m_results.target,
                                       "write to this file instead of the terminal"))
        ->option_text("FILE");
    resultsCommand->add_flag("--force", m_results.force, "overwrite an existing file");
    addJobs(*resultsCommand, m_results.jobs);
    addRounding(*resultsCommand, m_results.options);
    resultsCommand->footer(
        "A file is written whole or not at all. A byte of a file name that is no "
        "UTF-8 reads \\xE4 in JSON\nand CSV.\n\n"
        "Example:\n  telvo-cli results *.TLV --format csv -o panels.csv");

    m_explained.workbooks = m_workbooks;
    CLI::App* explainCommand = addExplainCommand(*m_app, m_explained);

    m_plot.workbooks = m_workbooks;
    CLI::App* plotCommand = addPlotCommand(*m_app, m_plotter, m_plot);

    CLI::App* checkCommand =
        m_app->add_subcommand("check", "check the inputs of each case, one line per case");
    addInputs(*checkCommand, m_check.inputs);
    addJobs(*checkCommand, m_check.jobs);
    m_check.workbooks = m_workbooks;
    checkCommand->footer(
        "Prints OK or the message; with several cases the file stands before it.\n\n"
        "Example:\n  telvo-cli check panel.TLV");

    CLI::App* newCommand = m_app->add_subcommand("new", "write a new case with default values");
    literal(newCommand->add_option("FILE", m_made.target, "file to write; - is standard output"))
        ->required();
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

    m_table.workbooks = m_import.workbooks = m_workbooks;
    const TableCommands tableCommands = addTableCommands(*m_app, m_table, m_import);

    m_actions = {
        {reportCommand, [this] { return runReport(m_report); }},
        {resultsCommand, [this] { return runResults(m_results); }},
        {explainCommand, [this] { return runExplain(m_explained); }},
        {plotCommand, [this] { return runPlot(m_plot, m_plotter); }},
        {checkCommand, [this] { return runCheck(m_check); }},
        {newCommand, [this] { return runNew(m_made); }},
        {tableCommands.exporting, [this] { return runTableExport(m_table); }},
        {tableCommands.importing, [this] { return runTableImport(m_import); }},
        {tableCommands.making, [this] { return runTableTemplate(m_table); }},
        {convertCommand, [this] { return runConvert(m_converted); }},
        {saveCommand, [this] { return runSave(m_saved); }},
    };
}

CommandLine::~CommandLine() = default;

int CommandLine::run(int argc, char** argv) {
    std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    if (const auto misspelt = misspeltCommand(*m_app, arguments)) {
        complain(*misspelt);
        return WrongUsage;
    }
    protectNames(arguments);
    std::reverse(arguments.begin(), arguments.end()); // as the parser takes them
    try {
        m_app->parse(std::move(arguments));
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() != 0) {
            complain(usageMessage(*m_app, error));
            return WrongUsage;
        }
        m_app->exit(error); // help and version
        return finishOutput();
    }
    const auto chosen = std::find_if(m_actions.begin(), m_actions.end(),
                                     [](const Action& action) { return action.command->parsed(); });
    return chosen->act(); // one of them, or the parsing had failed
}

} // namespace telvo::cli
