// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/reportCommand.h"

#include "cli/arguments.h"
#include "cli/outputs.h"
#include "report/sections.h"

#include <CLI/CLI.hpp>

#include <utility>

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

} // namespace

CLI::App* addReport(CLI::App& app, ReportRequest& request) {
    CLI::App* command = app.add_subcommand("report", "print the six-page report of each case");
    addInputs(*command, request.inputs);
    command->add_option("--page", request.page, "only this page, 0 to 5")
        ->check(CLI::Range(0, telvo::report::LastReportPage));
    literal(
        command->add_option("-o,--output", request.target,
                            "write to this file, lines ended by CR LF, instead of the terminal"))
        ->option_text("FILE");
    command->add_flag("--force", request.force,
                      "overwrite a file that is no report; an older report is replaced anyway");
    addJobs(*command, request.jobs);
    addRounding(*command, request.options);
    addUnits(*command, request.options);
    command->footer("Example:\n  telvo-cli report panel.TLV --page 1");
    return command;
}

int runReport(Console& console, const ReportRequest& request) {
    ExitStatus status = AllGood;
    const auto names = namesOf(console, request.inputs, status);
    if (!names) return status;
    const bool toFile = !request.target.empty() && !isStandardOutput(request.target);
    if (toFile && !mayWriteReport(console, request.target, request.force, *names))
        return FileTrouble;
    const bool replaces = toFile && isNamed(request.target);
    TextOutput output(console, request.target, existingFor(replaces));
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
    makeInOrder(console, *names, request.jobs, make, [&](const Made& made) {
        raise(status, made.status);
        if (!made.hasRun) return;
        // Parts this report from the one before.
        if (any && !request.page) output.print(toFile ? "\r\n" : "\n");
        any = true;
        output.print(made.text);
    });
    if (toFile && !any) return status;
    if (replaces && status == FileTrouble) {
        console.complain(request.target + ": stays as it was, for not every case could be read");
        return status;
    }
    raise(status, output.finish());
    return status;
}

} // namespace telvo::cli
