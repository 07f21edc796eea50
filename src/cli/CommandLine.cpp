// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"

#include "cli/chartCommand.h"
#include "cli/checkCommand.h"
#include "cli/compareCommand.h"
#include "cli/convertCommand.h"
#include "cli/explainCommand.h"
#include "cli/findCommand.h"
#include "cli/inputs.h"
#include "cli/newCommand.h"
#include "cli/plotCommand.h"
#include "cli/reportCommand.h"
#include "cli/resultsCommand.h"
#include "cli/saveCommand.h"
#include "cli/spelling.h"
#include "cli/studyCommand.h"
#include "cli/sweepCommand.h"
#include "cli/tableCommand.h"
#include "cli/tableExport.h"
#include "cli/tableImport.h"
#include "cli/tableTemplate.h"
#include "cli/tornadoCommand.h"
#include "cli/uncertaintyCommand.h"
#include "run/Run.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <optional>
#include <sstream>
#include <string_view>
#include <utility>

namespace telvo::cli {

namespace {

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
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
        names.push_back(command->get_name());
    if (std::find(names.begin(), names.end(), word) != names.end()) return std::nullopt;
    if (const auto near = nearest(word, names)) return word + ": is no command; near it: " + *near;
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

std::string versionText() {
    return "telvo-cli " TELVO_VERSION " (module build " + std::string(run::ModuleBuild) + ")";
}

CommandLine::CommandLine(Console& console)
    : m_console(console),
      m_app(std::make_unique<CLI::App>(
          "TELVO: stability of room-and-pillar retreat mining panels in coal.", "telvo-cli")) {
    m_app->allow_windows_style_options(false); // a name that begins with "/" is a file everywhere
    m_app->set_version_flag("--version", versionText());
    m_app->require_subcommand(1);
    m_app->footer(
        "Exit status: 0 all good, 1 a case was refused or could not be computed,\n"
        "2 wrong usage, 3 a file could not be read or written, 4 a study ran but found nothing\n"
        "that meets its criterion, or not as surely as was asked for.\n\n"
        "telvo-cli COMMAND --help explains a command.");
    // In the order in which --help lists them.
    add<ReportRequest>(*m_app, addReport, runReport);
    add<ResultsRequest>(*m_app, addResults, runResults);
    add<ExplainRequest>(*m_app, addExplain, runExplain);
    add<PlotRequest>(
        *m_app,
        [this](CLI::App& app, PlotRequest& request) {
            return addPlot(app, m_console.plotter(), request);
        },
        runPlot);
    add<CheckRequest>(*m_app, addCheck, runCheck);
    add<NewRequest>(*m_app, addNew, runNew);
    add<ConvertRequest>(*m_app, addConvert, runConvert);
    add<SaveRequest>(*m_app, addSave, runSave);
    add<FindRequest>(*m_app, addFind, runFind);
    add<SweepRequest>(*m_app, addSweep, runSweep);
    add<TornadoRequest>(*m_app, addTornado, runTornado);
    add<ChartRequest>(*m_app, addChart, runChart);
    add<UncertaintyCall>(*m_app, addUncertainty, runUncertainty);
    add<CompareRequest>(*m_app, addCompare, runCompare);
    CLI::App& studies = *addStudy(*m_app);
    add<StudyNewRequest>(studies, addStudyNew, runStudyNew);
    add<StudyCheckRequest>(studies, addStudyCheck, runStudyCheck);
    add<StudyRunRequest>(studies, addStudyRun, runStudyRun);
    add<StudyMergeRequest>(studies, addStudyMerge, runStudyMerge);
    add<StudyVerifyRequest>(studies, addStudyVerify, runStudyVerify);
    CLI::App& table = *addTable(*m_app);
    add<TableExportRequest>(table, addTableExport, runTableExport);
    add<TableTemplateRequest>(table, addTableTemplate, runTableTemplate);
    add<TableImportRequest>(table, addTableImport, runTableImport);
}

CommandLine::~CommandLine() = default;

template <typename Request, typename Add, typename Run>
void CommandLine::add(CLI::App& parent, Add addCommand, Run runCommand) {
    auto request = std::make_shared<Request>(); // the parser points into it
    const CLI::App* command = addCommand(parent, *request);
    m_actions.push_back(
        {command, [this, request, runCommand] { return runCommand(m_console, *request); }});
}

int CommandLine::run(int argc, char** argv) {
    std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    if (const auto misspelt = misspeltCommand(*m_app, arguments)) {
        m_console.complain(*misspelt);
        return WrongUsage;
    }
    protectNames(arguments);
    std::reverse(arguments.begin(), arguments.end()); // as the parser takes them
    try {
        m_app->parse(std::move(arguments));
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() != 0) {
            m_console.complain(usageMessage(*m_app, error));
            return WrongUsage;
        }
        std::ostringstream help, none; // and version
        m_app->exit(error, help, none);
        m_console.print(help.str());
        return m_console.finish();
    }
    const auto chosen = std::find_if(m_actions.begin(), m_actions.end(),
                                     [](const Action& action) { return action.command->parsed(); });
    return chosen->act(); // one of them, or the parsing had failed
}

} // namespace telvo::cli
