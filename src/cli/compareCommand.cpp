// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/compareCommand.h"

#include "base/escapes.h"
#include "base/files.h"
#include "cli/arguments.h"
#include "cli/outputs.h"
#include "cli/studyRecord.h"
#include "study/output/reportDiff.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <utility>

namespace telvo::cli {

namespace {

/// The report of the base and that of the other case laid over each other.
std::string shownDiff(const study::Comparison& comparison, const report::ReportOptions& options) {
    const study::ComparedCase& one = comparison.cases[comparison.base];
    const study::ComparedCase& other = comparison.cases[comparison.base == 0 ? 1 : 0];
    std::string out;
    for (const std::string& line :
         study::reportDiff(one.name, *one.run, other.name, *other.run, options))
        out += forTerminal(line) + "\n";
    return out;
}

} // namespace

CLI::App* addCompare(CLI::App& app, CompareRequest& request) {
    CLI::App* command = app.add_subcommand(
        "compare", "put cases side by side: inputs, results, flags and their differences");
    addInputs(*command, request.inputs);
    literal(command->add_option("--base", request.base,
                                "case that the others are compared with; the first one if not "
                                "given"))
        ->option_text("CASE");
    command->add_flag("--only-differences", request.onlyDifferences,
                      "leave out what is the same in all cases");
    command->add_flag("--reports", request.reports,
                      "the reports of two cases line by line instead: - of the base, + of the "
                      "other");
    addRounding(*command, request.options);
    addUnits(*command, request.options);
    addStudyTarget(*command, request.target);
    command->footer("Values of cases in the other unit system are brought into the units of the "
                    "base.\n\n"
                    "Example:\n  telvo-cli compare panel.TLV wider.TLV --only-differences");
    return command;
}

int runCompare(Console& console, const CompareRequest& request) {
    ExitStatus status = AllGood;
    const auto form = formOf(console, request.target);
    if (!form) return WrongUsage;
    if (request.reports && *form != StudyForm::Text)
        return console.wrongUsage("--reports: reports are compared as text only");
    auto names = namesOf(console, request.inputs, status);
    if (!names) return status;
    if (!request.base.empty() &&
        std::find(names->begin(), names->end(), request.base) == names->end())
        names->insert(names->begin(), request.base);
    const std::string& target = request.target.target;
    const bool toFile = !target.empty() && !isStandardOutput(target);
    if (!mayWriteStudy(console, request.target, *names)) return FileTrouble;
    std::vector<std::pair<std::string, project::ProjectCase>> cases;
    visitAll(console, *names, [&](CaseOutcome& outcome) {
        raise(status, outcome.status);
        if (outcome.current)
            cases.emplace_back(withEscapedBytes(outcome.file), std::move(*outcome.current));
        else
            complainOf(console, outcome);
    });
    if (!request.base.empty()) { // it comes first
        const auto base = std::find_if(cases.begin(), cases.end(), [&](const auto& one) {
            return one.first == withEscapedBytes(request.base);
        });
        if (base == cases.end()) {
            console.complain("--base " + request.base + ": is none of the cases");
            raise(status, WrongUsage);
            return status;
        }
        std::rotate(cases.begin(), base, base + 1);
    }
    if (cases.size() < 2) {
        console.complain("two cases are needed to compare");
        raise(status, WrongUsage);
        return status;
    }
    if (request.reports && cases.size() != 2)
        return console.wrongUsage("--reports: two cases are wanted");
    auto made = study::compare(cases, 0, request.options.RoundTELVOSF);
    if (!made) {
        console.complain(faultText(made.fault()));
        raise(status, Refused);
        return status;
    }
    bool allRan = true;
    for (const study::ComparedCase& one : made->cases) {
        if (one.run) continue;
        console.complain(one.name + ": " + one.message);
        raise(status, Refused);
        allRan = false;
    }
    if (request.reports) {
        if (!allRan) return status;
        TextOutput output(console, target, existingFor(request.target.force));
        output.print(shownDiff(*made, request.options));
        raise(status, output.finish());
        return status;
    }
    std::vector<StudyPart> parts(1);
    parts.front().file = cases.front().first;
    parts.front().RoundTELVOSF = request.options.RoundTELVOSF;
    parts.front().output = study::outputOf(std::move(*made), request.onlyDifferences);
    study::TableDigits digits;
    const ExitStatus written = writeParts(console, request.target, *form, parts, {}, &digits);
    raise(status, written);
    if (!toFile || request.target.noRecord || written != AllGood) return status;
    study::CompareSet set;
    set.onlyDifferences = request.onlyDifferences;
    for (std::size_t i = 1; i < cases.size(); ++i)
        set.with.push_back(withoutFolder(cases[i].first));
    const study::StudyOutput& output = *parts.front().output;
    study::Recorder recorder;
    recorder.add({{},
                  withoutFolder(cases.front().first),
                  cases.front().second.Units,
                  request.options.RoundTELVOSF,
                  std::move(set)},
                 parts.front().file, cases, output.tally);
    raise(status, writeRecord(console, recorder, study::recordFileOf(target),
                              {target, &output.table, *form == StudyForm::Csv ? &digits : nullptr,
                               1, request.target.force}));
    return status;
}

} // namespace telvo::cli
