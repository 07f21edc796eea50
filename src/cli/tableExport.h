// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/inputs.h"

#include <string>

namespace CLI {
class App;
}

/// The command that writes a case table.
namespace telvo::cli {

struct TableExportRequest {
    Inputs inputs;
    std::string target;
    std::string separator; ///< comma, semicolon or tab; empty: after the ending of the file
    bool force = false;
    bool partial = false; ///< a table that lacks unreadable cases may replace an older one
};

/// Adds "export" to the commands of tables. The request has to outlive the parsing.
CLI::App* addTableExport(CLI::App& tables, TableExportRequest& request);

/// Writes the cases into one table. Cases that cannot be read are named and left out; a table that
/// lacks them replaces no older one unless that is asked for.
int runTableExport(Console& console, const TableExportRequest& request);

} // namespace telvo::cli
