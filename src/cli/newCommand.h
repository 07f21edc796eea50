// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Console.h"

#include <string>

namespace CLI {
class App;
}

/// The command that begins a case.
namespace telvo::cli {

struct NewRequest {
    std::string target;
    std::string units = "english";
    bool force = false;
};

/// Adds the command. The request has to outlive the parsing.
CLI::App* addNew(CLI::App& app, NewRequest& request);
int runNew(Console& console, const NewRequest& request);

} // namespace telvo::cli
