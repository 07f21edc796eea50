// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/tableExport.h"

#include "cli/outputs.h"
#include "table/csvTable.h"

#include <CLI/CLI.hpp>

namespace telvo::cli {

namespace {

char separatorOf(const TableExportRequest& request) {
    if (request.separator.empty()) return endingOf(request.target) == ".tsv" ? '\t' : ',';
    if (request.separator == "comma") return ',';
    return request.separator == "semicolon" ? ';' : '\t';
}

/// Writes a table to its file, or text to standard output.
ExitStatus writeTable(Console& console, const TableExportRequest& request,
                      std::span<const project::ProjectCase> cases) {
    std::string bytes;
    if (endingOf(request.target) == WorkbookEnding) {
        auto written = console.workbooks().write(cases);
        if (!written) {
            console.complain(faultText(written.fault()));
            return FileTrouble;
        }
        bytes = std::move(*written);
    } else {
        auto written = table::writeCsv(cases, separatorOf(request));
        if (!written) {
            console.complain(faultText(written.fault()));
            return FileTrouble;
        }
        for (const std::string& note : written->notes)
            console.complain(request.target + ": " + note);
        bytes = std::move(written->bytes);
    }
    if (isStandardOutput(request.target)) {
        console.print(bytes);
        return console.finish();
    }
    return writeOrComplain(console, request.target, bytes, existingFor(request.force));
}

} // namespace

CLI::App* addTableExport(CLI::App& tables, TableExportRequest& request) {
    CLI::App* command = tables.add_subcommand("export", "write cases into one table");
    addInputs(*command, request.inputs);
    literal(command->add_option("-o,--output", request.target,
                                "file to write: .csv, .tsv or .xlsx; - is CSV on standard output"))
        ->required();
    command
        ->add_option("--separator", request.separator,
                     "between the cells of CSV: comma, semicolon or tab")
        ->check(CLI::IsMember({"comma", "semicolon", "tab"}));
    command->add_flag("--force", request.force, "overwrite an existing table");
    command->add_flag("--partial", request.partial,
                      "with --force: also by a table that lacks cases which could not be read");
    command->footer("Example:\n  telvo-cli table export *.TLV -o panels.xlsx");
    return command;
}

int runTableExport(Console& console, const TableExportRequest& request) {
    const std::string ending = endingOf(request.target);
    const bool workbook = ending == WorkbookEnding;
    if (!isStandardOutput(request.target) && ending != ".csv" && ending != ".tsv" && !workbook)
        return console.wrongUsage(request.target +
                                  ": the file name has to end in .csv, .tsv or .xlsx");
    if (workbook && !request.separator.empty())
        return console.wrongUsage("--separator: a workbook has none");
    if (workbook && !console.workbooks().write)
        return console.wrongUsage(request.target + NoWorkbooks);
    ExitStatus status = AllGood;
    const auto names = namesOf(console, request.inputs, status);
    if (!names) return status;
    const bool toFile = !isStandardOutput(request.target);
    if (toFile && !mayWriteMade(console, request.target, request.force, *names)) return FileTrouble;
    std::vector<project::ProjectCase> cases;
    visitAll(console, *names, [&](CaseOutcome& outcome) {
        raise(status, outcome.status);
        if (outcome.current)
            cases.push_back(std::move(*outcome.current));
        else
            complainOf(console, outcome);
    });
    if (cases.empty()) return status;
    if (toFile && status == FileTrouble && !request.partial && isNamed(request.target)) {
        console.complain(request.target +
                         ": stays as it was, for not every case could be read; --partial "
                         "replaces it all the same");
        return status;
    }
    raise(status, writeTable(console, request, cases));
    return status;
}

} // namespace telvo::cli
