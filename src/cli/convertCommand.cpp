// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/convertCommand.h"

#include "cli/arguments.h"
#include "cli/cases.h"
#include "cli/outputs.h"
#include "project/units.h"

#include <CLI/CLI.hpp>

namespace telvo::cli {

CLI::App* addConvert(CLI::App& app, ConvertRequest& request) {
    CLI::App* command = app.add_subcommand("convert", "convert a case to the other unit system");
    addSourceAndTarget(*command, request.source, request.target, request.force);
    command->footer("Lengths, coal strength and unit weight are rounded to two decimals.\n\n"
                    "Example:\n  telvo-cli convert panel.TLV -o Metric_panel.TLV");
    return command;
}

int runConvert(Console& console, const ConvertRequest& request) {
    CaseOutcome outcome = readCase(console, request.source);
    if (!outcome.current) {
        complainOf(console, outcome);
        return outcome.status;
    }
    project::ProjectCase converted = *outcome.current;
    if (const Status done = project::convertCase(converted); !done) {
        console.complain(outcome.file + ": " + faultText(done.fault()));
        return Refused;
    }
    const int status = saveAs(console, converted, request.target, request.force);
    const auto remark = project::archFactorRemark(*outcome.current, converted);
    if (status == AllGood && remark) console.complain(outcome.file + ": " + *remark);
    return status;
}

} // namespace telvo::cli
