// SPDX-License-Identifier: GPL-3.0-or-later
//
// Writes what is installed beside telvo-cli from its own commands and options, so that nothing is left
// out: telvo-cli-pages man|bash|zsh|fish
// "man" is the part of the manual page that tells the commands; the others are shell completions.
#include "cli/CommandLine.h"
#ifdef TELVO_DRAWS
#include "cli/ui/drawCase.h"
#endif

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace telvo::cli;
using CommandPath = std::vector<std::string>; // "table", "export"

/// Every command that does something, with the path of words that leads to it.
void collect(const CLI::App& app, const CommandPath& path,
             std::vector<std::pair<CommandPath, const CLI::App*>>& commands) {
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        CommandPath below = path;
        below.push_back(command->get_name());
        commands.emplace_back(below, command);
        collect(*command, below, commands);
    }
}

std::string joined(const std::vector<std::string>& words, std::string_view separator) {
    std::string text;
    for (const std::string& word : words)
        text.append(text.empty() ? "" : separator).append(word);
    return text;
}

std::string replaced(std::string text, std::string_view what, std::string_view by) {
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
        text.replace(at, what.size(), by);
    return text;
}

std::vector<std::string> dashed(const CLI::Option& option) {
    std::vector<std::string> names;
    for (const std::string& name : option.get_snames())
        names.push_back("-" + name);
    for (const std::string& name : option.get_lnames())
        names.push_back("--" + name);
    return names;
}

bool takesValue(const CLI::Option& option) { return option.get_items_expected_max() > 0; }

/// The values that an option takes, where they are few: those of a list, or of a short range.
std::vector<std::string> valuesOf(const CLI::Option& option) {
    const std::string type = option.get_type_name(); // "TEXT:{english,metric}", "INT in [0 - 5]"
    std::vector<std::string> values;
    if (const auto open = type.find('{'); open != std::string::npos) {
        std::string list = type.substr(open + 1, type.find('}') - open - 1);
        for (std::size_t comma = 0; comma != std::string::npos;) {
            comma = list.find(',');
            values.push_back(list.substr(0, comma));
            values.back().erase(std::min(values.back().find("->"), values.back().size()));
            if (comma != std::string::npos) list.erase(0, comma + 1);
        }
        return values;
    }
    int low = 0, high = 0;
    const auto range = type.find("INT in [");
    if (range != std::string::npos &&
        std::sscanf(type.c_str() + range, "INT in [%d - %d]", &low, &high) == 2 && high - low < 10)
        for (int value = low; value <= high; ++value)
            values.push_back(std::to_string(value));
    return values;
}

std::vector<const CLI::Option*> optionsOf(const CLI::App& command) {
    return command.get_options([](const CLI::Option* option) { return option->nonpositional(); });
}

std::vector<std::string> namesBelow(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::App* below : command.get_subcommands([](const CLI::App*) { return true; }))
        names.push_back(below->get_name());
    return names;
}

/// Text as the formatter of manual pages takes it for what it is.
std::string roff(std::string text) {
    text = replaced(replaced(std::move(text), "\\", "\\e"), "-", "\\-");
    text = replaced(std::move(text), "\n.", "\n\\&.");
    return text.starts_with('.') || text.starts_with('\'') ? "\\&" + text : text;
}

/// What an option may be and what it is when it is not given, as a sentence of its own.
std::string limitsOf(const CLI::Option& option) {
    const std::string type = option.get_type_name(); // "INT in [1 - 17]"
    std::string text;
    const auto range = type.find(" in [");
    if (takesValue(option) && valuesOf(option).empty() && range != std::string::npos) {
        text = type.substr(range + 5, type.find(']', range) - range - 5);
        text = replaced(std::move(text), " - ", " to ");
    }
    if (const std::string value = option.get_default_str(); !value.empty())
        text += (text.empty() ? "default " : ", default ") + value;
    return text.empty() ? text : " (" + text + ")";
}

/// What follows the name of an option: its values, or what it takes in slanted type.
std::string argumentOf(const CLI::Option& option) {
    if (!takesValue(option)) return {};
    const auto values = valuesOf(option);
    if (!values.empty()) return " " + roff(joined(values, "|"));
    std::string argument = CLI::Formatter().make_option_opts(&option); // " TEXT REQUIRED"
    argument = argument.substr(1, argument.find_first_of(":=", 1) - 1);
    argument = replaced(std::move(argument), " REQUIRED", "");
    if (argument == "TEXT") argument = "FILE";
    return " \\fI" + roff(argument == "INT" ? "NUMBER" : argument) + "\\fR";
}

