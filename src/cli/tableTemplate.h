// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Console.h"

#include <string>

namespace CLI {
class App;
}

/// The command that begins a case table.
namespace telvo::cli {

struct TableTemplateRequest {
    std::string target;
    bool force = false;
};

/// Adds "template" to the commands of tables. The request has to outlive the parsing.
CLI::App* addTableTemplate(CLI::App& tables, TableTemplateRequest& request);

/// Writes the workbook to begin a table with.
int runTableTemplate(Console& console, const TableTemplateRequest& request);

} // namespace telvo::cli
