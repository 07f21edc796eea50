// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Console.h"

#include <string>

namespace CLI {
class App;
}

/// The command that writes a case in the current form.
namespace telvo::cli {

struct SaveRequest {
    std::string source;
    std::string target;
    bool force = false;
};

/// Adds the command. The request has to outlive the parsing.
CLI::App* addSave(CLI::App& app, SaveRequest& request);
int runSave(Console& console, const SaveRequest& request);

} // namespace telvo::cli
