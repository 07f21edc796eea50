// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/studyCommand.h"

#include "base/escapes.h"
#include "base/files.h"
#include "cli/outputs.h"
#include "cli/studyFiles.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <system_error>

namespace telvo::cli {

namespace {

namespace fs = std::filesystem;

/// Name of a case as a study in a folder has it.
std::string relativeName(const std::string& file, const std::string& target) {
    std::error_code error;
    const fs::path folder = isStandardOutput(target)
                                ? fs::current_path(error)
                                : fs::absolute(pathFromUtf8(target), error).parent_path();
    const fs::path relative = fs::absolute(pathFromUtf8(file), error)
                                  .lexically_normal()
                                  .lexically_relative(folder.lexically_normal());
    return utf8FromPath(relative.generic_string().empty() ? pathFromUtf8(file)
                                                          : fs::path(relative.generic_string()));
}

} // namespace

CLI::App* addStudy(CLI::App& app) {
    CLI::App* command = app.add_subcommand("study", "keep studies as files, run and verify them");
    command->require_subcommand(1);
    command->footer(
        "A study file, NAME.study, is text (TOML): the case, the kind of study and what is asked.\n"
        "study run writes the result and a record of the run, with which study verify computes\n"
        "it again on any machine.");
    return command;
}

CLI::App* addStudyNew(CLI::App& studies, StudyNewRequest& request) {
    CLI::App* command =
        studies.add_subcommand("new", "write a study to begin with, with values from a case");
    literal(command->add_option("CASE", request.cases,
                                "case file, or TABLE#ROW; for a comparison several"))
        ->required();
    command->add_option("--kind", request.kind, "what the study asks")
        ->check(CLI::IsMember({"tornado", "sweep", "find", "chart", "compare", "scenarios",
                               "uncertainty", "fragility"}))
        ->capture_default_str();
    literal(command->add_option("-o,--output", request.target,
                                "file to write: .study; - is standard output"))
        ->option_text("FILE")
        ->required();
    command->add_flag("--force", request.force, "overwrite an existing file");
    command->footer("Example:\n  telvo-cli study new panel.TLV --kind find -o panel.study");
    return command;
}

int runStudyNew(Console& console, const StudyNewRequest& request) {
    const bool toFile = !isStandardOutput(request.target);
    if (toFile && endingOf(request.target) != ".study")
        return console.wrongUsage(request.target + ": the file name has to end in .study");
    const bool compares = request.kind == "compare";
    if (compares != (request.cases.size() > 1))
        return console.wrongUsage(compares ? "a comparison needs two cases"
                                           : "a study has one case; only a comparison has more");
    for (const std::string& file : request.cases)
        if (file == "-")
            return console.wrongUsage("-: a study names its case by a file, not standard input");
    const CaseOutcome outcome = readCase(console, request.cases.front());
    if (!outcome.current) {
        complainOf(console, outcome);
        return outcome.status;
    }
    auto study = study::newStudy(request.kind, *outcome.current,
                                 relativeName(request.cases.front(), request.target));
    if (!study) return console.wrongUsage(faultText(study.fault()));
    study->comments = {"Run it with: telvo-cli study run " +
                       (toFile ? withoutFolder(request.target) : std::string("FILE"))};
    if (auto* compare = std::get_if<study::CompareSet>(&study->request)) {
        compare->with.clear();
        for (std::size_t i = 1; i < request.cases.size(); ++i)
            compare->with.push_back(relativeName(request.cases[i], request.target));
    }
    const std::string text = study::studyText(*study);
    if (const auto read = study::readStudyText(text, request.target); !read) {
        console.complain(faultText(read.fault())); // a name that no study can have
        return FileTrouble;
    }
    if (!toFile) {
        console.print(text);
        return console.finish();
    }
    if (!mayWriteMade(console, request.target, request.force, request.cases)) return FileTrouble;
    return writeOrComplain(console, request.target, text, existingFor(request.force));
}

CLI::App* addStudyCheck(CLI::App& studies, StudyCheckRequest& request) {
    CLI::App* command =
        studies.add_subcommand("check", "check studies and their cases, one line per study");
    literal(command->add_option("FILE", request.files, "study files"))->required();
    command->footer("Prints OK; what is wrong is named with its line on standard error.\n\n"
                    "Example:\n  telvo-cli study check *.study");
    return command;
}

int runStudyCheck(Console& console, const StudyCheckRequest& request) {
    ExitStatus status = AllGood;
    for (const std::string& file : request.files)
        for (const LoadedStudy& loaded : loadStudies(console, file, status)) {
            if (const auto fault = checkStudy(loaded)) {
                console.complain(loaded.name + ": " + faultText(*fault));
                raise(status, Refused);
                continue;
            }
            const bool named = request.files.size() > 1 || loaded.name != file;
            console.print((named ? forTerminal(loaded.name) + ": " : "") + "OK\n");
        }
    raise(status, console.finish());
    return status;
}

} // namespace telvo::cli
