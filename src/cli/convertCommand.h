// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Console.h"

#include <string>

namespace CLI {
class App;
}

/// The command that turns a case into the other unit system.
namespace telvo::cli {

struct ConvertRequest {
    std::string source;
    std::string target;
    bool force = false;
};

/// Adds the command. The request has to outlive the parsing.
CLI::App* addConvert(CLI::App& app, ConvertRequest& request);
int runConvert(Console& console, const ConvertRequest& request);

} // namespace telvo::cli
