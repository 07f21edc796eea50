// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/saveCommand.h"

#include "cli/arguments.h"
#include "cli/cases.h"
#include "cli/outputs.h"

#include <CLI/CLI.hpp>

namespace telvo::cli {

CLI::App* addSave(CLI::App& app, SaveRequest& request) {
    CLI::App* command =
        app.add_subcommand("save", "read a case of any level and write the current one");
    addSourceAndTarget(*command, request.source, request.target, request.force);
    command->footer("Items that the older level lacks get the values of a new case.\n\n"
                    "Example:\n  telvo-cli save old.TLV -o new.TLV");
    return command;
}

int runSave(Console& console, const SaveRequest& request) {
    CaseOutcome outcome = readCase(console, request.source);
    if (!outcome.current) {
        complainOf(console, outcome);
        return outcome.status;
    }
    return saveAs(console, *outcome.current, request.target, request.force);
}

} // namespace telvo::cli
