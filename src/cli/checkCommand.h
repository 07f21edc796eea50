// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/inputs.h"

namespace CLI {
class App;
}

/// The command that checks inputs.
namespace telvo::cli {

struct CheckRequest {
    Inputs inputs;
    unsigned jobs = defaultJobs();
};

/// Adds the command. The request has to outlive the parsing.
CLI::App* addCheck(CLI::App& app, CheckRequest& request);
int runCheck(Console& console, const CheckRequest& request);

} // namespace telvo::cli
