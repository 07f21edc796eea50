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

/// What a case has to say, before something is made of it.
Made madeOf(const CaseOutcome& outcome) {
    Made made;
    made.said = sayings(outcome);
    made.status = outcome.status;
    made.hasRun = outcome.run.has_value();
    return made;
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
    const auto make = [&](CaseOutcome& outcome) {
        runCase(outcome);
        Made made = madeOf(outcome);
        if (!outcome.run) return made;
        made.text =
            joinedPages(report::makeReport(*outcome.run, request.options).pages, request.page);
        if (!toFile) made.text = withLineFeeds(std::move(made.text));
        return made;
    };
    makeInOrder(*names, request.workbooks, request.jobs, make, [&](const Made& made) {
        raise(status, made.status);
        if (!made.hasRun) return;
        // Parts this report from the one before.
        if (any && !request.page) output.print(toFile ? "\r\n" : "\n");
        any = true;
        output.print(made.text);
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
    std::size_t formulas = 0;
    if (json) output.print("[\n");
    if (csv && !request.noHeader) output.print(csvHeader());
    bool first = true;
    const auto make = [&](CaseOutcome& outcome) {
        runCase(outcome);
        if (outcome.run) outcome.warnings = report::assessWarnings(*outcome.run, request.options);
        Made made = madeOf(outcome);
        made.looksLikeFormula = csv && looksLikeFormula(outcome);
        if (json)
            made.text = resultJson(outcome);
        else if (csv)
            made.text = csvRow(outcome);
        else if (outcome.run)
            made.text = resultText(outcome);
        return made;
    };
    makeInOrder(*names, request.workbooks, request.jobs, make, [&](const Made& made) {
        raise(status, made.status);
        if (made.looksLikeFormula) ++formulas;
        if (!first && json) output.print(",\n");
        if (!first && !json && !csv && made.hasRun) output.print("\n");
        output.print(made.text);
        first = false;
    });
    if (json) output.print("\n]\n");
    if (formulas > 0)
        complain("in " + std::to_string(formulas) + (formulas == 1 ? " row" : " rows") +
                 " the file name or title begins like a formula, and a spreadsheet may compute it");
    raise(status, output.finish());
    return status;
}

int runCheck(const CheckRequest& request) {
    ExitStatus status = AllGood;
    const auto names = namesOf(request.inputs, status);
    if (!names) return status;
    const auto make = [&](CaseOutcome& outcome) {
        Made made;
        made.said = outcome.remarks;
        made.status = outcome.status;
        std::string message = outcome.message;
        if (outcome.current) {
            for (const std::string& note : run::recordNotes(*outcome.current))
                made.said.push_back(outcome.file + ": " + note);
            if (const auto refused = project::checkBeforeAnalysis(outcome.current->Input)) {
                message = refused->message;
                raise(made.status, Refused);
            }
        }
        const bool alone = names->size() == 1 && outcome.file == names->front();
        const std::string prefix = !alone && outcome.current ? outcome.file + ": " : std::string();
        made.text = forTerminal(prefix + (message.empty() ? "OK" : message)) + "\n";
        return made;
    };
    makeInOrder(*names, request.workbooks, request.jobs, make, [&](const Made& made) {
        raise(status, made.status);
        print(made.text);
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
