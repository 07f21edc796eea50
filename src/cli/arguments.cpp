// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/arguments.h"

#include "cli/inputs.h"

#include <CLI/CLI.hpp>

#include <map>
#include <string>

namespace telvo::cli {

void addRounding(CLI::App& command, report::ReportOptions& options) {
    command
        .add_option("--round-sf,--RoundTELVOSF", options.RoundTELVOSF,
                    "rounding of stability factors (RoundTELVOSF): 0 two decimals, half to even; "
                    "2 two decimals, cut; 1 unchanged")
        ->check(CLI::Range(0, 2))
        ->capture_default_str();
}

void addUnits(CLI::App& command, report::ReportOptions& options) {
    const std::map<std::string, int> forceUnits = {{"tons", 1}, {"lbs", 0}};
    command
        .add_option("--force-units", options.OutputStrGradUnits,
                    "forces of English cases: tons (default) or lbs")
        ->transform(CLI::CheckedTransformer(forceUnits))
        ->option_text("tons|lbs");
    const std::map<std::string, int> stressUnits = {{"psi", 0}, {"psf", 1}};
    command
        .add_option("--stress-units", options.OutputStrUnits,
                    "stresses of English cases: psi (default) or psf")
        ->transform(CLI::CheckedTransformer(stressUnits))
        ->option_text("psi|psf");
}

void addSourceAndTarget(CLI::App& command, std::string& source, std::string& target, bool& force) {
    literal(command.add_option("CASE", source, "case file, or TABLE#ROW; - reads standard input"))
        ->required();
    literal(command.add_option("-o,--output", target, "file to write; - is standard output"))
        ->required();
    command.add_flag("--force", force, "overwrite an existing file");
}

} // namespace telvo::cli
