// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/tableCommand.h"

#include <CLI/CLI.hpp>

namespace telvo::cli {

CLI::App* addTable(CLI::App& app) {
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
    return command;
}

} // namespace telvo::cli
