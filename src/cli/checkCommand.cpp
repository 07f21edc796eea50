// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/checkCommand.h"

#include "base/escapes.h"
#include "project/checks.h"
#include "run/caseRun.h"

#include <CLI/CLI.hpp>

#include <string>

namespace telvo::cli {

CLI::App* addCheck(CLI::App& app, CheckRequest& request) {
    CLI::App* command =
        app.add_subcommand("check", "check the inputs of each case, one line per case");
    addInputs(*command, request.inputs);
    addJobs(*command, request.jobs);
    command->footer("Prints OK or the message; with several cases the file stands before it.\n\n"
                    "Example:\n  telvo-cli check panel.TLV");
    return command;
}

int runCheck(Console& console, const CheckRequest& request) {
    ExitStatus status = AllGood;
    const auto names = namesOf(console, request.inputs, status);
    if (!names) return status;
    const auto make = [&](CaseOutcome& outcome) {
        Made made;
        made.said = outcome.remarks;
        made.status = outcome.status;
        std::string message = outcome.message;
        if (outcome.current) {
            for (const std::string& note : run::recordNotes(*outcome.current))
                made.said.push_back(outcome.file + ": " + note);
            if (const auto refused = project::checkBeforeAnalysis(outcome.current->Input)) {
                message = refused->message;
                raise(made.status, Refused);
            }
        }
        const bool alone = names->size() == 1 && outcome.file == names->front();
        const std::string prefix = !alone && outcome.current ? outcome.file + ": " : std::string();
        made.text = forTerminal(prefix + (message.empty() ? "OK" : message)) + "\n";
        return made;
    };
    makeInOrder(console, *names, request.jobs, make, [&](const Made& made) {
        raise(status, made.status);
        console.print(made.text);
    });
    raise(status, console.finish());
    return status;
}

} // namespace telvo::cli
