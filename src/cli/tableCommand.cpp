// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/tableCommand.h"

#include "cli/outputs.h"
#include "table/csvTable.h"

#include <CLI/CLI.hpp>

namespace telvo::cli {

namespace {

constexpr std::string_view WorkbookFileEnding = ".xlsx";

char separatorOf(const TableRequest& request) {
    if (request.separator.empty()) return endingOf(request.target) == ".tsv" ? '\t' : ',';
    if (request.separator == "comma") return ',';
    return request.separator == "semicolon" ? ';' : '\t';
}

int wrongUsage(const std::string& message) {
    complain(message);
    return WrongUsage;
}

/// Writes a table to its file, or text to standard output.
ExitStatus writeTable(const TableRequest& request, std::span<const project::ProjectCase> cases) {
    std::string bytes;
    if (endingOf(request.target) == WorkbookFileEnding) {
        auto written = request.workbooks.write(cases);
        if (!written) {
            complain(faultText(written.fault()));
            return FileTrouble;
        }
        bytes = std::move(*written);
    } else {
        auto written = table::writeCsv(cases, separatorOf(request));
        if (!written) {
            complain(faultText(written.fault()));
            return FileTrouble;
        }
        for (const std::string& note : written->notes)
            complain(request.target + ": " + note);
        bytes = std::move(written->bytes);
    }
    if (isStandardOutput(request.target)) {
        print(bytes);
        return finishOutput();
    }
    return writeOrComplain(request.target, bytes, existingFor(request.force));
}

} // namespace

TableCommands addTableCommands(CLI::App& app, TableRequest& request, ImportRequest& import) {
    CLI::App* command = app.add_subcommand("table", "keep many cases in one table, a row each");
    command->require_subcommand(1);
    command->footer(
        "A table is CSV (comma, semicolon or tab) or an XLSX workbook, known by what it "
        "holds. Its\ncolumns are the input fields, Title, Description and Units. report, "
        "results, check and\ntable export take tables, too: FILE is every row, FILE#7 the row that "
        "a spreadsheet numbers 7,\nand - a table from a pipe. explain, plot, convert and save take "
        "FILE#7.\n\nBlank cells and missing columns take the values of a new case, which is "
        "reported. Where\nAMZ or Arch is 1, a BreadthAMZ or ArchFactor that is blank or 0 "
        "is computed.");
    CLI::App* exporting = command->add_subcommand("export", "write cases into one table");
    addInputs(*exporting, request.inputs);
    literal(
        exporting->add_option("-o,--output", request.target,
                              "file to write: .csv, .tsv or .xlsx; - is CSV on standard output"))
        ->required();
    exporting
        ->add_option("--separator", request.separator,
                     "between the cells of CSV: comma, semicolon or tab")
        ->check(CLI::IsMember({"comma", "semicolon", "tab"}));
    exporting->add_flag("--force", request.force, "overwrite an existing table");
    exporting->add_flag("--partial", request.partial,
                        "with --force: also by a table that lacks cases which could not be read");
    exporting->footer("Example:\n  telvo-cli table export *.TLV -o panels.xlsx");

    CLI::App* making = command->add_subcommand(
        "template", "write a workbook with the headings, what they mean and a first row");
    literal(making->add_option("-o,--output", request.target, "file to write: .xlsx"))->required();
    making->add_flag("--force", request.force, "overwrite an existing file");
    making->footer("Example:\n  telvo-cli table template -o panels.xlsx");
    return {exporting, addTableImport(*command, import), making};
}

int runTableExport(const TableRequest& request) {
    const std::string ending = endingOf(request.target);
    const bool workbook = ending == WorkbookFileEnding;
    if (!isStandardOutput(request.target) && ending != ".csv" && ending != ".tsv" && !workbook)
        return wrongUsage(request.target + ": the file name has to end in .csv, .tsv or .xlsx");
    if (workbook && !request.separator.empty())
        return wrongUsage("--separator: a workbook has none");
    if (workbook && !request.workbooks.write) return wrongUsage(request.target + NoWorkbooks);
    ExitStatus status = AllGood;
    const auto names = namesOf(request.inputs, status);
    if (!names) return status;
    const bool toFile = !isStandardOutput(request.target);
    if (toFile && !mayWriteMade(request.target, request.force, *names)) return FileTrouble;
    std::vector<project::ProjectCase> cases;
    visitAll(*names, request.workbooks, [&](CaseOutcome& outcome) {
        raise(status, outcome.status);
        if (outcome.current)
            cases.push_back(std::move(*outcome.current));
        else
            complainOf(outcome);
    });
    if (cases.empty()) return status;
    if (toFile && status == FileTrouble && !request.partial && isNamed(request.target)) {
        complain(request.target + ": stays as it was, for not every case could be read; --partial "
                                  "replaces it all the same");
        return status;
    }
    raise(status, writeTable(request, cases));
    return status;
}

int runTableTemplate(const TableRequest& request) {
    if (endingOf(request.target) != WorkbookFileEnding)
        return wrongUsage(request.target + ": the file name has to end in .xlsx");
    if (!request.workbooks.makeTemplate) return wrongUsage(request.target + NoWorkbooks);
    if (!mayWriteMade(request.target, request.force, {})) return FileTrouble;
    const auto bytes = request.workbooks.makeTemplate();
    if (bytes) return writeOrComplain(request.target, *bytes, existingFor(request.force));
    complain(faultText(bytes.fault()));
    return FileTrouble;
}

} // namespace telvo::cli
