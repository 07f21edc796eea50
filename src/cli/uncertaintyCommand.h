// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/inputs.h"
#include "cli/studyOptions.h"
#include "report/ReportWriter.h"

#include <cstdint>
#include <string>
#include <vector>

namespace CLI {
class App;
}

/// The command that tells how sure a result is where inputs scatter.
namespace telvo::cli {

struct UncertaintyCall {
    Inputs inputs;
    std::vector<std::string> vary;      ///< "INPUT", "INPUT=LOW:HIGH", "INPUT=SHAPE,NAME=VALUE"
    std::vector<std::string> correlate; ///< "INPUT,INPUT=RANK"
    std::vector<std::string> criteria;
    std::string over;  ///< "INPUT=50:150:5"
    std::string share; ///< "5%"
    std::string halfWidth;
    std::string method = "sobol";
    std::uint64_t samples = 131'072;
    std::size_t replicates = 16;
    std::uint64_t seed = 1;
    bool indices = false;
    std::string samplesFile;
    unsigned jobs = defaultJobs();
    report::ReportOptions options;
    StudyTarget target;
};

/// Adds the command. The request has to outlive the parsing.
CLI::App* addUncertainty(CLI::App& app, UncertaintyCall& request);
int runUncertainty(Console& console, const UncertaintyCall& request);

/// Writes samples as a table in CSV and says what goes wrong.
ExitStatus writeSamples(Console& console, const std::string& target,
                        const study::ResultTable& samples, bool force);

} // namespace telvo::cli
