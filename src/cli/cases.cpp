// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/cases.h"

#include "base/files.h"
#include "project/CaseFile.h"
#include "table/csvTable.h"

#include <charconv>
#include <cstdio>
#include <filesystem>
#include <utility>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace telvo::cli {

namespace {

constexpr std::string_view StandardInput = "standard input";

Result<std::string> readStandardInput() {
#ifdef _WIN32
    _setmode(_fileno(stdin), _O_BINARY);
#endif
    std::string bytes;
    char block[16384];
    while (const std::size_t got = std::fread(block, 1, sizeof block, stdin)) {
        bytes.append(block, got);
        if (bytes.size() > MaxFileBytes)
            return Fault{"is larger than " + std::to_string(MaxFileBytes >> 20) + " MB",
                         std::string(StandardInput)};
    }
    if (std::ferror(stdin)) return Fault{"cannot be read", std::string(StandardInput)};
    return bytes;
}

/// An argument taken apart: a file and, where one is meant, a row of the table in it.
struct Source {
    std::string file;
    std::optional<std::uint32_t> row;
};

/// The argument without "#" and the digits behind it; the whole of it where it does not end so.
std::string_view withoutRow(std::string_view argument) {
    const auto mark = argument.rfind('#');
    const bool row = mark != std::string_view::npos && mark > 0 && mark + 1 < argument.size() &&
                     argument.find_first_not_of("0123456789", mark + 1) == std::string_view::npos;
    return row ? argument.substr(0, mark) : argument;
}

bool exists(std::string_view file) {
    std::error_code error;
    return std::filesystem::exists(pathFromUtf8(file), error);
}

Source sourceOf(const std::string& argument) {
    const auto file = withoutRow(argument);
    if (file.size() == argument.size() || exists(argument) || !exists(file))
        return {argument, std::nullopt};
    const std::string_view digits = std::string_view(argument).substr(file.size() + 1);
    std::uint32_t row = 0; // 0, and what no table can have, is a row that is not there
    std::from_chars(digits.data(), digits.data() + digits.size(), row);
    return {std::string(file), row};
}

bool isPacked(std::string_view bytes) {
    return bytes.starts_with("PK\x03\x04") || bytes.starts_with("\xD0\xCF\x11\xE0");
}

/// A case file is one by its tag, whatever its name; a table by its ending or as a workbook.
bool isTable(std::string_view bytes, const std::string& file) {
    if (project::hasCaseTag(bytes)) return false;
    const std::string ending = endingOf(file);
    return isPacked(bytes) || ending == ".csv" || ending == ".tsv" || ending == ".xlsx";
}

Result<table::CaseTable> readTable(std::string_view bytes, const std::string& file,
                                   const Workbooks& workbooks) {
    if (!isPacked(bytes)) return table::readCsv(bytes, file);
    if (workbooks.read) return workbooks.read(bytes, file);
    if (endingOf(file) != ".xlsx")
        return Fault{"is a workbook; its name has to end in .xlsx", file};
    return Fault{"this build does not read workbooks; save the table as CSV", file};
}

CaseOutcome troubled(const std::string& argument, std::string message) {
    CaseOutcome outcome;
    outcome.file = argument;
    outcome.message = std::move(message);
    outcome.status = FileTrouble;
    return outcome;
}

CaseOutcome outcomeOf(const std::string& file, table::CaseRow& row) {
    const std::string name = table::rowName(file, row.number);
    if (row.good()) {
        CaseOutcome outcome;
        outcome.file = name;
        outcome.row = row.number;
        outcome.current = std::move(row.current);
        return outcome;
    }
    std::string message;
    for (const Fault& fault : row.faults)
        message += (message.empty() ? file + ", " : std::string("; ")) + faultText(fault);
    return troubled(name, std::move(message));
}

void visitTable(table::CaseTable table, std::optional<std::uint32_t> wanted,
                const std::string& argument,
                const std::function<void(CaseOutcome& outcome)>& visit) {
    for (const std::string& remark : table::remarks(table))
        complain(table.file + ": " + remark);
    if (wanted ? table.row(*wanted) == nullptr : table.rows.empty()) {
        CaseOutcome none = troubled(
            argument, table.file + (wanted ? ": row " + std::to_string(*wanted) + " has no case"
                                           : std::string(": the table has no case")));
        visit(none);
        return;
    }
    for (table::CaseRow& row : table.rows) {
        if (wanted && row.number != *wanted) continue;
        CaseOutcome outcome = outcomeOf(table.file, row);
        visit(outcome);
    }
}

CaseOutcome caseOf(std::string_view bytes, std::string_view name, const std::string& argument) {
    project::ProjectCase current = project::newCase(project::English);
    const project::CaseReading reading = project::readCaseText(bytes, name, current);
    if (reading.fault) return troubled(argument, faultText(*reading.fault));
    current.FileName = name;
    CaseOutcome outcome;
    outcome.file = argument;
    outcome.current = std::move(current);
    return outcome;
}

} // namespace