void printMan(const CLI::App& app) {
    std::vector<std::pair<CommandPath, const CLI::App*>> commands;
    collect(app, {}, commands);
    const CLI::Formatter formatter;
    for (const auto& [path, command] : commands) {
        std::string usage;
        for (const CLI::Option* option :
             command->get_options([](const CLI::Option* o) { return o->get_positional(); }))
            usage += " " + formatter.make_option_usage(option);
        std::printf(".SS \"telvo\\-cli %s%s\"\n%s.\n", roff(joined(path, " ")).c_str(),
                    roff(usage).c_str(), roff(command->get_description()).c_str());
        for (const CLI::Option* option : command->get_options()) {
            const bool positional = !option->nonpositional();
            const std::string name = positional ? option->get_name(true) : joined(dashed(*option), ", ");
            if (name == "-h, --help") continue;
            std::printf(".TP\n\\fB%s\\fR%s\n%s.\n", roff(name).c_str(),
                        positional ? "" : argumentOf(*option).c_str(),
                        roff(option->get_description() + limitsOf(*option)).c_str());
        }
        if (const std::string footer = command->get_footer(); !footer.empty())
            std::printf(".PP\n.nf\n%s\n.fi\n", roff(footer).c_str());
    }
}

/// One line of a bash `case`: what fits after the words of the path.
void printBash(const CLI::App& app) {
    std::vector<std::pair<CommandPath, const CLI::App*>> commands;
    collect(app, {}, commands);
    commands.insert(commands.begin(), {{}, &app});
    std::printf("%s", "# Completion of telvo-cli for bash.\n"
                      "_telvo_cli() {\n"
                      "    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}\n"
                      "    local path= below= options= values= given=() i\n"
                      "    for ((i = 1; i < COMP_CWORD; i++)); do\n"
                      "        case \"$path ${COMP_WORDS[i]}\" in\n");
    std::string known, taking;
    for (const auto& [path, command] : commands)
        for (const CLI::Option* option : optionsOf(*command))
            if (takesValue(*option))
                for (const std::string& name : dashed(*option))
                    if (taking.find("' " + name + "'") == std::string::npos)
                        taking += (taking.empty() ? "*'" : " | *'") + (" " + name) + "'";
    for (const auto& [path, command] : commands)
        if (!path.empty()) known += (known.empty() ? "'" : " | '") + (" " + joined(path, " ")) + "'";
    std::printf("        %s) path+=\" ${COMP_WORDS[i]}\" ;;\n"
                "        %s) i=$((i + 1)) ;;\n"
                "        *' '-*) ;;\n"
                "        *) given+=(\"${COMP_WORDS[i]}\") ;;\n"
                "        esac\n    done\n    case \"$path\" in\n",
                known.c_str(), taking.c_str());
    for (const auto& [path, command] : commands) {
        std::vector<std::string> options;
        std::string values;
        for (const CLI::Option* option : optionsOf(*command)) {
            const auto names = dashed(*option);
            options.insert(options.end(), names.begin(), names.end());
            if (takesValue(*option))
                values += "        " + joined(names, " | ") + ") values='" +
                          joined(valuesOf(*option), " ") + "' options= below= ;;\n";
        }
        const std::string words = joined(path, " ");
        std::printf("    '%s')\n        below='%s' options='%s'\n",
                    words.empty() ? "" : (" " + words).c_str(),
                    joined(namesBelow(*command), " ").c_str(), joined(options, " ").c_str());
        if (words == "explain")
            std::printf("%s", "        # The quantities of the case that is named already.\n"
                              "        if [ ${#given[@]} -eq 1 ] && [[ $current != -* ]]; then\n"
                              "            below=$(telvo-cli explain \"${given[0]}\" --list 2> /dev/null | cut -d ' ' -f 1)\n"
                              "        fi\n");
        if (!values.empty()) std::printf("        case \"$previous\" in\n%s        esac\n", values.c_str());
        std::printf("        ;;\n");
    }
    std::printf("%s", "    esac\n"
                      "    [[ $current == -* ]] && below=\n"
                      "    [[ $current == -* ]] || options=\n"
                      "    # Nothing that fits leaves the word to the names of files.\n"
                      "    mapfile -t COMPREPLY < <(compgen -W \"$below $options $values\" -- \"$current\")\n"
                      "}\n"
                      "complete -o bashdefault -o default -F _telvo_cli telvo-cli\n");
}

