// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/studyOptions.h"

#include "base/escapes.h"
#include "base/files.h"
#include "base/numbers.h"
#include "base/text.h"
#include "batch/batch.h"
#include "cli/outputs.h"
#include "cli/spelling.h"
#include "cli/studyRecord.h"
#include "engine/driver.h"
#include "project/inputFields.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <utility>

namespace telvo::cli {

namespace {

constexpr std::string_view AllQuantities = "all";

/// Longest name of a sheet.
constexpr std::size_t MostSheetName = 31;

/// "INPUT=VALUES" taken apart.
std::optional<std::pair<std::string, std::string>> assignment(const std::string& text) {
    const auto at = text.find('=');
    if (at == std::string::npos || at == 0) return std::nullopt;
    return std::pair(std::string(trimmed(text.substr(0, at))), text.substr(at + 1));
}

std::string jsonOf(const std::vector<StudyPart>& parts,
                   const std::function<void(JsonWriter&)>& emptyJson) {
    std::string text;
    JsonWriter json(text);
    json.beginArray();
    for (const StudyPart& part : parts) {
        json.beginObject();
        json.member("file", withEscapedBytes(part.file));
        json.member("message", withEscapedBytes(part.message));
        if (part.output)
            part.output->json(json);
        else if (emptyJson)
            emptyJson(json);
        json.endObject();
    }
    json.endArray();
    return text + "\n";
}

std::string textOf(const std::vector<StudyPart>& parts) {
    std::string text;
    for (const StudyPart& part : parts) {
        if (!part.output) continue;
        if (!text.empty()) text += "\n";
        if (parts.size() > 1) text += forTerminal(part.file) + "\n";
        text += study::shownText(*part.output);
    }
    return text;
}

ExitStatus writeWorkbook(Console& console, const StudyTarget& target,
                         const std::vector<StudyPart>& parts) {
    std::vector<table::Sheet> sheets;
    for (const StudyPart& part : parts) {
        if (!part.output) continue;
        std::string name = parts.size() == 1 ? "Study" : std::to_string(sheets.size() + 1);
        name.resize(std::min(name.size(), MostSheetName));
        const std::string title =
            parts.size() == 1 ? part.output->headline : part.file + ": " + part.output->headline;
        sheets.push_back(study::sheetOf(part.output->table, name, withEscapedBytes(title)));
    }
    const auto bytes = console.workbooks().writeSheets(sheets);
    if (bytes) return writeOrComplain(console, target.target, *bytes, existingFor(target.force));
    console.complain(faultText(bytes.fault()));
    return FileTrouble;
}

ExitStatus complainOfMany(Console& console, const StudyTarget& target) {
    console.complain(target.target + ": a picture shows one case");
    return WrongUsage;
}

ExitStatus drawParts(Console& console, const StudyTarget& target,
                     const std::vector<StudyPart>& parts) {
    if (parts.size() != 1) return complainOfMany(console, target);
    const StudyPart& part = parts.front();
    PictureOptions options = target.picture;
    options.existing = existingFor(target.force);
    const PlotOutcome drawn = console.plotter().drawStudy(
        console,
        {*part.output, withEscapedBytes(withoutFolder(part.file)), target.look, part.RoundTELVOSF},
        options, target.target);
    if (!drawn.message.empty()) console.complain(target.target + ": " + drawn.message);
    return drawn.status;
}

} // namespace

ExitStatus statusOf(Console& console, const std::string& file, const study::StudyOutput& output) {
    if (output.computed) return output.aimMet ? AllGood : AimMissed;
    const std::string& why = output.headline;
    console.complain(file + ": " + (why.empty() ? study::tallyText(output.tally) : why));
    return Refused;
}

const char* StudyTarget::pictureOption() const {
    if (!picture.size.empty()) return "--size";
    if (picture.dpi != DefaultDpi) return "--dpi";
    if (look.spider) return "--spider";
    if (look.lines != study::StudyLook().lines) return "--line";
    return nullptr;
}

void addStudyTarget(CLI::App& command, StudyTarget& target) {
    command
        .add_option("--format", target.format,
                    "text, csv, json or xlsx; after the ending of the file if not given")
        ->check(CLI::IsMember({"text", "csv", "json", "xlsx"}));
    literal(command.add_option("-o,--output", target.target,
                               "write to this file instead of the terminal: .txt, .csv, .json, "
                               ".xlsx, or a picture: .svg, .png, .pdf"))
        ->option_text("FILE");
    command.add_flag("--force", target.force, "overwrite existing files");
    command.add_flag("--no-record", target.noRecord,
                     "do not write the record of the run, NAME.study.json, beside the file");
    addPictureOptions(command, target.picture, "900 700");
}

void addStudyThreads(CLI::App& command, unsigned& threads) {
    command
        .add_option("--threads,--jobs", threads,
                    "threads of a study; as many as there are cores if not given. The digits are "
                    "the same with any number")
        ->check(CLI::Range(1U, MostJobs))
        ->option_text("N");
}

study::ResultTable tableOf(const std::vector<StudyPart>& parts) {
    std::vector<std::pair<std::string, study::ResultTable>> tables;
    for (const StudyPart& part : parts)
        if (part.output) tables.emplace_back(withEscapedBytes(part.file), part.output->table);
    if (tables.empty()) return {};
    return study::joinedTable(std::move(tables));
}

std::optional<StudyForm> formOf(Console& console, const StudyTarget& target) {
    const bool toFile = !target.target.empty() && !isStandardOutput(target.target);
    std::string format = target.format;
    if (format.empty() && toFile) format = endingOf(target.target).substr(1);
    if (isPictureEnding("." + format)) {
        if (toFile && console.plotter().drawStudy) return StudyForm::Picture;
        console.complain(toFile ? NoPictures : "--format " + format + ": a picture needs a file");
        return std::nullopt;
    }
    if (const char* option = target.pictureOption()) {
        console.complain(std::string(option) + ": only a picture has it: --output FILE.svg");
        return std::nullopt;
    }
    if (format.empty() && !toFile) return StudyForm::Text;
    if (format == "text" || format == "txt") return StudyForm::Text;
    if (format == "csv") return StudyForm::Csv;
    if (format == "json") return StudyForm::Json;
    if (format != "xlsx") {
        console.complain(
            target.target +
            ": the file name has to end in .txt, .csv, .json, .xlsx, .svg, .png or .pdf");
        return std::nullopt;
    }
    if (!toFile) {
        console.complain("--format xlsx: a workbook needs --output FILE");
        return std::nullopt;
    }
    if (!console.workbooks().writeSheets) {
        console.complain(target.target + NoWorkbooks);
        return std::nullopt;
    }
    return StudyForm::Workbook;
}

ExitStatus writeParts(Console& console, const StudyTarget& target, StudyForm form,
                      const std::vector<StudyPart>& parts,
                      const std::function<void(JsonWriter&)>& emptyJson,
                      study::TableDigits* digits) {
    const bool any = std::any_of(parts.begin(), parts.end(),
                                 [](const StudyPart& part) { return part.output.has_value(); });
    const bool toFile = !target.target.empty() && !isStandardOutput(target.target);
    if (!any && (toFile || form != StudyForm::Json)) return AllGood; // nothing to write
    if (form == StudyForm::Workbook) return writeWorkbook(console, target, parts);
    if (form == StudyForm::Picture) return drawParts(console, target, parts);
    TextOutput output(console, target.target, existingFor(target.force));
    switch (form) {
    case StudyForm::Csv:
        study::writeCsv(tableOf(parts), [&](std::string_view piece) {
            output.print(piece);
            if (digits) digits->add(piece);
            return true;
        });
        break;
    case StudyForm::Json:
        output.print(jsonOf(parts, emptyJson));
        break;
    default:
        output.print(textOf(parts));
    }
    return output.finish();
}

bool mayWriteStudy(Console& console, const StudyTarget& target,
                   const std::vector<std::string>& inputs) {
    if (target.target.empty() || isStandardOutput(target.target)) return true;
    return mayWriteMade(console, target.target, target.force, inputs) &&
           (target.noRecord ||
            mayWriteMade(console, study::recordFileOf(target.target), target.force, inputs));
}

int askCases(Console& console, const Inputs& inputs, const StudyTarget& target,
             const Question& question, int RoundTELVOSF, unsigned threads,
             const std::function<void(JsonWriter&)>& emptyJson) {
    ExitStatus status = AllGood;
    const auto form = formOf(console, target);
    if (!form) return WrongUsage;
    const auto names = namesOf(console, inputs, status);
    if (!names) return status;
    if (!mayWriteStudy(console, target, *names)) return FileTrouble;
    const bool toFile = !target.target.empty() && !isStandardOutput(target.target);
    std::vector<StudyPart> parts;
    study::Recorder recorder;
    study::TableDigits digits;
    bool many = false; // cases in one picture
    visitAll(console, *names, [&](CaseOutcome& outcome) {
        many = *form == StudyForm::Picture && !parts.empty();
        if (many) return;
        StudyPart part;
        part.file = outcome.file;
        part.RoundTELVOSF = RoundTELVOSF;
        if (!outcome.current) {
            complainOf(console, outcome);
            part.message = outcome.message;
            raise(status, outcome.status);
        } else if (auto answer = question(*outcome.current)) {
            raise(status, statusOf(console, part.file, answer->output));
            if (toFile && !target.noRecord) {
                const std::string name = withEscapedBytes(withoutFolder(outcome.file));
                study::Study study{
                    {}, name, outcome.current->Units, RoundTELVOSF, std::move(answer->request)};
                const study::NamedCase cases[] = {{name, *outcome.current}};
                recorder.add(study, withEscapedBytes(part.file), cases, answer->output.tally);
            }
            part.output = std::move(answer->output);
        } else {
            part.message = faultText(answer.fault());
            console.complain(outcome.file + ": " + part.message);
            raise(status, Refused);
        }
        parts.push_back(std::move(part));
    });
    const bool records = toFile && !target.noRecord;
    const ExitStatus written =
        many ? complainOfMany(console, target)
             : writeParts(console, target, *form, parts, emptyJson, records ? &digits : nullptr);
    raise(status, written);
    const study::ResultTable table = tableOf(parts);
    if (records && written == AllGood && !table.columns.empty())
        raise(status,
              writeRecord(console, recorder, study::recordFileOf(target.target),
                          {target.target, &table, *form == StudyForm::Csv ? &digits : nullptr,
                           threads, target.force}));
    return status;
}

void addCasesAndInput(CLI::App& command, std::vector<std::string>& words, std::string& listFile) {
    literal(command.add_option("CASE", words,
                               "case files, tables or folders as for results, and INPUT as the "
                               "last word: the input that is looked for"))
        ->required()
        ->option_text("... INPUT");
    literal(command.add_option("--files-from", listFile,
                               "read more cases from this file, a line each or ended by NUL; - is "
                               "standard input"))
        ->option_text("FILE");
}

Result<CasesAndInput> casesAndInput(const std::vector<std::string>& words,
                                    const std::string& listFile) {
    const auto variable = variableOf(words.back());
    if (!variable) return variable.fault();
    return CasesAndInput{{{words.begin(), words.end() - 1}, listFile}, *variable};
}

Result<study::Variable> variableOf(const std::string& name) {
    if (const auto variable = study::variableNamed(name)) return *variable;
    std::vector<std::string> names;
    for (const study::Variable& variable : study::variables())
        names.push_back(variable.name());
    std::string message = "no input that can be varied has this name";
    if (const auto near = nearest(name, names)) message += "; near it: " + *near;
    return Fault{message, name};
}

Result<study::Outcome> outcomeOf(const std::string& name) {
    if (auto outcome = study::Outcome::named(name)) return std::move(*outcome);
    std::string message = "no quantity has this name";
    if (const auto near = nearest(name, batch::quantityNames(project::MaxEntries - 1)))
        message += "; near it: " + *near;
    else
        message += "; telvo-cli explain CASE --list lists them";
    return Fault{message, name};
}

Result<study::Span> spanOf(const std::string& text) {
    const auto at = text.find(':');
    if (at != std::string::npos) {
        const auto low = numberOf(trimmed(std::string_view(text).substr(0, at)));
        const auto high = numberOf(trimmed(std::string_view(text).substr(at + 1)));
        if (low && high) return study::Span{*low, *high};
    }
    return Fault{"a range is written like 50:300", text};
}

Result<study::SweepAxis> axisOf(const std::string& text) {
    const auto parts = assignment(text);
    if (!parts) return Fault{"written like DepthCover=600:1200:50 or EntryHeight=6,8,10", text};
    const auto variable = variableOf(parts->first);
    if (!variable) return variable.fault();
    auto values = study::parseValues(parts->second);
    if (!values) return Fault{faultText(values.fault()), parts->first};
    return study::SweepAxis{*variable, std::move(*values)};
}

Result<std::vector<study::Criterion>> criteriaOf(const std::string& text) {
    std::vector<study::Criterion> criteria;
    const auto sign = text.find("=");
    std::string_view rest = text;
    const std::string_view head = sign == std::string::npos ? rest : rest.substr(0, sign + 1);
    rest.remove_prefix(head.size());
    if (const auto name = std::string(trimmed(head.substr(0, head.find_first_of("<>="))));
        sign != std::string::npos)
        if (const auto known = outcomeOf(name); !known) return known.fault();
    for (bool more = true; more;) {
        const auto comma = std::min(rest.find(','), rest.size());
        auto criterion =
            study::Criterion::parse(std::string(head) + std::string(rest.substr(0, comma)));
        if (!criterion) return criterion.fault();
        criteria.push_back(std::move(*criterion));
        more = comma < rest.size();
        rest.remove_prefix(std::min(comma + 1, rest.size()));
    }
    return criteria;
}

Result<std::vector<study::Outcome>> outcomesOf(const std::vector<std::string>& names,
                                               const project::ProjectCase& current) {
    if (names.empty()) return study::factorsOf(current);
    std::vector<std::string> all = names;
    if (names.size() == 1 && names.front() == AllQuantities)
        all = batch::quantityNames(project::distanceCount(current.Input));
    std::vector<study::Outcome> outcomes;
    const engine::Frame frame =
        engine::frameOf(current.Input, current.Units, engine::DevelopmentLoad);
    for (const std::string& name : all) {
        auto outcome = outcomeOf(name);
        if (!outcome) return outcome.fault();
        const bool has = outcome->isDefined(frame, current.Input);
        if (all.size() == names.size() || has) outcomes.push_back(std::move(*outcome));
    }
    return outcomes;
}

} // namespace telvo::cli
