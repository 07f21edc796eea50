// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/newCommand.h"

#include "cli/inputs.h"
#include "cli/outputs.h"
#include "project/units.h"

#include <CLI/CLI.hpp>

namespace telvo::cli {

CLI::App* addNew(CLI::App& app, NewRequest& request) {
    CLI::App* command = app.add_subcommand("new", "write a new case with default values");
    literal(command->add_option("FILE", request.target, "file to write; - is standard output"))
        ->required();
    command->add_option("--units", request.units, "english or metric")
        ->check(CLI::IsMember({"english", "metric"}))
        ->capture_default_str();
    command->add_flag("--force", request.force, "overwrite an existing file");
    command->footer("Example:\n  telvo-cli new panel.TLV --units metric");
    return command;
}

int runNew(Console& console, const NewRequest& request) {
    const auto units = request.units == "metric" ? project::Metric : project::English;
    return saveAs(console, project::newCase(units), request.target, request.force);
}

} // namespace telvo::cli