void printFish(const CLI::App& app) {
    std::vector<std::pair<CommandPath, const CLI::App*>> commands;
    collect(app, {}, commands);
    std::printf("# Completion of telvo-cli for fish.\n");
    commands.insert(commands.begin(), {{}, &app});
    const auto quoted = [](const std::string& text) { return "'" + replaced(text, "'", "\\'") + "'"; };
    for (const auto& [path, command] : commands) {
        std::string here = path.empty() ? "__fish_use_subcommand" : "";
        for (const std::string& word : path)
            here += (here.empty() ? "" : "; and ") + ("__fish_seen_subcommand_from " + word);
        const auto below = namesBelow(*command);
        if (!below.empty() && !path.empty())
            here += "; and not __fish_seen_subcommand_from " + joined(below, " ");
        const std::string line = "complete -c telvo-cli -n " + quoted(here);
        for (const std::string& name : below)
            std::printf("%s -f -a %s -d %s\n", line.c_str(), name.c_str(),
                        quoted(command->get_subcommand(name)->get_description()).c_str());
        for (const CLI::Option* option : optionsOf(*command)) {
            std::string names;
            for (const std::string& name : option->get_snames())
                names += " -s " + name;
            for (const std::string& name : option->get_lnames())
                names += " -l " + name;
            const auto values = valuesOf(*option);
            if (!values.empty())
                names += " -x -a " + quoted(joined(values, " "));
            else if (takesValue(*option))
                names += " -r";
            std::printf("%s%s -d %s\n", line.c_str(), names.c_str(),
                        quoted(option->get_description()).c_str());
        }
    }
}

void printZsh(const CLI::App& app) {
    // Square brackets, colons and quotes mean something to _arguments.
    const auto plain = [](std::string text) {
        for (const char c : {'[', ']', ':'})
            text = replaced(std::move(text), std::string(1, c), std::string("\\") + c);
        return replaced(std::move(text), "'", "'\\''");
    };
    const auto function = [](const CommandPath& path) {
        return path.empty() ? std::string("_telvo-cli") : "_telvo-cli-" + joined(path, "-");
    };
    std::vector<std::pair<CommandPath, const CLI::App*>> commands;
    collect(app, {}, commands);
    commands.insert(commands.begin(), {{}, &app});
    std::printf("#compdef telvo-cli\n# Completion of telvo-cli for zsh.\n");
    for (const auto& [path, command] : commands) {
        std::printf("%s() {\n    local line state\n    _arguments -C", function(path).c_str());
        for (const CLI::Option* option : optionsOf(*command))
            for (const std::string& name : dashed(*option)) {
                std::string value;
                if (takesValue(*option)) {
                    const auto values = valuesOf(*option);
                    value = values.empty() ? ":value:_files" : ":value:(" + joined(values, " ") + ")";
                }
                std::printf(" \\\n        '%s[%s]%s'", name.c_str(),
                            plain(option->get_description()).c_str(), value.c_str());
            }
        const auto below = namesBelow(*command);
        if (below.empty()) {
            std::printf(" \\\n        '*:file:_files'\n}\n");
            continue;
        }
        std::printf(" \\\n        '1:command:((");
        for (const std::string& name : below)
            std::printf(" %s\\:\"%s\"", name.c_str(),
                        plain(command->get_subcommand(name)->get_description()).c_str());
        std::printf("))' \\\n        '*::argument:->arguments'\n    [ \"$state\" != arguments ] || "
                    "case ${line[1]} in\n");
        for (const std::string& name : below) {
            CommandPath deeper = path;
            deeper.push_back(name);
            std::printf("    %s) %s ;;\n", name.c_str(), function(deeper).c_str());
        }
        std::printf("    esac\n}\n");
    }
    std::printf("_telvo-cli \"$@\"\n");
}

} // namespace

int main(int argc, char** argv) {
    Plotter plotter;
#ifdef TELVO_DRAWS
    plotter = desktopPlotter();
#endif
    Console console(stdin, stdout, stderr, {}, plotter);
    const CommandLine commandLine(console);
    const std::string_view wanted = argc == 2 ? argv[1] : "";
    if (wanted == "man")
        printMan(commandLine.app());
    else if (wanted == "bash")
        printBash(commandLine.app());
    else if (wanted == "zsh")
        printZsh(commandLine.app());
    else if (wanted == "fish")
        printFish(commandLine.app());
    else
        return WrongUsage;
    return AllGood;
}
