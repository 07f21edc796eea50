// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace CLI {
class App;
}

/// The commands of case tables: many cases in one file, one row each.
namespace telvo::cli {

/// Adds the command that the commands of tables stand below.
CLI::App* addTable(CLI::App& app);

} // namespace telvo::cli
