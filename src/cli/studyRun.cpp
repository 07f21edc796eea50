// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/escapes.h"
#include "base/files.h"
#include "cli/outputs.h"
#include "cli/studyCommand.h"
#include "cli/studyFiles.h"
#include "cli/studyOptions.h"
#include "cli/studyRecord.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <set>
#include <system_error>

namespace telvo::cli {

namespace {

/// The result of a study in a folder: "NAME.study.csv". Only JSON needs another name, since the
/// record of the run has that ending.
std::string resultFile(const std::string& study, const std::string& folder,
                       const std::string& format) {
    auto name = pathFromUtf8(withoutFolder(study));
    if (name.extension() == ".study") name.replace_extension();
    const std::string ending = format == "json"   ? ".result.json"
                               : format == "text" ? ".study.txt"
                                                  : ".study." + format;
    return utf8FromPath(pathFromUtf8(folder) / (name += ending));
}

/// The record's file for a result of resultFile().
std::string recordBeside(const std::string& result, const std::string& format) {
    if (format != "json") return recordFileOf(result);
    return result.substr(0, result.size() - std::string_view(".result.json").size()) +
           ".study.json";
}

ExitStatus runInto(Console& console, const StudyRunRequest& request, const std::string& file,
                   const LoadedStudy& loaded, StudyPart part, Recorder& recorder) {
    const std::string format = request.format.empty() ? "csv" : request.format;
    const std::string result = resultFile(file, request.folder, format);
    const std::string record = recordBeside(result, format);
    for (const std::string& target : {result, record})
        if (!mayWriteMade(console, target, request.force, {file})) return FileTrouble;
    const StudyTarget target{format, result, request.force, false};
    const auto form = formOf(console, target);
    if (!form) return WrongUsage;
    const study::StudyOutput output = *part.output;
    if (const ExitStatus written = writeParts(console, target, *form, {std::move(part)});
        written != AllGood)
        return written;
    recorder.add(loaded.study, withEscapedBytes(withoutFolder(file)), loaded.cases, output.tally);
    const ExitStatus recorded =
        recorder.write(console, record, result, output.table, *form == StudyForm::Csv, request.jobs,
                       request.force);
    if (recorded == AllGood)
        console.print(forTerminal(file + " -> " + result) +
                      (output.headline.empty() ? "" : ": " + output.headline) + "\n");
    return recorded;
}

} // namespace

CLI::App* addStudyRun(CLI::App& studies, StudyRunRequest& request) {
    CLI::App* command = studies.add_subcommand("run", "run studies");
    literal(command->add_option("FILE", request.files, "study files"))->required();
    literal(command->add_option("-o,--output", request.folder,
                                "folder for the results, NAME.study.csv, and the records of the "
                                "runs, NAME.study.json; made where it is missing"))
        ->option_text("FOLDER");
    command
        ->add_option("--format", request.format,
                     "text, csv, json or xlsx; csv into a folder, text on the terminal if not "
                     "given")
        ->check(CLI::IsMember({"text", "csv", "json", "xlsx"}));
    command->add_flag("--force", request.force, "overwrite existing files");
    addJobs(*command, request.jobs);
    command->footer("A study that fails does not keep the others from running.\n\n"
                    "Example:\n  telvo-cli study run *.study -o results");
    return command;
}

int runStudyRun(Console& console, const StudyRunRequest& request) {
    const bool intoFolder = !request.folder.empty();
    if (!intoFolder && request.format == "xlsx")
        return console.wrongUsage("--format xlsx: workbooks need --output FOLDER");
    if (intoFolder) {
        std::set<std::string> names;
        for (const std::string& file : request.files)
            if (!names.insert(withoutFolder(file)).second)
                return console.wrongUsage(withoutFolder(file) +
                                          ": two studies of this name would go into one file");
        std::error_code error;
        std::filesystem::create_directories(pathFromUtf8(request.folder), error);
    }
    ExitStatus status = AllGood;
    std::vector<StudyPart> parts;
    for (const std::string& file : request.files) {
        StudyPart part{file, {}, {}};
        Recorder recorder;
        if (const auto loaded = loadStudy(console, file, status)) {
            auto made = study::runStudy(loaded->study, loaded->cases, request.jobs);
            if (made) {
                raise(status, statusOf(console, file, *made));
                part.output = std::move(*made);
                if (intoFolder) {
                    raise(status,
                          runInto(console, request, file, *loaded, std::move(part), recorder));
                    continue;
                }
            } else {
                part.message = faultText(made.fault());
                console.complain(file + ": " + part.message);
                raise(status, Refused);
            }
        } else {
            part.message = "could not be read";
        }
        parts.push_back(std::move(part));
    }
    if (intoFolder) {
        raise(status, console.finish());
        return status;
    }
    const StudyTarget target{request.format.empty() ? "text" : request.format, {}, false, false};
    const auto form = formOf(console, target);
    if (!form) return WrongUsage;
    raise(status, writeParts(console, target, *form, parts));
    return status;
}

CLI::App* addStudyVerify(CLI::App& studies, StudyVerifyRequest& request) {
    CLI::App* command = studies.add_subcommand(
        "verify", "run records again and tell whether the digits are the same");
    literal(command->add_option("RECORD", request.records, "records: NAME.study.json"))->required();
    addJobs(*command, request.jobs);
    command->footer("Where they are not the first cell that differs is named. Exit status 4: the "
                    "digits of a record\nare not the same.\n\n"
                    "Example:\n  telvo-cli study verify results/*.study.json");
    return command;
}

int runStudyVerify(Console& console, const StudyVerifyRequest& request) {
    ExitStatus status = AllGood;
    for (const std::string& file : request.records) {
        const auto bytes = readFile(file);
        const auto record =
            bytes ? study::readRecord(*bytes, file) : Result<study::RunRecord>(bytes.fault());
        if (!record) {
            console.complain(faultText(record.fault()));
            raise(status, FileTrouble);
            continue;
        }
        std::string exported;
        if (!record->file.empty())
            if (auto beside = readFile(utf8FromPath(pathFromUtf8(file).parent_path() /
                                                    pathFromUtf8(withoutFolder(record->file)))))
                exported = std::move(*beside);
        const auto verified = study::verify(*record, exported, request.jobs);
        if (!verified) {
            console.complain(file + ": " + faultText(verified.fault()));
            raise(status, Refused);
            continue;
        }
        const std::string name = forTerminal(file);
        if (verified->same) {
            console.print(name + ": the digits are the same, " + std::to_string(record->rows) +
                          (record->rows == 1 ? " row\n" : " rows\n"));
        } else {
            console.print(name + ": the digits are not the same; it was made by " +
                          forTerminal(record->program) + "; " + forTerminal(verified->difference) +
                          "\n");
            raise(status, AimMissed);
        }
    }
    raise(status, console.finish());
    return status;
}

} // namespace telvo::cli
