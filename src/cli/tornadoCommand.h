// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/studyOptions.h"
#include "report/ReportWriter.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

/// The command that tells which inputs matter.
namespace telvo::cli {

struct TornadoRequest {
    Inputs inputs;
    std::string quantity;          ///< empty: the panel's factor of the last pass
    std::string range;             ///< "10%" of each input; empty: what is usual
    std::vector<std::string> vary; ///< "INPUT=LOW:HIGH"
    report::ReportOptions options;
    StudyTarget target;
};

/// Adds the command. The request has to outlive the parsing.
CLI::App* addTornado(CLI::App& app, TornadoRequest& request);
int runTornado(Console& console, const TornadoRequest& request);

} // namespace telvo::cli
