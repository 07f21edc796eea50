// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/commands.h"
#include "cli/explainCommand.h"
#include "cli/plotCommand.h"
#include "cli/tableCommand.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace telvo::cli {

/// The commands of telvo-cli with their arguments, help texts and actions.
class CommandLine {
  public:
    /// Given: what this program can do besides text
    CommandLine(Workbooks workbooks, Plotter plotter);
    ~CommandLine();
    CommandLine(const CommandLine&) = delete; // the parser points into it
    CommandLine& operator=(const CommandLine&) = delete;

    /// Reads the arguments and does what they ask for. Returned: the exit status.
    int run(int argc, char** argv);

    /// The commands and options, for those who document them.
    const CLI::App& app() const { return *m_app; }

  private:
    struct Action {
        const CLI::App* command;
        std::function<int()> act;
    };

    std::unique_ptr<CLI::App> m_app;
    Workbooks m_workbooks;
    Plotter m_plotter;
    ReportRequest m_report;
    ResultsRequest m_results;
    ExplainRequest m_explained;
    PlotRequest m_plot;
    CheckRequest m_check;
    NewRequest m_made;
    SaveRequest m_converted, m_saved;
    TableRequest m_table;
    ImportRequest m_import;
    std::vector<Action> m_actions;
};

} // namespace telvo::cli
