// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/escapes.h"
#include "base/files.h"
#include "base/numbers.h"
#include "cli/outputs.h"
#include "cli/studyCommand.h"
#include "cli/studyFiles.h"
#include "cli/studyOptions.h"
#include "cli/studyRecord.h"
#include "cli/uncertaintyCommand.h"
#include "run/Run.h"
#include "study/file/SamplePart.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <set>
#include <system_error>

namespace telvo::cli {

namespace {

/// Name of a study without folder and ending.
std::filesystem::path bareName(const std::string& study) {
    auto name = pathFromUtf8(withoutFolder(study));
    if (name.extension() == ".study") name.replace_extension();
    return name;
}

/// The result of a study in a folder: "NAME.study.csv". Only JSON needs another name, since the
/// record of the run has that ending.
std::string resultFile(const std::string& study, const std::string& folder,
                       const std::string& format) {
    auto name = bareName(study);
    const std::string ending = format == "json"   ? ".result.json"
                               : format == "text" ? ".study.txt"
                                                  : ".study." + format;
    return utf8FromPath(pathFromUtf8(folder) / (name += ending));
}

/// The record's file for a result of resultFile().
std::string recordBeside(const std::string& result, const std::string& format) {
    if (format != "json") return study::recordFileOf(result);
    return result.substr(0, result.size() - std::string_view(".result.json").size()) +
           ".study.json";
}

/// Where results of studies go.
struct StudyFolder {
    const std::string& folder;
    const std::string& format;
    bool force;
    unsigned threads;
    PictureOptions picture = {};
};

ExitStatus runInto(Console& console, const StudyFolder& into, const LoadedStudy& loaded,
                   StudyPart part, study::Recorder& recorder) {
    const std::string& file = loaded.name;
    const std::string format = into.format.empty() ? "csv" : into.format;
    const std::string result = resultFile(file, into.folder, format);
    const std::string record = recordBeside(result, format);
    for (const std::string& target : {result, record})
        if (!mayWriteMade(console, target, into.force, {file})) return FileTrouble;
    StudyTarget target{format, result, into.force, false, into.picture};
    const auto form = formOf(console, target);
    if (!form) return WrongUsage;
    target.look = study::lookOf(loaded.study.view);
    const study::StudyOutput output = *part.output;
    study::TableDigits digits;
    if (const ExitStatus written =
            writeParts(console, target, *form, {std::move(part)}, {}, &digits);
        written != AllGood)
        return written;
    recorder.add(loaded.study, withEscapedBytes(withoutFolder(file)), loaded.cases, output.tally);
    const ExitStatus recorded =
        writeRecord(console, recorder, record,
                    {result, &output.table, *form == StudyForm::Csv ? &digits : nullptr,
                     into.threads, into.force});
    if (recorded == AllGood)
        console.print(forTerminal(file + " -> " + result) +
                      (output.headline.empty() ? "" : ": " + output.headline) + "\n");
    return recorded;
}

/// Writes the samples of one part of a study into the folder.
ExitStatus runPart(Console& console, const StudyRunRequest& request, const LoadedStudy& loaded,
                   const study::Part& part) {
    const std::string& file = loaded.name;
    const project::ProjectCase& base = loaded.cases.front().second;
    auto samples = study::samplesOfPart(loaded.study, base, part, request.jobs);
    auto recorded =
        study::recorded(loaded.study, withEscapedBytes(withoutFolder(file)), loaded.cases);
    if (!samples || !recorded) {
        console.complain(file + ": " + faultText(!samples ? samples.fault() : recorded.fault()));
        return Refused;
    }
    auto name = bareName(file);
    name += ".part-" + std::to_string(part.k) + "-of-" + std::to_string(part.n) + ".json";
    const std::string target = utf8FromPath(pathFromUtf8(request.folder) / name);
    if (!mayWriteMade(console, target, request.force, {file})) return FileTrouble;
    const study::SamplePart own{"TELVO " TELVO_VERSION, std::string(run::ModuleBuild),
                                std::move(*recorded), part, std::move(*samples)};
    const ExitStatus written =
        writeOrComplain(console, target, study::partText(own), existingFor(request.force));
    if (written == AllGood)
        console.print(forTerminal(file + " -> " + target) + ": " +
                      groupedCount(own.samples.size()) + " samples\n");
    return written;
}

/// What has to fit together before anything runs; a complaint, or nothing.
std::string wrongUseOf(const StudyRunRequest& request) {
    const bool picture = isPictureEnding("." + request.format);
    if (request.folder.empty() && (picture || request.format == "xlsx"))
        return "--format " + request.format + ": " + (picture ? "pictures" : "workbooks") +
               " need --output FOLDER";
    if (!request.part.empty() && request.folder.empty())
        return "--part: a part of the samples needs --output FOLDER";
    if (!request.part.empty() && !request.samplesFile.empty())
        return "--samples-out: the samples of a part are in its file";
    if (!request.samplesFile.empty() && request.files.size() > 1)
        return "--samples-out: takes the samples of one study";
    return {};
}

/// The study as it is to be run. Returned: why not; empty where it can.
std::string withSeed(study::Study& study, const std::optional<std::uint64_t>& seed) {
    if (!seed) return {};
    study::AskedUncertainty* sampling = study::samplingOf(study);
    if (!sampling) return "--seed: the study has no samples";
    sampling->plan.seed = *seed;
    return {};
}

/// Writes the samples where they are asked for.
ExitStatus writeSamplesOf(Console& console, const study::StudyOutput& output,
                          const std::string& file, const std::string& target, bool force) {
    if (target.empty()) return AllGood;
    if (output.samples.columns.empty()) {
        console.complain(file + ": has no samples that could be written");
        return Refused;
    }
    return writeSamples(console, target, output.samples, force);
}

void makeFolder(const std::string& folder) {
    std::error_code error;
    std::filesystem::create_directories(pathFromUtf8(folder), error);
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
        ->add_option(
            "--format", request.format,
            "text, csv, json, xlsx, or a picture: svg, png, pdf; csv into a folder, text on "
            "the terminal if not given")
        ->check(CLI::IsMember({"text", "csv", "json", "xlsx", "svg", "png", "pdf"}));
    addPictureOptions(*command, request.picture, "900 700");
    command->add_flag("--force", request.force, "overwrite existing files");
    command->add_option("--seed", request.seed, "seed of the samples instead of that of the study")
        ->option_text("N");
    command
        ->add_option("--part", request.part,
                     "compute only the K-th of N parts of the samples and write them into the "
                     "folder, NAME.part-K-of-N.json; study merge joins them")
        ->option_text("K/N");
    literal(command->add_option("--samples-out", request.samplesFile,
                                "write the samples of the one study to this file, .csv"))
        ->option_text("FILE");
    addStudyThreads(*command, request.jobs);
    command->footer("A study that fails does not keep the others from running.\n\n"
                    "Example:\n  telvo-cli study run *.study -o results");
    return command;
}

int runStudyRun(Console& console, const StudyRunRequest& request) {
    const bool intoFolder = !request.folder.empty();
    if (const std::string wrong = wrongUseOf(request); !wrong.empty())
        return console.wrongUsage(wrong);
    std::optional<study::Part> part;
    if (!request.part.empty()) {
        const auto named = study::partNamed(request.part);
        if (!named) return console.wrongUsage("--part: " + faultText(named.fault()));
        part = *named;
    }
    if (!request.samplesFile.empty() &&
        !mayWriteMade(console, request.samplesFile, request.force, request.files))
        return FileTrouble;
    if (intoFolder) {
        std::set<std::string> names;
        for (const std::string& file : request.files)
            if (!names.insert(withoutFolder(file)).second)
                return console.wrongUsage(withoutFolder(file) +
                                          ": two studies of this name would go into one file");
        makeFolder(request.folder);
    }
    ExitStatus status = AllGood;
    std::vector<StudyPart> parts;
    for (const std::string& file : request.files) {
        std::vector<LoadedStudy> all = loadStudies(console, file, status);
        if (all.empty()) parts.push_back({file, "could not be read", {}, 0});
        for (LoadedStudy& loaded : all) {
            StudyPart own{loaded.name, {}, {}, 0};
            study::Recorder recorder;
            if (const std::string wrong = withSeed(loaded.study, request.seed); !wrong.empty())
                return console.wrongUsage(loaded.name + ": " + wrong);
            if (part) {
                raise(status, runPart(console, request, loaded, *part));
                continue;
            }
            auto made = study::runStudy(loaded.study, loaded.cases, request.jobs);
            if (made) {
                raise(status, statusOf(console, loaded.name, *made));
                raise(status, writeSamplesOf(console, *made, loaded.name, request.samplesFile,
                                             request.force));
                own.output = std::move(*made);
                own.RoundTELVOSF = loaded.study.RoundTELVOSF;
                if (intoFolder) {
                    raise(status, runInto(console,
                                          {request.folder, request.format, request.force,
                                           request.jobs, request.picture},
                                          loaded, std::move(own), recorder));
                    continue;
                }
            } else {
                own.message = faultText(made.fault());
                console.complain(loaded.name + ": " + own.message);
                raise(status, Refused);
            }
            parts.push_back(std::move(own));
        }
    }
    if (intoFolder) {
        raise(status, console.finish());
        return status;
    }
    const StudyTarget target{
        request.format.empty() ? "text" : request.format, {}, false, false, request.picture};
    const auto form = formOf(console, target);
    if (!form) return WrongUsage;
    raise(status, writeParts(console, target, *form, parts));
    return status;
}

CLI::App* addStudyMerge(CLI::App& studies, StudyMergeRequest& request) {
    CLI::App* command = studies.add_subcommand(
        "merge", "join the parts of a study to the result of one run, byte for byte");
    literal(command->add_option("PART", request.parts, "all parts: NAME.part-K-of-N.json"))
        ->required();
    literal(command->add_option("-o,--output", request.folder,
                                "folder for the result, NAME.study.csv, and the record of the run, "
                                "NAME.study.json; made where it is missing"))
        ->option_text("FOLDER");
    command
        ->add_option("--format", request.format,
                     "text, csv, json or xlsx; csv into a folder, text on the terminal if not "
                     "given")
        ->check(CLI::IsMember({"text", "csv", "json", "xlsx"}));
    command->add_flag("--force", request.force, "overwrite existing files");
    literal(command->add_option("--samples-out", request.samplesFile,
                                "write all samples to this file, .csv"))
        ->option_text("FILE");
    addStudyThreads(*command, request.jobs);
    command->footer("Example:\n  telvo-cli study merge results/panel.part-*.json -o results");
    return command;
}

int runStudyMerge(Console& console, const StudyMergeRequest& request) {
    if (request.folder.empty() && request.format == "xlsx")
        return console.wrongUsage("--format xlsx: workbooks need --output FOLDER");
    if (!request.samplesFile.empty() &&
        !mayWriteMade(console, request.samplesFile, request.force, request.parts))
        return FileTrouble;
    std::vector<study::SamplePart> parts;
    for (const std::string& file : request.parts) {
        const auto bytes = readFile(file);
        auto part =
            bytes ? study::readPart(*bytes, file) : Result<study::SamplePart>(bytes.fault());
        if (!part) {
            console.complain(faultText(part.fault()));
            return FileTrouble;
        }
        parts.push_back(std::move(*part));
    }
    const study::RecordedStudy recorded = parts.front().study;
    auto restored = study::restored(recorded);
    auto samples = restored ? study::mergedSamples(std::move(parts))
                            : Result<study::Samples>(restored.fault());
    auto made = samples ? study::outputOfSamples(restored->first, restored->second.front().second,
                                                 std::move(*samples), request.jobs)
                        : Result<study::StudyOutput>(samples.fault());
    if (!made) {
        console.complain(faultText(made.fault()));
        return Refused;
    }
    ExitStatus status = statusOf(console, recorded.name, *made);
    raise(status,
          writeSamplesOf(console, *made, recorded.name, request.samplesFile, request.force));
    StudyPart whole{recorded.name, {}, std::move(*made), restored->first.RoundTELVOSF};
    if (request.folder.empty()) {
        const StudyTarget target{
            request.format.empty() ? "text" : request.format, {}, false, false};
        const auto form = formOf(console, target);
        if (!form) return WrongUsage;
        raise(status, writeParts(console, target, *form, {std::move(whole)}));
        return status;
    }
    makeFolder(request.folder);
    study::Recorder recorder;
    const LoadedStudy loaded{recorded.name, std::move(restored->first),
                             std::move(restored->second)};
    raise(status, runInto(console, {request.folder, request.format, request.force, request.jobs},
                          loaded, std::move(whole), recorder));
    raise(status, console.finish());
    return status;
}

CLI::App* addStudyVerify(CLI::App& studies, StudyVerifyRequest& request) {
    CLI::App* command = studies.add_subcommand(
        "verify", "run records again and tell whether the digits are the same");
    literal(command->add_option("RECORD", request.records, "records: NAME.study.json"))->required();
    addStudyThreads(*command, request.jobs);
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
