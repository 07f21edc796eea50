// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/cases.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

/// The commands of case tables: many cases in one file, one row each.
namespace telvo::cli {

struct TableRequest {
    std::vector<std::string> files; ///< what is exported, or the one table that is imported
    std::string target;             ///< file, or folder of an import
    std::string separator; ///< comma, semicolon or tab; empty: after the ending of the file
    bool force = false;
    Workbooks workbooks;
};

struct TableCommands {
    const CLI::App* exporting;
    const CLI::App* importing;
    const CLI::App* making; ///< a template
};

/// Adds "table export", "table import" and "table template".
TableCommands addTableCommands(CLI::App& app, TableRequest& request);

/// Writes the cases into one table. Cases that cannot be read are named and left out.
int runTableExport(const TableRequest& request);
/// Writes a case file per row into a folder, which is made where it is missing. Nothing that is
/// there is replaced.
int runTableImport(const TableRequest& request);
/// Writes the workbook to begin a table with.
int runTableTemplate(const TableRequest& request);

} // namespace telvo::cli
