// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/commands.h"

#include "base/files.h"
#include "base/numbers.h"
#include "cli/resultFormats.h"
#include "project/CaseFile.h"
#include "project/checks.h"
#include "project/units.h"

#include <algorithm>
#include <filesystem>

namespace telvo::cli {

namespace {

/// As a file to write, "-" is standard output.
constexpr std::string_view StandardOutput = "-";

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

/// A report never takes the place of a case, which a slip of the hand would destroy.
bool isCaseFile(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(pathFromUtf8(path), error)) return false;
    const auto bytes = readFile(path);
    return bytes && project::hasCaseTag(*bytes);
}

int saveAs(project::ProjectCase current, const std::string& target, bool force) {
    if (target == StandardOutput) {
        const auto text = project::writeCaseText(current);
        if (!text) {
            complain(faultText(text.fault()));
            return FileTrouble;
        }
        print(*text);
        return finishOutput();
    }
    if (!mayWrite(target, force)) return FileTrouble;
    const Status saved = project::saveCaseFile(current, target);
    if (saved) return AllGood;
    complain(faultText(saved.fault()));
    return FileTrouble;
}

} // namespace

std::string versionText() {
    return "telvo-cli " TELVO_VERSION " (module build " + std::string(app::ModuleBuild) + ")";
}

int runReport(const ReportRequest& request) {
    if (readsInputTwice(request.files)) return WrongUsage;
    const bool toTerminal = request.target.empty() || request.target == StandardOutput;
    if (!toTerminal && isCaseFile(request.target)) {
        complain(request.target + ": is a case file; a report is not written over it");
        return FileTrouble;
    }
    ExitStatus status = AllGood;
    std::string text;
    bool any = false;
    const auto add = [&](CaseOutcome& outcome) {
        runCase(outcome, {.report = request.options, .writePages = true});
        raise(status, outcome.status);
        tellNotes(outcome);
        if (!outcome.run) return complainOf(outcome);
        if (any && !request.page) text += "\r\n"; // parts this report from the one before
        text += joinedPages(outcome.run->pages, request.page);
        any = true;
        if (toTerminal) {
            print(withLineFeeds(std::move(text)));
            text.clear();
        }
    };
    for (const std::string& file : request.files)
        visitCases(file, request.workbooks, add);
    if (toTerminal)
        raise(status, finishOutput());
    else if (any)
        raise(status, writeOrComplain(request.target, text));
    return status;
}

int runResults(const ResultsRequest& request) {
    if (readsInputTwice(request.files)) return WrongUsage;
    const bool json = request.format == "json";
    const bool csv = request.format == "csv";
    ExitStatus status = AllGood;
    const ResultJson jsonWriter;
    if (json) print("[\n");
    if (csv) print(csvHeader());
    bool first = true;
    const auto add = [&](CaseOutcome& outcome) {
        runCase(outcome, {.report = request.options, .writePages = false});
        raise(status, outcome.status);
        tellNotes(outcome);
        if (!outcome.run) complainOf(outcome);
        if (json) {
            print((first ? "" : ",\n") + jsonWriter.of(outcome));
        } else if (csv) {
            print(csvRow(outcome));
        } else if (outcome.run) {
            print((first ? "" : "\n") + resultText(outcome));
        }
        first = false;
    };
    for (const std::string& file : request.files)
        visitCases(file, request.workbooks, add);
    if (json) print("\n]\n");
    raise(status, finishOutput());
    return status;
}

int runCheck(const std::vector<std::string>& files, const Workbooks& workbooks) {
    if (readsInputTwice(files)) return WrongUsage;
    ExitStatus status = AllGood;
    const auto add = [&](const CaseOutcome& outcome) {
        std::string message = outcome.message;
        raise(status, outcome.status);
        if (outcome.current) {
            for (const std::string& note : app::recordNotes(*outcome.current))
                complain(outcome.file + ": " + note);
            if (const auto refused = project::checkBeforeAnalysis(outcome.current->Input)) {
                message = refused->message;
                raise(status, Refused);
            }
        }
        const bool alone = files.size() == 1 && outcome.file == files.front();
        const std::string prefix = !alone && outcome.current ? outcome.file + ": " : std::string();
        print(prefix + (message.empty() ? "OK" : message) + "\n");
    };
    for (const std::string& file : files)
        visitCases(file, workbooks, add);
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
