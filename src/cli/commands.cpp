// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/commands.h"

#include "base/escapes.h"
#include "base/files.h"
#include "base/numbers.h"
#include "base/text.h"
#include "cli/outputs.h"
#include "cli/resultFormats.h"
#include "project/CaseFile.h"
#include "project/checks.h"
#include "project/units.h"
#include "report/sections.h"

#include <algorithm>
#include <string>
#include <vector>

namespace telvo::cli {

namespace {

std::string withLineFeeds(std::string text) {
    std::erase(text, '\r');
    return text;
}

/// All pages with a blank line between them, or the one that is asked for.
std::string joinedPages(const report::ReportPages& pages, std::optional<int> page) {
    if (page) return pages[static_cast<std::size_t>(*page)];
    std::string out;
    for (const std::string& text : pages) {
        if (!out.empty() && !out.ends_with("\r\n\r\n")) out += "\r\n";
        out += text;
    }
    return out;
}

int saveAs(project::ProjectCase current, const std::string& target, bool force) {
    if (isStandardOutput(target)) {
        const auto text = project::writeCaseText(current);
        if (!text) {
            complain(faultText(text.fault()));
            return FileTrouble;
        }
        print(*text);
        return finishOutput();
    }
    if (!mayWrite(target, force)) return FileTrouble;
    std::vector<std::string> remarks;
    const Status saved = project::saveCaseFile(current, target, existingFor(force), &remarks);
    tellRemarks(target, remarks);
    if (saved) return AllGood;
    complain(faultText(saved.fault()));
    return FileTrouble;
}

} // namespace

std::string versionText() {
    return "telvo-cli " TELVO_VERSION " (module build " + std::string(run::ModuleBuild) + ")";
}

int runReport(const ReportRequest& request) {
    ExitStatus status = AllGood;
    const auto names = namesOf(request.inputs, status);
    if (!names) return status;
    const bool toFile = !request.target.empty() && !isStandardOutput(request.target);
    if (toFile && !mayWriteReport(request.target, request.force, *names)) return FileTrouble;
    const bool replaces = toFile && isNamed(request.target);
    TextOutput output(request.target, existingFor(replaces));
    bool any = false;
    visitAll(*names, request.workbooks, [&](CaseOutcome& outcome) {
        runCase(outcome);
        raise(status, outcome.status);
        tellNotes(outcome);
        if (!outcome.run) return complainOf(outcome);
        std::string text;
        if (any && !request.page) text += "\r\n"; // parts this report from the one before
        text += joinedPages(report::makeReport(*outcome.run, request.options).pages, request.page);
        any = true;
        output.print(toFile ? text : withLineFeeds(std::move(text)));
    });
    if (toFile && !any) return status;
    if (replaces && status == FileTrouble) {
        complain(request.target + ": stays as it was, for not every case could be read");
        return status;
    }
    raise(status, output.finish());
    return status;
}

int runResults(const ResultsRequest& request) {
    ExitStatus status = AllGood;
    const auto names = namesOf(request.inputs, status);
    if (!names) return status;
    const bool toFile = !request.target.empty() && !isStandardOutput(request.target);
    if (toFile && !mayWriteMade(request.target, request.force, *names)) return FileTrouble;
    const bool json = request.format == "json";
    const bool csv = request.format == "csv";
    TextOutput output(request.target, existingFor(request.force));
    const ResultJson jsonWriter;
    std::size_t formulas = 0;
    if (json) output.print("[\n");
    if (csv && !request.noHeader) output.print(csvHeader());
    bool first = true;
    visitAll(*names, request.workbooks, [&](CaseOutcome& outcome) {
        runCase(outcome);
        if (outcome.run) outcome.warnings = report::assessWarnings(*outcome.run, request.options);
        raise(status, outcome.status);
        tellNotes(outcome);
        if (!outcome.run) complainOf(outcome);
        if (json) {
            output.print((first ? "" : ",\n") + jsonWriter.of(outcome));
        } else if (csv) {
            output.print(csvRow(outcome));
            if (looksLikeFormula(outcome)) ++formulas;
        } else if (outcome.run) {
            output.print((first ? "" : "\n") + resultText(outcome));
        }
        first = false;
    });
    if (json) output.print("\n]\n");
    if (formulas > 0)
        complain("in " + std::to_string(formulas) + (formulas == 1 ? " row" : " rows") +
                 " the file name or title begins like a formula, and a spreadsheet may compute it");
    raise(status, output.finish());
    return status;
}

int runCheck(const Inputs& inputs, const Workbooks& workbooks) {
    ExitStatus status = AllGood;
    const auto names = namesOf(inputs, status);
    if (!names) return status;
    visitAll(*names, workbooks, [&](const CaseOutcome& outcome) {
        std::string message = outcome.message;
        raise(status, outcome.status);
        if (outcome.current) {
            for (const std::string& note : run::recordNotes(*outcome.current))
                complain(outcome.file + ": " + note);
            if (const auto refused = project::checkBeforeAnalysis(outcome.current->Input)) {
                message = refused->message;
                raise(status, Refused);
            }
        }
        const bool alone = names->size() == 1 && outcome.file == names->front();
        const std::string prefix = !alone && outcome.current ? outcome.file + ": " : std::string();
        print(forTerminal(prefix + (message.empty() ? "OK" : message)) + "\n");
    });
    raise(status, finishOutput());
    return status;
}

int runNew(const NewRequest& request) {
    const auto units = request.units == "metric" ? project::Metric : project::English;
    return saveAs(project::newCase(units), request.target, request.force);
}

int runConvert(const SaveRequest& request) {
    CaseOutcome outcome = readCase(request.source, request.workbooks);
    if (!outcome.current) {
        complainOf(outcome);
        return outcome.status;
    }
    project::ProjectCase converted = *outcome.current;
    if (const Status done = project::convertCase(converted); !done) {
        complain(outcome.file + ": " + faultText(done.fault()));
        return Refused;
    }
    const int status = saveAs(converted, request.target, request.force);
    const auto remark = project::archFactorRemark(*outcome.current, converted);
    if (status == AllGood && remark) complain(outcome.file + ": " + *remark);
    return status;
}

int runSave(const SaveRequest& request) {
    CaseOutcome outcome = readCase(request.source, request.workbooks);
    if (!outcome.current) {
        complainOf(outcome);
        return outcome.status;
    }
    return saveAs(*outcome.current, request.target, request.force);
}

} // namespace telvo::cli
