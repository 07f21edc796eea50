// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Console.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace telvo::cli {

std::string versionText();

/// The commands of telvo-cli with their arguments, help texts and actions. None reads or writes the
/// user's settings: the same call gives everybody the same answer.
class CommandLine {
  public:
    explicit CommandLine(Console& console);
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

    template <typename Request, typename Add, typename Run>
    void add(CLI::App& parent, Add addCommand, Run runCommand);

    Console& m_console;
    std::unique_ptr<CLI::App> m_app;
    std::vector<Action> m_actions;
};

} // namespace telvo::cli
