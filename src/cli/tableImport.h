// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Console.h"

#include <string>

namespace CLI {
class App;
}

/// The command that takes a case table apart.
namespace telvo::cli {

struct TableImportRequest {
    std::string table; ///< or a row of it
    std::string folder;
    bool dryRun = false; ///< tells what would be made
};

/// Adds "import" to the commands of tables. The request has to outlive the parsing.
CLI::App* addTableImport(CLI::App& tables, TableImportRequest& request);

/// Writes a case file per row into a folder, which is made where it is missing. Nothing that is
/// there is replaced; a row whose case is there already makes no second file of it, so that an
/// import that was cut off can be run again.
int runTableImport(Console& console, const TableImportRequest& request);

} // namespace telvo::cli