std::string endingOf(std::string_view file) {
    std::string ending = utf8FromPath(pathFromUtf8(file).extension());
    for (char& c : ending)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return ending;
}

bool namesWorkbook(std::string_view argument) {
    return endingOf(withoutRow(argument)) == ".xlsx";
}

void visitCases(const std::string& argument, const Workbooks& workbooks,
                const std::function<void(CaseOutcome& outcome)>& visit) {
    CaseOutcome outcome;
    if (argument == "-") {
        const auto bytes = readStandardInput();
        outcome = bytes ? caseOf(*bytes, StandardInput, argument)
                        : troubled(argument, faultText(bytes.fault()));
        return visit(outcome);
    }
    const Source source = sourceOf(argument);
    const auto bytes = readFile(source.file);
    if (!bytes) {
        outcome = troubled(argument, faultText(bytes.fault()));
    } else if (isTable(*bytes, source.file)) {
        auto table = readTable(*bytes, source.file, workbooks);
        if (table) return visitTable(std::move(*table), source.row, argument, visit);
        outcome = troubled(argument, faultText(table.fault()));
    } else if (source.row) {
        outcome = troubled(argument, source.file + ": is no table, and has no rows");
    } else {
        outcome = caseOf(*bytes, argument, argument);
    }
    visit(outcome);
}

CaseOutcome readCase(const std::string& argument, const Workbooks& workbooks) {
    CaseOutcome only;
    std::size_t count = 0;
    visitCases(argument, workbooks, [&](CaseOutcome& outcome) {
        if (++count == 1) only = std::move(outcome);
    });
    if (count > 1)
        return troubled(argument, argument + ": is a table of " + std::to_string(count) +
                                      " cases; name one by its row, such as " + only.file);
    return only;
}

void runCase(CaseOutcome& outcome, const app::RunOptions& options) {
    if (!outcome.current) return;
    app::RunOutcome run = app::runCase(*outcome.current, options);
    if (auto* good = std::get_if<app::CaseRun>(&run)) {
        outcome.run = std::move(*good);
        outcome.notes = outcome.run->notes;
        return;
    }
    outcome.notes = app::recordNotes(*outcome.current);
    outcome.status = Refused;
    if (const auto* refusal = std::get_if<Refusal>(&run))
        outcome.message = refusal->message;
    else
        outcome.message = faultText(std::get<Fault>(run));
}

void complain(const std::string& message) {
    const std::string line = "telvo-cli: " + message + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
}

void complainOf(const CaseOutcome& outcome) {
    // A fault of reading names the file itself, with the line.
    complain(outcome.status == FileTrouble ? outcome.message
                                           : outcome.file + ": " + outcome.message);
}

void tellNotes(const CaseOutcome& outcome) {
    for (const std::string& note : outcome.notes)
        complain(outcome.file + ": " + note);
}

bool mayWrite(const std::string& target, bool force) {
    std::error_code error;
    if (force || !std::filesystem::exists(pathFromUtf8(target), error)) return true;
    complain(target + ": the file exists; --force overwrites it");
    return false;
}

ExitStatus writeOrComplain(const std::string& path, std::string_view bytes) {
    const Status written = writeFile(path, bytes);
    if (written) return AllGood;
    complain(faultText(written.fault()));
    return FileTrouble;
}

void print(std::string_view text) {
    // A failure stays in the stream's error state until finishOutput() tells it.
    std::fwrite(text.data(), 1, text.size(), stdout);
}

ExitStatus finishOutput() {
    if (std::fflush(stdout) == 0 && !std::ferror(stdout)) return AllGood;
    complain("the output could not be written");
    return FileTrouble;
}

} // namespace telvo::cli
