// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/cases.h"
#include "cli/inputs.h"
#include "cli/tableImport.h"

#include <string>

namespace CLI {
class App;
}

/// The commands of case tables: many cases in one file, one row each.
namespace telvo::cli {

struct TableRequest {
    Inputs inputs;
    std::string target;
    std::string separator; ///< comma, semicolon or tab; empty: after the ending of the file
    bool force = false;
    bool partial = false; ///< a table that lacks unreadable cases may replace an older one
    Workbooks workbooks;
};

struct TableCommands {
    const CLI::App* exporting;
    const CLI::App* importing;
    const CLI::App* making; ///< a template
};

/// Adds "table export", "table import" and "table template". The requests have to outlive the
/// parsing.
TableCommands addTableCommands(CLI::App& app, TableRequest& request, ImportRequest& import);

/// Writes the cases into one table. Cases that cannot be read are named and left out; a table that
/// lacks them replaces no older one unless that is asked for.
int runTableExport(const TableRequest& request);
/// Writes the workbook to begin a table with.
int runTableTemplate(const TableRequest& request);

} // namespace telvo::cli
