// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/tableTemplate.h"

#include "cli/inputs.h"
#include "cli/outputs.h"

#include <CLI/CLI.hpp>

namespace telvo::cli {

CLI::App* addTableTemplate(CLI::App& tables, TableTemplateRequest& request) {
    CLI::App* command = tables.add_subcommand(
        "template", "write a workbook with the headings, what they mean and a first row");
    literal(command->add_option("-o,--output", request.target, "file to write: .xlsx"))->required();
    command->add_flag("--force", request.force, "overwrite an existing file");
    command->footer("Example:\n  telvo-cli table template -o panels.xlsx");
    return command;
}

int runTableTemplate(Console& console, const TableTemplateRequest& request) {
    if (endingOf(request.target) != WorkbookEnding)
        return console.wrongUsage(request.target + ": the file name has to end in .xlsx");
    if (!console.workbooks().makeTemplate) return console.wrongUsage(request.target + NoWorkbooks);
    if (!mayWriteMade(console, request.target, request.force, {})) return FileTrouble;
    const auto bytes = console.workbooks().makeTemplate();
    if (bytes) return writeOrComplain(console, request.target, *bytes, existingFor(request.force));
    console.complain(faultText(bytes.fault()));
    return FileTrouble;
}

} // namespace telvo::cli
